// SPDX-License-Identifier: MIT
/// The corpus: small files with one issue each. Beside each stands the tree that the host program must print for it
/// (`.json`: the ids in order, and the root), or what is said about it when it is refused (`.error.txt`). Those of the
/// complete import, which is tolerant here, may have findings (`.findings.txt`).
#include "program/program_run.h"
#include "support/corpus_files.h"
#include "support/svg_module.h"

#include <nlohmann/json.hpp>

namespace orvan
{
namespace
{

namespace fs = std::filesystem;
using nlohmann::json;
using test::ReadFile;

class Corpus : public SvgModuleTest, public testing::WithParamInterface<std::string>
{
protected:
	/// Holds what the program prints against the tree of the corpus; returns what it says about the file.
	static std::string CompareTree(const std::vector<std::string>& options, const fs::path& base)
	{
		const std::string file = base.string() + ".svg";
		std::vector<std::string> arguments{"tree", "--json", file};
		arguments.insert(arguments.end(), options.begin(), options.end());
		const test::ProgramRun run = test::RunProgram(arguments);
		EXPECT_EQ(0, run.status);
		json printed = json::parse(run.output);
		EXPECT_EQ(false, printed["placeholder"]);
		std::sort(printed["ids"].begin(), printed["ids"].end());
		printed.erase("url");
		printed.erase("placeholder");
		const json expected = json::parse(ReadFile(base.string() + ".json"));
		EXPECT_EQ(expected, printed) << json::diff(expected, printed).dump(1);
		std::string findings = run.errors;
		const std::string prefix = "WARNING: " + file + ':';
		for (std::size_t at = 0; (at = findings.find(prefix, at)) != std::string::npos;)
			findings.erase(at, prefix.size());
		return findings;
	}
};

class CompleteCorpus : public Corpus
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
	EXPECT_EQ("", CompareTree({}, base));
}

TEST_P(CompleteCorpus, IsReadAsABrowserReadsIt)
{
	const fs::path base = fs::path(ORVAN_CORPUS) / "complete" / GetParam();
	EXPECT_EQ(ReadFile(base.string() + ".findings.txt"), CompareTree({"--complete", "--tolerant"}, base));
}

INSTANTIATE_TEST_SUITE_P(Files, Corpus, testing::ValuesIn(test::NamesIn(ORVAN_CORPUS, ".svg")), test::TestNameOf);
INSTANTIATE_TEST_SUITE_P(Files, CompleteCorpus,
						 testing::ValuesIn(test::NamesIn(fs::path(ORVAN_CORPUS) / "complete", ".svg")),
						 test::TestNameOf);

} // namespace
} // namespace orvan
