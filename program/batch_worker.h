// SPDX-License-Identifier: MIT
/// A process of a batch that is watched: what takes too long, or ends its process, costs its row and not the run.
#pragma once

#include "batch/operations.h"

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <sys/types.h>

namespace orvan::program
{

/// Runs chunks, one at a time, in a process of its own that is a copy of this one. Used while there are no other
/// threads.
class BatchWorker
{
public:
	explicit BatchWorker(const batch::BatchOptions& options);
	BatchWorker(const BatchWorker&) = delete;
	/// Ends the process, whatever it does.
	~BatchWorker();

	bool IsBusy() const
	{
		return _chunk.has_value();
	}

	/// What to wait at for an answer.
	int GetFile() const
	{
		return _socket;
	}

	/// Begins a chunk; the last one must be done.
	void Begin(batch::Chunk chunk);

	/// Looks after the chunk at hand, more often than its deadline; `hasAnswer` says that there is something to read.
	/// Returns what became of the chunk when it is done. An input at which the process took too long, or ended twice,
	/// has failed, and the rest is done by a new process. Throws `std::runtime_error` when the shard cannot be written.
	std::optional<batch::ChunkCounts> Look(bool hasAnswer);

private:
	void Start();
	[[noreturn]] void Serve(int socket);
	/// Ends the process and says how it has ended.
	std::string Stop();
	/// Gives the chunk at hand to the process, or to a new one.
	void Send();
	/// Takes note of the input at which the process has ended.
	void NoteEnd();

	const batch::BatchOptions& _options;
	std::int64_t* _place; ///< The number of the input at hand, shared with the process.
	pid_t _process = -1;
	int _socket = -1;
	std::optional<batch::Chunk> _chunk;
	std::map<std::int64_t, int> _ends; ///< How often the process has ended at an input of the chunk.
	std::int64_t _at = -1;             ///< The input that was at hand when it was looked last, and since when.
	std::chrono::steady_clock::time_point _since;
};

} // namespace orvan::program
