// SPDX-License-Identifier: MIT
// What the host has of the file monitor: reports, its event loop, other threads, the end of a watch.
#include "file_monitor_fixture.h"

#include <atomic>
#include <memory>
#include <poll.h>

namespace orvan
{
namespace
{

TEST_F(FileMonitor, TellsTheHostWhatWasDoneForWhichObject)
{
	struct Line
	{
		std::string path;
		ObjectRef owner;
		FileChangeOutcome outcome;
	};
	std::vector<Line> lines;
	const auto dispatch = [&lines]
	{
		const auto observe = [](const FileChangeReport& report, void* context) noexcept
		{
			static_cast<std::vector<Line>*>(context)->push_back(
				{std::string(report.path), report.owner, report.outcome});
		};
		while (FileMonitorPump::Wait(250, observe, &lines) > 0)
		{
		}
	};
	FollowerRef follower;
	Must(follower->Follow(file, nullptr));
	Watcher watcher(file);
	WriteFile(file, "two");
	dispatch();
	ASSERT_EQ(2u, lines.size());
	EXPECT_EQ(file.native(), lines[0].path);
	EXPECT_EQ(follower.reference, lines[0].owner);
	EXPECT_EQ(FileChangeOutcome::reloaded, lines[0].outcome);
	EXPECT_FALSE(lines[1].owner);
	EXPECT_EQ(FileChangeOutcome::noted, lines[1].outcome);
	lines.clear();

	follower->outcome = FileChangeOutcome::postponed;
	WriteFile(file, "three");
	dispatch();
	EXPECT_EQ(2, follower->reports);
	follower->outcome = FileChangeOutcome::reloaded;
	FileWatch::RetryPostponed();
	dispatch();
	FileWatch::RetryPostponed();
	dispatch();
	EXPECT_EQ(3, follower->reports) << "postponed once, made up for once";
	EXPECT_EQ(2, watcher.reports);
	ASSERT_EQ(3u, lines.size());
	EXPECT_EQ(FileChangeOutcome::postponed, lines[0].outcome);
	lines.clear();

	follower->lastReference = &follower.reference;
	WriteFile(file, "four");
	dispatch();
	ASSERT_EQ(2u, lines.size());
	EXPECT_TRUE(lines[0].owner) << "alive until the host has been told";
	EXPECT_EQ(2, FileMonitorPump::CountWatches());
	lines.clear();
	EXPECT_EQ(1, FileMonitorPump::CountWatches()) << "then it goes, and its watch with it";
}

TEST_F(FileMonitor, HasItsDescriptorFromTheStartAndWakesWhoPollsIt)
{
	EXPECT_EQ(0, FileMonitorPump::CountWatches());
	const int descriptor = FileMonitorPump::GetDescriptor();
	ASSERT_GE(descriptor, 0);
	const FileStamp stale = StampOf(file);
	WriteFile(file, "another length");
	// Another thread starts a watch for which the system has nothing to tell; the pump knows of no time to wake up at.
	FollowerRef follower;
	EXPECT_EQ(-1, FileMonitorPump::GetTimeout());
	std::thread loader(
		[&]
		{
			std::this_thread::sleep_for(50ms);
			Must(follower->Follow(file, &stale));
		});
	const auto begin = std::chrono::steady_clock::now();
	EXPECT_EQ(1, FileMonitorPump::Wait(20'000));
	EXPECT_LT(std::chrono::steady_clock::now() - begin, 10s) << "it slept past what was due";
	loader.join();
	EXPECT_EQ(descriptor, FileMonitorPump::GetDescriptor());
	pollfd polled{descriptor, POLLIN, 0};
	EXPECT_EQ(0, poll(&polled, 1, 0));
	WriteFile(file, "again");
	EXPECT_EQ(1, poll(&polled, 1, 10'000));
	EXPECT_EQ(1, FileMonitorPump::Wait(20'000));
	EXPECT_LT(std::chrono::steady_clock::now() - begin, 15s);
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

} // namespace
} // namespace orvan
