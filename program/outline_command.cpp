// SPDX-License-Identifier: MIT
#include "commands.h"
#include "console.h"
#include "document_loading.h"
#include "file_arguments.h"
#include "geometry_access.h"
#include "import_arguments.h"
#include "path_text.h"

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
	double flattening = 0.0;
	double strokeWidth = 0.0;
};

/// How far off the edges of an outlined stroke may be.
constexpr double kStrokeTolerance = 0.001;

int PrintOutlines(const Options& options, const SVGImportOptions& import, const FileTurn& turn)
{
	const LoadOutcome outcome = LoadDocument(turn.file, import);
	if (!outcome.document)
		return Report(turn.file, outcome, turn.output);
	PrintHeading(turn);
	const SVGGeometryRef geometry = MakeGeometry(outcome.document);
	for (const PlacedElement& placed : SelectElements(outcome.document, options.selector))
	{
		Result<SVGOutlineRef> found = geometry->GetOutline(placed.element, SVGCoordinates::view);
		if (!found.IsOk() && found.GetError().GetClass() == ErrorClass::notFound)
			continue;
		SVGOutlineRef outline = Unwrap(std::move(found));
		if (options.strokeWidth > 0.0)
		{
			SVGStroke stroke;
			stroke.width = options.strokeWidth;
			outline = Unwrap(outline->GetStroke(stroke, kStrokeTolerance));
		}
		if (options.flattening > 0.0)
			outline = Unwrap(outline->Flatten(options.flattening));
		const BaseArray<SVGPathCommand> commands = Unwrap(outline->GetPath());
		turn.output.Print(GetElementLabel(placed.element) + "  " + ToPathData(commands) + '\n');
	}
	return Report(turn.file, outcome, turn.output);
}
} // namespace

void AddOutlineCommand(CommandLine& commandLine)
{
	const auto options = std::make_shared<Options>();
	Command command = commandLine.AddCommand(
		"outline", "Print the outlines of elements as path data, in pixels of the picture",
		[options](Modules& modules)
		{
			LoadGeometryModule(modules);
			TakeLastArgument(options->files, options->selector);
			return ForEachFile(options->files, [&, import = options->import.GetOptions()](const FileTurn& turn)
							   { return PrintOutlines(*options, import, turn); });
		});
	options->files.AddTo(command, "Paths or file: URLs; - is standard input. A last one that is no file is a selector");
	command.AddText(
		{.names = "--select", .help = "Elements: #id, kinds such as path, several with commas", .value = "SELECTOR"},
		options->selector);
	command.AddPositiveNumber(
		{.names = "--flatten", .help = "Straight lines only, no farther off than this", .value = "D"},
		options->flattening);
	command.AddPositiveNumber(
		{.names = "--stroke", .help = "The edges of a stroke of this width instead", .value = "W"},
		options->strokeWidth);
	options->import.AddTo(command, ImportArguments::Default::asDrawn);
}

} // namespace orvan::program
