// SPDX-License-Identifier: MIT
#include "orvan/file_monitor.h"

#include "orvan/class_declaration.h"
#include "orvan/host/file_monitor_pump.h"
#include "runtime/registry.h"
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

/// Number of folders that the system watches for this process.
int CountSystemWatches()
{
	int count = 0;
	for (const auto& entry : fs::directory_iterator("/proc/self/fdinfo"))
	{
		std::ifstream info(entry.path());
		for (std::string line; std::getline(info, line);)
			count += line.starts_with("inotify wd:") ? 1 : 0;
	}
	return count;
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

constexpr ClassDeclaration kFollower = DeclareClass<Follower>("net.orvan.test.class.follower");

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

FileStamp StampOf(const fs::path& path)
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

TEST_F(FileMonitor, FollowsLinksHoweverTheyAreWritten)
{
	fs::create_directories(folder / "far/deep");
	fs::create_symlink(folder / "far/deep/a.svg", folder / "1"); // Absolute.
	fs::create_symlink("../../2", folder / "far/deep/a.svg");
	fs::create_symlink("./far/../3", folder / "2");
	fs::create_symlink("a.svg", folder / "3");
	Watcher watcher(folder / "1");
	Watcher dotted(folder / "far/deep/../../a.svg");
	WriteFile(file, "two");
	PumpUntilQuiet();
	EXPECT_EQ(1, watcher.reports);
	EXPECT_EQ(1, dotted.reports);
}

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
	// Nor may one that is replaced without end keep its report waiting.
	for (int i = 0; watcher.reports == 3 && i < 500; i++)
	{
		WriteFile(folder / "new", std::to_string(i));
		fs::rename(folder / "new", file);
		FileMonitorPump::Wait(10);
	}
	EXPECT_EQ(4, watcher.reports);
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
	const int depth = static_cast<int>(std::distance(folder.GetPath().begin(), folder.GetPath().end()));
	EXPECT_EQ(depth + 1, CountSystemWatches()) << "the folders on the way and v1, no longer v2";
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
	const int depth = static_cast<int>(std::distance(folder.GetPath().begin(), folder.GetPath().end()));
	EXPECT_EQ(depth, CountSystemWatches()) << "one for each folder on the way";
	watchers.clear();
	EXPECT_EQ(0, CountSystemWatches());
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
