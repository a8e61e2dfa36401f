// SPDX-License-Identifier: MIT
/// Loading many files at once.
#pragma once

#include "document_loading.h"

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace orvan::program
{

/// Loads files on threads of its own, each file into a document of its own, which is released at once. Destroying it
/// stops after the files that are being loaded.
class ParallelCheck
{
public:
	ParallelCheck(const std::vector<std::string>& files, unsigned threadCount);
	ParallelCheck(const ParallelCheck&) = delete;
	~ParallelCheck();

	/// Waits, but not for long, until the file at `index` has been loaded. Returns true when it has.
	bool WaitFor(std::size_t index);

	/// Why the file at `index`, which must have been loaded, failed; none when it did not.
	const std::optional<Finding>& GetRefusal(std::size_t index) const
	{
		return _outcomes[index].refusal;
	}

	struct Counts
	{
		std::size_t done;
		std::size_t failed;
	};

	Counts GetCounts();

private:
	struct Outcome
	{
		bool isDone = false;
		std::optional<Finding> refusal;
	};

	void Work();

	const std::vector<std::string>& _files;
	std::vector<Outcome> _outcomes;
	std::mutex _mutex;
	std::condition_variable _progress;
	std::size_t _next = 0;
	Counts _counts{};
	std::vector<std::jthread> _threads;
};

} // namespace orvan::program
