// SPDX-License-Identifier: MIT
/// A progress bar on standard error.
#pragma once

#include <chrono>
#include <cstddef>

namespace orvan::program
{

/// Shows how far a task has come, on a terminal; elsewhere it does nothing. Used by one thread. The bar is gone when
/// the object is.
class ProgressBar
{
public:
	explicit ProgressBar(std::size_t total);
	ProgressBar(const ProgressBar&) = delete;
	~ProgressBar();

	/// Draws the bar, unless it was drawn only a moment ago.
	void Show(std::size_t done, std::size_t failed);

	/// Takes the bar off the terminal, before something else is printed.
	void Hide();

private:
	std::size_t _total;
	bool _isOnTerminal;
	bool _isShown = false;
	std::chrono::steady_clock::time_point _nextTime;
};

} // namespace orvan::program
