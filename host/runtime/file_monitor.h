// SPDX-License-Identifier: MIT
/// The monitor behind `FileWatch` and `FileMonitorPump`.
#pragma once

#include "orvan/file_monitor.h"

namespace orvan::runtime
{

ErrorBlock* WatchFile(const Url& url, FileChangeCallback callback, void* context,
					  MonitorRegistration** result) noexcept;
ErrorBlock* FollowFile(const Url& url, FileChangeHandler handler, void* context, const FileWatchOptions& options,
					   MonitorRegistration** result) noexcept;
void RetryPostponed() noexcept;
void UnwatchFile(MonitorRegistration* registration) noexcept;

} // namespace orvan::runtime
