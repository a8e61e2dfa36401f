// SPDX-License-Identifier: MIT
#include "commands.h"
#include "console.h"
#include "document_loading.h"
#include "geometry_access.h"
#include "import_arguments.h"

#include <memory>

namespace orvan::program
{
namespace
{
struct Options
{
	std::string file;
	std::vector<std::string> coordinates;
	ImportArguments import;
	std::string tolerance = "0";
	bool findsAll = false;
	bool asJson = false;
};

constexpr std::string_view kParts[] = {"fill", "stroke", "text", "box"};

std::span<const SVGElementRef> GetUses(const SVGHits& hits, const SVGHit& hit)
{
	return std::span<const SVGElementRef>(hits.uses).subspan(static_cast<std::size_t>(hit.firstUse),
															 static_cast<std::size_t>(hit.useCount));
}

/// Each of several points gets one line, so that readers can count.
void PrintAsJson(Output& output, const SVGHits& hits, bool isAlone)
{
	JsonWriter json(output, isAlone ? JsonWriter::Layout::lines : JsonWriter::Layout::oneLine);
	json.BeginArray();
	for (const SVGHit& hit : hits.hits)
	{
		json.NewLine(1);
		json.BeginObject();
		WriteElement(json, hit.element, GetElementPath(hit.element));
		json.Member("part", kParts[static_cast<std::size_t>(hit.part)]);
		json.Key("uses");
		json.BeginArray();
		for (const SVGElementRef& use : GetUses(hits, hit))
		{
			json.BeginObject();
			WriteElement(json, use, GetElementPath(use));
			json.EndObject();
		}
		json.EndArray();
		json.EndObject();
	}
	json.EndArray();
	json.Finish();
}

void PrintAsText(Output& output, const SVGHits& hits, std::string_view place)
{
	for (const SVGHit& hit : hits.hits)
	{
		std::string line(place);
		for (const SVGElementRef& use : GetUses(hits, hit))
			line += GetElementLabel(use) + " > ";
		line += GetElementLabel(hit.element) + "  " + std::string(kParts[static_cast<std::size_t>(hit.part)]);
		output.Print(line + '\n');
	}
}

int PrintHits(const Options& options, Modules& modules)
{
	LoadGeometryModule(modules);
	SVGHitOptions wanted;
	wanted.findsAll = options.findsAll;
	wanted.tolerance = ReadNumber(options.tolerance, "--tolerance");
	const std::vector<std::string>& coordinates = options.coordinates;
	if (coordinates.size() % 2 != 0)
		throw UsageFailure("A point is two numbers.");
	const bool isAlone = coordinates.size() == 2;
	std::vector<Vector2d> points;
	for (std::size_t i = 0; i < coordinates.size(); i += 2)
		points.push_back({ReadNumber(coordinates[i], "X"), ReadNumber(coordinates[i + 1], "Y")});
	ConsoleOutput output;
	const LoadOutcome outcome = LoadDocument(options.file, options.import.GetOptions());
	if (outcome.document)
	{
		const SVGGeometryRef geometry = MakeGeometry(outcome.document);
		for (const Vector2d& point : points)
		{
			const SVGHits hits = Unwrap(geometry->FindAt(point, wanted));
			if (options.asJson)
				PrintAsJson(output, hits, isAlone);
			else
				PrintAsText(output, hits,
							isAlone ? std::string() : FormatNumber(point.x) + ' ' + FormatNumber(point.y) + "  ");
		}
	}
	return Report(options.file, outcome, output);
}
} // namespace

void AddHitCommand(CommandLine& commandLine)
{
	const auto options = std::make_shared<Options>();
	Command command = commandLine.AddCommand("hit", "Print what is drawn at a point of a file's picture",
											 [options](Modules& modules) { return PrintHits(*options, modules); });
	command.AddArgument("FILE", "Path or file: URL; - is standard input", options->file);
	command.AddArguments("POINT", "X and Y of one point or several, in pixels at scale 1 from the upper left corner",
						 options->coordinates);
	command.AddFlag("--all", "Print everything that is there, the topmost first", options->findsAll);
	command.AddText({.names = "--tolerance", .help = "How many pixels off things may lie", .value = "D"},
					options->tolerance);
	options->import.AddTo(command, ImportArguments::Default::asDrawn);
	command.AddFlag("--json", "Print JSON", options->asJson);
}

} // namespace orvan::program
