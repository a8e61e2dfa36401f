// SPDX-License-Identifier: MIT
#include "commands.h"
#include "console.h"
#include "document_loading.h"
#include "file_arguments.h"
#include "import_arguments.h"

#include <memory>

namespace orvan::program
{
namespace
{
struct Options
{
	FileArguments files;
	ImportArguments import;
	std::optional<std::string> prefix;
	bool asJson = false;
};

void PrintAsJson(const FileTurn& turn, const LoadOutcome& outcome, const BaseArray<SVGElementRef>& elements)
{
	JsonWriter json(turn.output, JsonWriter::Layout::oneLine);
	if (!outcome.document)
		return PrintFailureAsJson(json, turn.file, *outcome.refusal);
	json.BeginObject();
	json.Member("url", outcome.document->GetUrl().GetText().View());
	json.Key("ids");
	json.BeginArray();
	for (const SVGElementRef& element : elements)
		json.Value(element->GetId().View());
	json.EndArray();
	json.EndObject();
	json.Finish();
}

void PrintAsText(const FileTurn& turn, const BaseArray<SVGElementRef>& elements)
{
	// As other tools do it that look for something in several files.
	const std::string place = turn.isAlone ? std::string() : GetDisplayName(turn.file) + ':';
	for (const SVGElementRef& element : elements)
		turn.output.Print(place + WholeLine(element->GetId().View()) + '\n');
}

int PrintIds(const Options& options, const SVGImportOptions& import, const FileTurn& turn)
{
	const LoadOutcome outcome = LoadDocument(turn.file, import);
	BaseArray<SVGElementRef> elements;
	if (outcome.document)
	{
		const String prefix = Unwrap(String::Create(options.prefix.value_or("")));
		elements = Unwrap(outcome.document->GetElementsByIdWithPrefix(prefix));
	}
	if (options.asJson)
		PrintAsJson(turn, outcome, elements);
	else
		PrintAsText(turn, elements);
	return Report(turn.file, outcome, turn.output);
}
} // namespace

void AddIdsCommand(CommandLine& commandLine)
{
	const auto options = std::make_shared<Options>();
	Command command = commandLine.AddCommand(
		"ids", "Print the ids of files, in the order of the id table",
		[options](Modules&)
		{
			if (!options->prefix)
				TakeLastArgument(options->files, options->prefix.emplace());
			return ForEachFile(options->files, [&, import = options->import.GetOptions()](const FileTurn& turn)
							   { return PrintIds(*options, import, turn); });
		});
	options->files.AddTo(command, "Paths or file: URLs; - is standard input. A last one that is no file is a prefix");
	options->import.AddTo(command, ImportArguments::Default::plain);
	command.AddText({.names = "--prefix", .help = "Print only ids that begin so", .value = "PREFIX"}, options->prefix);
	command.AddFlag("--json", "Print JSON, an object a line for each file", options->asJson);
}

} // namespace orvan::program
