// SPDX-License-Identifier: MIT
#include "parallel_check.h"

#include <chrono>

namespace orvan::program
{

ParallelCheck::ParallelCheck(const std::vector<std::string>& files, unsigned threadCount)
	: _files(files), _outcomes(files.size())
{
	for (unsigned i = 0; i < threadCount && i < files.size(); i++)
		_threads.emplace_back([this] { Work(); });
}

ParallelCheck::~ParallelCheck()
{
	const std::lock_guard lock(_mutex);
	_next = _files.size();
	// The threads are joined after the lock is gone, by their own destructors.
}

void ParallelCheck::Work()
{
	std::unique_lock lock(_mutex);
	while (_next < _files.size())
	{
		const std::size_t index = _next++;
		// Taking the next file is all that threads share; loading one needs no lock.
		lock.unlock();
		std::optional<Finding> refusal = LoadDocument(_files[index]).refusal;
		lock.lock();
		_counts.done++;
		_counts.failed += refusal.has_value();
		_outcomes[index] = {true, std::move(refusal)};
		_progress.notify_one();
	}
}

bool ParallelCheck::WaitFor(std::size_t index)
{
	constexpr auto kPatience = std::chrono::milliseconds(100); // Between two looks at the progress.
	std::unique_lock lock(_mutex);
	return _progress.wait_for(lock, kPatience, [&] { return _outcomes[index].isDone; });
}

ParallelCheck::Counts ParallelCheck::GetCounts()
{
	const std::lock_guard lock(_mutex);
	return _counts;
}

} // namespace orvan::program
