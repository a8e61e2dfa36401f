// SPDX-License-Identifier: MIT
#include "commands.h"
#include "console.h"
#include "document_loading.h"
#include "file_arguments.h"
#include "geometry_access.h"
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
	std::string selector;
	std::string kind = "fill";
	std::string coordinates = "view";
	bool asJson = false;
};

constexpr std::string_view kKinds[] = {"fill", "stroke", "visual"};
constexpr std::string_view kCoordinates[] = {"element", "parent", "document", "view"};

/// The number of a word in a list. Throws `UsageFailure`.
template <typename Enumeration, std::size_t count>
Enumeration FindWord(const std::string_view (&words)[count], const std::string& word, const char* option)
{
	for (std::size_t i = 0; i < count; i++)
	{
		if (words[i] == word)
			return static_cast<Enumeration>(i);
	}
	throw UsageFailure(std::string(option) + ": there is no \"" + word + "\"");
}

void WriteBox(JsonWriter& json, const SVGBox& box)
{
	if (box.isEmpty)
		return json.Null();
	json.BeginArray();
	for (const Float number : {box.x, box.y, box.width, box.height})
		json.Value(number);
	json.EndArray();
}

void PrintAsJson(const FileTurn& turn, const LoadOutcome& outcome, const Options& options, SVGCoordinates coordinates)
{
	JsonWriter json(turn.output, turn.isAlone ? JsonWriter::Layout::lines : JsonWriter::Layout::oneLine);
	if (!outcome.document)
		return PrintFailureAsJson(json, turn.file, *outcome.refusal);
	const SVGGeometryRef geometry = MakeGeometry(outcome.document);
	json.BeginObject();
	json.Member("url", outcome.document->GetUrl().GetText().View());
	const Vector2d size = Unwrap(geometry->GetViewSize());
	json.Key("view");
	json.BeginArray();
	json.Value(size.x);
	json.Value(size.y);
	json.EndArray();
	json.Key("boxes");
	json.BeginArray();
	for (const PlacedElement& placed : SelectElements(outcome.document, options.selector))
	{
		json.NewLine(1);
		json.BeginObject();
		WriteElement(json, placed.element, placed.path);
		for (std::size_t kind = 0; kind < std::size(kKinds); kind++)
		{
			json.Key(kKinds[kind]);
			WriteBox(json, Unwrap(geometry->GetBox(placed.element, static_cast<SVGBoxKind>(kind), coordinates)));
		}
		json.EndObject();
	}
	json.EndArray();
	json.EndObject();
	json.Finish();
}

void PrintAsText(const FileTurn& turn, const LoadOutcome& outcome, const Options& options, SVGBoxKind kind,
				 SVGCoordinates coordinates)
{
	if (!outcome.document)
		return;
	PrintHeading(turn);
	const SVGGeometryRef geometry = MakeGeometry(outcome.document);
	for (const PlacedElement& placed : SelectElements(outcome.document, options.selector))
	{
		const SVGBox box = Unwrap(geometry->GetBox(placed.element, kind, coordinates));
		std::string line = GetElementLabel(placed.element);
		if (box.isEmpty)
			line += "  -";
		else
		{
			for (const Float number : {box.x, box.y, box.width, box.height})
				line += "  " + FormatNumber(number);
		}
		turn.output.Print(line + '\n');
	}
}

int PrintAllBoxes(Options& options, Modules& modules)
{
	LoadGeometryModule(modules);
	TakeLastArgument(options.files, options.selector);
	const auto kind = FindWord<SVGBoxKind>(kKinds, options.kind, "--kind");
	const auto coordinates = FindWord<SVGCoordinates>(kCoordinates, options.coordinates, "--coordinates");
	return ForEachFile(options.files,
					   [&, import = options.import.GetOptions()](const FileTurn& turn)
					   {
						   const LoadOutcome outcome = LoadDocument(turn.file, import);
						   if (options.asJson)
							   PrintAsJson(turn, outcome, options, coordinates);
						   else
							   PrintAsText(turn, outcome, options, kind, coordinates);
						   return Report(turn.file, outcome, turn.output);
					   });
}
} // namespace

void AddBoxesCommand(CommandLine& commandLine)
{
	const auto options = std::make_shared<Options>();
	Command command = commandLine.AddCommand("boxes", "Print where elements lie: x, y, width and height",
											 [options](Modules& modules) { return PrintAllBoxes(*options, modules); });
	options->files.AddTo(command, "Paths or file: URLs; - is standard input. A last one that is no file is a selector");
	command.AddText(
		{.names = "--select", .help = "Elements: #id, kinds such as path, several with commas", .value = "SELECTOR"},
		options->selector);
	command.AddText({.names = "--kind", .help = "Which box without --json: fill, stroke or visual", .value = "KIND"},
					options->kind);
	command.AddText({.names = "--coordinates", .help = "view, document, parent or element", .value = "WHICH"},
					options->coordinates);
	options->import.AddTo(command, ImportArguments::Default::asDrawn);
	command.AddFlag("--json", "Print JSON with all three boxes, null where there is nothing", options->asJson);
}

} // namespace orvan::program
