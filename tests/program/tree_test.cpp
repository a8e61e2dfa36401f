// SPDX-License-Identifier: MIT
#include "program_run.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

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

TEST(IdsCommand, PrintsTheIdsThatBeginWithThePrefix)
{
	const TemporaryFolder folder;
	const std::string path = folder.Write("a.svg", Svg("<g id='layer1'/><g id='Layer2'/><g id='p'/>"));
	EXPECT_EQ(RunProgram({"ids", path, "layer"}).output, "layer1\n");
	EXPECT_EQ(RunProgram({"ids", path}).output.size(), std::string("layer1\nLayer2\np\n").size());
}

TEST(Program, TellsAFileThatIsNotThereFromAWrongCommandLine)
{
	const ProgramRun missing = RunProgram({"tree", "--json", "/nowhere/a.svg"});
	EXPECT_EQ(missing.status, 1);
	EXPECT_EQ(missing.output, "");
	EXPECT_NE(missing.errors.find("there is no such file"), missing.errors.npos) << missing.errors;
	EXPECT_EQ(RunProgram({"tree"}).status, 2);
	EXPECT_EQ(RunProgram({"draw", "a.svg"}).status, 2);
	EXPECT_EQ(RunProgram({"--help"}).status, 0);
}
} // namespace
} // namespace orvan::test
