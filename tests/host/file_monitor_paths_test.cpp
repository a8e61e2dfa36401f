// SPDX-License-Identifier: MIT
// Names that lead to another file, or to none: replaced files, links, folders that come and go.
#include "file_monitor_fixture.h"

#include <memory>

namespace orvan
{
namespace
{

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

} // namespace
} // namespace orvan
