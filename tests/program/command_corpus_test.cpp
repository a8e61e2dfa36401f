// SPDX-License-Identifier: MIT
/// The corpus of command lines: files, lines for the shell, and what these must print; see corpus/README.md.
#include "program_run.h"

#include <cstdlib>
#include <sstream>

namespace orvan::test
{
namespace
{

namespace fs = std::filesystem;

class CommandCorpus : public testing::TestWithParam<std::string>
{
protected:
	/// What a line for the shell prints and says, and its status, in the words of the corpus.
	std::string Run(const std::string& line) const
	{
		const std::string& folder = _folder.GetPath();
		const ProgramRun run =
			RunShell("{ cd '" + folder + "'; unset NO_COLOR; PATH='" + fs::path(ORVAN_PROGRAM).parent_path().string() +
					 "':\"$PATH\"; " + line + "\n}");
		std::string said = run.output;
		if (!said.empty() && said.back() != '\n')
			said += "\\\n";
		std::istringstream errors(run.errors);
		for (std::string error; std::getline(errors, error);)
			said += "! " + error + '\n';
		if (run.status != 0)
			said += "exit " + std::to_string(run.status) + '\n';
		for (std::size_t at = 0; (at = said.find(folder, at)) != std::string::npos;)
			said.replace(at, folder.size(), "/FOLDER");
		return said;
	}

	TemporaryFolder _folder;
};

TEST_P(CommandCorpus, PrintsWhatItShould)
{
	const fs::path file = fs::path(ORVAN_COMMAND_CORPUS) / (GetParam() + ".txt");
	const std::string stored = ReadFile(file);
	std::string found;
	for (std::size_t at = 0; at < stored.size();)
	{
		const std::size_t line = std::min(stored.find('\n', at), stored.size());
		const std::size_t end = std::min(stored.find("\n==== ", at), stored.size() - 1) + 1;
		const std::string title = stored.substr(at, line - at);
		ASSERT_TRUE(title.starts_with("==== ")) << title;
		if (title.starts_with("==== $ "))
			found += title + '\n' + Run(title.substr(7));
		else
		{
			found += stored.substr(at, end - at);
			_folder.Write(title.substr(5), std::string_view(stored).substr(line + 1, end - line - 1));
		}
		at = end;
	}
	if (std::getenv("ORVAN_REWRITE_CORPUS") != nullptr)
		std::ofstream(file, std::ios::binary) << found;
	EXPECT_EQ(stored, found);
}

INSTANTIATE_TEST_SUITE_P(Files, CommandCorpus, testing::ValuesIn(NamesIn(ORVAN_COMMAND_CORPUS, ".txt")), TestNameOf);

} // namespace
} // namespace orvan::test
