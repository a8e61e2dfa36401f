// SPDX-License-Identifier: MIT
/// One watch of the file monitor: what it waits for and when it is due.
#pragma once

#include "orvan/services.h"

#include <chrono>
#include <ctime>
#include <string>
#include <sys/types.h>
#include <vector>

namespace orvan
{
namespace runtime
{

using Clock = std::chrono::steady_clock;

/// What tells one content of a path from another without reading it. All zero while there is no file.
struct FileIdentity
{
	/// The identity of what stands at `path` now.
	static FileIdentity Of(const std::string& path) noexcept;

	/// True when the file was changed so short a time ago that a further change may leave the identity as it is: file
	/// systems take their time from a clock that moves in steps.
	bool IsTooRecent() const noexcept;

	friend bool operator==(const FileIdentity&, const FileIdentity&) noexcept = default;

	dev_t device = 0;
	ino_t inode = 0;
	off_t size = 0;
	std::int64_t modified = 0; ///< Nanoseconds, as the next one.
	std::int64_t changed = 0;
};

/// A name in a folder that the system watches for us.
struct WatchedName
{
	int folder; ///< The system's number of the folder's watch.
	std::string name;
	bool isLast; ///< The file itself, or a link to it, rather than a folder on the way.
};

} // namespace runtime

/// What a `FileWatch` holds.
struct MonitorRegistration
{
	/// Notes that something happened. A burst is over when nothing has happened for a moment and no writer has the file
	/// open; it is over at the latest after a second, so that a file that is always being written is reported too.
	void Note(runtime::Clock::time_point now) noexcept;

	/// Takes the file as it is now for reported; true when it differs, or may differ, from what was reported before.
	bool TakeIdentity() noexcept;

	std::string path;
	FileChangeCallback callback;
	void* context;

	std::vector<runtime::WatchedName> names;
	runtime::FileIdentity reported; ///< As of the last report, or of the start.
	bool isUncertain = false;       ///< That identity was too recent to tell a further change by it.

	bool isDue = false;
	bool hasWriter = false;   ///< A writer has not closed the file yet.
	bool mustFollow = false;  ///< The path may lead elsewhere now.
	bool isUnwatched = false; ///< The system refused; tried again when due.
	runtime::Clock::time_point burstBegin;
	runtime::Clock::time_point deadline;
};

} // namespace orvan
