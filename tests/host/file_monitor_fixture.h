// SPDX-License-Identifier: MIT
/// What tests of watched files share: a file in a folder of its own, and what is told of it.
#pragma once

#include "orvan/class_declaration.h"
#include "orvan/file_monitor.h"
#include "orvan/host/file_monitor_pump.h"
#include "runtime/registry.h"
#include "support.h"

#include <chrono>
#include <functional>
#include <thread>

namespace orvan
{

namespace fs = std::filesystem;
using namespace std::chrono_literals;

/// Counts the reports about one file.
class Watcher
{
public:
	explicit Watcher(const fs::path& path)
	{
		_watch = Must(FileWatch::Start(Must(Url::FromPath(path.string())), &Report, this));
	}
	Watcher(const Watcher&) = delete;

	void Stop()
	{
		_watch.Stop();
	}

	int reports = 0;
	std::function<void()> onReport;

private:
	static void Report(void* context) noexcept
	{
		auto& watcher = *static_cast<Watcher*>(context);
		watcher.reports++;
		if (watcher.onReport)
			watcher.onReport();
	}

	FileWatch _watch;
};

/// Pumps until nothing has been reported for a quarter of a second.
inline void PumpUntilQuiet()
{
	while (FileMonitorPump::Wait(250) > 0)
	{
	}
}

/// An object that follows a file and answers as the test wants.
class Follower : public ObjectBase
{
public:
	Result<void> Follow(const fs::path& path, const FileStamp* loaded) noexcept
	{
		_watch = ORVAN_TRY(FileWatch::Start(ORVAN_TRY(Url::FromPath(path.native())), &Report, this,
											{.loaded = loaded, .owner = this}));
		return {};
	}

	FileChangeOutcome outcome = FileChangeOutcome::reloaded;
	int reports = 0;
	ObjectRef* lastReference = nullptr; ///< Dropped by the callback.

private:
	static FileChangeOutcome Report(void* context) noexcept
	{
		auto& self = *static_cast<Follower*>(context);
		self.reports++;
		if (self.lastReference != nullptr)
			*self.lastReference = nullptr;
		return self.outcome;
	}

	FileWatch _watch;
};

inline constexpr ClassDeclaration kFollower = DeclareClass<Follower>("net.orvan.test.class.follower");

/// A follower with the reference that keeps it.
struct FollowerRef
{
	FollowerRef()
	{
		[[maybe_unused]] static const bool isRegistered = runtime::AddClass(kFollower).IsOk();
		reference = Must(CreateObject<ObjectInterface>(kFollower.id));
	}

	Follower* operator->() const
	{
		return static_cast<Follower*>(reference.GetObject());
	}

	ObjectRef reference;
};

inline FileStamp StampOf(const fs::path& path)
{
	return Must(Must(Url::FromPath(path.native())).OpenInputStream()).GetStamp();
}

class FileMonitor : public testing::Test
{
protected:
	FileMonitor()
	{
		WriteFile(file, "one");
		// Whether a file was written just before or just after a watch started cannot be told.
		std::this_thread::sleep_for(30ms);
	}

	TemporaryFolder folder;
	const fs::path file = folder / "a.svg";
};

} // namespace orvan
