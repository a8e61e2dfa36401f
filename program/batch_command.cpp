// SPDX-License-Identifier: MIT
#include "batch/operations.h"
#include "commands.h"
#include "console.h"
#include "file_arguments.h"
#include "geometry_access.h"
#include "import_arguments.h"
#include "modules.h"

#include <exception>
#include <filesystem>
#include <memory>
#include <mutex>
#include <thread>

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
	bool outlinesStrokes = false;
	std::string clips = "ignored";
	ImportArguments import;
	batch::BatchOptions wanted;
};

/// The chunks of a run that are not there yet, taken by several threads. Only what is taken is in memory.
class Chunks
{
public:
	Chunks(const std::vector<std::string>& sources, std::string folder, std::int64_t size)
		: _inputs(sources), _folder(std::move(folder)), _size(size)
	{
	}

	/// The next one; none at the end, and after `Stop`.
	std::optional<batch::Chunk> Take()
	{
		const std::lock_guard lock(_mutex);
		while (!_isStopped)
		{
			batch::Chunk chunk{batch::GetChunkFolder(_folder, _next, _size), _next, {}, {}};
			while (static_cast<std::int64_t>(chunk.inputs.size()) < _size)
			{
				std::optional<batch::Input> input = _inputs.Next();
				if (!input)
					break;
				chunk.inputs.push_back(std::move(*input));
			}
			_next += static_cast<std::int64_t>(chunk.inputs.size());
			if (chunk.inputs.empty())
				return std::nullopt;
			std::error_code ignored;
			if (!fs::is_directory(chunk.folder, ignored))
				return chunk;
			_skipped += static_cast<std::int64_t>(chunk.inputs.size());
		}
		return std::nullopt;
	}

	/// Has all threads end, and keeps the first reason.
	void Stop(std::exception_ptr reason)
	{
		const std::lock_guard lock(_mutex);
		_isStopped = true;
		if (!_reason)
			_reason = std::move(reason);
	}

	void RethrowReason() const
	{
		if (_reason)
			std::rethrow_exception(_reason);
	}

	/// How many inputs have results from an earlier run.
	std::int64_t GetSkippedCount() const
	{
		return _skipped;
	}

private:
	std::mutex _mutex;
	batch::InputList _inputs;
	const std::string _folder;
	const std::int64_t _size;
	std::int64_t _next = 0;
	std::int64_t _skipped = 0;
	bool _isStopped = false;
	std::exception_ptr _reason;
};

/// Runs chunks until there are no more.
class Runner
{
public:
	Runner(Chunks& chunks, const batch::BatchOptions& options) : _chunks(chunks), _options(options)
	{
	}

	void Run()
	{
		try
		{
			batch::InputReader reader;
			std::int64_t place = 0; // Nobody watches: a thread cannot be ended.
			while (const std::optional<batch::Chunk> chunk = _chunks.Take())
				Count(batch::RunChunk(*chunk, _options, reader, place));
		}
		catch (...)
		{
			_chunks.Stop(std::current_exception());
		}
	}

	batch::ChunkCounts GetCounts() const
	{
		return _counts;
	}

private:
	void Count(const batch::ChunkCounts& counts)
	{
		const std::lock_guard lock(_mutex);
		_counts.done += counts.done;
		_counts.notDone += counts.notDone;
		if (ErrorIsTerminal())
			PrintError("\x1b[A\x1b[K" + std::to_string(_counts.done + _counts.notDone) + " inputs");
	}

	Chunks& _chunks;
	const batch::BatchOptions& _options;
	std::mutex _mutex;
	batch::ChunkCounts _counts;
};

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
	Runner runner(chunks, wanted);
	if (ErrorIsTerminal())
		PrintError("");
	{
		std::vector<std::jthread> threads;
		for (std::size_t i = 0; i < GetThreadCount(options.jobs); i++)
			threads.emplace_back([&] { runner.Run(); });
	}
	chunks.RethrowReason();
	const batch::ChunkCounts counts = runner.GetCounts();
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
	command.AddPositiveNumber({.names = "--deadline", .help = "Seconds that a picture may take (30)", .value = "S"},
							  options->wanted.deadline);
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
