// SPDX-License-Identifier: MIT
#include "color_argument.h"
#include "commands.h"
#include "document_loading.h"
#include "picture.h"

#include <memory>

namespace orvan::program
{

void AddRenderCommand(CommandLine& commandLine)
{
	struct Options
	{
		std::string file;
		std::string picture;
		std::string background = "none";
		SVGRenderOptions rendering;
	};
	const auto options = std::make_shared<Options>();
	CLI::App* const command =
		commandLine.AddCommand("render", "Draw a file with the renderer that is there",
							   [options]
							   {
								   if (const auto color = ParseColor(options->background))
								   {
									   options->rendering.background = *color;
									   options->rendering.backgroundOpacity = 1.0;
								   }
								   // A placeholder is nothing to draw: no picture is better than a wrong one.
								   const LoadOutcome outcome = LoadDocument(options->file);
								   if (!outcome.refusal)
									   WritePicture(outcome.document, options->rendering, options->picture);
								   return Report(options->file, outcome);
							   });
	command->add_option("FILE", options->file, "Path or file: URL")->required();
	command->add_option("-o,--output", options->picture, "The picture: a .png or .pdf file")
		->required()
		->type_name("OUT")
		->check(&CheckPictureName);
	command->add_option("--width", options->rendering.width, "Width in pixels; the height follows when not given")
		->check(CLI::PositiveNumber);
	command->add_option("--height", options->rendering.height, "Height in pixels; the width follows when not given")
		->check(CLI::PositiveNumber);
	command->add_option("--scale", options->rendering.scale, "Factor on the size")->check(CLI::PositiveNumber);
	command->add_option("--background", options->background, "Color below the drawing (nothing when not given)")
		->type_name("COLOR");
}

} // namespace orvan::program
