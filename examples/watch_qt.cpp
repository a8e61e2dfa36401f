// SPDX-License-Identifier: MIT
/// Follows an icon's file inside of a Qt event loop, until it has changed so many times: watch_qt FILE.svg CHANGES
#include "qt_file_monitor.h"
#include "watched_icon.h"

#include <QCoreApplication>
#include <cstdlib>

int main(int count, char** arguments)
{
	QCoreApplication application(count, arguments);
	if (count != 3)
		return 2;
	return RunWithModule(
		[&]() -> orvan::Result<void>
		{
			const QtFileMonitor monitor;
			WatchedIcon icon(std::atoi(arguments[2]), [] { QCoreApplication::quit(); });
			ORVAN_TRY(icon.Follow(arguments[1]));
			QCoreApplication::exec();
			return {};
		});
}
