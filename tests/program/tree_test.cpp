// SPDX-License-Identifier: MIT
#include "program_run.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <pty.h>
#include <sstream>
#include <unistd.h>

namespace orvan::test
{
namespace
{
using nlohmann::json;

std::string Svg(const std::string& content)
{
	return "<svg xmlns='http://www.w3.org/2000/svg'>" + content + "</svg>";
}

/// The first child of the root of a file with this content.
json FirstChild(const std::string& content)
{
	const TemporaryFolder folder;
	const ProgramRun run = RunProgram({"tree", "--json", folder.Write("a.svg", Svg(content))});
	EXPECT_EQ(run.status, 0) << run.errors;
	return json::parse(run.output)["root"]["children"][0];
}

TEST(TreeCommand, TellsTheUrlTheIdsAndTheElements)
{
	const TemporaryFolder folder;
	const std::string path = folder.Write("a b.svg", Svg("<g id='one'><rect id='two' width='3'/></g><defs/>"));
	const ProgramRun run = RunProgram({"tree", "--json", path});
	ASSERT_EQ(run.status, 0) << run.errors;
	const json tree = json::parse(run.output);
	EXPECT_EQ(tree["url"], "file://" + folder.GetPath().string() + "/a%20b.svg");
	EXPECT_EQ(tree["placeholder"], false);
	EXPECT_EQ(tree["ids"].size(), 2);
	EXPECT_EQ(tree["root"], json::parse(R"({
		"class": "net.orvan.image.class.svgsvgelement", "type": 1, "children": [
			{"class": "net.orvan.image.class.svggroupelement", "type": 2, "id": "one", "children": [
				{"class": "net.orvan.image.class.svgrectelement", "type": 10, "id": "two",
				 "attributes": {"width": {"value": 3, "unit": 9}}}]},
			{"class": "net.orvan.image.class.svgdefselement", "type": 4}]})"));
}

TEST(TreeCommand, ShowsEachTypeOfAttributeInItsForm)
{
	const json rect = FirstChild("<rect x='50%' fill='url(#g)' stroke='#f00' opacity='.5' stroke-linecap='round' "
								 "stroke-dasharray='1 2px' clip-path='url(#c)' transform='translate(3 4)'/>");
	EXPECT_EQ(rect["transform"], json({3, 4, 1, 0, 0, 1}));
	EXPECT_EQ(rect["attributes"], json::parse(R"({
		"x": {"value": 0.5, "unit": 8}, "fill": {"type": 3, "color": [0, 0, 0], "reference": "g"},
		"stroke": {"type": 2, "color": [1, 0, 0]}, "opacity": 0.5, "stroke-linecap": 2,
		"stroke-dasharray": [{"value": 1, "unit": 9}, {"value": 2, "unit": 2}], "clip-path": "c"})"));

	const json fitted = FirstChild("<symbol viewBox='0 0 8 9' preserveAspectRatio='xMaxYMax slice'/>");
	EXPECT_EQ(fitted["attributes"]["viewBox"][3], json::parse(R"({"value": 9, "unit": 9})"));
	EXPECT_EQ(fitted["attributes"]["preserveAspectRatio"], json::parse(R"({"align": 9, "meetOrSlice": 1})"));
}

TEST(TreeCommand, ShowsWhatElementsKeepOutsideOfTheirAttributes)
{
	EXPECT_EQ(FirstChild("<path d='M1 2L3 4C1 2 3 4 5 6z'/>")["path"],
			  json::parse(R"([["M", 1, 2], ["L", 3, 4], ["C", 1, 2, 3, 4, 5, 6], ["Z"]])"));
	EXPECT_EQ(FirstChild("<text/>")["text"], "");
	EXPECT_EQ(FirstChild("<use href='#a'/>")["link"], "a");
	EXPECT_EQ(
		FirstChild("<radialGradient r='2'><stop offset='1' stop-color='blue'/></radialGradient>")["radialGradient"],
		json::parse(R"({"units": 1, "spread": 0, "cx": 0.5, "cy": 0.5, "r": 2, "fx": 0.5, "fy": 0.5,
							  "stops": [{"offset": 1, "color": [0, 0, 1], "opacity": 1}]})"));
}

TEST(TreeCommand, WritesNumbersInTheShortestFormThatReadsBackTheSame)
{
	const TemporaryFolder folder;
	const std::string path = folder.Write("a.svg", Svg("<line x1='0.1' y1='100000' x2='1e21' y2='-0'/>"));
	const std::string output = RunProgram({"tree", "--json", path}).output;
	for (const char* number : {": 0.1,", ": 100000,", ": 1e+21,", ": -0.0,"})
		EXPECT_NE(output.find(number), output.npos) << number << " in " << output;
}

TEST(TreeCommand, ReplacesBytesThatAreNoText)
{
	EXPECT_EQ(FirstChild("<text id='a\xff'>b\xfe</text>")["id"], "a\xef\xbf\xbd");
}

TEST(TreeCommand, ShowsThePlaceholderOfARefusedFileAndTellsWhatAndWhere)
{
	const TemporaryFolder folder;
	const std::string path = folder.Write("bad.svg", Svg("\n<g>\n  <rect id='r1' fill='#12'/></g>"));
	const ProgramRun run = RunProgram({"tree", "--json", path});
	EXPECT_EQ(run.status, 1);
	EXPECT_EQ(json::parse(run.output)["placeholder"], true);
	EXPECT_EQ(run.errors,
			  path + ":3:23: Exception parsing svg file. Invalid value of SVG attribute (or property) \"fill\": "
					 "\"#12\" (<rect id=\"r1\">)\n");
}

TEST(TreeCommand, TellsAPlaceholderFromAFileThatHoldsJustARect)
{
	const TemporaryFolder folder;
	const ProgramRun rect = RunProgram({"tree", "--json", folder.Write("a.svg", Svg("<rect/>"))});
	EXPECT_EQ(rect.status, 0) << rect.errors;
	EXPECT_EQ(json::parse(rect.output)["placeholder"], false);

	const std::string path = folder.Write("b.svg", "<html><svg><rect/></svg></html>");
	const ProgramRun other = RunProgram({"tree", "--json", path});
	EXPECT_EQ(other.status, 1);
	EXPECT_EQ(other.errors, path + ": no svg element\n");
	EXPECT_EQ(json::parse(other.output)["placeholder"], true);
}

TEST(TreeCommand, IndentsTheTreeForPeople)
{
	const TemporaryFolder folder;
	const std::string path = folder.Write("a.svg", Svg("<g id='x' opacity='.5'><circle r='2mm'/></g>"));
	EXPECT_EQ(RunProgram({"tree", path}).output, "svg\n  g #x  opacity=0.5\n    circle  r=2mm\n");
	const std::string fitted =
		folder.Write("b.svg", Svg("<rect width='50%' fill='url(#x)' font-weight='bold'/>"
								  "<symbol viewBox='0 0 1 2' preserveAspectRatio='xMinYMax slice'/>"
								  "<symbol preserveAspectRatio='none' transform='matrix(0 1 -1 0 2 3)'/>"));
	EXPECT_EQ(RunProgram({"tree", fitted}).output,
			  "svg\n  rect  width=50%  fill=url(#x)  font-weight=bold\n"
			  "  symbol  viewBox=0 0 1 2  preserveAspectRatio=xMinYMax slice\n"
			  "  symbol  transform=matrix(0 1 -1 0 2 3)  preserveAspectRatio=none meet\n");
}

TEST(TreeCommand, HasColorsOnTerminalsThatWantThem)
{
	int master, slave;
	if (openpty(&master, &slave, nullptr, nullptr, nullptr) != 0)
		GTEST_SKIP() << "This system has no pseudo-terminals.";
	close(master);
	close(slave);
	const TemporaryFolder folder;
	const std::string command = "script -qec '" ORVAN_PROGRAM " tree " + folder.Write("a.svg", Svg("")) + "' /dev/null";
	const struct
	{
		const char* surroundings;
		bool hasColors;
	} cases[] = {
		{"TERM=xterm", true}, {"TERM=xterm NO_COLOR=", true}, {"TERM=xterm NO_COLOR=1", false}, {"TERM=dumb", false}};
	for (const auto& [surroundings, hasColors] : cases)
	{
		const std::string target = folder.GetPath() / "output";
		EXPECT_EQ(
			std::system(("env -u NO_COLOR " + std::string(surroundings) + ' ' + command + " >" + target + " </dev/null")
							.c_str()),
			0);
		EXPECT_EQ(ReadFile(target).find("\033[1;34msvg\033[0m") == 0, hasColors) << surroundings;
	}
}

TEST(TreeCommand, CutsLongTextsForPeopleBetweenCharacters)
{
	const TemporaryFolder folder;
	std::string twoByteCharacters;
	for (int i = 0; i < 60; i++)
		twoByteCharacters += "\xc3\xa9";
	const std::string path = folder.Write("a.svg", Svg("<g id='a" + twoByteCharacters + "'/>"));
	EXPECT_EQ(RunProgram({"tree", path}).output, "svg\n  g #a" + twoByteCharacters.substr(0, 98) + "…\n");
}

TEST(TreeCommand, EndsWellWhenItsReaderGoes)
{
	const TemporaryFolder folder;
	std::string content;
	for (int i = 0; i < 20'000; i++)
		content += "<rect width='5'/>";
	const std::string path = folder.Write("a.svg", Svg(content));
	const std::string command =
		"bash -c 'set -o pipefail; " ORVAN_PROGRAM " tree --json " + path + " | head -c 1 >/dev/null'";
	EXPECT_EQ(std::system(command.c_str()), 0);
}

TEST(TreeCommand, TakesSeveralFilesAndStandardInput)
{
	const TemporaryFolder folder;
	std::vector<std::string> arguments = {"tree", "--json", "--jobs", "4"};
	for (int i = 0; i < 200; i++)
		arguments.push_back(folder.Write(std::to_string(i) + ".svg", Svg("<g id='g" + std::to_string(i) + "'/>")));
	arguments.push_back("/nowhere/a.svg");
	arguments.push_back("-");
	const ProgramRun run = RunProgram(arguments, {.input = Svg("<g id='input'/>")});
	EXPECT_EQ(run.status, 1);
	std::istringstream lines(run.output);
	std::vector<json> trees;
	for (std::string line; std::getline(lines, line);)
		trees.push_back(json::parse(line));
	ASSERT_EQ(trees.size(), 202);
	for (std::size_t i = 0; i < 200; i++)
		EXPECT_EQ(trees[i]["ids"], json({"g" + std::to_string(i)}));
	EXPECT_EQ(trees[200]["url"], "file:///nowhere/a.svg");
	EXPECT_NE(trees[200]["reason"].get<std::string>().find("there is no such file"), std::string::npos);
	EXPECT_EQ(trees[201]["ids"], json({"input"}));

	const std::string good = folder.Write("a.svg", Svg(""));
	const std::string bad = folder.Write("b.svg", "<svg>");
	const ProgramRun text = RunProgram({"tree", good, bad, good});
	EXPECT_EQ(text.status, 1);
	EXPECT_EQ(text.output, good + ":\nsvg\n\n" + bad + ":\nsvg\n  rect\n\n" + good + ":\nsvg\n");
	EXPECT_EQ(RunProgram({"tree", "-", "-"}).status, 2);
	const ProgramRun noSvg = RunProgram({"tree", "--json", good, folder.Write("c.svg", "<html/>")});
	EXPECT_EQ(noSvg.status, 1);
	EXPECT_NE(noSvg.output.find("\"placeholder\": true"), noSvg.output.npos) << noSvg.output;
	EXPECT_EQ(RunProgram({"tree", "-"}, {.input = "<svg>"}).errors.find("<stdin>:1:"), 0);
}

/// One of each form in which the complete import stores values, and of each element with content of its own.
constexpr const char* kCompleteContent =
	"<style>.a{fill:red}</style><title>t</title><rect class='a' width='1vw' fill-opacity='-q'/>"
	"<g style='color:#f008;fill:currentColor;stroke:url(#p) lime;filter:blur(3px) drop-shadow(1px 2px) sepia(.5)' "
	"transform-origin='1 2'/><pattern patternTransform='scale(2)'/><marker orient='45'/><marker orient='auto'/>"
	"<text rotate='1 2' baseline-shift='3'>a<tspan text-decoration='underline overline'>b</tspan></text>"
	"<filter><feTurbulence type='turbulence'/><feFuncR type='identity'/></filter>";

TEST(TreeCommand, ShowsWhatTheCompleteImportAdds)
{
	const TemporaryFolder folder;
	const std::string path = folder.Write("a.svg", Svg(kCompleteContent));
	const ProgramRun run = RunProgram({"tree", "--json", "--complete", "--tolerant", path});
	EXPECT_EQ(run.status, 0);
	EXPECT_EQ(run.errors.find("WARNING: " + path + ":1:"), 0) << run.errors;
	EXPECT_NE(run.errors.find("\"fill-opacity\": \"-q\" (<rect>)\n"), run.errors.npos) << run.errors;
	const json children = json::parse(run.output)["root"]["children"];
	EXPECT_EQ(children[0]["text"], ".a{fill:red}");
	EXPECT_EQ(children[1]["text"], "t");
	EXPECT_EQ(
		children[2]["attributes"],
		json::parse(R"({"width": {"value": 1, "unit": 13}, "fill": {"type": 2, "color": [1, 0, 0]}, "class": "a"})"));
	const json group = children[3]["attributes"];
	EXPECT_EQ(group["color"]["alpha"], 136 / 255.0);
	EXPECT_EQ(group["fill"], json::parse(R"({"type": 4, "color": [0, 0, 0]})"));
	EXPECT_EQ(group["stroke"], json::parse(R"({"type": 3, "color": [0, 1, 0], "reference": "p", "fallback": 2})"));
	EXPECT_EQ(group["filter"][0], json::parse(R"({"type": 1, "deviation": {"value": 3, "unit": 2}})"));
	EXPECT_EQ(group["filter"][1], json::parse(R"({"type": 4, "deviation": {"value": 0, "unit": 2}, "offset":
		[{"value": 1, "unit": 2}, {"value": 2, "unit": 2}], "color": {"type": 4, "color": [0, 0, 0]}})"));
	EXPECT_EQ(group["filter"][2], json::parse(R"({"type": 10, "amount": 0.5})"));
	EXPECT_EQ(group["transform-origin"], json::parse(R"([{"value": 1, "unit": 9}, {"value": 2, "unit": 9}])"));
	EXPECT_EQ(children[4]["attributes"]["patternTransform"], json({0, 0, 2, 0, 0, 2}));
	EXPECT_EQ(children[5]["attributes"]["orient"], json::parse(R"({"type": 0, "angle": 45})"));
	EXPECT_EQ(children[6]["attributes"]["orient"], json::parse(R"({"type": 1})"));
	EXPECT_EQ(children[7]["text"], "ab");
	EXPECT_EQ(children[7]["attributes"],
			  json::parse(R"({"rotate": [1, 2], "baseline-shift": {"type": 3, "length": {"value": 3, "unit": 9}}})"));
	EXPECT_EQ(children[7]["children"][1]["children"][0]["text"], "b");

	const std::string text = RunProgram({"tree", "--complete", "--tolerant", path}).output;
	for (const char* line :
		 {"  style  text=\".a{fill:red}\"\n", "  rect  width=1vw  fill=#ff0000  class=\"a\"\n", "  fill=currentColor  ",
		  "  stroke=url(#p) #00ff00  ", "  color=#ff0000/53.3333%  ",
		  "=blur(3px) drop-shadow(1px 2px 0px currentColor) sepia(0.5)", "=1 2", "=matrix(2 0 0 2 0 0)\n",
		  "orient=45\n", "orient=auto\n", "rotate=1 2", "baseline-shift=3  ", "text-decoration=underline overline\n",
		  "(text)  text=\"b\"\n", "feTurbulence  type=turbulence\n", "feFuncR  type=identity\n"})
		EXPECT_NE(text.find(line), text.npos) << line << " in " << text;
}

TEST(TreeCommand, ReadsAStyleSheetOfItsOwnAndPackedFiles)
{
	const TemporaryFolder folder;
	const std::string path = folder.Write("a.svg", Svg("<circle/>"));
	const ProgramRun run =
		RunProgram({"tree", "--complete", "--style-sheet", "-", path}, {.input = "circle{fill:lime}"});
	EXPECT_NE(run.output.find("circle  fill=#00ff00"), run.output.npos) << run.output;
	EXPECT_EQ(RunProgram({"tree", "--style-sheet", path, path}).status, 2);
	const ProgramRun missing = RunProgram({"tree", "--complete", "--style-sheet", "/nowhere.css", path});
	EXPECT_EQ(missing.status, 1);
	EXPECT_EQ(missing.errors.find("orvan-svg: /nowhere.css: "), 0) << missing.errors;

	const std::string packed = folder.GetPath() / "b.svgz";
	const std::string pack = "gzip -c '" + path + "' >'" + packed + "'; ";
	for (const std::vector<std::string>& arguments :
		 {std::vector<std::string>{"tree", packed}, {"tree", "--complete", packed}})
		EXPECT_EQ(RunProgram(arguments, {.setup = pack}).output, "svg\n  circle\n") << arguments[1];
	for (const char* content : {"no gzip", ""})
		EXPECT_EQ(RunProgram({"tree", folder.Write("c.svgz", content)}).status, 1) << content;
	const std::string cut = ReadFile(packed).substr(0, 30);
	EXPECT_NE(RunProgram({"tree", folder.Write("c.svgz", cut)}).errors.find("cannot be unpacked"), std::string::npos);
}

TEST(IdsCommand, PrintsTheIdsThatBeginWithThePrefix)
{
	const TemporaryFolder folder;
	const std::string path = folder.Write("a.svg", Svg("<g id='layer1'/><g id='Layer2'/><g id='p'/>"));
	const std::string other = folder.Write("b.svg", Svg("<g id='layer3'/>"));
	EXPECT_EQ(RunProgram({"ids", path, "layer"}).output, "layer1\n");
	EXPECT_EQ(RunProgram({"ids", path}).output.size(), std::string("layer1\nLayer2\np\n").size());
	EXPECT_EQ(RunProgram({"ids", path, other, "layer"}).output, path + ":layer1\n" + other + ":layer3\n");
	EXPECT_EQ(RunProgram({"ids", "--json", "--prefix", "L", path}).output,
			  "{\"url\": \"file://" + path + "\", \"ids\": [\"Layer2\"]}\n");
	const ProgramRun missing = RunProgram({"ids", "--json", path, "missing.svg"});
	EXPECT_EQ(missing.status, 1);
	EXPECT_NE(missing.output.find("missing.svg\", \"reason\": "), missing.output.npos) << missing.output;
}

TEST(Program, TellsAFileThatIsNotThereFromAWrongCommandLine)
{
	const ProgramRun missing = RunProgram({"tree", "--json", "/nowhere/a.svg"});
	EXPECT_EQ(missing.status, 1);
	EXPECT_EQ(missing.output, "");
	EXPECT_NE(missing.errors.find("there is no such file"), missing.errors.npos) << missing.errors;
	EXPECT_EQ(RunProgram({"draw", "a.svg"}).status, 2);
	EXPECT_EQ(RunProgram({"tree", "a.svg", "--jobs", "0"}).status, 2);
	for (const std::vector<std::string>& arguments : {std::vector<std::string>{"tree"}, {"tree", ""}, {"icon", ""}})
	{
		const ProgramRun wrong = RunProgram(arguments);
		EXPECT_EQ(wrong.status, 2);
		EXPECT_NE(wrong.errors.find("FILE"), wrong.errors.npos) << wrong.errors;
		EXPECT_NE(wrong.errors.find("Run with --help"), wrong.errors.npos) << wrong.errors;
	}
}

TEST(Program, TellsItsVersionAndHowToUseIt)
{
	EXPECT_EQ(RunProgram({"--version"}).output, "orvan-svg " ORVAN_VERSION "\n");
	const ProgramRun help = RunProgram({"--help"});
	EXPECT_EQ(help.status, 0);
	EXPECT_NE(help.output.find("\n  check  "), help.output.npos) << help.output;
	EXPECT_EQ(help.errors, "");
}

TEST(Program, FailsWhenResultsCannotBeWritten)
{
	const std::string lamp = ORVAN_EXAMPLES "/lamp.svg";
	for (const std::vector<std::string>& arguments :
		 {std::vector<std::string>{"ids", lamp}, {"--help"}, {"check", lamp}, {"render", lamp, "-o", "-"}})
	{
		const ProgramRun run = RunProgram(arguments, {.output = "/dev/full"});
		EXPECT_EQ(run.status, 1) << arguments[0];
		EXPECT_NE(run.errors.find("No space left on device"), run.errors.npos) << run.errors;
	}
}

TEST(Program, SendsNoControlCharactersToTheTerminal)
{
	const TemporaryFolder folder;
	const std::string bad =
		folder.Write("a\033[31m\nb\177\xc2\x9b.svg", Svg("<g id='\033[1m&#x9b;x' fill='\033]0;&#7;'/>"));
	const ProgramRun check = RunProgram({"check", bad});
	const ProgramRun tree = RunProgram({"tree", bad, folder.Write("c.svg", Svg("<g id='\033[1m&#x9b;x'/>"))});
	const ProgramRun ids = RunProgram({"ids", folder.GetPath() / "c.svg"});
	EXPECT_EQ(ids.output, " [1m\xc2 x\n");
	for (const std::string& text : {check.output, check.errors, tree.output, tree.errors})
	{
		EXPECT_EQ(text.find_first_of("\033\007\177"), text.npos) << text;
		EXPECT_EQ(text.find("\xc2\x9b"), text.npos) << text;
	}
	EXPECT_TRUE(check.output.ends_with("\n0 loaded, 1 failed\n")) << check.output;
	EXPECT_EQ(std::ranges::count(check.output, '\n'), 2) << check.output;
}
} // namespace
} // namespace orvan::test
