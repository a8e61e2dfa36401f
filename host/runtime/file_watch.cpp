// SPDX-License-Identifier: MIT
#include "file_watch.h"

#include "file_stamps.h"

#include <algorithm>

namespace orvan
{
namespace
{

constexpr std::chrono::milliseconds kQuiet(50);
constexpr std::chrono::milliseconds kLongestBurst(1000);

} // namespace

bool MonitorRegistration::TakeStamp() noexcept
{
	const FileStamp now = runtime::StampOfPath(path.c_str());
	const bool isChanged = now.MayDifferFrom(reported);
	reported = now;
	return isChanged;
}

void MonitorRegistration::Note(runtime::Clock::time_point now) noexcept
{
	if (!isDue)
		burstBegin = now;
	isDue = true;
	const auto latest = burstBegin + kLongestBurst;
	deadline = hasWriter ? latest : std::min(now + kQuiet, latest);
}

} // namespace orvan
