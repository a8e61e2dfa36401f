// SPDX-License-Identifier: MIT
/// The commands that ask a picture.
#include "program_run.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace orvan::test
{
namespace
{
using nlohmann::json;

class GeometryCommands : public testing::Test
{
protected:
	GeometryCommands()
		: _path(_folder.Write("a.svg",
							  "<svg xmlns='http://www.w3.org/2000/svg' width='96' height='192'><defs><rect id='r' "
							  "width='4' height='8'/></defs><use id='u' href='#r' x='10'/><g id='g'><path id='p' "
							  "d='M20 20h30z' fill='none' stroke='red' stroke-width='2'/></g></svg>"))
	{
	}

	/// What the program prints, which must work.
	std::string Run(std::vector<std::string> arguments) const
	{
		arguments.insert(arguments.begin() + 1, _path);
		const ProgramRun run = RunProgram(arguments);
		EXPECT_EQ(run.status, 0) << run.errors;
		return run.output;
	}

	int StatusOf(std::vector<std::string> arguments) const
	{
		arguments.insert(arguments.begin() + 1, _path);
		return RunProgram(arguments).status;
	}

	TemporaryFolder _folder;
	std::string _path;
};

TEST_F(GeometryCommands, PrintBoxesAndLengths)
{
	EXPECT_EQ("use#u  10  0  4  8\ng#g  20  20  30  0\n", Run({"boxes", "#u, g"}));
	EXPECT_EQ("path#p  20  19  30  2\n", Run({"boxes", "--select", "path", "--kind", "visual"}));
	const json boxes = json::parse(Run({"boxes", "--json"}));
	EXPECT_EQ(json::parse("[96, 192]"), boxes["view"]);
	EXPECT_EQ(json::parse("{\"element\": \"path\", \"id\": \"p\", \"path\": [2, 0], \"fill\": [20, 20, 30, 0], "
						  "\"stroke\": [20, 19, 30, 2], \"visual\": [20, 19, 30, 2]}"),
			  boxes["boxes"].back());
	// Definitions have the box of what is in them, as in browsers, and are in no other.
	EXPECT_EQ(json::parse("[0, 0, 4, 8]"), boxes["boxes"][1]["fill"]);
	EXPECT_EQ("path#p  60  50,20\n", Run({"measure", "path", "--at", "0.5"}));
	EXPECT_EQ("path#p  M20 20L50 20Z\n", Run({"outline", "#p"}));
	EXPECT_EQ(2, StatusOf({"boxes", "--kind", "odd"}));
}

TEST_F(GeometryCommands, PrintHits)
{
	EXPECT_EQ("use#u > rect#r  fill\n", Run({"hit", "11", "1"}));
	EXPECT_EQ("11 1  use#u > rect#r  fill\n30 20.5  path#p  stroke\n", Run({"hit", "11", "1", "30", "20.5", "1", "1"}));
	const json hits = json::parse(Run({"hit", "11", "1", "--all", "--json"}));
	EXPECT_EQ("r", hits[0]["id"]);
	EXPECT_EQ(json({1}), hits[0]["uses"][0]["path"]);
	EXPECT_EQ(2, StatusOf({"hit", "1"}));
	EXPECT_EQ(2, StatusOf({"hit", "1", "x"}));
}

TEST_F(GeometryCommands, WritePlainPaths)
{
	EXPECT_EQ("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"96\" height=\"192\" viewBox=\"0 0 96 192\">\n"
			  "<path fill=\"#000000\" d=\"M10 0L14 0L14 8L10 8Z\"/>\n"
			  "<path fill=\"none\" stroke=\"#ff0000\" stroke-width=\"2\" d=\"M20 20L50 20Z\"/>\n</svg>\n",
			  Run({"normalize"}));
	// 96 pixels are an inch, and y goes up.
	EXPECT_EQ("IN;SP1;\nPU106,2032;\nPD148,2032;\nPD148,1947;\nPD106,1947;\nPD106,2032;\n",
			  Run({"normalize", "--format", "hpgl"}).substr(0, 68));
	EXPECT_EQ("G21\nG90\nG0 Z1\nG0 X2.6458 Y50.8000\nG1 Z-1 F300\nG1 F1200 X3.7042 Y50.8000\nG1 X3.7042 Y48.6833\n",
			  Run({"normalize", "--format", "gcode"}).substr(0, 92));
	const json paths = json::parse(Run({"normalize", "--format", "json", "--grid", "100", "--precision", "1"}));
	EXPECT_EQ("M5 0L7 0L7 4L5 4Z", paths["paths"][0]["d"]);
	EXPECT_EQ(100, paths["height"]);
	const std::string arrays = _folder.GetPath() / "a.npz";
	EXPECT_EQ("", Run({"normalize", "-o", arrays}));
	const std::string bytes = ReadFile(arrays);
	EXPECT_EQ("PK\x03\x04", bytes.substr(0, 4));
	EXPECT_NE(std::string::npos, bytes.find("{'descr': '<f8', 'fortran_order': False, 'shape': (6, 2), }"));
	EXPECT_EQ(2, StatusOf({"normalize", "--format", "odd"}));
	EXPECT_EQ(2, StatusOf({"normalize", "--clips", "odd"}));
	EXPECT_EQ(2, RunProgram({"normalize", _path, _path, "-o", arrays}).status);
}

} // namespace
} // namespace orvan::test
