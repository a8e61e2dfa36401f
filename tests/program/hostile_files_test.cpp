// SPDX-License-Identifier: MIT
#include "program_run.h"

#include <atomic>
#include <csignal>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace orvan::test
{
namespace
{
namespace fs = std::filesystem;

constexpr std::string_view kGood = "<svg><g/></svg>";

TEST(HostileFiles, AreToldApartFromThoseThatLoad)
{
	const TemporaryFolder folder;
	const std::string wide("\xff\xfe<\0s\0v\0g\0/\0>\0", 14);
	const std::map<std::string, std::string> files = {
		{"empty.svg", ""},
		{"one-byte.svg", "<"},
		{"wide.svg", wide},
		{"marked.svg", "\xef\xbb\xbf<svg/>"},
		{"long.svg", "<svg id='" + std::string(1 << 20, 'a') + "'/>"},
		{"\xc3\xa9 100%41?#.svg", std::string(kGood)},
		{"\xff\n.svg", std::string(kGood)},
	};
	for (const auto& [name, content] : files)
		folder.Write(name, content);
	ASSERT_EQ(mkfifo((folder.GetPath() / "pipe.svg").c_str(), 0600), 0);
	fs::create_symlink("/dev/zero", folder.GetPath() / "device.svg");
	fs::create_symlink("gone", folder.GetPath() / "dangling.svg");
	fs::create_symlink(folder.GetPath(), folder.GetPath() / "circle.svg");
	fs::create_directory(folder.GetPath() / "folder.svg");

	const ProgramRun run = RunProgram({"check", folder.GetPath()});
	EXPECT_EQ(run.status, 1);
	EXPECT_TRUE(run.output.ends_with("\n4 loaded, 6 failed\n")) << run.output;
	for (const char* name : {"empty", "one-byte", "wide", "pipe", "device", "dangling"})
		EXPECT_NE(run.output.find('/' + std::string(name) + ".svg:"), run.output.npos) << name;
}

TEST(HostileFiles, ThatChangeAndVanishWhileTheyAreReadEndInATreeOrAReason)
{
	const TemporaryFolder folder;
	std::string text = "<svg>";
	for (int i = 0; i < 20'000; i++)
		text += "<g id='g" + std::to_string(i) + "'/>";
	text += "</svg>";
	constexpr int kCount = 40;
	for (int i = 0; i < kCount; i++)
		folder.Write(std::to_string(i) + ".svg", text);

	std::atomic<bool> isDone = false;
	std::thread spoiler(
		[&]
		{
			for (unsigned i = 0; !isDone; i = i * 5 + 7)
			{
				const fs::path path = folder.GetPath() / (std::to_string(i % kCount) + ".svg");
				std::error_code ignored;
				if (i % 3 == 0)
					fs::remove(path, ignored);
				else if (i % 3 == 1)
					fs::resize_file(path, text.size() / 2, ignored);
				else
					folder.Write(path.filename(), text);
			}
		});
	for (int round = 0; round < 5; round++)
	{
		const ProgramRun run = RunProgram({"check", "--jobs", "4", folder.GetPath()});
		EXPECT_TRUE(run.status == 0 || run.status == 1) << run.errors;
		// Each refusal has a line, with more than a path in it, and the last line agrees.
		std::istringstream lines(run.output);
		int refusals = 0;
		std::string line;
		for (; std::getline(lines, line) && line.starts_with('/'); refusals++)
			EXPECT_GT(line.size(), line.find(".svg:") + 6) << line;
		int loaded = -1;
		int failed = -1;
		EXPECT_EQ(std::sscanf(line.c_str(), "%d loaded, %d failed", &loaded, &failed), 2) << line;
		EXPECT_EQ(failed, refusals) << run.output;
	}
	isDone = true;
	spoiler.join();
}

TEST(HostileFiles, AreLeftAsTheyWereWhenACheckOfTenThousandIsEndedMidway)
{
	const TemporaryFolder folder;
	const TemporaryFolder scratch;
	for (int i = 0; i < 100; i++)
		folder.Write(std::to_string(i) + ".svg", kGood);
	// Many names for a few files: the program cannot tell, and the test is quicker.
	for (int i = 100; i < 10'000; i++)
		fs::create_hard_link(folder.GetPath() / (std::to_string(i % 100) + ".svg"),
							 folder.GetPath() / (std::to_string(i) + ".svg"));
	const fs::path output = folder.GetPath() / "output";
	int endedMidway = 0;
	for (const int signal : {SIGINT, SIGTERM, SIGKILL})
	{
		for (const int milliseconds : {5, 20, 60})
		{
			const pid_t process = fork();
			if (process == 0)
			{
				setenv("TMPDIR", scratch.GetPath().c_str(), 1);
				if (std::freopen(output.c_str(), "w", stdout) != nullptr)
					execl(ORVAN_PROGRAM, ORVAN_PROGRAM, "check", "--jobs", "8", folder.GetPath().c_str(), nullptr);
				_exit(127);
			}
			std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
			kill(process, signal);
			int status = 0;
			ASSERT_EQ(waitpid(process, &status, 0), process);
			// It may also have been quick enough.
			EXPECT_TRUE(WIFSIGNALED(status) ? WTERMSIG(status) == signal : WEXITSTATUS(status) == 0) << status;
			endedMidway += WIFSIGNALED(status) ? 1 : 0;
		}
	}
	EXPECT_GT(endedMidway, 0);
	fs::remove(output);
	EXPECT_TRUE(fs::is_empty(scratch.GetPath()));
	EXPECT_EQ(std::distance(fs::directory_iterator(folder.GetPath()), {}), 10'000);
	EXPECT_TRUE(RunProgram({"check", folder.GetPath()}).output.ends_with("10000 loaded, 0 failed\n"));
}
} // namespace
} // namespace orvan::test
