// SPDX-License-Identifier: MIT
#include "color_argument.h"
#include "commands.h"
#include "console.h"
#include "document_loading.h"
#include "file_arguments.h"
#include "modules.h"
#include "picture.h"

#include <filesystem>
#include <map>
#include <memory>

namespace orvan::program
{
namespace
{
namespace fs = std::filesystem;

struct Options
{
	FileArguments files;
	std::string output;
	std::string format;
	std::string background = "none";
	SVGRenderOptions rendering;
};

bool IsFolder(const std::string& output)
{
	std::error_code ignored;
	return output.ends_with('/') || fs::is_directory(output, ignored);
}

std::string CheckOutput(const std::string& output)
{
	return output == "-" || IsFolder(output) ? "" : CheckPictureName(output);
}

std::string CheckFormat(const std::string& format)
{
	return GetPictureKind("picture." + format) ? "" : "There is no format " + format + ", only png and pdf";
}

/// Where the picture of a file goes.
std::string GetPicturePath(const Options& options, const std::string& file)
{
	if (!IsFolder(options.output))
		return options.output;
	const std::string name = file == "-" ? "stdin" : fs::path(file).stem().native();
	return fs::path(options.output) / (name + std::string(GetPictureSuffix(options.rendering.output)));
}

/// Settles all that the options mean together. Throws `UsageFailure` for what makes no sense.
void Prepare(Options& options)
{
	if (const auto color = ParseColor(options.background))
	{
		options.rendering.background = *color;
		options.rendering.backgroundOpacity = 1.0;
	}
	const auto kind = GetPictureKind(options.format.empty() ? options.output : "picture." + options.format);
	options.rendering.output = kind.value_or(SVGRenderOutput::pixels);
	const std::vector<std::string>& files = options.files.files;
	if (files.size() > 1 && !IsFolder(options.output))
		throw UsageFailure("The pictures of several files need a folder: -o DIR/");
	std::map<std::string, const std::string*> taken;
	for (const std::string& file : files)
	{
		const auto [other, isNew] = taken.try_emplace(GetPicturePath(options, file), &file);
		if (!isNew && *other->second != file)
			throw UsageFailure(*other->second + " and " + file + " would have the same picture, " + other->first);
	}
	std::error_code error;
	if (options.output.ends_with('/') && !fs::create_directories(options.output, error) && error)
		throw Failure(options.output + " cannot be made: " + error.message());
}

int Render(const Options& options, const FileTurn& turn)
{
	// A placeholder is nothing to draw: no picture is better than a wrong one.
	const LoadOutcome outcome = LoadDocument(turn.file);
	if (!outcome.refusal)
		WritePicture(outcome.document, options.rendering, GetPicturePath(options, turn.file), turn.output);
	return Report(turn.file, outcome, turn.output);
}
} // namespace

void AddRenderCommand(CommandLine& commandLine)
{
	const auto options = std::make_shared<Options>();
	Command command = commandLine.AddCommand("render", "Draw files with the renderer that is there",
											 [options](Modules& modules)
											 {
												 Prepare(*options);
												 modules.LoadOtherModules();
												 return ForEachFile(options->files, [options](const FileTurn& turn)
																	{ return Render(*options, turn); });
											 });
	options->files.AddTo(command);
	command.AddText({.names = "-o,--output",
					 .help = "The picture: a .png or .pdf file, a folder (DIR/), or - for standard output",
					 .value = "OUT",
					 .check = &CheckOutput,
					 .isRequired = true},
					options->output);
	command.AddText({.names = "--format",
					 .help = "png or pdf, where the name does not tell (png when not given)",
					 .value = "FORMAT",
					 .check = &CheckFormat},
					options->format);
	command.AddPositiveNumber(
		{.names = "--width", .help = "Width in pixels; the height follows when not given", .value = "W"},
		options->rendering.width);
	command.AddPositiveNumber(
		{.names = "--height", .help = "Height in pixels; the width follows when not given", .value = "H"},
		options->rendering.height);
	command.AddPositiveNumber({.names = "--scale", .help = "Factor on the size", .value = "S"},
							  options->rendering.scale);
	command.AddText(
		{.names = "--background", .help = "Color below the drawing (nothing when not given)", .value = "COLOR"},
		options->background);
}

} // namespace orvan::program
