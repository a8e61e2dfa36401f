// SPDX-License-Identifier: MIT
#include "file_stamps.h"

#include <ctime>

namespace orvan::runtime
{
namespace
{

/// Twice the longest step of the clocks that file systems use.
constexpr std::int64_t kClockStep = 20'000'000;

std::int64_t Nanoseconds(const timespec& time) noexcept
{
	return static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

} // namespace

FileStamp StampOf(const struct stat& status) noexcept
{
	timespec now;
	clock_gettime(CLOCK_REALTIME, &now);
	const std::int64_t changed = Nanoseconds(status.st_ctim);
	return {status.st_dev,  status.st_ino,
			status.st_size, Nanoseconds(status.st_mtim),
			changed,        changed > Nanoseconds(now) - kClockStep};
}

FileStamp StampOfPath(const char* path) noexcept
{
	struct stat status;
	return stat(path, &status) == 0 ? StampOf(status) : FileStamp();
}

} // namespace orvan::runtime
