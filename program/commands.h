// SPDX-License-Identifier: MIT
/// The program's commands. Each adds itself to the command line; what it then does sets the exit status.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>

namespace orvan::program
{

/// What all commands share.
struct CommandLine
{
	CLI::App app;
	std::string moduleFolder; ///< Where to find modules; empty for the usual place.
	int exitStatus = 0;

	/// Adds a command. `run` is called with the modules open and returns the exit status.
	CLI::App* AddCommand(const std::string& name, const std::string& description, std::function<int()> run);
};

void AddTreeCommand(CommandLine& commandLine);
void AddIdsCommand(CommandLine& commandLine);
void AddCheckCommand(CommandLine& commandLine);
void AddRegistryCommand(CommandLine& commandLine);
void AddIconCommand(CommandLine& commandLine);
void AddRenderCommand(CommandLine& commandLine);

} // namespace orvan::program
