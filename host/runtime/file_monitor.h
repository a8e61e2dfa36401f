// SPDX-License-Identifier: MIT
/// The monitor behind `FileWatch` and `FileMonitorPump`.
#pragma once

#include "orvan/file_monitor.h"

namespace orvan::runtime
{

ErrorBlock* WatchFile(const Url& url, FileChangeCallback callback, void* context,
					  MonitorRegistration** result) noexcept;
void UnwatchFile(MonitorRegistration* registration) noexcept;

} // namespace orvan::runtime
