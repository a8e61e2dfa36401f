// SPDX-License-Identifier: MIT
#include "commands.h"
#include "console.h"
#include "document_loading.h"
#include "tree_json.h"
#include "tree_text.h"

#include <memory>

namespace orvan::program
{

void AddTreeCommand(CommandLine& commandLine)
{
	struct Options
	{
		std::string file;
		bool asJson = false;
	};
	const auto options = std::make_shared<Options>();
	CLI::App* const command =
		commandLine.AddCommand("tree", "Print the element tree of a file",
							   [options]
							   {
								   const LoadOutcome outcome = LoadDocument(options->file);
								   if (outcome.document && options->asJson)
									   PrintTreeAsJson(outcome.document, outcome.refusal.has_value());
								   else if (outcome.document)
									   PrintTreeAsText(outcome.document, OutputTakesColor());
								   return Report(options->file, outcome);
							   });
	command->add_option("FILE", options->file, "Path or file: URL")->required();
	command->add_flag("--json", options->asJson, "Print JSON with all values");
}

} // namespace orvan::program
