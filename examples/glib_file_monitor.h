// SPDX-License-Identifier: MIT
/// The file monitor in a GLib main loop, and so in every GTK program:
///
///     GSource* monitor = NewFileMonitorSource();
///     g_source_attach(monitor, nullptr);
///     …
///     g_source_destroy(monitor);
///     g_source_unref(monitor);
#pragma once

#include <orvan/host/file_monitor_pump.h>

#include <glib.h>

/// A source that makes the callbacks of watched files, such as the reloads of icons. Attach it to the context of the
/// thread that uses the icons. The caller owns the reference.
inline GSource* NewFileMonitorSource()
{
	struct Source
	{
		GSource base;
		gpointer descriptor; ///< GLib's name for it.
	};
	static GSourceFuncs functions = {
		// A burst of changes is reported when it has been quiet for a moment: that is what the timeout is for.
		[](GSource*, gint* timeout) -> gboolean
		{
			*timeout = orvan::FileMonitorPump::GetTimeout();
			return *timeout == 0;
		},
		[](GSource* source) -> gboolean
		{
			return g_source_query_unix_fd(source, reinterpret_cast<Source*>(source)->descriptor) != 0 ||
				   orvan::FileMonitorPump::GetTimeout() == 0;
		},
		[](GSource*, GSourceFunc, gpointer) -> gboolean
		{
			orvan::FileMonitorPump::DispatchDue();
			return G_SOURCE_CONTINUE;
		},
		nullptr,
		nullptr,
		nullptr};
	GSource* source = g_source_new(&functions, sizeof(Source));
	reinterpret_cast<Source*>(source)->descriptor =
		g_source_add_unix_fd(source, orvan::FileMonitorPump::GetDescriptor(), G_IO_IN);
	return source;
}
