// SPDX-License-Identifier: MIT
#include "orvan/file_monitor.h"

#include "orvan/host/file_monitor_pump.h"
#include "support.h"

#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <poll.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace orvan
{
namespace
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
void PumpUntilQuiet()
{
	while (FileMonitorPump::Wait(250) > 0)
	{
	}
}

void PumpFor(std::chrono::milliseconds time)
{
	const auto end = std::chrono::steady_clock::now() + time;
	while (std::chrono::steady_clock::now() < end)
		FileMonitorPump::Wait(static_cast<int>((end - std::chrono::steady_clock::now()) / 1ms) + 1);
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

TEST_F(FileMonitor, ReportsARewriteOnce)
{
	Watcher watcher(file);
	PumpUntilQuiet();
	EXPECT_EQ(0, watcher.reports);
	WriteFile(file, "two");
	PumpUntilQuiet();
	EXPECT_EQ(1, watcher.reports);
	WriteFile(folder / "other.svg", "x");
	std::ifstream(file).get();
	PumpUntilQuiet();
	EXPECT_EQ(1, watcher.reports);
}

TEST_F(FileMonitor, FollowsTheNameWhenTheFileIsReplaced)
{
	Watcher watcher(file);
	for (int i = 1; i <= 3; i++)
	{
		WriteFile(folder / "new", std::to_string(i));
		fs::rename(folder / "new", file);
		PumpUntilQuiet();
		EXPECT_EQ(i, watcher.reports);
	}
	// The way of editors that keep a backup.
	fs::rename(file, folder / "a.svg~");
	WriteFile(file, "four");
	PumpUntilQuiet();
	EXPECT_EQ(4, watcher.reports);
	WriteFile(folder / "a.svg~", "old");
	PumpUntilQuiet();
	EXPECT_EQ(4, watcher.reports);
}

TEST_F(FileMonitor, ReportsAFileThatGoesAndOneThatComesBack)
{
	Watcher watcher(file);
	fs::remove(file);
	PumpUntilQuiet();
	EXPECT_EQ(1, watcher.reports);
	WriteFile(file, "two");
	PumpUntilQuiet();
	EXPECT_EQ(2, watcher.reports);
	fs::remove(file);
	WriteFile(file, "three");
	PumpUntilQuiet();
	EXPECT_EQ(3, watcher.reports) << "gone and back within a moment is one change";
}

TEST_F(FileMonitor, WaitsForASlowWriterToClose)
{
	Watcher watcher(file);
	{
		std::ofstream out(file, std::ios::trunc);
		out << "half" << std::flush;
		PumpFor(200ms);
		EXPECT_EQ(0, watcher.reports);
		out << "whole";
	}
	PumpUntilQuiet();
	EXPECT_EQ(1, watcher.reports);
	fs::remove(file);
	PumpUntilQuiet();
	{
		std::ofstream out(file);
		PumpFor(200ms);
		out << "late";
	}
	PumpUntilQuiet();
	EXPECT_EQ(3, watcher.reports) << "a created file waits for its content";
}

TEST_F(FileMonitor, ReportsAFileThatIsWrittenWithoutEndNowAndThen)
{
	Watcher watcher(file);
	std::ofstream out(file);
	const auto end = std::chrono::steady_clock::now() + 2300ms;
	while (std::chrono::steady_clock::now() < end)
	{
		out << "more" << std::flush;
		FileMonitorPump::Wait(10);
	}
	EXPECT_EQ(2, watcher.reports);
	out.close();
	PumpUntilQuiet();
	EXPECT_EQ(3, watcher.reports);
}

TEST_F(FileMonitor, FollowsLinksThatAreReplacedAndTheirTargets)
{
	fs::create_directories(folder / "v1");
	fs::create_directories(folder / "v2");
	WriteFile(folder / "v1/a.svg", "1");
	WriteFile(folder / "v2/a.svg", "2");
	fs::create_directory_symlink("v1", folder / "current");
	fs::create_symlink("current/a.svg", folder / "link.svg");
	Watcher watcher(folder / "link.svg");
	WriteFile(folder / "v1/a.svg", "1 again");
	PumpUntilQuiet();
	EXPECT_EQ(1, watcher.reports);
	fs::create_directory_symlink("v2", folder / "next");
	fs::rename(folder / "next", folder / "current");
	PumpUntilQuiet();
	EXPECT_EQ(2, watcher.reports) << "the folder's link leads elsewhere";
	WriteFile(folder / "v1/a.svg", "unseen");
	PumpUntilQuiet();
	EXPECT_EQ(2, watcher.reports) << "nothing leads there any more";
	WriteFile(folder / "v2/a.svg", "2 again");
	PumpUntilQuiet();
	EXPECT_EQ(3, watcher.reports);
	fs::create_symlink("v1/a.svg", folder / "new");
	fs::rename(folder / "new", folder / "link.svg");
	PumpUntilQuiet();
	EXPECT_EQ(4, watcher.reports) << "the file's link leads elsewhere";
}

TEST_F(FileMonitor, FollowsFoldersThatDisappearAndComeBack)
{
	fs::create_directories(folder / "theme/icons");
	WriteFile(folder / "theme/icons/a.svg", "1");
	Watcher watcher(folder / "theme/icons/a.svg");
	fs::rename(folder / "theme", folder / "old");
	PumpUntilQuiet();
	EXPECT_EQ(1, watcher.reports);
	fs::create_directories(folder / "theme/icons");
	PumpUntilQuiet();
	EXPECT_EQ(1, watcher.reports);
	WriteFile(folder / "theme/icons/a.svg", "2");
	PumpUntilQuiet();
	EXPECT_EQ(2, watcher.reports);
	fs::remove_all(folder / "theme");
	fs::create_directories(folder / "theme/icons");
	WriteFile(folder / "theme/icons/a.svg", "3");
	PumpUntilQuiet();
	EXPECT_EQ(3, watcher.reports);
	WriteFile(folder / "old/icons/a.svg", "unseen");
	PumpUntilQuiet();
	EXPECT_EQ(3, watcher.reports);
}

TEST_F(FileMonitor, StartsBeforeTheFileAndItsFolderAreThere)
{
	Watcher watcher(folder / "later/on/a.svg");
	fs::create_directories(folder / "later/on");
	WriteFile(folder / "later/on/a.svg", "1");
	PumpUntilQuiet();
	EXPECT_EQ(1, watcher.reports);
}

TEST_F(FileMonitor, ServesHundredsOfFilesOfAFolderAndTheSameFileTwice)
{
	std::vector<std::unique_ptr<Watcher>> watchers;
	for (int i = 0; i < 400; i++)
		WriteFile(folder / std::to_string(i), "1");
	std::this_thread::sleep_for(30ms);
	for (int i = 0; i < 400; i++)
		watchers.push_back(std::make_unique<Watcher>(folder / std::to_string(i)));
	watchers.push_back(std::make_unique<Watcher>(folder / "7"));
	PumpUntilQuiet();
	WriteFile(folder / "7", "2");
	WriteFile(folder / "399", "2");
	PumpUntilQuiet();
	for (int i = 0; i <= 400; i++)
		EXPECT_EQ(i == 7 || i == 399 || i == 400, watchers[static_cast<std::size_t>(i)]->reports) << i;
}

TEST_F(FileMonitor, NeverCallsAWatchThatHasEnded)
{
	auto first = std::make_unique<Watcher>(file);
	auto second = std::make_unique<Watcher>(file);
	// Both are due; whichever comes first ends them both.
	int reports = 0;
	for (auto* watcher : {&first, &second})
	{
		(*watcher)->onReport = [&]
		{
			reports++;
			first->Stop();
			second->Stop();
		};
	}
	WriteFile(file, "two");
	PumpUntilQuiet();
	EXPECT_EQ(1, reports);

	Watcher third(file);
	WriteFile(file, "three");
	std::this_thread::sleep_for(100ms);
	FileMonitorPump::DispatchDue(); // Takes the change in; the report is due a moment later.
	third.Stop();
	PumpUntilQuiet();
	EXPECT_EQ(0, third.reports);
}

TEST_F(FileMonitor, EndingAWatchOnAnotherThreadWaitsForTheCallback)
{
	auto watcher = std::make_unique<Watcher>(file);
	std::atomic<bool> isInside = false;
	watcher->onReport = [&]
	{
		isInside = true;
		std::this_thread::sleep_for(100ms);
		isInside = false;
	};
	std::thread pump([] { PumpUntilQuiet(); });
	WriteFile(file, "two");
	while (!isInside)
		std::this_thread::yield();
	watcher->Stop();
	EXPECT_FALSE(isInside);
	watcher.reset();
	pump.join();
}

TEST_F(FileMonitor, LetsACallbackReleaseItsOwnerAndStartAnother)
{
	std::unique_ptr<Watcher> next;
	auto watcher = std::make_unique<Watcher>(file);
	watcher->onReport = [&]
	{
		next = std::make_unique<Watcher>(file);
		watcher.reset();
	};
	WriteFile(file, "two");
	PumpUntilQuiet();
	ASSERT_EQ(nullptr, watcher);
	WriteFile(file, "three");
	PumpUntilQuiet();
	EXPECT_EQ(1, next->reports);
}

TEST_F(FileMonitor, TellsAnEventLoopWhenToCall)
{
	Watcher watcher(file);
	PumpUntilQuiet();
	EXPECT_EQ(-1, FileMonitorPump::GetTimeout());
	WriteFile(file, "two");
	pollfd descriptor{FileMonitorPump::GetDescriptor(), POLLIN, 0};
	EXPECT_EQ(1, poll(&descriptor, 1, 1000));
	EXPECT_EQ(0, FileMonitorPump::DispatchDue());
	while (watcher.reports == 0)
	{
		const int timeout = FileMonitorPump::GetTimeout();
		ASSERT_GE(timeout, 0);
		ASSERT_LE(timeout, 50);
		poll(&descriptor, 1, timeout);
		FileMonitorPump::DispatchDue();
	}
	EXPECT_EQ(-1, FileMonitorPump::GetTimeout());
}

TEST_F(FileMonitor, WarnsWhenTheSystemDropsEventsAndMissesNoChange)
{
	CollectedDiagnostics diagnostics;
	Watcher changed(file);
	Watcher unchanged(folder / "b.svg");
	// More events than the system's queue takes, and the change behind them.
	for (int i = 0; i < 20'000; i++)
	{
		const fs::path path = folder / ("noise" + std::to_string(i % 2));
		close(open(path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
	}
	WriteFile(file, "two");
	PumpUntilQuiet();
	EXPECT_EQ(1, changed.reports);
	EXPECT_EQ(0, unchanged.reports);
	ASSERT_EQ(1u, diagnostics.lines.size());
	EXPECT_EQ("Changes of files came faster than they were read; all watched files are looked at.",
			  diagnostics.lines[0]);
}

TEST_F(FileMonitor, SaysThatTheSystemsMeansAreExhausted)
{
	// Run anew from the start, so that the monitor has not been opened yet.
	GTEST_FLAG_SET(death_test_style, "threadsafe");
	const auto start = [this]
	{
		const rlimit none{0, 0};
		setrlimit(RLIMIT_NOFILE, &none);
		const auto started = FileWatch::Start(
			Must(Url::FromPath(file.string())), [](void*) noexcept {}, nullptr);
		std::fprintf(stderr, "%s\n", MessageOf(started).c_str());
		_exit(0);
	};
	EXPECT_EXIT(start(), testing::ExitedWithCode(0), "cannot be watched: Too many open files\\.");
}

TEST_F(FileMonitor, RefusesWhatIsNoPlaceOnDisk)
{
	const auto start = [](const char* url)
	{
		return FileWatch::Start(
			Must(Url::Create(url)), [](void*) noexcept {}, nullptr);
	};
	EXPECT_EQ("'memory:a.svg' cannot be watched: it is no file on disk.", MessageOf(start("memory:a.svg")));
	EXPECT_FALSE(start("").IsOk());
	EXPECT_FALSE(start("file:///a%00b").IsOk());
}

} // namespace
} // namespace orvan
