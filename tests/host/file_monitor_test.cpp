// SPDX-License-Identifier: MIT
// What is reported of a file that changes, and when.
#include "file_monitor_fixture.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace orvan
{
namespace
{

void PumpFor(std::chrono::milliseconds time)
{
	const auto end = std::chrono::steady_clock::now() + time;
	while (std::chrono::steady_clock::now() < end)
		FileMonitorPump::Wait(static_cast<int>((end - std::chrono::steady_clock::now()) / 1ms) + 1);
}

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

TEST_F(FileMonitor, CountsWhatHasChangedSinceTheLoadAsAChange)
{
	const Url url = Must(Url::FromPath(file.string()));
	const FileStamp loaded = StampOf(file);
	EXPECT_FALSE(url.GetStamp().MayDifferFrom(loaded));
	FollowerRef follower;
	Must(follower->Follow(file, &loaded));
	PumpUntilQuiet();
	EXPECT_EQ(0, follower->reports) << "nothing has happened";

	// Of the same length, and within one step of the file system's clock.
	WriteFile(file, "two");
	const FileStamp recent = StampOf(file);
	WriteFile(file, "six");
	PumpUntilQuiet();
	EXPECT_EQ(1, follower->reports);
	Must(follower->Follow(file, &recent));
	PumpUntilQuiet();
	EXPECT_EQ(2, follower->reports);
	PumpUntilQuiet();
	EXPECT_EQ(2, follower->reports) << "once";

	// A stream is what it was opened on, whatever the name stands for later.
	std::this_thread::sleep_for(30ms);
	const InputStream stream = Must(url.OpenInputStream());
	WriteFile(folder / "new", "new");
	fs::rename(folder / "new", file);
	EXPECT_TRUE(url.GetStamp().MayDifferFrom(stream.GetStamp()));
	fs::remove(file);
	const FileStamp nothing = url.GetStamp();
	EXPECT_EQ(0u, nothing.inode);
	Must(follower->Follow(file, &nothing));
	PumpUntilQuiet();
	EXPECT_EQ(2, follower->reports) << "nothing was there, and nothing is";
	WriteFile(file, "back");
	Must(follower->Follow(file, &nothing));
	PumpUntilQuiet();
	EXPECT_EQ(3, follower->reports);
	EXPECT_EQ(0u, Must(Url::Create("memory:a.svg")).GetStamp().changed);
}

TEST_F(FileMonitor, TellsStampsApart)
{
	const FileStamp stamp{1, 2, 3, 4, 5};
	EXPECT_FALSE(stamp.MayDifferFrom(stamp));
	for (const FileStamp& other : {FileStamp{9, 2, 3, 4, 5}, FileStamp{1, 9, 3, 4, 5}, FileStamp{1, 2, 9, 4, 5},
								   FileStamp{1, 2, 3, 9, 5}, FileStamp{1, 2, 3, 4, 9}})
		EXPECT_TRUE(stamp.MayDifferFrom(other));
	EXPECT_TRUE(stamp.MayDifferFrom({1, 2, 3, 4, 5, true})) << "a later change may not show";
	EXPECT_FALSE(StampOf(file).isUncertain);
	bool isUncertain = false;
	for (int i = 0; i < 100 && !isUncertain; i++) // The two steps may lie apart on a busy machine.
	{
		WriteFile(file, "two");
		isUncertain = StampOf(file).isUncertain;
	}
	EXPECT_TRUE(isUncertain);
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
	// Nor may one that is replaced without end keep its report waiting.
	for (int i = 0; watcher.reports == 3 && i < 500; i++)
	{
		WriteFile(folder / "new", std::to_string(i));
		fs::rename(folder / "new", file);
		FileMonitorPump::Wait(10);
	}
	EXPECT_EQ(4, watcher.reports);
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
		// What the sanitizers look up by a file of their own comes before that.
		const Url url = Must(Url::FromPath(file.string()));
		const rlimit none{0, 0};
		setrlimit(RLIMIT_NOFILE, &none);
		const auto started = FileWatch::Start(
			url, [](void*) noexcept {}, nullptr);
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
