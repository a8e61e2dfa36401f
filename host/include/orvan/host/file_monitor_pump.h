// SPDX-License-Identifier: MIT
/// For host programs: driving the file monitor.
///
/// The monitor has no thread of its own. A host with an event loop polls the descriptor for input, and calls
/// `DispatchDue` when it becomes readable and when `GetTimeout` has passed; a host without one calls `Wait` in a loop.
#pragma once

#include "orvan/result.h"

namespace orvan
{

/// All members must be called from one thread at a time. Watches may be started and ended inside of callbacks.
class FileMonitorPump
{
public:
	/// A descriptor that is readable when the monitor has something to do; -1 when nothing has ever been watched.
	static int GetDescriptor() noexcept;

	/// Milliseconds until `DispatchDue` should be called although the descriptor is not readable: a burst of changes is
	/// reported when it has been quiet for a moment. -1 when there is no such need.
	static int GetTimeout() noexcept;

	/// Reads what the system has to say and calls the callbacks that are due. Never blocks. The result is the number of
	/// callbacks made.
	static int DispatchDue() noexcept;

	/// Waits at most `milliseconds` (-1: without end) for callbacks and makes them; returns their number, which is 0
	/// when the time has passed or a signal came.
	static int Wait(int milliseconds) noexcept;
};

} // namespace orvan
