// SPDX-License-Identifier: MIT
/// For host programs: driving the file monitor.
///
/// The monitor has no thread of its own. A host with an event loop polls the descriptor for input, and calls
/// `DispatchDue` when it becomes readable and when `GetTimeout` has passed; a host without one calls `Wait` in a loop.
#pragma once

#include "orvan/file_monitor.h"

#include <string_view>

namespace orvan
{

/// One callback that was made.
struct FileChangeReport
{
	std::string_view path;     ///< Of the file, absolute; good for the duration of the call.
	ObjectRef owner;           ///< On whose behalf it is watched; null when nobody was named or the object is gone.
	FileChangeOutcome outcome; ///< What the client did.
};

/// Receives the reports of one dispatch, each right after its callback, on the pump's thread.
using FileChangeObserver = void (*)(const FileChangeReport& report, void* context) noexcept;

/// All members must be called from one thread at a time. Watches may be started and ended inside of callbacks, and on
/// other threads, which wakes whoever polls the descriptor.
class FileMonitorPump
{
public:
	/// A descriptor that is readable when the monitor has something to do. Good from the start, before anything is
	/// watched, and always the same; -1 only while the system has none to give.
	static int GetDescriptor() noexcept;

	/// Milliseconds until `DispatchDue` should be called although the descriptor is not readable: a burst of changes is
	/// reported when it has been quiet for a moment. -1 when there is no such need.
	static int GetTimeout() noexcept;

	/// Reads what the system has to say and calls the callbacks that are due. Never blocks. The result is the number of
	/// callbacks made; `observer`, when given, is told of each.
	static int DispatchDue(FileChangeObserver observer = nullptr, void* context = nullptr) noexcept;

	/// Waits at most `milliseconds` (-1: without end) for callbacks and makes them; returns their number, which is 0
	/// when the time has passed or a signal came.
	static int Wait(int milliseconds, FileChangeObserver observer = nullptr, void* context = nullptr) noexcept;

	/// Number of watches in the whole process at this moment.
	static int CountWatches() noexcept;
};

} // namespace orvan
