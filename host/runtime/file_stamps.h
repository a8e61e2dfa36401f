// SPDX-License-Identifier: MIT
/// Taking stamps of files.
#pragma once

#include "orvan/file_stamp.h"

#include <sys/stat.h>

namespace orvan::runtime
{

/// The stamp that goes with what the system has just said about a file.
FileStamp StampOf(const struct stat& status) noexcept;

/// The stamp of what stands at `path`, at the end of all links; all zero when nothing does.
FileStamp StampOfPath(const char* path) noexcept;

} // namespace orvan::runtime
