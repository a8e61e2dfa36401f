// SPDX-License-Identifier: MIT
/// What a batch does with each input.
#pragma once

#include "batch/inputs.h"
#include "batch/options.h"
#include "batch/shard.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace orvan::batch
{

/// Some inputs, in their order, and where their results go.
struct Chunk
{
	std::string folder;
	std::int64_t first = 0; ///< The number of the first input.
	std::vector<Input> inputs;
	/// What is known to fail, by the number of the input, and why: it is not tried again.
	std::map<std::int64_t, std::string> failures;
};

/// True when an operation asks the geometry module, or the renderer, which must be open then.
bool NeedsGeometry(Operation operation);
bool NeedsRenderer(Operation operation);

/// What became of a chunk.
struct ChunkCounts
{
	std::int64_t done = 0;
	std::int64_t notDone = 0;
};

/// Works through a chunk and writes its shard. Every input has one row: its number, name, size and hash, and what
/// became of it, "done", "refused" with line and column, "failed" or "unreadable" with a message. `place` has the
/// number of the input at hand, -1 before and after. Throws when the shard cannot be written. Several threads may run
/// chunks, each with a reader of its own.
ChunkCounts RunChunk(const Chunk& chunk, const BatchOptions& options, InputReader& reader, std::int64_t& place);

} // namespace orvan::batch
