#include "progress_bar.h"

#include "console.h"

#include <cstdio>

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
	if (!_isOnTerminal)
		return;
	const std::size_t filled = kWidth * done / _total;
	std::string bar = "\r[" + std::string(filled, '#') + std::string(kWidth - filled, '.') + "] " +
					  std::to_string(done) + '/' + std::to_string(_total);
	if (failed != 0)
		bar += ", " + std::to_string(failed) + " failed";
	if (bar == _shown)
		return;
	std::fputs(bar.c_str(), stderr);
	_shown = std::move(bar);
}

void ProgressBar::Hide()
{
	if (_shown.empty())
		return;
	std::fputs("\r\033[K", stderr);
	_shown.clear();
}

} // namespace orvan::program
