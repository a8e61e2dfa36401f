// SPDX-License-Identifier: MIT
/// Follows an icon's file inside of a GLib main loop, until it has changed so many times: watch_glib FILE.svg CHANGES
#include "glib_file_monitor.h"
#include "watched_icon.h"

#include <cstdlib>

namespace
{

GMainLoop* g_loop = nullptr;

} // namespace

int main(int count, char** arguments)
{
	if (count != 3)
		return 2;
	g_loop = g_main_loop_new(nullptr, FALSE);
	GSource* monitor = NewFileMonitorSource();
	g_source_attach(monitor, nullptr);
	const int status = RunWithModule(
		[&]() -> orvan::Result<void>
		{
			WatchedIcon icon(std::atoi(arguments[2]), [] { g_main_loop_quit(g_loop); });
			ORVAN_TRY(icon.Follow(arguments[1]));
			g_main_loop_run(g_loop);
			return {};
		});
	g_source_destroy(monitor);
	g_source_unref(monitor);
	g_main_loop_unref(g_loop);
	return status;
}
