// SPDX-License-Identifier: MIT
#include "commands.h"
#include "console.h"
#include "document_loading.h"
#include "file_arguments.h"
#include "file_replacement.h"
#include "geometry_access.h"
#include "import_arguments.h"
#include "normalized_output.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>

namespace orvan::program
{
namespace
{
namespace fs = std::filesystem;

struct Options
{
	FileArguments files;
	ImportArguments import;
	std::string output = "-";
	std::string format;
	std::string clips;
	bool outlinesStrokes = false;
	SVGNormalizeOptions wanted;
};

/// By the numbers of `SVGNormalizedClips`.
constexpr std::string_view kClips[] = {"ignored", "applied", "kept"};

/// How far lines may be off the curves where a format knows no curves, in pixels.
constexpr double kUsualFlattening = 0.05;

bool IsFolder(const std::string& output)
{
	std::error_code ignored;
	return output.ends_with('/') || fs::is_directory(output, ignored);
}

std::string GetPath(const Options& options, const std::string& file, NormalizedFormat format)
{
	if (!IsFolder(options.output))
		return options.output;
	const std::string name = file == "-" ? "stdin" : fs::path(file).stem().native();
	return fs::path(options.output) / (name + std::string(GetSuffix(format)));
}

NormalizedFormat GetFormat(const Options& options)
{
	if (!options.format.empty())
	{
		if (const auto format = FindFormat(options.format); format && !options.format.starts_with('.'))
			return *format;
		throw UsageFailure("There is no format " + options.format + ", only svg, json, hpgl, gcode and arrays");
	}
	if (options.output == "-" || IsFolder(options.output))
		return NormalizedFormat::svg;
	return FindFormat(fs::path(options.output).extension().native()).value_or(NormalizedFormat::svg);
}

/// Applied where nothing is said: that shows what the picture shows in every format.
SVGNormalizedClips GetClips(const Options& options)
{
	if (options.clips.empty())
		return SVGNormalizedClips::applied;
	const auto* const found = std::find(std::begin(kClips), std::end(kClips), options.clips);
	if (found == std::end(kClips))
		throw UsageFailure("--clips: there is no \"" + options.clips + "\", only ignored, applied and kept");
	return static_cast<SVGNormalizedClips>(found - std::begin(kClips));
}

void Write(const std::string& text, const std::string& path, Output& output)
{
	if (path == "-")
		return output.Print(text);
	FileReplacement file(path);
	std::ofstream stream(file.GetPath(), std::ios::binary);
	stream << text;
	stream.close();
	if (!stream)
		throw Failure(path + " cannot be written");
	file.Commit();
}

int Normalize(const Options& options, NormalizedFormat format, const SVGImportOptions& import, const FileTurn& turn)
{
	const LoadOutcome outcome = LoadDocument(turn.file, import);
	const int status = Report(turn.file, outcome, turn.output);
	if (outcome.refusal)
		return status;
	const SVGGeometryRef geometry = MakeGeometry(outcome.document);
	const SVGNormalizedClips clips = GetClips(options);
	const std::string path = GetPath(options, turn.file, format);
	if (format == NormalizedFormat::svg)
	{
		// What is left aside it tells as a diagnostic.
		Write(FormatNormalized(Unwrap(geometry->NormalizeToDocument(options.wanted, clips))), path, turn.output);
		return status;
	}
	const SVGNormalizedPaths paths = Unwrap(geometry->NormalizeWith(options.wanted, clips));
	Write(FormatNormalized(paths, format), path, turn.output);
	if (paths.unclippedCount != 0)
	{
		turn.output.PrintError(GetDisplayName(turn.file) + ": clip paths, masks and filters of " +
							   std::to_string(paths.unclippedCount) + " paths are left aside");
	}
	return status;
}

int NormalizeAll(Options& options, Modules& modules)
{
	LoadGeometryModule(modules);
	const NormalizedFormat format = GetFormat(options);
	GetClips(options); // Refused before any file is written.
	if (options.outlinesStrokes)
		options.wanted.strokes = SVGNormalizedStrokes::outlined;
	if (NeedsLines(format) && options.wanted.flattening == 0.0)
		options.wanted.flattening = kUsualFlattening;
	std::set<std::string> taken;
	for (const std::string& file : options.files.files)
	{
		const std::string path = GetPath(options, file, format);
		if (!taken.insert(path).second && path != "-")
			throw UsageFailure("Several files would be written to " + path);
	}
	std::error_code error;
	if (options.output.ends_with('/') && !fs::create_directories(options.output, error) && error)
		throw Failure(options.output + " cannot be made: " + error.message());
	return ForEachFile(options.files, [&, import = options.import.GetOptions()](const FileTurn& turn)
					   { return Normalize(options, format, import, turn); });
}
} // namespace

void AddNormalizeCommand(CommandLine& commandLine)
{
	const auto options = std::make_shared<Options>();
	Command command = commandLine.AddCommand("normalize", "Write everything that is painted as plain paths",
											 [options](Modules& modules) { return NormalizeAll(*options, modules); });
	options->files.AddTo(command);
	command.AddText({.names = "-o,--output",
					 .help = "A file, a folder (DIR/), or - for standard output (when not given)",
					 .value = "OUT"},
					options->output);
	command.AddText({.names = "--format",
					 .help = "svg, json, hpgl, gcode or arrays (.npz); by the name of OUT, or svg, when not given",
					 .value = "FORMAT"},
					options->format);
	command.AddText({.names = "--clips",
					 .help = "What becomes of clip paths: applied (when not given), kept (in svg) or ignored",
					 .value = "WHICH"},
					options->clips);
	command.AddFlag("--outline-strokes", "Make areas of strokes", options->outlinesStrokes);
	command.AddPositiveNumber({.names = "--flatten",
							   .help = "Straight lines only, no farther off than this (0.05 for hpgl and gcode)",
							   .value = "D"},
							  options->wanted.flattening);
	command.AddPositiveNumber(
		{.names = "--grid", .help = "Fit the picture into a square of this side", .value = "SIDE"},
		options->wanted.grid);
	command.AddPositiveNumber(
		{.names = "--precision", .help = "Round coordinates to multiples of this", .value = "STEP"},
		options->wanted.precision);
	options->import.AddTo(command, ImportArguments::Default::asDrawn);
}

} // namespace orvan::program
