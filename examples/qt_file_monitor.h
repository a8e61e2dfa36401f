// SPDX-License-Identifier: MIT
/// The file monitor in a Qt event loop:
///
///     QGuiApplication application(count, arguments);
///     const QtFileMonitor monitor;
///     …
///     return application.exec();
///
/// Programs define QT_NO_KEYWORDS, as Qt asks for beside other libraries: a macro `slots` would get into the host's
/// headers.
#pragma once

#include <orvan/host/file_monitor_pump.h>

#include <QSocketNotifier>
#include <QTimer>

/// Makes the callbacks of watched files, such as the reloads of icons, for as long as it lives. Made on the thread that
/// uses the icons, which runs the event loop.
class QtFileMonitor
{
public:
	QtFileMonitor() : _notifier(orvan::FileMonitorPump::GetDescriptor(), QSocketNotifier::Read)
	{
		_timer.setSingleShot(true);
		QObject::connect(&_notifier, &QSocketNotifier::activated, &_timer, [this] { Dispatch(); });
		QObject::connect(&_timer, &QTimer::timeout, &_timer, [this] { Dispatch(); });
		Dispatch(); // What was watched before.
	}

private:
	void Dispatch()
	{
		orvan::FileMonitorPump::DispatchDue();
		// A burst of changes is reported when it has been quiet for a moment.
		const int timeout = orvan::FileMonitorPump::GetTimeout();
		if (timeout >= 0)
			_timer.start(timeout);
		else
			_timer.stop();
	}

	QSocketNotifier _notifier;
	QTimer _timer;
};
