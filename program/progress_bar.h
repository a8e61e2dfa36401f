/// A progress bar on standard error.
#pragma once

#include <cstddef>
#include <string>

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

	void Show(std::size_t done, std::size_t failed);

	/// Takes the bar off the terminal, before something else is printed.
	void Hide();

private:
	std::size_t _total;
	bool _isOnTerminal;
	std::string _shown;
};

} // namespace orvan::program
