// SPDX-License-Identifier: MIT
#include "commands.h"
#include "console.h"
#include "json_writer.h"
#include "parallel_check.h"
#include "progress_bar.h"
#include "svg_files.h"

#include <algorithm>
#include <functional>
#include <memory>

namespace orvan::program
{
namespace
{
struct Options
{
	std::vector<std::string> paths;
	unsigned jobs = 0;
	bool asJson = false;
};

using FailureHandler = std::function<void(const std::string& path, const Finding& finding)>;

/// Checks everything and hands over the failures in the order of the files. Returns how many files were fine and how
/// many places failed.
std::pair<std::size_t, std::size_t> CheckAll(const Options& options, const FailureHandler& onFailure)
{
	// The files are listed before the first is loaded, so that the progress bar knows how many there are.
	const SVGFiles found = FindSVGFiles(options.paths);
	for (const auto& [path, reason] : found.troubles)
		onFailure(path, Finding{.text = reason});

	const unsigned processors = std::max(1u, std::thread::hardware_concurrency());
	ParallelCheck check(found.files, options.jobs != 0 ? options.jobs : processors);
	ProgressBar bar(found.files.size());
	for (std::size_t i = 0; i < found.files.size(); i++)
	{
		// Failures are told in the order of the files, although threads may finish in another.
		bool isLoaded = false;
		while (!isLoaded)
		{
			isLoaded = check.WaitFor(i);
			const auto [done, failed] = check.GetCounts();
			bar.Show(done, failed);
		}
		if (const auto& refusal = check.GetRefusal(i))
		{
			bar.Hide();
			onFailure(found.files[i], *refusal);
		}
	}
	// A folder that cannot be read may hide files, so it counts as a failure of its own.
	const auto [done, failed] = check.GetCounts();
	return {done - failed, failed + found.troubles.size()};
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
	JsonWriter json;
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
											   json.Member("reason", std::string_view(OneLine(finding.text)));
											   if (finding.line > 0)
												   json.Member("line", finding.line);
											   if (finding.column > 0)
												   json.Member("column", finding.column);
											   if (!finding.elementName.empty())
												   json.Member("element", std::string_view(finding.elementName));
											   if (!finding.elementId.empty())
												   json.Member("id", std::string_view(finding.elementId));
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
	CLI::App* const command = commandLine.AddCommand(
		"check", "Load every .svg file under the paths and say which fail",
		[options] { return options->asJson ? CheckAsJson(*options) : CheckForPeople(*options); });
	command->add_option("PATH", options->paths, "Files and folders")->required();
	command->add_option("-j,--jobs", options->jobs, "Number of threads (all processors when not given)")
		->check(CLI::Range(1, 1024));
	command->add_flag("--json", options->asJson, "Print JSON");
}

} // namespace orvan::program
