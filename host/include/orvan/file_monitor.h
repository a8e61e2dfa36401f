// SPDX-License-Identifier: MIT
/// Being told when a file changes.
#pragma once

#include "orvan/url.h"

#include <utility>

namespace orvan
{

/// A watch on one file, kept up as long as the object lives. The host follows the path, not the inode: the file may be
/// rewritten, replaced by renaming, deleted and created again, and so may its folder. A burst of changes is one call.
///
/// The callback runs inside the host's event processing, on the thread that pumps it, and never after the watch has
/// ended: ending it also takes back a call that was due but not made. A callback may end its own watch and others.
class FileWatch
{
public:
	FileWatch() noexcept = default;

	FileWatch(FileWatch&& other) noexcept : _registration(std::exchange(other._registration, nullptr))
	{
	}

	FileWatch& operator=(FileWatch&& other) noexcept
	{
		std::swap(_registration, other._registration);
		return *this;
	}

	~FileWatch()
	{
		Stop();
	}

	/// Starts watching. Fails when the URL does not designate a place on disk, or the system's means are exhausted.
	static Result<FileWatch> Start(const Url& url, FileChangeCallback callback, void* context) noexcept
	{
		FileWatch watch;
		ORVAN_TRY(ResultOf(Host().watchFile(url, callback, context, &watch._registration)));
		return watch;
	}

	/// Ends the watch; nothing when there is none.
	void Stop() noexcept
	{
		if (_registration != nullptr)
			Host().unwatchFile(std::exchange(_registration, nullptr));
	}

	bool IsActive() const noexcept
	{
		return _registration != nullptr;
	}

private:
	MonitorRegistration* _registration = nullptr;
};

} // namespace orvan
