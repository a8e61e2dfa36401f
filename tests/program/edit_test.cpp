// SPDX-License-Identifier: MIT
/// The commands that change files.
#include "program_run.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <sstream>

namespace orvan::test
{
namespace
{

class Editing : public testing::Test
{
protected:
	TemporaryFolder folder;
	const std::filesystem::path& path = folder.GetPath();
};

TEST_F(Editing, SetsRemovesAndRenamesInPlaceOrElsewhere)
{
	const std::string text =
		"<svg>\r\n  <rect id='a'  x = '1'/><!-- c -->\r\n  <use href='#a' fill='url(#a)'/>\n</svg>";
	const std::string file = folder.Write("a.svg", text);
	EXPECT_EQ(text, RunProgram({"set", file}).output);
	const ProgramRun set = RunProgram({"set", file, "rect, use", "fill=red", "x=", "data-a=b\"c", "-i"});
	EXPECT_EQ(0, set.status) << set.errors;
	EXPECT_EQ("<svg>\r\n  <rect id='a' fill=\"red\" data-a=\"b&quot;c\"/><!-- c -->\r\n"
			  "  <use href='#a' fill='red' data-a=\"b&quot;c\"/>\n</svg>",
			  ReadFile(file));
	EXPECT_EQ(0, RunProgram({"rename-id", file, "a", "b", "-o", (path / "b.svg").string()}).status);
	EXPECT_NE(std::string::npos, ReadFile(path / "b.svg").find("<use href='#b'"));
	EXPECT_EQ(0, RunProgram({"remove", file, "rect", "-o", (path / "out/").string()}).status);
	EXPECT_EQ("<svg><!-- c -->\r\n", ReadFile(path / "out" / "a.svg").substr(0, 17));
	// What goes wrong leaves the file, and says so.
	const std::string before = ReadFile(file);
	EXPECT_EQ(1, RunProgram({"set", file, "circle", "x=1", "-i"}).status);
	EXPECT_EQ(1, RunProgram({"set", file, "rect", "width=wide", "-i"}).status);
	EXPECT_EQ(1, RunProgram({"set", file, "rect", "fill=red", "r=1", "-i"}).status);
	EXPECT_EQ(1, RunProgram({"remove", file, ":root", "-i"}).status);
	EXPECT_EQ(1, RunProgram({"rename-id", file, "none", "b", "-i"}).status);
	EXPECT_EQ(2, RunProgram({"set", file, "rect", "-i"}).status);
	EXPECT_EQ(2, RunProgram({"set", file, "-i", "-o", "-"}).status);
	EXPECT_EQ(1, RunProgram({"set", folder.Write("c.svg", "<svg><g>"), "-i"}).status);
	EXPECT_EQ(before, ReadFile(file));
}

TEST_F(Editing, EditsSeveralFilesAndTellsOfEach)
{
	const std::string one = folder.Write("one.svg", "<svg><g id='a'/></svg>");
	const std::string two = folder.Write("two.svg", "<svg><rect/><rect/></svg>");
	const std::string broken = folder.Write("broken.svg", "<svg><g>");
	const std::string out = (path / "out/").string();
	const ProgramRun run = RunProgram({"set", one, two, broken, "rect, [id=a]", "fill=green", "x-a=b", "fill=red", "-o",
									   out, "--json", "--jobs", "3"});
	EXPECT_EQ(1, run.status);
	EXPECT_EQ("<svg><g id='a' fill=\"red\" x-a=\"b\"/></svg>", ReadFile(path / "out" / "one.svg"));
	EXPECT_EQ("<svg><rect x=\"1\"/><rect x=\"1\"/></svg>", RunProgram({"set", two, "--select", "rect", "x=1"}).output);
	std::istringstream lines(run.output);
	std::string line;
	std::string told;
	while (std::getline(lines, line))
	{
		const auto outcome = nlohmann::json::parse(line);
		told += outcome["url"].get<std::string>().substr(outcome["url"].get<std::string>().rfind('/'));
		told += outcome.contains("reason") ? "!" : std::to_string(outcome["elements"].get<int>());
	}
	EXPECT_EQ("/one.svg1/two.svg2/broken.svg!", told);
	EXPECT_FALSE(std::filesystem::exists(path / "out" / "broken.svg"));
	// A file in which nothing is found fails by itself.
	const ProgramRun removed = RunProgram({"remove", one, two, "rect:first-child", "g", "-i", "--json", "-j", "1"});
	EXPECT_EQ(1, removed.status);
	EXPECT_EQ(2, std::ranges::count(removed.output, '\n'));
	EXPECT_NE(std::string::npos, removed.output.find("\"reason\": \"No element matches")) << removed.output;
	EXPECT_EQ("<svg><rect/><rect/></svg>", ReadFile(two));
	EXPECT_EQ(0, RunProgram({"rename-id", one, "a", "b", "-i"}).status);
	EXPECT_EQ("<svg><g id='b'/></svg>", ReadFile(one));
	// What makes no sense is found before anything is read.
	const std::string same = folder.Write("out/one.svg", "<svg/>");
	for (const std::vector<std::string>& arguments : {std::vector<std::string>{"set", one, two, "g", "x=1"},
													  {"set", one, "g", "x=1", "--json"},
													  {"set", one, same, "-o", out},
													  {"set", one, "x=1", "-i"},
													  {"set", one, "g", "=1"},
													  {"set", one, "--select", "g"},
													  {"set", "-", "g", "x=1", "-i"},
													  {"repair", one, two, "-o", "-"},
													  {"remove", one, two, "-i"},
													  {"rename-id", one, "b", "-i"}})
		EXPECT_EQ(2, RunProgram(arguments).status) << testing::PrintToString(arguments);
	EXPECT_EQ(1, RunProgram({"repair", broken, "--json", "-i"}).status);
	EXPECT_EQ(1, RunProgram({"set", "x=1"}).status) << "a file of that name";
	// One status for all, whoever is last; the first selector that finds nothing is named.
	EXPECT_EQ(1, RunProgram({"tree", broken, one, "-j", "1"}).status);
	EXPECT_NE(std::string::npos, RunProgram({"remove", one, "circle", "line"}).errors.find("'circle'"));
	EXPECT_NE(std::string::npos,
			  RunProgram({"remove", two, "rect", "--json", "-o", out + "two.svg"}).output.find("\"elements\": 2}"));
}

TEST_F(Editing, MakesFilesThatLoad)
{
	const std::string file = (path / "new.svg").string();
	EXPECT_EQ(0, RunProgram({"new", file, "-W", "20", "-H", "10"}).status);
	const ProgramRun printed = RunProgram({"new", "-o", "-", "-W", "20", "-H", "10"});
	EXPECT_EQ(ReadFile(file), printed.output);
	EXPECT_EQ(printed.output, RunProgram({"new", "-W", "20", "-H", "10"}).output);
	const auto tree = nlohmann::json::parse(RunProgram({"tree", "--json", file}).output);
	EXPECT_EQ(20, tree["root"]["attributes"]["width"]["value"]);
	EXPECT_EQ(10, tree["root"]["attributes"]["viewBox"][3]["value"]);
}

TEST_F(Editing, RepairsJustWhatThePlainImportRefuses)
{
	const std::string text = "<svg>\n<rect fill='#f00f' stroke='#0008' x='1'/>\n<rect fill='reddish'\n x='2'/>\n"
							 "<path d='M0 0 L 1. 2' transform='translate(-1-2)'/>\n<path d='M1 1 L2 2 L'/>\n"
							 "<g style='fill:red; opacity:1e-1;stroke:wrong;x:y'/>\n"
							 "<stop stop-color='hsl(0 100% 50%)' offset='1 2'/></svg>";
	const std::string file = folder.Write("a.svg", text);
	ASSERT_EQ(1, RunProgram({"check", file}).status);
	const ProgramRun dry = RunProgram({"repair", file, "--dry-run", "-i"});
	EXPECT_EQ(0, dry.status) << dry.errors;
	EXPECT_NE(std::string::npos, dry.output.find("@@ -2 +2 @@\n-<rect fill='#f00f' stroke='#0008' x='1'/>\n"))
		<< dry.output;
	EXPECT_EQ(text, ReadFile(file));
	const std::string good = folder.Write("good.svg", "<svg />");
	const ProgramRun run = RunProgram({"repair", "--json", file, good, "-o", (path / "out/").string()});
	EXPECT_EQ(0, run.status) << run.errors;
	EXPECT_EQ("<svg>\n<rect fill='red' stroke='#000' stroke-opacity=\".533333\" x='1'/>\n<rect\n x='2'/>\n"
			  "<path d='M0 0 L 1 2' transform='translate(-1,-2)'/>\n<path d='M1 1L2 2'/>\n"
			  "<g style='fill:red; opacity:.1;x:y'/>\n<stop stop-color='red'/></svg>",
			  ReadFile(path / "out" / "a.svg"));
	EXPECT_EQ("<svg />", ReadFile(path / "out" / "good.svg"));
	EXPECT_EQ(0, RunProgram({"check", (path / "out").string()}).status);
	const auto first = nlohmann::json::parse(run.output.substr(0, run.output.find('\n')));
	EXPECT_EQ("#f00f", first["repairs"][0]["before"]);
	EXPECT_EQ("red", first["repairs"][0]["after"]);
	EXPECT_EQ(2, first["repairs"][0]["line"]);
	// Arcs keep their form; and of lines that are shorter than where another one differs the end is shown.
	const std::string arcs = "<svg><path d='M0 0A-3.5-4-5 1 02 3-2 1 0 012 3'/></svg>";
	EXPECT_EQ("<svg><path d='M0 0A3.5 4-5 1 02 3 2 1 0 012 3'/></svg>",
			  RunProgram({"repair", folder.Write("arcs.svg", arcs), "-o", "-"}).output);
	const std::string link = "<svg xmlns:l='http://www.w3.org/1999/xlink'><use l:href=''/></svg>";
	EXPECT_EQ("<svg xmlns:l='http://www.w3.org/1999/xlink'><use/></svg>",
			  RunProgram({"repair", folder.Write("link.svg", link), "-o", "-"}).output);
	const std::string lines = "<svg><g class='" + std::string(300, 'c') + "' fill='bad'/>\n<g class='" +
							  std::string(150, 'c') + "' fill='bad'/>\n<g/>\n<g fill='bad' class='" +
							  std::string(300, 'c') + "'/></svg>";
	// What a document type declares is read in the place of its name.
	const std::string declared = "<!DOCTYPE svg [<!ENTITY c '#f00'><!ENTITY d \"#00f8\">]><svg><g stroke=\"&c;f\" "
								 "fill='&d;'/></svg>";
	EXPECT_EQ("<!DOCTYPE svg [<!ENTITY c '#f00'><!ENTITY d \"#00f8\">]><svg><g stroke=\"red\" fill='#00f' "
			  "fill-opacity=\".533333\"/></svg>",
			  RunProgram({"repair", folder.Write("declared.svg", declared), "-o", "-"}).output);
	const ProgramRun cut = RunProgram({"repair", folder.Write("cut.svg", lines)});
	EXPECT_EQ(0, cut.status) << cut.errors;
	EXPECT_NE(std::string::npos, cut.output.find("\n-…ccc")) << cut.output;
	EXPECT_NE(std::string::npos, cut.output.find("c' fill='bad'/>\n")) << cut.output;
	EXPECT_NE(std::string::npos, cut.output.find("ccc…\n+<g class='ccc")) << cut.output;
	// Where lines go, the others are numbered on.
	const std::string gaps = folder.Write("d.svg", "<svg>\n<g\n fill='q'\n\n/>\n<g fill='q'/></svg>");
	const ProgramRun shorter = RunProgram({"repair", gaps, "-o", (path / "out/").string()});
	EXPECT_NE(std::string::npos, shorter.output.find("@@ -6 +5 @@\n-<g fill='q'/></svg>\n+<g/></svg>\n"))
		<< shorter.output;
	EXPECT_EQ(1, RunProgram({"repair", folder.Write("bad.svg", "<svg><g>")}).status);
	const ProgramRun twice =
		RunProgram({"repair", "--json", folder.Write("e.svg", "<svg><g id='i' fill='q' fill='r'/></svg>")});
	EXPECT_EQ(1, twice.status) << "What is left is refused as well.";
	EXPECT_NE(std::string::npos, twice.output.find("\"id\": \"i\"")) << twice.output;
	EXPECT_NE(std::string::npos, twice.output.find("\"r\\\"\"}\n")) << twice.output;
	EXPECT_EQ(2, RunProgram({"repair", file, good, "-o", "one.svg"}).status);
}

} // namespace
} // namespace orvan::test
