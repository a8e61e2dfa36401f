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
	EXPECT_FALSE(failure.contains("attribute")) << "It is named in the reason.";
}

TEST(CheckCommand, TellsWhatATolerantImportLeavesOut)
{
	const TemporaryFolder folder;
	const std::string odd = folder.Write("o dd.svg", "<svg>\n<rect id='r' stroke='q'/>\n<rect fill='q'/></svg>");
	const std::string broken = folder.Write("z.svg", "<svg>");
	const ProgramRun text = RunProgram({"check", "--complete", "--tolerant", folder.GetPath()});
	EXPECT_EQ(text.status, 1);
	EXPECT_EQ(text.output.find(broken + ":1:"), 0) << text.output;
	EXPECT_TRUE(text.output.ends_with("\n1 loaded, 1 failed, 2 findings\n")) << text.output;
	EXPECT_EQ(text.errors.find("WARNING: " + odd + ":2:"), 0) << text.errors;
	EXPECT_NE(text.errors.find("WARNING: " + odd + ":3:"), text.errors.npos) << text.errors;

	const ProgramRun run = RunProgram({"check", "--json", "--tolerant", folder.GetPath()});
	EXPECT_EQ(run.status, 1);
	EXPECT_EQ(run.errors, "");
	const auto report = nlohmann::json::parse(run.output);
	EXPECT_EQ(report["failures"].size(), 1);
	EXPECT_EQ(report["loaded"], 1);
	EXPECT_EQ(report["findingCount"], 2);
	const auto& finding = report["findings"].at(0);
	EXPECT_EQ(finding["path"], odd);
	EXPECT_EQ(finding["attribute"], "stroke");
	EXPECT_EQ(finding["id"], "r");
	EXPECT_NE(finding["message"].get<std::string>().find("\"q\""), std::string::npos) << finding;

	// From a hundred on they are counted.
	std::string content;
	for (int i = 0; i < 105; i++)
		content += "<g fill='q'/>";
	const std::string many = folder.Write("many.svg", "<svg>" + content + "</svg>");
	EXPECT_EQ(RunProgram({"check", "--tolerant", many}).output, "1 loaded, 0 failed, 105 findings\n");
	const ProgramRun tree = RunProgram({"tree", "--tolerant", many});
	EXPECT_TRUE(tree.errors.ends_with("\nWARNING: " + many + ": 5 more findings\n")) << tree.errors;
}

TEST(CheckCommand, WritesALogForCodeReview)
{
	const TemporaryFolder folder;
	folder.Write("a b.svg", "<svg>\n<rect id='r' fill='q'/></svg>");
	folder.Write("z.svg", "<svg>");
	folder.Write("html.svg", "<html/>");
	const ProgramRun run = RunProgram({"check", "--sarif", "--tolerant", "./", "/nowhere.svg"},
									  {.setup = "cd '" + folder.GetPath().string() + "'; "});
	EXPECT_EQ(run.status, 1);
	const auto log = nlohmann::json::parse(run.output);
	EXPECT_EQ(log["version"], "2.1.0");
	const auto& results = log["runs"].at(0)["results"];
	const auto& rules = log["runs"][0]["tool"]["driver"]["rules"];
	EXPECT_EQ(log["runs"][0]["tool"]["driver"]["name"], "orvan-svg");
	EXPECT_EQ(log["runs"][0]["tool"]["driver"]["version"], ORVAN_VERSION);
	struct Expected
	{
		const char* rule;
		const char* level;
		const char* uri;
	};
	constexpr Expected kExpected[] = {{"ignored-value", "warning", "a%20b.svg"},
									  {"no-svg-element", "error", "html.svg"},
									  {"refused-file", "error", "z.svg"},
									  {"unreadable-file", "error", "file:///nowhere.svg"}};
	ASSERT_EQ(results.size(), std::size(kExpected)) << run.output;
	for (std::size_t i = 0; i < results.size(); i++)
	{
		const auto& result = results[i];
		EXPECT_EQ(result["ruleId"], kExpected[i].rule);
		EXPECT_EQ(rules.at(result["ruleIndex"].get<std::size_t>())["id"], kExpected[i].rule);
		EXPECT_EQ(result["level"], kExpected[i].level);
		EXPECT_NE(result["message"]["text"], "");
		EXPECT_EQ(result["locations"].at(0)["physicalLocation"]["artifactLocation"]["uri"], kExpected[i].uri);
	}
	const auto& place = results[0]["locations"][0];
	EXPECT_EQ(place["physicalLocation"]["region"]["startLine"], 2);
	EXPECT_GT(place["physicalLocation"]["region"]["startColumn"], 1);
	EXPECT_EQ(place["logicalLocations"].at(0)["name"], "r");
	EXPECT_EQ(RunProgram({"check", "--sarif", "--json", "."}).status, 2);
	const std::string input = RunProgram({"check", "--sarif", "-"}, {.input = "<svg>"}).output;
	EXPECT_NE(input.find("{\"uri\": \"stdin\"}"), input.npos) << input;
}

TEST(CheckCommand, FindsPackedFilesWhereTheyCanBeRead)
{
	const TemporaryFolder folder;
	const std::string pack = "gzip '" + folder.Write("a.svg", kGood) + "' && mv '" + folder.GetPath().string() +
							 "/a.svg.gz' '" + folder.GetPath().string() + "/a.svgz'; ";
	EXPECT_EQ(RunProgram({"check", folder.GetPath()}, {.setup = pack}).output, "0 loaded, 0 failed\n");
	EXPECT_EQ(RunProgram({"check", "--complete", folder.GetPath()}).output, "1 loaded, 0 failed, 0 findings\n");
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
