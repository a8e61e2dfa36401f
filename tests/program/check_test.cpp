// SPDX-License-Identifier: MIT
#include "program_run.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace orvan::test
{
namespace
{
constexpr std::string_view kGood = "<svg><g/></svg>";
constexpr std::string_view kBad = "<svg>\n<path id='p' d='M'/></svg>";

TEST(CheckCommand, NamesEachFailedFileAndCountsLast)
{
	const TemporaryFolder folder;
	folder.Write("b/good.svg", kGood);
	const std::string bad = folder.Write("a/bad.svg", kBad);
	const std::string broken = folder.Write("broken.svg", "<svg>");
	folder.Write("notes.txt", "no picture");
	const ProgramRun run = RunProgram({"check", "--jobs", "3", folder.GetPath()});
	EXPECT_EQ(run.status, 1);
	EXPECT_EQ(run.output.find(bad + ":2:"), 0u) << run.output;
	EXPECT_NE(run.output.find("(<path id=\"p\">)\n" + broken + ":1:"), run.output.npos) << run.output;
	EXPECT_TRUE(run.output.ends_with("\n1 loaded, 2 failed\n")) << run.output;
	EXPECT_EQ(run.errors, "") << "there is no progress bar without a terminal";
}

TEST(CheckCommand, ReportsTheSameAsJson)
{
	const TemporaryFolder folder;
	const std::string bad = folder.Write("bad.svg", kBad);
	const ProgramRun run = RunProgram({"check", "--json", folder.Write("good.svg", kGood), bad});
	EXPECT_EQ(run.status, 1);
	const auto report = nlohmann::json::parse(run.output);
	EXPECT_EQ(report["loaded"], 1);
	EXPECT_EQ(report["failed"], 1);
	const auto& failure = report["failures"].at(0);
	EXPECT_EQ(failure["path"], bad);
	EXPECT_EQ(failure["line"], 2);
	EXPECT_EQ(failure["column"], 17);
	EXPECT_EQ(failure["element"], "path");
	EXPECT_TRUE(failure["reason"].get<std::string>().starts_with("Exception parsing svg file. ")) << failure;
	EXPECT_EQ(failure["id"], "p");
}

TEST(CheckCommand, LoadsManyFilesOnManyThreads)
{
	const TemporaryFolder folder;
	for (int i = 0; i < 300; i++)
		folder.Write(std::to_string(i) + ".svg", i % 100 == 0 ? kBad : kGood);
	const ProgramRun run = RunProgram({"check", "--jobs", "16", folder.GetPath()});
	EXPECT_TRUE(run.output.ends_with("\n297 loaded, 3 failed\n")) << run.output;
}

TEST(CheckCommand, FailsForPlacesThatItCannotReach)
{
	const ProgramRun run = RunProgram({"check", "/nowhere"});
	EXPECT_EQ(run.status, 1);
	EXPECT_TRUE(run.output.ends_with("\n0 loaded, 1 failed\n")) << run.output;

	// A folder whose path is longer than the system takes, with a name that is allowed in it.
	const TemporaryFolder folder;
	const std::string name(200, 'd');
	const std::string makeFolders = "(cd '" + folder.GetPath().string() + "'; while mkdir " + name + " && cd " + name +
									"; do :; done) 2>/dev/null; ";
	const ProgramRun deep = RunProgram({"check", folder.GetPath()}, {.setup = makeFolders});
	EXPECT_EQ(deep.status, 1);
	EXPECT_NE(deep.output.find("File name too long\n0 loaded, 1 failed\n"), deep.output.npos) << deep.output;

	if (geteuid() == 0)
		return; // Who may do everything reaches everything.
	const TemporaryFolder closed;
	closed.Write("inner/a.svg", kGood);
	std::filesystem::permissions(closed.GetPath(), std::filesystem::perms::owner_read);
	const ProgramRun refused = RunProgram({"check", closed.GetPath()});
	std::filesystem::permissions(closed.GetPath(), std::filesystem::perms::owner_all);
	EXPECT_EQ(refused.status, 1);
	EXPECT_TRUE(refused.output.ends_with("\n0 loaded, 1 failed\n")) << refused.output;
}
} // namespace
} // namespace orvan::test
