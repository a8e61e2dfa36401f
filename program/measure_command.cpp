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
	std::vector<std::string> places;
	bool asJson = false;
};

/// True for what is an outline by itself.
bool IsShape(const SVGElementRef& element)
{
	return Cast<SVGPathElementInterface>(element) || Cast<SVGRectElementInterface>(element) ||
		   Cast<SVGCircleElementInterface>(element) || Cast<SVGLineElementInterface>(element);
}

void WritePoint(JsonWriter& json, std::string_view name, const Vector2d& point)
{
	json.Key(name);
	json.BeginArray();
	json.Value(point.x);
	json.Value(point.y);
	json.EndArray();
}

/// Calls `tell` with each shape that is drawn, its outline in its own coordinates, and its length.
template <typename Tell>
void ForEachShape(const SVGDocumentRef& document, const std::string& selector, Tell tell)
{
	const SVGGeometryRef geometry = MakeGeometry(document);
	for (const PlacedElement& placed : SelectElements(document, selector))
	{
		if (!IsShape(placed.element))
			continue;
		const Result<SVGOutlineRef> outline = geometry->GetOutline(placed.element, SVGCoordinates::element);
		if (outline.IsOk())
			tell(placed, outline.GetValue(), Unwrap(outline.GetValue()->GetLength()));
		else if (outline.GetError().GetClass() != ErrorClass::notFound)
			throw Failure(std::string(outline.GetError().GetMessage().View()));
	}
}

void PrintAsJson(const FileTurn& turn, const LoadOutcome& outcome, const std::string& selector,
				 const std::vector<double>& places)
{
	JsonWriter json(turn.output, turn.isAlone ? JsonWriter::Layout::lines : JsonWriter::Layout::oneLine);
	if (!outcome.document)
		return PrintFailureAsJson(json, turn.file, *outcome.refusal);
	json.BeginObject();
	json.Member("url", outcome.document->GetUrl().GetText().View());
	json.Key("elements");
	json.BeginArray();
	const auto write = [&](const PlacedElement& placed, const SVGOutlineRef& outline, double length)
	{
		json.NewLine(1);
		json.BeginObject();
		WriteElement(json, placed.element, placed.path);
		json.Member("length", length);
		json.Key("places");
		json.BeginArray();
		for (const double share : places)
		{
			const Result<SVGOutlinePlace> place = outline->GetPlace(share * length);
			if (!place.IsOk())
			{
				json.Null();
				continue;
			}
			json.BeginObject();
			WritePoint(json, "point", place.GetValue().point);
			WritePoint(json, "direction", place.GetValue().direction);
			json.EndObject();
		}
		json.EndArray();
		json.EndObject();
	};
	ForEachShape(outcome.document, selector, write);
	json.EndArray();
	json.EndObject();
	json.Finish();
}

void PrintAsText(const FileTurn& turn, const LoadOutcome& outcome, const std::string& selector,
				 const std::vector<double>& places)
{
	if (!outcome.document)
		return;
	PrintHeading(turn);
	const auto print = [&](const PlacedElement& placed, const SVGOutlineRef& outline, double length)
	{
		std::string line = GetElementLabel(placed.element) + "  " + FormatNumber(length);
		for (const double share : places)
		{
			const Result<SVGOutlinePlace> place = outline->GetPlace(share * length);
			if (place.IsOk())
				line += "  " + FormatNumber(place.GetValue().point.x) + ',' + FormatNumber(place.GetValue().point.y);
		}
		turn.output.Print(line + '\n');
	};
	ForEachShape(outcome.document, selector, print);
}

int MeasureAll(Options& options, Modules& modules)
{
	LoadGeometryModule(modules);
	TakeLastArgument(options.files, options.selector);
	std::vector<double> places;
	for (const std::string& place : options.places)
		places.push_back(ReadNumber(place, "--at"));
	return ForEachFile(options.files,
					   [&, import = options.import.GetOptions()](const FileTurn& turn)
					   {
						   const LoadOutcome outcome = LoadDocument(turn.file, import);
						   (options.asJson ? &PrintAsJson : &PrintAsText)(turn, outcome, options.selector, places);
						   return Report(turn.file, outcome, turn.output);
					   });
}
} // namespace

void AddMeasureCommand(CommandLine& commandLine)
{
	const auto options = std::make_shared<Options>();
	Command command =
		commandLine.AddCommand("measure", "Print how long the outlines of shapes are, in their own coordinates",
							   [options](Modules& modules) { return MeasureAll(*options, modules); });
	options->files.AddTo(command, "Paths or file: URLs; - is standard input. A last one that is no file is a selector");
	command.AddText(
		{.names = "--select", .help = "Elements: #id, kinds such as path, several with commas", .value = "SELECTOR"},
		options->selector);
	command.AddTexts({.names = "--at", .help = "Also the point at this share of the length, 0 to 1", .value = "SHARE"},
					 options->places);
	options->import.AddTo(command, ImportArguments::Default::asDrawn);
	command.AddFlag("--json", "Print JSON, with directions", options->asJson);
}

} // namespace orvan::program
