// SPDX-License-Identifier: MIT
/// The program's commands. Each adds itself to the command line.
#pragma once

#include "command_line.h"

namespace orvan::program
{

void AddTreeCommand(CommandLine& commandLine);
void AddIdsCommand(CommandLine& commandLine);
void AddCheckCommand(CommandLine& commandLine);
void AddRegistryCommand(CommandLine& commandLine);
void AddIconCommand(CommandLine& commandLine);
void AddRenderCommand(CommandLine& commandLine);
/// `set`, `remove`, `rename-id` and `new`.
void AddEditCommands(CommandLine& commandLine);
void AddRepairCommand(CommandLine& commandLine);
void AddBoxesCommand(CommandLine& commandLine);
void AddHitCommand(CommandLine& commandLine);
void AddMeasureCommand(CommandLine& commandLine);
void AddOutlineCommand(CommandLine& commandLine);
void AddNormalizeCommand(CommandLine& commandLine);
void AddBatchCommand(CommandLine& commandLine);

} // namespace orvan::program
