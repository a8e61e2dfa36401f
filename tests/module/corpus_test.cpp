// SPDX-License-Identifier: MIT
/// The corpus: small files with one issue each. Beside each stands the tree that the host program must print for it
/// (`.json`: the ids in order, and the root), or what is said about it when it is refused (`.error.txt`).
#include "program/program_run.h"
#include "support/svg_module.h"

#include <nlohmann/json.hpp>

namespace orvan
{
namespace
{

namespace fs = std::filesystem;
using nlohmann::json;

std::string ReadFile(const fs::path& path)
{
	std::ifstream file(path, std::ios::binary);
	return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> FileNames()
{
	std::vector<std::string> names;
	for (const fs::directory_entry& entry : fs::directory_iterator(ORVAN_CORPUS))
	{
		if (entry.path().extension() == ".svg")
			names.push_back(entry.path().stem());
	}
	std::sort(names.begin(), names.end());
	return names;
}

class Corpus : public SvgModuleTest, public testing::WithParamInterface<std::string>
{
};

TEST_P(Corpus, IsReadAsItShouldBe)
{
	const fs::path base = fs::path(ORVAN_CORPUS) / GetParam();
	const std::string file = base.string() + ".svg";
	const std::string tree = ReadFile(base.string() + ".json");
	const std::string refusal = ReadFile(base.string() + ".error.txt");
	ASSERT_NE(tree.empty(), refusal.empty()) << "a file has either a tree or an error";
	if (tree.empty())
	{
		EXPECT_EQ(refusal, RefusalOf(ReadFile(file)) + '\n');
		return;
	}
	const test::ProgramRun run = test::RunProgram({"tree", "--json", file});
	EXPECT_EQ(0, run.status);
	EXPECT_EQ("", run.errors);
	json printed = json::parse(run.output);
	EXPECT_EQ(false, printed["placeholder"]);
	std::sort(printed["ids"].begin(), printed["ids"].end());
	printed.erase("url");
	printed.erase("placeholder");
	const json expected = json::parse(tree);
	EXPECT_EQ(expected, printed) << json::diff(expected, printed).dump(1);
}

INSTANTIATE_TEST_SUITE_P(Files, Corpus, testing::ValuesIn(FileNames()),
						 [](const auto& test)
						 {
							 std::string name = test.param;
							 std::replace(name.begin(), name.end(), '-', '_');
							 return name;
						 });

} // namespace
} // namespace orvan
