// SPDX-License-Identifier: MIT
#include "commands.h"
#include "console.h"
#include "document_loading.h"

#include <memory>

namespace orvan::program
{

void AddIdsCommand(CommandLine& commandLine)
{
	struct Options
	{
		std::string file;
		std::string prefix;
	};
	const auto options = std::make_shared<Options>();
	CLI::App* const command =
		commandLine.AddCommand("ids", "Print the ids of a file, in the order of the id table",
							   [options]
							   {
								   const LoadOutcome outcome = LoadDocument(options->file);
								   if (outcome.document)
								   {
									   const String prefix = Unwrap(String::Create(options->prefix));
									   const auto elements =
										   Unwrap(outcome.document->GetElementsByIdWithPrefix(prefix));
									   for (const SVGElementRef& element : elements)
										   Print(std::string(element->GetId().View()) + '\n');
								   }
								   return Report(options->file, outcome);
							   });
	command->add_option("FILE", options->file, "Path or file: URL")->required();
	command->add_option("PREFIX", options->prefix, "Print only ids that begin so");
}

} // namespace orvan::program
