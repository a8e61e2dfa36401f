// SPDX-License-Identifier: MIT
/// What a batch is asked for.
#pragma once

#include "svg_geometry.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvan::batch
{

/// What is made of each input.
enum class Operation
{
	report,     ///< Rows with all findings.
	check,      ///< Rows alone.
	columns,    ///< Everything that is painted, as columns of plain paths.
	boxes,      ///< The boxes of all elements, as columns.
	thumbnails, ///< A PNG of each.
	repair,     ///< The files of which the plain import refuses values, with these rewritten.
};

/// By the numbers of `Operation`.
inline constexpr std::array<std::string_view, 6> kOperationNames = {"report", "check",      "columns",
																	"boxes",  "thumbnails", "repair"};

/// The operation of a name; none for others.
std::optional<Operation> FindOperation(std::string_view name);

/// What may become of clip paths in columns, by the numbers of `SVGNormalizedClips`.
inline constexpr std::array<std::string_view, 2> kClipNames = {"ignored", "applied"};

/// What a name says of clip paths; none for others.
std::optional<SVGNormalizedClips> FindClips(std::string_view name);

struct BatchOptions
{
	Operation operation = Operation::report;
	bool isComplete = true;
	bool isTolerant = true;
	std::string styleSheet = {};
	std::int64_t thumbnailSize = 64; ///< Width and height, in pixels.
	SVGNormalizeOptions normalize = {};
	SVGNormalizedClips clips = SVGNormalizedClips::ignored; ///< Of columns.
	/// Seconds for each input: what is drawn then is left at that. Whoever runs chunks ends a worker that takes longer.
	double deadline = 30.0;
	std::int64_t memory = 0; ///< Bytes for each worker, which its process has to see to; 0 for no bound.
	std::int64_t chunkSize = 2000;
};

/// What is wrong with the options; empty when nothing is.
std::string FindFault(const BatchOptions& options);

/// Says what a run was asked for, in JSON: `manifest.json`.
std::string MakeManifest(const std::vector<std::string>& sources, const BatchOptions& options);

/// Begins a run in a folder, which is made, or goes on with the one that is there; takes away what an interruption left
/// behind. Throws `std::invalid_argument` when the folder has another run, `std::runtime_error` when it cannot be
/// written.
void BeginRun(const std::string& folder, const std::string& manifest);

/// Where the results of a chunk go: a folder of the run's, by the number of its first input.
std::string GetChunkFolder(const std::string& folder, std::int64_t first, std::int64_t chunkSize);

} // namespace orvan::batch
