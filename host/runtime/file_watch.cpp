// SPDX-License-Identifier: MIT
#include "file_watch.h"

#include <algorithm>
#include <sys/stat.h>

namespace orvan
{
namespace
{

constexpr std::chrono::milliseconds kQuiet(50);
constexpr std::chrono::milliseconds kLongestBurst(1000);

/// Twice the longest step of the clocks that file systems use.
constexpr std::int64_t kClockStep = 20'000'000;

std::int64_t Nanoseconds(const timespec& time) noexcept
{
	return static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

} // namespace

runtime::FileIdentity runtime::FileIdentity::Of(const std::string& path) noexcept
{
	struct stat status;
	if (stat(path.c_str(), &status) != 0)
		return {};
	return {status.st_dev, status.st_ino, status.st_size, Nanoseconds(status.st_mtim), Nanoseconds(status.st_ctim)};
}

bool runtime::FileIdentity::IsTooRecent() const noexcept
{
	timespec now;
	clock_gettime(CLOCK_REALTIME, &now);
	return changed > Nanoseconds(now) - kClockStep;
}

bool MonitorRegistration::TakeIdentity() noexcept
{
	const runtime::FileIdentity now = runtime::FileIdentity::Of(path);
	const bool isChanged = isUncertain || !(now == reported);
	reported = now;
	isUncertain = now.IsTooRecent();
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
