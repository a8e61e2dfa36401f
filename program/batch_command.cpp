// SPDX-License-Identifier: MIT
#include "batch_worker.h"
#include "commands.h"
#include "console.h"
#include "file_arguments.h"
#include "geometry_access.h"
#include "import_arguments.h"
#include "modules.h"

#include <filesystem>
#include <memory>
#include <poll.h>

namespace orvan::program
{
namespace
{
namespace fs = std::filesystem;

struct Options
{
	std::vector<std::string> sources;
	std::string output;
	std::string operation = "report";
	std::optional<std::uint32_t> jobs;
	std::optional<std::uint32_t> size;
	std::optional<std::uint32_t> chunkSize;
	std::optional<std::uint32_t> memory;
	bool outlinesStrokes = false;
	std::string clips = "ignored";
	ImportArguments import;
	batch::BatchOptions wanted;
};

/// The chunks of a run that are not there yet. Only what is taken is in memory.
class Chunks
{
public:
	Chunks(const std::vector<std::string>& sources, std::string folder, std::int64_t size)
		: _inputs(sources), _folder(std::move(folder)), _size(size)
	{
	}

	/// The next one; none at the end.
	std::optional<batch::Chunk> Take()
	{
		while (true)
		{
			batch::Chunk chunk{
				batch::GetChunkFolder(_folder, _next, _size), _next, _inputs.Take(static_cast<std::size_t>(_size)), {}};
			_next += static_cast<std::int64_t>(chunk.inputs.size());
			if (chunk.inputs.empty())
				return std::nullopt;
			std::error_code ignored;
			if (!fs::is_directory(chunk.folder, ignored))
				return chunk;
			_skipped += static_cast<std::int64_t>(chunk.inputs.size());
		}
	}

	/// How many inputs have results from an earlier run.
	std::int64_t GetSkippedCount() const
	{
		return _skipped;
	}

private:
	batch::InputList _inputs;
	const std::string _folder;
	const std::int64_t _size;
	std::int64_t _next = 0;
	std::int64_t _skipped = 0;
};

/// Runs chunks until there are no more.
batch::ChunkCounts Run(Chunks& chunks, const batch::BatchOptions& options, std::size_t jobs)
{
	constexpr int kMilliseconds = 50; // Between looks at what takes long.
	std::vector<std::unique_ptr<BatchWorker>> workers;
	for (std::size_t i = 0; i < jobs; i++)
		workers.push_back(std::make_unique<BatchWorker>(options));
	batch::ChunkCounts counts;
	std::optional<batch::Chunk> next = chunks.Take(); // Listed while the workers work.
	while (true)
	{
		std::vector<pollfd> files;
		std::vector<BatchWorker*> busy;
		for (const auto& worker : workers)
		{
			if (next && !worker->IsBusy())
			{
				worker->Begin(std::move(*next));
				next = chunks.Take();
			}
			if (!worker->IsBusy())
				continue;
			busy.push_back(worker.get());
			files.push_back({worker->GetFile(), POLLIN, 0});
		}
		if (busy.empty())
			return counts;
		if (poll(files.data(), files.size(), kMilliseconds) < 0)
			continue;
		for (std::size_t i = 0; i < busy.size(); i++)
		{
			const auto done = busy[i]->Look(files[i].revents != 0);
			if (!done)
				continue;
			counts.done += done->done;
			counts.notDone += done->notDone;
			if (ErrorIsTerminal())
				PrintError("\x1b[A\x1b[K" + std::to_string(counts.done + counts.notDone) + " inputs");
		}
	}
}

std::vector<std::string> MakeAbsolute(const std::vector<std::string>& sources)
{
	std::vector<std::string> absolute;
	for (const std::string& source : sources)
	{
		const bool isList = source.starts_with('@');
		const fs::path path = fs::absolute(isList ? source.substr(1) : source).lexically_normal();
		absolute.push_back((isList ? "@" : "") + path.native());
		if (absolute.back().ends_with('/'))
			absolute.back().pop_back();
	}
	return absolute;
}

batch::BatchOptions MakeOptions(const Options& options)
{
	batch::BatchOptions wanted = options.wanted;
	const auto operation = batch::FindOperation(options.operation);
	if (!operation)
		throw UsageFailure("There is no operation " + options.operation);
	wanted.operation = *operation;
	const SVGImportOptions import = options.import.GetOptions();
	wanted.isComplete = import.isComplete;
	wanted.isTolerant = import.isTolerant;
	wanted.styleSheet = import.styleSheet.View();
	wanted.thumbnailSize = options.size.value_or(static_cast<std::uint32_t>(wanted.thumbnailSize));
	wanted.chunkSize = options.chunkSize.value_or(static_cast<std::uint32_t>(wanted.chunkSize));
	wanted.memory = std::int64_t{options.memory.value_or(0)} << 20;
	const auto clips = batch::FindClips(options.clips);
	if (!clips)
		throw UsageFailure("Clip paths are ignored or applied");
	wanted.clips = *clips;
	if (options.outlinesStrokes)
		wanted.normalize.strokes = SVGNormalizedStrokes::outlined;
	if (const std::string fault = batch::FindFault(wanted); !fault.empty())
		throw UsageFailure(fault);
	return wanted;
}

int RunBatch(const Options& options, Modules& modules)
{
	const batch::BatchOptions wanted = MakeOptions(options);
	if (batch::NeedsGeometry(wanted.operation))
		LoadGeometryModule(modules);
	if (batch::NeedsRenderer(wanted.operation))
		modules.LoadOtherModules();
	const std::vector<std::string> sources = MakeAbsolute(options.sources);
	const std::string folder = MakeAbsolute({options.output})[0];
	Chunks chunks(sources, folder, wanted.chunkSize);
	batch::BeginRun(folder, batch::MakeManifest(sources, wanted));
	if (ErrorIsTerminal())
		PrintError("");
	const batch::ChunkCounts counts = Run(chunks, wanted, GetThreadCount(options.jobs));
	Print(std::to_string(counts.done) + " done, " + std::to_string(counts.notDone) + " not, " +
		  std::to_string(chunks.GetSkippedCount()) + " there already\n");
	return counts.notDone == 0 ? 0 : 1;
}
} // namespace

void AddBatchCommand(CommandLine& commandLine)
{
	const auto options = std::make_shared<Options>();
	Command command =
		commandLine.AddCommand("batch", "Work through any number of drawings, and go on after an interruption",
							   [options](Modules& modules) { return RunBatch(*options, modules); });
	command.AddArguments("SOURCE",
						 "Folders, drawings, archives (.zip and .tar, or .tar.gz, .tar.xz, .tar.zst), patterns, or "
						 "@FILE: a list of these",
						 options->sources);
	command.AddText({.names = "-o,--output", .help = "Where the results go", .value = "DIR", .isRequired = true},
					options->output);
	command.AddText({.names = "--operation",
					 .help = "report (when not given), check, columns, boxes, thumbnails or repair",
					 .value = "WHAT"},
					options->operation);
	AddJobsOption(command, options->jobs);
	options->import.AddTo(command, ImportArguments::Default::asDrawn);
	command.AddNumber({.names = "--chunk-size", .help = "Inputs in one folder of results (2000)", .value = "N"},
					  options->chunkSize, 1, 1'000'000);
	command.AddNumber({.names = "--size", .help = "Of thumbnails, in pixels (64)", .value = "N"}, options->size, 1,
					  16384);
	command.AddPositiveNumber(
		{.names = "--deadline", .help = "Seconds for each drawing, which has failed then (30)", .value = "S"},
		options->wanted.deadline);
	command.AddNumber({.names = "--memory", .help = "MiB for each worker (no bound)", .value = "MIB"}, options->memory,
					  64, 1 << 24);
	SVGNormalizeOptions& normalize = options->wanted.normalize;
	command.AddFlag("--outline-strokes", "Columns: make areas of strokes", options->outlinesStrokes);
	command.AddText({.names = "--clips",
					 .help = "Columns: what becomes of clip paths: ignored (when not given) or applied",
					 .value = "WHAT"},
					options->clips);
	command.AddPositiveNumber(
		{.names = "--flatten", .help = "Columns: straight lines only, no farther off than this", .value = "D"},
		normalize.flattening);
	command.AddPositiveNumber(
		{.names = "--grid", .help = "Columns: fit the pictures into squares of this side", .value = "SIDE"},
		normalize.grid);
	command.AddPositiveNumber(
		{.names = "--precision", .help = "Columns: round coordinates to multiples of this", .value = "STEP"},
		normalize.precision);
}

} // namespace orvan::program
