// SPDX-License-Identifier: MIT
/// The commands that ask a picture.
#include "program_run.h"

#include <algorithm>
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
	// On its way back the line is where it was, in the other direction.
	const json places = json::parse(Run({"measure", "--json", "--at", "0.25", "--at", "0.75"}))["elements"];
	EXPECT_EQ(json::parse("[{\"point\": [35, 20], \"direction\": [1, 0]}, "
						  "{\"point\": [35, 20], \"direction\": [-1, 0]}]"),
			  places.back()["places"]);
	EXPECT_EQ("", Run({"measure", "g"})) << "no outline by itself";
	const std::string curve = _folder.Write("c.svg", "<svg><path d='M-1e-9 0C1 2 3 4 5 6'/></svg>");
	EXPECT_EQ("path  M-1e-09 0C1 2 3 4 5 6\n", RunProgram({"outline", curve, "path"}).output);
	EXPECT_EQ("path  M-1e-09 0L5 6\n", RunProgram({"outline", curve, "path", "--flatten", "9"}).output);
	EXPECT_EQ("path  0  0  5  6\n", RunProgram({"boxes", curve, "path"}).output);
}

TEST_F(GeometryCommands, SelectAndLeaveOut)
{
	const std::string file = _folder.Write(
		"b.svg", "<svg width='20' height='20'><rect id='a' width='10' height='10'/><rect id='b' width='5' height='5'/>"
				 "<path display='none' d='M0 0h1'/><path d='M10 15h6' stroke='red' stroke-width='4'/><g/>"
				 "<text font-size='0' id='t'>a</text></svg>");
	const auto run = [](const std::vector<std::string>& arguments)
	{
		const ProgramRun done = RunProgram(arguments);
		EXPECT_EQ(0, done.status) << done.errors;
		return done.output;
	};
	EXPECT_EQ("g  -\n", run({"boxes", file, "g"}));
	EXPECT_EQ(json(), json::parse(run({"boxes", file, "g", "--json"}))["boxes"][0]["stroke"]);
	const std::string all = run({"boxes", file, "*"});
	EXPECT_EQ(all, run({"boxes", file}));
	EXPECT_EQ(7, std::ranges::count(all, '\n')) << "All elements, and not the characters: " << all;
	EXPECT_EQ("path  6\n", run({"measure", file, "path"})) << "What is not displayed has no length.";
	EXPECT_EQ("path  M10 17L16 17L16 13L10 13Z\n", run({"outline", file, "path", "--stroke", "4"}));
	EXPECT_EQ("rect#b  fill\n", run({"hit", file, "1", "1"}));
	EXPECT_EQ("rect#b  fill\nrect#a  fill\n", run({"hit", file, "1", "1", "--all"}));
	EXPECT_EQ("", run({"hit", file, "11.5", "8"}));
	EXPECT_EQ("rect#a  fill\n", run({"hit", file, "11.5", "8", "--tolerance", "2"}));
	// What is no file is a selector, and a selector is given once; several files have a line each.
	for (const std::vector<std::string>& more :
		 {std::vector<std::string>{"missing.svgz"}, {"missing", "--select", "g"}, {"folder/missing"}})
	{
		std::vector<std::string> arguments = {"boxes", "--json", file};
		arguments.insert(arguments.end(), more.begin(), more.end());
		const ProgramRun two = RunProgram(arguments);
		EXPECT_EQ(1, two.status) << more[0];
		EXPECT_EQ(2, std::ranges::count(two.output, '\n')) << two.output;
		EXPECT_NE(std::string::npos, two.output.find("\n{\"url\": \"file:///")) << two.output;
		EXPECT_NE(std::string::npos, two.output.find("\"reason\": ")) << two.output;
	}
}

TEST_F(GeometryCommands, PrintHits)
{
	EXPECT_EQ("use#u > rect#r  fill\n", Run({"hit", "11", "1"}));
	EXPECT_EQ("11 1  use#u > rect#r  fill\n30 20.5  path#p  stroke\n", Run({"hit", "11", "1", "30", "20.5", "1", "1"}));
	const json hits = json::parse(Run({"hit", "11", "1", "--all", "--json"}));
	EXPECT_EQ("r", hits[0]["id"]);
	EXPECT_EQ(json({1}), hits[0]["uses"][0]["path"]);
	EXPECT_EQ(2, StatusOf({"hit", "1"}));
	EXPECT_EQ(json({2, 0}), json::parse(Run({"hit", "30", "20.5", "--json"}))[0]["path"]);
	for (const char* const number : {"x", "1x", "inf"})
		EXPECT_EQ(2, StatusOf({"hit", "1", number})) << number;
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
	std::size_t offsets = 0; // Of commands, points and elements: one more than there are paths.
	for (std::size_t at = 0; (at = bytes.find("'shape': (3,)", at)) != std::string::npos; at++)
		offsets++;
	EXPECT_EQ(3u, offsets);
	EXPECT_EQ(2, StatusOf({"normalize", "--format", "odd"}));
	EXPECT_EQ(2, StatusOf({"normalize", "--clips", "odd"}));
	EXPECT_EQ(2, RunProgram({"normalize", _path, _path, "-o", arrays}).status);
}

TEST_F(GeometryCommands, WritePlainPathsAsTheyAreAsked)
{
	const std::string file = _folder.Write(
		"b.svg", "<svg width='20' height='20'><clipPath id='c'><rect width='5' height='20'/></clipPath>"
				 "<linearGradient id='l'><stop/><stop offset='1'/></linearGradient><rect id='a' width='10' height='10' "
				 "clip-path='url(#c)' fill='url(#l)' fill-rule='evenodd'/><circle cx='15' cy='15' r='2'/>"
				 "<path d='M10 15h6' stroke='red' stroke-width='4' fill='none'/></svg>");
	const auto pathsOf = [&](std::vector<std::string> options)
	{
		options.insert(options.begin(), {"normalize", file, "--format", "json"});
		const ProgramRun run = RunProgram(options);
		EXPECT_EQ(0, run.status) << run.errors;
		return json::parse(run.output)["paths"];
	};
	const ProgramRun clipped = RunProgram({"normalize", file});
	EXPECT_NE(std::string::npos, clipped.output.find("d=\"M0 10L0 0L5 0L5 10Z\"")) << clipped.output;
	EXPECT_EQ("", clipped.errors);
	const ProgramRun left = RunProgram({"normalize", file, "--clips", "ignored", "--format", "json"});
	EXPECT_NE(std::string::npos, left.errors.find("b.svg: clip paths, masks and filters of 1 paths are left aside"))
		<< left.errors;
	EXPECT_EQ(json::parse("{\"id\": \"a\", \"fill\": {\"color\": [0, 0, 0], \"opacity\": 1, \"isServer\": true}, "
						  "\"fillRule\": \"evenodd\", \"d\": \"M0 0L10 0L10 10L0 10Z\"}"),
			  json::parse(left.output)["paths"][0]);
	// Curves stay curves, but where a format knows none.
	const std::string circle = pathsOf({})[1]["d"];
	EXPECT_EQ(std::string::npos, circle.find('L')) << circle;
	const std::string flat = pathsOf({"--flatten", "1"})[1]["d"];
	EXPECT_EQ(std::string::npos, flat.find('C')) << flat;
	const std::string lines = RunProgram({"normalize", file, "--format", "hpgl"}).output;
	EXPECT_GT(std::ranges::count(lines, 'D'), 20) << lines;
	EXPECT_EQ(json::parse(
				  "{\"stroke\": {\"color\": [1, 0, 0], \"opacity\": 1}, \"strokeWidth\": 4, \"d\": \"M10 15L16 15\"}"),
			  pathsOf({})[2]);
	EXPECT_EQ(json::parse("{\"fill\": {\"color\": [1, 0, 0], \"opacity\": 1}, \"d\": \"M10 17L16 17L16 13L10 13Z\"}"),
			  pathsOf({"--outline-strokes"})[2]);
	// By the name of what is written, and into a folder.
	EXPECT_EQ(0, RunProgram({"normalize", file, "-o", _folder.GetPath() / "b.json"}).status);
	EXPECT_EQ('{', ReadFile(_folder.GetPath() / "b.json")[0]);
	EXPECT_EQ(0, RunProgram({"normalize", file, _path, "-o", (_folder.GetPath() / "out/").string()}).status);
	EXPECT_EQ(clipped.output, ReadFile(_folder.GetPath() / "out/b.svg"));
	EXPECT_EQ(2, RunProgram({"normalize", file, "--format", ".svg"}).status);
	EXPECT_EQ(1, RunProgram({"normalize", file, "-o", "/dev/full"}).status);
}

} // namespace
} // namespace orvan::test
