// SPDX-License-Identifier: MIT
/// One watch of the file monitor: what it waits for and when it is due.
#pragma once

#include "orvan/file_monitor.h"

#include <chrono>
#include <string>
#include <vector>

namespace orvan
{
namespace runtime
{

using Clock = std::chrono::steady_clock;

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
	bool TakeStamp() noexcept;

	std::string path;
	FileChangeCallback callback = nullptr;
	FileChangeHandler handler = nullptr; ///< In place of the callback, for clients that tell what they did.
	void* context = nullptr;
	WeakRef owner;

	std::vector<runtime::WatchedName> names;
	FileStamp reported; ///< As of the last report, or of the start.

	bool isDue = false;
	bool hasWriter = false;   ///< A writer has not closed the file yet.
	bool mustFollow = false;  ///< The path may lead elsewhere now.
	bool isUnwatched = false; ///< The system refused; tried again when due.
	bool isPostponed = false; ///< The client has not taken the last report yet.
	bool mustReport = false;  ///< Whatever the file looks like.
	runtime::Clock::time_point burstBegin;
	runtime::Clock::time_point deadline;
};

} // namespace orvan
