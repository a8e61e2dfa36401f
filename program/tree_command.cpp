// SPDX-License-Identifier: MIT
#include "commands.h"
#include "console.h"
#include "document_loading.h"
#include "file_arguments.h"
#include "import_arguments.h"
#include "tree_json.h"
#include "tree_text.h"

#include <memory>

namespace orvan::program
{
namespace
{
struct Options
{
	FileArguments files;
	ImportArguments import;
	bool asJson = false;
};

/// Each of several files gets one line, also one of which there is no tree, so that readers can count.
void PrintAsJson(const FileTurn& turn, const LoadOutcome& outcome)
{
	JsonWriter json(turn.output, turn.isAlone ? JsonWriter::Layout::lines : JsonWriter::Layout::oneLine);
	if (outcome.document)
		PrintTreeAsJson(json, outcome.document, outcome.refusal.has_value());
	else if (!turn.isAlone)
		PrintFailureAsJson(json, turn.file, *outcome.refusal);
}

void PrintAsText(const FileTurn& turn, const LoadOutcome& outcome)
{
	if (!outcome.document)
		return;
	PrintHeading(turn);
	PrintTreeAsText(turn.output, outcome.document, OutputTakesColor());
}
} // namespace

void AddTreeCommand(CommandLine& commandLine)
{
	const auto options = std::make_shared<Options>();
	const auto printTree = [options](const SVGImportOptions& import, const FileTurn& turn)
	{
		const LoadOutcome outcome = LoadDocument(turn.file, import);
		(options->asJson ? &PrintAsJson : &PrintAsText)(turn, outcome);
		return Report(turn.file, outcome, turn.output);
	};
	Command command = commandLine.AddCommand(
		"tree", "Print the element tree of files",
		[options, printTree](Modules&)
		{
			return ForEachFile(options->files, [&, import = options->import.GetOptions()](const FileTurn& turn)
							   { return printTree(import, turn); });
		});
	options->files.AddTo(command);
	options->import.AddTo(command, ImportArguments::Default::plain);
	command.AddFlag("--json", "Print JSON with all values", options->asJson);
}

} // namespace orvan::program
