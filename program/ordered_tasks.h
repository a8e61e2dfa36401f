// SPDX-License-Identifier: MIT
/// Doing many things at once, and getting what comes of them in order.
#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace orvan::program
{

/// Calls a task for each of the numbers from 0 to `count` on threads of its own. Results are taken by one thread, in
/// the order of the numbers. Destroying it stops after the tasks that are running.
template <typename Outcome>
class OrderedTasks
{
public:
	/// What is done for one number. Must not throw.
	using Task = std::function<Outcome(std::size_t index)>;

	/// Tasks run ahead of the results that were taken by at most `lead`, which bounds what waits in memory.
	OrderedTasks(std::size_t count, std::size_t threadCount, std::size_t lead, Task task)
		: _task(std::move(task)), _outcomes(count), _lead(lead), _group(std::clamp<std::size_t>(lead / 8, 1, kMostTold))
	{
		for (std::size_t i = 0; i < std::min(threadCount, count); i++)
			_threads.emplace_back([this] { Work(); });
	}

	OrderedTasks(const OrderedTasks&) = delete;

	~OrderedTasks()
	{
		{
			const std::lock_guard lock(_mutex);
			_isStopped = true;
		}
		_room.notify_all();
		// The threads are joined by their own destructors.
	}

	/// Waits for the next result, at most so long; none when that time has passed. There must be one. Results that come
	/// quickly are told in groups, or after that time, because waking somebody up takes as long as some tasks do.
	std::optional<Outcome> Take(std::chrono::milliseconds patience)
	{
		std::unique_lock lock(_mutex);
		std::optional<Outcome>& outcome = _outcomes[_taken];
		if (!_progress.wait_for(lock, patience, [&] { return outcome.has_value(); }))
			return std::nullopt;
		_taken++;
		_ready--;
		_room.notify_one();
		return std::exchange(outcome, std::nullopt);
	}

private:
	void Work()
	{
		std::unique_lock lock(_mutex);
		while (true)
		{
			_room.wait(lock, [this] { return _isStopped || _next == _outcomes.size() || _next - _taken < _lead; });
			if (_isStopped || _next == _outcomes.size())
				return;
			const std::size_t index = _next++;
			// Taking the next number is all that threads share; a task needs no lock.
			lock.unlock();
			Outcome outcome = _task(index);
			lock.lock();
			_outcomes[index] = std::move(outcome);
			_ready++;
			if (_outcomes[_taken] && (_ready >= _group || _next == _outcomes.size()))
				_progress.notify_one();
		}
	}

	static constexpr std::size_t kMostTold = 32;

	const Task _task;
	std::mutex _mutex;
	std::condition_variable _progress; ///< The next results are there.
	std::condition_variable _room;     ///< A result was taken, so that one more task may run.
	std::vector<std::optional<Outcome>> _outcomes;
	const std::size_t _lead;
	const std::size_t _group; ///< How many results are told at once.
	std::size_t _ready = 0;   ///< Results that were not taken.
	std::size_t _next = 0;
	std::size_t _taken = 0;
	bool _isStopped = false;
	std::vector<std::jthread> _threads;
};

} // namespace orvan::program
