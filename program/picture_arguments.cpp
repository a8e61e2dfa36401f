// SPDX-License-Identifier: MIT
#include "picture_arguments.h"

#include "color_argument.h"
#include "console.h"
#include "picture.h"

#include <filesystem>
#include <map>

namespace orvan::program
{
namespace
{
namespace fs = std::filesystem;

bool IsFolder(const std::string& output)
{
	std::error_code ignored;
	return output.ends_with('/') || fs::is_directory(output, ignored);
}

std::string CheckOutput(const std::string& output)
{
	if (output == "-" || IsFolder(output) || GetPictureKind(output))
		return {};
	return "A picture's name ends in .png or .pdf, unlike " + output;
}

std::string CheckFormat(const std::string& format)
{
	return GetPictureKind("picture." + format) ? "" : "There is no format " + format + ", only png and pdf";
}
} // namespace

void PictureArguments::AddTo(Command& command, Need need)
{
	const bool isRequired = need == Need::required;
	command.AddText({.names = "-o,--output",
					 .help = "The picture: a .png or .pdf file, a folder (DIR/), or - for standard output",
					 .value = "OUT",
					 .check = &CheckOutput,
					 .isRequired = isRequired},
					_output);
	if (!isRequired)
		return;
	command.AddText({.names = "--format",
					 .help = "png or pdf, where the name does not tell (png when not given)",
					 .value = "FORMAT",
					 .check = &CheckFormat},
					_format);
	command.AddPositiveNumber(
		{.names = "--width", .help = "Width in pixels; the height follows when not given", .value = "W"},
		_options.width);
	command.AddPositiveNumber(
		{.names = "--height", .help = "Height in pixels; the width follows when not given", .value = "H"},
		_options.height);
	command.AddPositiveNumber({.names = "--scale", .help = "Factor on the size", .value = "S"}, _options.scale);
	command.AddPositiveNumber({.names = "--dpi",
							   .help = "Pixels an inch, for a picture of pixels that takes its size from the file (96 "
									   "when not given)",
							   .value = "N"},
							  _dotsPerInch);
	command.AddText(
		{.names = "--id", .help = "Draw the element with this id alone, as large as what it paints", .value = "ID"},
		_elementId);
	command.AddText(
		{.names = "--background", .help = "Color below the drawing (nothing when not given)", .value = "COLOR"},
		_background);
	command.AddText({.names = "--current-color",
					 .help = "What currentColor stands for where a file does not say (black when not given)",
					 .value = "COLOR"},
					_currentColor);
	command.AddPositiveNumber({.names = "--deadline",
							   .help = "Seconds that a picture may take before the rest of it is left out (10 when not "
									   "given)",
							   .value = "SECONDS"},
							  _options.deadline);
}

void PictureArguments::Prepare(const std::vector<std::string>& files)
{
	constexpr double kUnitsPerInch = 96.0;
	if (!IsGiven())
		return;
	if (const auto color = ParseColor(_background))
	{
		_options.background = *color;
		_options.backgroundOpacity = 1.0;
	}
	if (const auto color = _currentColor.empty() ? std::nullopt : ParseColor(_currentColor))
		_options.currentColor = *color;
	_options.output =
		GetPictureKind(_format.empty() ? _output : "picture." + _format).value_or(SVGRenderOutput::pixels);
	// A page has no pixels, and a size that is given is one in pixels.
	const bool followsFile = _options.width == 0.0 && _options.height == 0.0;
	_options.elementId = Unwrap(String::Create(_elementId));
	if (_dotsPerInch > 0.0 && followsFile && _options.output == SVGRenderOutput::pixels)
		_options.scale *= _dotsPerInch / kUnitsPerInch;

	if (files.size() > 1 && !IsFolder(_output))
		throw UsageFailure("The pictures of several files need a folder: -o DIR/");
	std::map<std::string, const std::string*> taken;
	for (const std::string& file : files)
	{
		const auto [other, isNew] = taken.try_emplace(GetPath(file), &file);
		if (!isNew && *other->second != file)
			throw UsageFailure(*other->second + " and " + file + " would have the same picture, " + other->first);
	}
	std::error_code error;
	if (_output.ends_with('/') && !fs::create_directories(_output, error) && error)
		throw Failure(_output + " cannot be made: " + error.message());
}

std::string PictureArguments::GetPath(const std::string& file) const
{
	if (!IsFolder(_output))
		return _output;
	const std::string name = file == "-" ? "stdin" : fs::path(file).stem().native();
	return fs::path(_output) / (name + std::string(GetPictureSuffix(_options.output)));
}

} // namespace orvan::program
