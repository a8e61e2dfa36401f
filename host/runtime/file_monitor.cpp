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

ErrorBlock* WatchFile(const Url& url, FileChangeCallback callback, void* context, MonitorRegistration** result) noexcept
{
	try
	{
		Result<MonitorRegistration*> started = Monitor::Get().Start(url, callback, context);
		if (!started.IsOk())
			return started.GetError().Release();
		*result = started.GetValue();
		return nullptr;
	}
	catch (const std::bad_alloc&)
	{
		return OutOfMemoryError().Release();
	}
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

int FileMonitorPump::DispatchDue() noexcept
{
	return runtime::Monitor::Get().Dispatch();
}

int FileMonitorPump::Wait(int milliseconds) noexcept
{
	using runtime::Clock;
	const auto end = Clock::now() + std::chrono::milliseconds(std::max(0, milliseconds));
	for (;;)
	{
		if (const int count = DispatchDue(); count > 0)
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

} // namespace orvan
