// SPDX-License-Identifier: MIT
#include "progress_bar.h"

#include "console.h"

#include <cstdio>
#include <string>

namespace orvan::program
{

ProgressBar::ProgressBar(std::size_t total) : _total(total), _isOnTerminal(ErrorIsTerminal() && total != 0)
{
}

ProgressBar::~ProgressBar()
{
	Hide();
}

void ProgressBar::Show(std::size_t done, std::size_t failed)
{
	constexpr std::size_t kWidth = 40;
	constexpr auto kInterval = std::chrono::milliseconds(100);
	const auto now = std::chrono::steady_clock::now();
	// Terminals are slow: a bar for each of thousands of files would take longer than loading them.
	if (!_isOnTerminal || now < _nextTime)
		return;
	_nextTime = now + kInterval;
	const std::size_t filled = kWidth * done / _total;
	std::string bar = "\r[" + std::string(filled, '#') + std::string(kWidth - filled, '.') + "] " +
					  std::to_string(done) + '/' + std::to_string(_total);
	if (failed != 0)
		bar += ", " + std::to_string(failed) + " failed";
	std::fputs(bar.c_str(), stderr);
	_isShown = true;
}

void ProgressBar::Hide()
{
	if (!_isShown)
		return;
	// Back to the start of the line, and erase it.
	std::fputs("\r\033[K", stderr);
	_isShown = false;
}

} // namespace orvan::program
