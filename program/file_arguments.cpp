// SPDX-License-Identifier: MIT
#include "file_arguments.h"

#include "console.h"
#include "document_loading.h"
#include "ordered_tasks.h"

#include <filesystem>

namespace orvan::program
{
namespace
{
using Task = std::function<int(const FileTurn& turn)>;

/// How one file went, until its turn to be told has come.
struct FileOutcome
{
	KeptOutput output;
	int status = 0;
};

int RunTask(const Task& task, const FileTurn& turn)
{
	try
	{
		return task(turn);
	}
	catch (const std::exception& exception)
	{
		turn.output.PrintError(GetDisplayName(turn.file) + ": " + exception.what());
		return 1;
	}
}
} // namespace

bool LooksLikeFile(const std::string& argument)
{
	const std::filesystem::path path(argument);
	std::error_code ignored;
	return argument == "-" || argument.find('/') != argument.npos || path.extension() == ".svg" ||
		   path.extension() == ".svgz" || std::filesystem::is_regular_file(path, ignored);
}

void FileArguments::AddTo(Command& command, const char* help)
{
	command.AddArguments("FILE", help, files);
	AddJobsOption(command, jobs);
}

void TakeLastArgument(FileArguments& arguments, std::string& word)
{
	if (!word.empty() || arguments.files.size() < 2 || LooksLikeFile(arguments.files.back()))
		return;
	word = arguments.files.back();
	arguments.files.pop_back();
}

std::size_t GetThreadCount(std::optional<std::uint32_t> jobs)
{
	return jobs.value_or(std::max(1u, std::thread::hardware_concurrency()));
}

int ForEachFile(const FileArguments& arguments, const Task& task)
{
	const std::vector<std::string>& files = arguments.files;
	if (std::ranges::count(files, "-") > 1)
		throw UsageFailure("Standard input can be read only once.");
	ConsoleOutput console;
	int status = 0;
	const std::size_t threadCount = GetThreadCount(arguments.jobs);
	if (files.size() == 1 || threadCount == 1)
	{
		// Nothing has to wait for its turn, so that a large result needs no memory.
		for (std::size_t i = 0; i < files.size(); i++)
			status = std::max(status, RunTask(task, {files[i], i == 0, files.size() == 1, console}));
		return status;
	}
	constexpr std::size_t kLead = 16;
	constexpr auto kPatience = std::chrono::milliseconds(100);
	OrderedTasks<FileOutcome> tasks(
		files.size(), threadCount, kLead * threadCount,
		[&](std::size_t index)
		{
			FileOutcome outcome;
			outcome.status = RunTask(task, {files[index], index == 0, false, outcome.output});
			return outcome;
		});
	for (std::size_t i = 0; i < files.size(); i++)
	{
		std::optional<FileOutcome> outcome;
		while (!outcome)
			outcome = tasks.Take(kPatience);
		outcome->output.HandOver(console);
		status = std::max(status, outcome->status);
	}
	return status;
}

void PrintHeading(const FileTurn& turn)
{
	if (!turn.isAlone)
		turn.output.Print((turn.isFirst ? "" : "\n") + GetDisplayName(turn.file) + ":\n");
}

void AddJobsOption(Command& command, std::optional<std::uint32_t>& jobs)
{
	constexpr std::uint32_t kMostJobs = 1024;
	command.AddNumber({.names = "-j,--jobs", .help = "Number of threads (all processors when not given)", .value = "N"},
					  jobs, 1, kMostJobs);
}

} // namespace orvan::program
