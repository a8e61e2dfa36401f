// SPDX-License-Identifier: MIT
#include "commands.h"
#include "console.h"
#include "file_arguments.h"
#include "line_difference.h"
#include "save_arguments.h"

#include <memory>

namespace orvan::program
{
namespace
{
struct Options
{
	FileArguments files;
	SaveArguments save;
	bool isDryRun = false;
	bool asJson = false;
};

/// Why the plain import refuses a document's text; none when it takes it.
std::optional<std::string> FindRefusal(const SVGDocumentRef& document)
{
	const String text = Unwrap(GetSource(document)->GetSourceText());
	const SVGDocumentRef plain = Unwrap(CreateObject<SVGDocumentInterface>(kSVGDocumentClass));
	const auto import = Cast<SVGDocumentImportInterface>(plain);
	const ThreadDiagnosticSink ignored([](const Diagnostic&, void*) {}, nullptr);
	Unwrap(import->InitFromMemory(text.CString(), static_cast<std::int64_t>(text.GetSize()), Url()));
	const SVGImportReport report = Unwrap(import->GetImportReport());
	if (report.outcome == SVGImportOutcome::loaded)
		return {};
	return report.findings.IsEmpty() ? std::string("There is no svg element.")
									 : std::string(report.findings[0].message.View());
}

void PrintAsJson(const FileTurn& turn, const SVGDocumentRef& document, const BaseArray<SVGRepair>& repairs,
				 const std::optional<std::string>& refusal)
{
	JsonWriter json(turn.output, JsonWriter::Layout::oneLine);
	json.BeginObject();
	json.Member("url", document->GetUrl().GetText().View());
	json.Key("repairs");
	json.BeginArray();
	for (const SVGRepair& repair : repairs)
	{
		json.BeginObject();
		json.Member("line", static_cast<double>(repair.line));
		json.Member("column", static_cast<double>(repair.column));
		json.Member("element", repair.elementTag.View());
		if (!repair.elementId.IsEmpty())
			json.Member("id", repair.elementId.View());
		json.Member("attribute", repair.attribute.View());
		json.Member("before", repair.before.View());
		json.Member("after", repair.after.View());
		json.EndObject();
	}
	json.EndArray();
	if (refusal)
		json.Member("reason", *refusal);
	json.EndObject();
	json.Finish();
}

int Repair(const Options& options, const FileTurn& turn)
{
	LoadOutcome outcome = LoadDocument(turn.file, GetEditingOptions());
	if (outcome.refusal)
	{
		if (options.asJson)
		{
			JsonWriter json(turn.output, JsonWriter::Layout::oneLine);
			PrintFailureAsJson(json, turn.file, *outcome.refusal);
		}
		return Report(turn.file, outcome, turn.output);
	}
	const auto source = GetSource(outcome.document);
	const String before = Unwrap(source->GetSourceText());
	const BaseArray<SVGRepair> repairs = Unwrap(source->Repair());
	const std::optional<std::string> refusal = FindRefusal(outcome.document);
	if (!options.isDryRun)
		options.save.Save(outcome.document, turn.file, turn.output);
	if (options.asJson)
		PrintAsJson(turn, outcome.document, repairs, refusal);
	else if (!repairs.IsEmpty() && !options.save.Prints())
	{
		const String after = Unwrap(source->GetSourceText());
		const std::string name = GetDisplayName(turn.file);
		turn.output.Print("--- " + name + "\n+++ " + name + '\n' + DescribeDifference(before.View(), after.View()));
	}
	if (refusal && !options.asJson)
		turn.output.PrintError(GetDisplayName(turn.file) + ": is still refused: " + OneLine(*refusal));
	return refusal ? 1 : 0;
}
} // namespace

void AddRepairCommand(CommandLine& commandLine)
{
	const auto options = std::make_shared<Options>();
	Command command = commandLine.AddCommand(
		"repair", "Rewrite just the values that the plain import refuses, to what a browser reads there",
		[options](Modules&)
		{
			options->save.Check(options->files.files, options->asJson);
			const auto repair = [&](const FileTurn& turn)
			{
				return RunWithOutcome(turn, options->asJson, [&] { return Repair(*options, turn); });
			};
			return ForEachFile(options->files, repair);
		});
	options->files.AddTo(command);
	options->save.AddTo(command, SaveArguments::Default::nothing);
	command.AddFlag("--dry-run", "Write nothing, only show what would change", options->isDryRun);
	command.AddFlag("--json", "Print JSON, an object a line for each file", options->asJson);
}

} // namespace orvan::program
