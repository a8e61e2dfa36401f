// SPDX-License-Identifier: MIT
#include "commands.h"
#include "console.h"
#include "document_loading.h"
#include "file_arguments.h"
#include "json_writer.h"
#include "ordered_tasks.h"
#include "progress_bar.h"
#include "svg_files.h"

#include <atomic>
#include <memory>

namespace orvan::program
{
namespace
{
struct Options
{
	std::vector<std::string> paths;
	std::optional<std::uint32_t> jobs;
	bool asJson = false;
};

struct Counts
{
	std::size_t loaded = 0;
	std::size_t failed = 0;
};

using FailureHandler = std::function<void(const std::string& path, const Finding& finding)>;

/// Checks everything and hands over the failures in the order of the files, although threads finish in another.
Counts CheckAll(const Options& options, const FailureHandler& onFailure)
{
	constexpr auto kPatience = std::chrono::milliseconds(100); // Between two looks at the progress.
	// The files are listed before the first is loaded, so that the progress bar knows how many there are.
	const SVGFiles found = FindSVGFiles(options.paths);
	for (const auto& [path, reason] : found.troubles)
		onFailure(path, Finding{.text = reason});
	// A folder that cannot be read may hide files, so it counts as a failure of its own.
	Counts counts{.failed = found.troubles.size()};

	using Refusal = std::optional<Finding>;
	std::atomic<std::size_t> done = 0;
	std::atomic<std::size_t> failed = 0;
	// What remains of a file is little, so that nobody needs to wait for a slow one.
	OrderedTasks<Refusal> tasks(found.files.size(), GetThreadCount(options.jobs), found.files.size(),
								[&](std::size_t index)
								{
									Refusal refusal = LoadDocument(found.files[index]).refusal;
									failed += refusal ? 1 : 0;
									done++;
									return refusal;
								});
	ProgressBar bar(found.files.size());
	for (const std::string& file : found.files)
	{
		std::optional<Refusal> refusal;
		while (!refusal)
		{
			refusal = tasks.Take(kPatience);
			bar.Show(done, failed);
		}
		if (!*refusal)
		{
			counts.loaded++;
			continue;
		}
		counts.failed++;
		bar.Hide();
		onFailure(file, **refusal);
	}
	return counts;
}

int CheckForPeople(const Options& options)
{
	const auto [loaded, failed] = CheckAll(options, [](const std::string& path, const Finding& finding)
										   { Print(Describe(path, finding) + '\n'); });
	Print(std::to_string(loaded) + " loaded, " + std::to_string(failed) + " failed\n");
	return failed == 0 ? 0 : 1;
}

/// Writes each failure as it comes, so that the list needs no memory and a reader sees it grow.
int CheckAsJson(const Options& options)
{
	ConsoleOutput console;
	JsonWriter json(console);
	json.BeginObject();
	json.NewLine(1);
	json.Key("failures");
	json.BeginArray();
	const auto [loaded, failed] = CheckAll(options,
										   [&json](const std::string& path, const Finding& finding)
										   {
											   json.NewLine(2);
											   json.BeginObject();
											   json.Member("path", std::string_view(path));
											   WriteFinding(json, finding);
											   json.EndObject();
										   });
	json.EndArray();
	json.NewLine(1);
	json.Member("loaded", loaded);
	json.NewLine(1);
	json.Member("failed", failed);
	json.NewLine(0);
	json.EndObject();
	json.Finish();
	return failed == 0 ? 0 : 1;
}
} // namespace

void AddCheckCommand(CommandLine& commandLine)
{
	const auto options = std::make_shared<Options>();
	Command command = commandLine.AddCommand(
		"check", "Load every .svg file under the paths and say which fail",
		[options](Modules&) { return options->asJson ? CheckAsJson(*options) : CheckForPeople(*options); });
	command.AddArguments("PATH", "Files and folders; - is standard input", options->paths);
	AddJobsOption(command, options->jobs);
	command.AddFlag("--json", "Print JSON", options->asJson);
}

} // namespace orvan::program
