// SPDX-License-Identifier: MIT
/// Commands that do the same with each of several files.
#pragma once

#include "command_line.h"
#include "output.h"

namespace orvan::program
{

/// The files that a command was given, and how many threads it may use.
struct FileArguments
{
	std::vector<std::string> files;
	std::optional<std::uint32_t> jobs;

	/// Adds FILE… and --jobs.
	void AddTo(Command& command, const char* help = "Paths or file: URLs; - is standard input");
};

/// Whether an argument is meant as a file rather than as anything else: "-", what has a slash or ends as files of SVG
/// do, and the name of one that is there.
bool LooksLikeFile(const std::string& argument);

/// Takes the last of several arguments away when it does not look like a file, and stores it in `word`, unless that
/// holds something already.
void TakeLastArgument(FileArguments& arguments, std::string& word);

/// One of the files, while it is dealt with.
struct FileTurn
{
	const std::string& file;
	bool isFirst;
	bool isAlone; ///< It is the only one, so that nothing needs to tell which one is meant.
	Output& output;
};

/// What `--jobs` means: as many threads as there are processors when it was not given.
std::size_t GetThreadCount(std::optional<std::uint32_t> jobs);

/// Calls `task` for each file, on several threads when there are several files. What they print comes out in the order
/// of the files. Returns the highest of the exit statuses; an exception counts as a failure of its file and is told.
int ForEachFile(const FileArguments& arguments, const std::function<int(const FileTurn& turn)>& task);

/// Says in front of a result which of several files it is about.
void PrintHeading(const FileTurn& turn);

/// Adds --jobs.
void AddJobsOption(Command& command, std::optional<std::uint32_t>& jobs);

} // namespace orvan::program
