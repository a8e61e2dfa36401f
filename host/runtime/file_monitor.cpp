// SPDX-License-Identifier: MIT
#include "file_monitor.h"

#include "monitor.h"
#include "orvan/host/file_monitor_pump.h"

#include <algorithm>
#include <cerrno>
#include <new>
#include <poll.h>

namespace orvan::runtime
{
namespace
{

/// Starts a watch for one of the two kinds of functions to call.
Result<MonitorRegistration*> Start(const Url& url, FileChangeCallback callback, FileChangeHandler handler,
								   void* context, const FileWatchOptions& options) noexcept
{
	try
	{
		auto watch = std::make_unique<MonitorRegistration>();
		watch->callback = callback;
		watch->handler = handler;
		watch->context = context;
		watch->owner = ORVAN_TRY(WeakRef::To(options.owner));
		return Monitor::Get().Start(std::move(watch), url, options.loaded);
	}
	catch (const std::bad_alloc&)
	{
		return OutOfMemoryError();
	}
}

ErrorBlock* Hand(Result<MonitorRegistration*> started, MonitorRegistration** result) noexcept
{
	if (!started.IsOk())
		return started.GetError().Release();
	*result = started.GetValue();
	return nullptr;
}

} // namespace

ErrorBlock* WatchFile(const Url& url, FileChangeCallback callback, void* context, MonitorRegistration** result) noexcept
{
	return Hand(Start(url, callback, nullptr, context, {}), result);
}

ErrorBlock* FollowFile(const Url& url, FileChangeHandler handler, void* context, const FileWatchOptions& options,
					   MonitorRegistration** result) noexcept
{
	return Hand(Start(url, nullptr, handler, context, options), result);
}

void RetryPostponed() noexcept
{
	Monitor::Get().RetryPostponed();
}

void UnwatchFile(MonitorRegistration* registration) noexcept
{
	Monitor::Get().Stop(registration);
}

} // namespace orvan::runtime

namespace orvan
{

int FileMonitorPump::GetDescriptor() noexcept
{
	return runtime::Monitor::Get().GetDescriptor();
}

int FileMonitorPump::GetTimeout() noexcept
{
	return runtime::Monitor::Get().GetTimeout();
}

int FileMonitorPump::DispatchDue(FileChangeObserver observer, void* context) noexcept
{
	return runtime::Monitor::Get().Dispatch(observer, context);
}

int FileMonitorPump::Wait(int milliseconds, FileChangeObserver observer, void* context) noexcept
{
	using runtime::Clock;
	const auto end = Clock::now() + std::chrono::milliseconds(std::max(0, milliseconds));
	for (;;)
	{
		if (const int count = DispatchDue(observer, context); count > 0)
			return count;
		const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
		if (milliseconds >= 0 && left <= 0)
			return 0;
		const int due = GetTimeout();
		int timeout = milliseconds < 0 ? -1 : static_cast<int>(left);
		if (due >= 0 && (timeout < 0 || due < timeout))
			timeout = due;
		pollfd descriptor{GetDescriptor(), POLLIN, 0};
		if (poll(&descriptor, 1, timeout) < 0 && errno == EINTR)
			return 0;
	}
}

int FileMonitorPump::CountWatches() noexcept
{
	return runtime::Monitor::Get().CountWatches();
}

} // namespace orvan
