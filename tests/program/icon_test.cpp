// SPDX-License-Identifier: MIT
#include "program_run.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace orvan::test
{
namespace
{
constexpr const char* kLamp = ORVAN_EXAMPLES "/lamp.svg";

/// The program following an icon's file.
class WatchingProgram
{
public:
	explicit WatchingProgram(const std::string& path)
	{
		int pipe[2];
		EXPECT_EQ(pipe2(pipe, O_CLOEXEC), 0);
		_output = pipe[0];
		_process = fork();
		if (_process == 0)
		{
			dup2(pipe[1], STDOUT_FILENO);
			execl(ORVAN_PROGRAM, ORVAN_PROGRAM, "icon", path.c_str(), "--watch", nullptr);
			_exit(127);
		}
		close(pipe[1]);
	}

	WatchingProgram(const WatchingProgram&) = delete;

	~WatchingProgram()
	{
		close(_output);
		if (_process > 0)
			Stop(SIGKILL);
	}

	/// What it prints until it has been quiet for a moment; waits long for the first byte.
	std::string Read()
	{
		std::string text;
		pollfd output = {.fd = _output, .events = POLLIN, .revents = 0};
		while (poll(&output, 1, text.empty() ? 20'000 : 500) > 0)
		{
			char bytes[4096];
			const ssize_t count = read(_output, bytes, sizeof(bytes));
			if (count <= 0)
				break;
			text.append(bytes, static_cast<std::size_t>(count));
		}
		return text;
	}

	/// Ends it with a signal; returns its exit status, -1 when it had none.
	int Stop(int signal)
	{
		int status = 0;
		kill(_process, signal);
		waitpid(std::exchange(_process, -1), &status, 0);
		return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
	}

private:
	int _output = -1;
	pid_t _process = -1;
};

TEST(IconCommand, ShowsTheLayerOfTheStateAlone)
{
	const ProgramRun run = RunProgram({"icon", "--state", "2", "--disable", "stand", kLamp});
	EXPECT_EQ(run.status, 0) << run.errors;
	for (const char* line : {"hidden  State:EnabledActivatedHighlight\n", "hidden  State:EnabledActivatedNoHighlight\n",
							 "shown   State:EnabledDeactivatedHighlight\n",
							 "hidden  State:EnabledDeactivatedNoHighlight\n", "hidden  stand\n"})
		EXPECT_NE(run.output.find(line), run.output.npos) << line << " in " << run.output;
}

TEST(IconCommand, TakesSeveralFiles)
{
	const TemporaryFolder folder;
	const std::string one = folder.Write("one.svg", "<svg><g id='a' fill='q'/></svg>");
	const std::string two = folder.Write("two.svg", "<svg><g id='b'/></svg>");
	const std::string pictures = folder.GetPath() / "pictures/";
	const ProgramRun run = RunProgram({"icon", one, two, "-o", pictures, "--disable", "b"});
	EXPECT_EQ(run.status, 1) << "the first has no such layer";
	EXPECT_EQ(run.output, one + ":\nshown   a\n\n" + two + ":\nhidden  b\n");
	EXPECT_EQ(run.errors.find("WARNING: " + one + ":1:"), 0) << "what a picture does without is left out";
	EXPECT_TRUE(std::filesystem::exists(pictures + "one.png") && std::filesystem::exists(pictures + "two.png"));
	EXPECT_EQ(RunProgram({"icon", "--plain", one}).status, 1);
	EXPECT_EQ(RunProgram({"icon", two, "-o", "-"}).output.substr(0, 4), "\x89PNG");
	EXPECT_EQ(RunProgram({"icon", one, two, "--watch"}).status, 2);
	EXPECT_EQ(RunProgram({"icon", "-", "--watch"}).status, 2);
	EXPECT_EQ(RunProgram({"icon", two, "-o", "-", "--watch"}).status, 2);
}

TEST(IconCommand, FailsForALayerThatIsNotThere)
{
	const ProgramRun run = RunProgram({"icon", kLamp, "--enable", "nothing", "--disable", "stand"});
	EXPECT_EQ(run.status, 1);
	EXPECT_NE(run.output.find("hidden  stand\n"), run.output.npos) << "The others are switched: " << run.output;
	EXPECT_NE(run.errors.find("'nothing'"), run.errors.npos) << run.errors;
}

TEST(IconCommand, PrintsAgainWhenTheFileChangesUntilItIsInterrupted)
{
	const TemporaryFolder folder;
	const std::string path = folder.Write("icon.svg", "<svg><g id='before'/></svg>");
	// A load within a clock step of the last change cannot tell whether it came before or after.
	std::this_thread::sleep_for(std::chrono::milliseconds(30));
	WatchingProgram program(path);
	EXPECT_EQ(program.Read(), "shown   before\n");
	std::filesystem::rename(folder.Write("new", "<svg><g id='after'/></svg>"), path);
	EXPECT_EQ(program.Read(), "\nshown   after\n");
	EXPECT_EQ(program.Stop(SIGTERM), 0);
}
} // namespace
} // namespace orvan::test
