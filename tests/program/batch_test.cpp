// SPDX-License-Identifier: MIT
/// Batches by the program. What their results have is held against those of the Python package in its tests.
#include "batch/row.h"
#include "program_run.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace orvan::test
{
namespace
{
namespace fs = std::filesystem;

class Batches : public testing::Test
{
protected:
	Batches() : _output(_folder.GetPath() / "out")
	{
		for (int i = 0; i < 10; i++)
			_folder.Write("art/" + std::to_string(i) + ".svg", i == 4 ? "<svg><g></svg>" : "<svg><g/></svg>");
	}

	ProgramRun Run(std::vector<std::string> arguments = {}) const
	{
		const std::string art = _folder.GetPath() / "art";
		arguments.insert(arguments.begin(), {"batch", art, "-o", _output, "--chunk-size", "3"});
		return RunProgram(arguments);
	}

	TemporaryFolder _folder;
	fs::path _output;
};

TEST_F(Batches, GoOnWhereTheyWereInterrupted)
{
	// Also from the folder that it is asked in, with a slash behind names or without.
	const ProgramRun whole = RunProgram({"batch", "art/", "-o", "out/", "--chunk-size", "3"},
										{.setup = "cd '" + _folder.GetPath().string() + "'; "});
	EXPECT_EQ(1, whole.status) << "One is refused.";
	EXPECT_EQ("9 done, 1 not, 0 there already\n", whole.output);
	const std::string rows = ReadFile(_output / "00000001/rows.jsonl");
	EXPECT_NE(std::string::npos, rows.find("\"line\":1,\"message\":")) << rows;
	fs::remove_all(_output / "00000001");
	fs::create_directory(_output / "00000001.part-7");
	EXPECT_EQ("2 done, 1 not, 7 there already\n", Run({"--jobs", "1"}).output);
	EXPECT_EQ(rows, ReadFile(_output / "00000001/rows.jsonl"));
	EXPECT_FALSE(fs::exists(_output / "00000001.part-7"));
	EXPECT_EQ(0, Run().status);
}

TEST_F(Batches, LoseNoMoreThanTheRowOfWhatTakesTooLongOrTooMuch)
{
	// Reading waits for ever where nobody writes.
	ASSERT_EQ(0, mkfifo((_folder.GetPath() / "art/1a.svg").c_str(), 0600));
	EXPECT_EQ("9 done, 2 not, 0 there already\n", Run({"--deadline", "2"}).output);
	const std::string rows = ReadFile(_output / "00000000/rows.jsonl");
	EXPECT_NE(std::string::npos, rows.find("1a.svg\",\"message\":\"It took more than 2 seconds.\"")) << rows;
#ifndef ORVAN_PROGRAM_IS_SANITIZED
	// Sanitizers need more than any bound leaves.
	fs::remove(_folder.GetPath() / "art/1a.svg");
	fs::remove_all(_output);
	fs::resize_file(_folder.Write("art/0a.svg", ""), std::uintmax_t{600} << 20);
	EXPECT_EQ("9 done, 2 not, 0 there already\n", Run({"--memory", "512"}).output);
	EXPECT_NE(std::string::npos, ReadFile(_output / "00000000/rows.jsonl").find("more memory than is allowed"));
#endif
}

TEST_F(Batches, LoadTheModulesThatTheirOperationNeeds)
{
	const fs::path& path = _folder.GetPath();
	_folder.Write("one/a.svg", "<svg width='9' height='9'><rect width='4' height='4' fill='q'/></svg>");
	_folder.Write("list", (path / "one").string() + '\n');
	const std::string sheet = _folder.Write("a.css", "rect{width:6px}");
	const auto run = [&](const std::string& operation, const std::vector<std::string>& more = {})
	{
		std::vector<std::string> arguments = {"batch", "@list", "-o", path / "to", "--operation", operation};
		arguments.insert(arguments.end(), more.begin(), more.end());
		fs::remove_all(path / "to");
		const ProgramRun done = RunProgram(arguments, {.setup = "cd '" + path.string() + "'; "});
		EXPECT_EQ("1 done, 0 not, 0 there already\n", done.output) << operation << ' ' << done.errors;
		EXPECT_EQ(0, done.status) << operation;
		return operation == "boxes" ? ReadFile(path / "to/00000000/columns.npz") : "";
	};
	for (const std::string operation : {"columns", "thumbnails", "check", "report"})
		run(operation);
	EXPECT_NE(run("boxes"), run("boxes", {"--style-sheet", sheet}));
}

TEST_F(Batches, RefuseWhatMakesNoSense)
{
	EXPECT_EQ(2, Run({"--operation", "odd"}).status);
	EXPECT_EQ(1, RunProgram({"batch", _folder.GetPath() / "missing", "-o", _output}).status);
	EXPECT_FALSE(fs::exists(_output)) << "Nothing is begun.";
	Run();
	const ProgramRun other = Run({"--operation", "check"});
	EXPECT_EQ(1, other.status);
	EXPECT_NE(std::string::npos, other.errors.find("another run")) << other.errors;
	// A shard that cannot be written ends the run.
	fs::remove_all(_output / "00000001");
	_folder.Write("out/00000001", "in the way");
	EXPECT_EQ(1, Run().status);
}

TEST(RowsOfJson, KeepEveryByteOfAName)
{
	EXPECT_EQ("\"a\\\"\\\\\\u0009\u00fc\U0001f600\"", batch::ToJson("a\"\\\t\u00fc\U0001f600"));
	EXPECT_EQ("\"\u0080\u0800\ud7ff\U00010000\U0010ffff\"", batch::ToJson("\u0080\u0800\ud7ff\U00010000\U0010ffff"))
		<< "The least and the largest of each length.";
	// What is no UTF-8: a lone byte, one cut off, a longer form than needed, a surrogate, beyond the last character.
	EXPECT_EQ("\"\\udcff\\udcc3(\"", batch::ToJson("\xff\xc3("));
	EXPECT_EQ("\"\\udcc0\\udcaf\\udced\\udca0\\udc80\"", batch::ToJson("\xc0\xaf\xed\xa0\x80"));
	EXPECT_EQ("\"\\udcf4\\udc90\\udc80\\udc80\\udce2\\udc82\"", batch::ToJson("\xf4\x90\x80\x80\xe2\x82"));
}

} // namespace
} // namespace orvan::test
