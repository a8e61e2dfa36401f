// SPDX-License-Identifier: MIT
#include "commands.h"
#include "console.h"
#include "modules.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace orvan::program
{
namespace
{
constexpr int kStatusFailed = 1;
constexpr int kStatusWrongUsage = 2;

int Run(int argumentCount, char** arguments)
{
	CommandLine commandLine;
	commandLine.app.description("Looks at SVG files through the SVG module.");
	commandLine.app.require_subcommand(1);
	commandLine.app.add_option("--modules", commandLine.moduleFolder, "Folder with the modules to load")
		->type_name("DIR");
	AddTreeCommand(commandLine);
	AddIdsCommand(commandLine);
	AddCheckCommand(commandLine);
	AddRegistryCommand(commandLine);
	AddIconCommand(commandLine);
	AddRenderCommand(commandLine);
	try
	{
		commandLine.app.parse(argumentCount, arguments);
	}
	catch (const CLI::ParseError& error)
	{
		return commandLine.app.exit(error) == 0 ? 0 : kStatusWrongUsage;
	}
	// Here, and not at the end of the process, trouble with the last of the results can still be told.
	FlushOutput();
	return commandLine.exitStatus;
}
} // namespace

CLI::App* CommandLine::AddCommand(const std::string& name, const std::string& description, std::function<int()> run)
{
	CLI::App* const command = app.add_subcommand(name, description);
	// Lets --modules stand behind the command as well.
	command->fallthrough();
	command->callback(
		[this, run = std::move(run)]
		{
			LoadModules(moduleFolder);
			exitStatus = run();
		});
	return command;
}

} // namespace orvan::program

int main(int argumentCount, char** arguments)
{
	using namespace orvan::program;
	// A reader that has gone shows as an error of the write instead, which is not taken for a failure.
	std::signal(SIGPIPE, SIG_IGN);
	try
	{
		return Run(argumentCount, arguments);
	}
	catch (const ClosedPipe&)
	{
		// Nothing more can be written, not even at the end of the process.
		std::quick_exit(0);
	}
	catch (const std::exception& exception)
	{
		std::fprintf(stderr, "orvan-svg: %s\n", exception.what());
		return dynamic_cast<const UsageFailure*>(&exception) != nullptr ? kStatusWrongUsage : kStatusFailed;
	}
}
