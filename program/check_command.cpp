// SPDX-License-Identifier: MIT
#include "commands.h"
#include "console.h"
#include "file_arguments.h"
#include "finding_report.h"
#include "import_arguments.h"
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
	ImportArguments import;
	bool asJson = false;
	bool asSarif = false;
};

/// Checks everything and hands it over in the order of the files, although threads finish in another.
CheckCounts CheckAll(const Options& options, const SVGImportOptions& import, FindingReport& report)
{
	constexpr auto kPatience = std::chrono::milliseconds(100); // Between two looks at the progress.
	// The files are listed before the first is loaded, so that the progress bar knows how many there are.
	const SVGFiles found = FindSVGFiles(options.paths, import.isComplete);
	for (const auto& [path, reason] : found.troubles)
		report.AddFailure(path, Finding{.rule = Rule::unreadableFile, .text = reason});
	// A folder that cannot be read may hide files, so it counts as a failure of its own.
	CheckCounts counts{.failed = found.troubles.size()};

	std::atomic<std::size_t> done = 0;
	std::atomic<std::size_t> failed = 0;
	// What remains of a file is little, so that nobody needs to wait for a slow one.
	OrderedTasks<LoadOutcome> tasks(found.files.size(), GetThreadCount(options.jobs), found.files.size(),
									[&](std::size_t index)
									{
										LoadOutcome outcome = LoadDocument(found.files[index], import);
										outcome.document = nullptr;
										failed += outcome.refusal ? 1 : 0;
										done++;
										return outcome;
									});
	ProgressBar bar(found.files.size());
	for (const std::string& file : found.files)
	{
		std::optional<LoadOutcome> outcome;
		while (!outcome)
		{
			outcome = tasks.Take(kPatience);
			bar.Show(done, failed);
		}
		if (outcome->refusal || !outcome->findings.empty())
			bar.Hide();
		for (const Finding& finding : outcome->findings)
			report.AddFinding(file, finding);
		if (outcome->refusal)
			report.AddFailure(file, *outcome->refusal);
		counts.findings += outcome->findingCount;
		(outcome->refusal ? counts.failed : counts.loaded)++;
	}
	return counts;
}

int Check(const Options& options)
{
	if (options.asJson && options.asSarif)
		throw UsageFailure("There is one form of output: --json or --sarif.");
	const SVGImportOptions import = options.import.GetOptions();
	// The plain import has nothing to say about files that it takes.
	const bool tellsFindings = import.isComplete || import.isTolerant;
	const std::unique_ptr<FindingReport> report = options.asSarif  ? MakeSarifReport()
												  : options.asJson ? MakeJsonReport(tellsFindings)
																   : MakeTextReport(tellsFindings);
	const CheckCounts counts = CheckAll(options, import, *report);
	report->Finish(counts);
	return counts.failed == 0 ? 0 : 1;
}
} // namespace

void AddCheckCommand(CommandLine& commandLine)
{
	const auto options = std::make_shared<Options>();
	Command command = commandLine.AddCommand("check", "Load every .svg file under the paths and say which fail",
											 [options](Modules&) { return Check(*options); });
	command.AddArguments("PATH", "Files and folders; - is standard input", options->paths);
	AddJobsOption(command, options->jobs);
	options->import.AddTo(command, ImportArguments::Default::plain);
	command.AddFlag("--json", "Print JSON", options->asJson);
	command.AddFlag("--sarif", "Print a SARIF log, for code review tools", options->asSarif);
}

} // namespace orvan::program
