// SPDX-License-Identifier: MIT
#include "commands.h"
#include "console.h"

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
	AddTreeCommand(commandLine);
	AddIdsCommand(commandLine);
	AddCheckCommand(commandLine);
	AddRegistryCommand(commandLine);
	AddIconCommand(commandLine);
	AddRenderCommand(commandLine);
	AddEditCommands(commandLine);
	AddRepairCommand(commandLine);
	AddBoxesCommand(commandLine);
	AddHitCommand(commandLine);
	AddMeasureCommand(commandLine);
	AddOutlineCommand(commandLine);
	AddNormalizeCommand(commandLine);
	AddBatchCommand(commandLine);
	const int status = commandLine.Run(argumentCount, arguments);
	// Here, and not at the end of the process, trouble with the last of the results can still be told.
	FlushOutput();
	return status;
}
} // namespace
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
