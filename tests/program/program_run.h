// SPDX-License-Identifier: MIT
/// Running the program.
#pragma once

#include "support/corpus_files.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace orvan::test
{

/// What a run of the program left behind.
struct ProgramRun
{
	int status = -1; ///< Exit status; -1 when it did not end by itself.
	std::string output;
	std::string errors;
};

/// Where a run's streams lead, in the shell's words.
struct ProgramStreams
{
	std::string input = {};  ///< What standard input has.
	std::string output = {}; ///< Where standard output goes; empty for `ProgramRun::output`.
	std::string setup = {};  ///< Commands that are run before the program.
};

/// Runs the program with these arguments, to its end.
ProgramRun RunProgram(const std::vector<std::string>& arguments, const ProgramStreams& streams = {});

/// Runs a command of the shell, to its end.
ProgramRun RunShell(const std::string& command, const ProgramStreams& streams = {});

/// A folder of the test's own that goes with it.
class TemporaryFolder
{
public:
	TemporaryFolder();
	TemporaryFolder(const TemporaryFolder&) = delete;
	~TemporaryFolder();

	/// Writes a file, making the folders that it stands in; returns its path.
	std::string Write(const std::string& name, std::string_view content) const;

	const std::filesystem::path& GetPath() const
	{
		return _path;
	}

private:
	std::filesystem::path _path;
};

} // namespace orvan::test
