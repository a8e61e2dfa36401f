// SPDX-License-Identifier: MIT
/// Shows an icon in a window of GTK's, in the colour of its texts, and follows its file: view_gtk ICON.svg
///
/// A click shows the next of the icon's states.
#include "glib_file_monitor.h"
#include "viewed_icon.h"

#include <gtk/gtk.h>

namespace
{

gboolean Draw(GtkWidget* area, cairo_t* cairo, gpointer icon)
{
	GtkStyleContext* const style = gtk_widget_get_style_context(area);
	GdkRGBA text;
	gtk_style_context_get_color(style, gtk_style_context_get_state(style), &text);
	// Pixels of the screen, of which there may be several to one of the window's.
	const int scale = gtk_widget_get_scale_factor(area);
	const auto drawn = static_cast<ViewedIcon*>(icon)->Draw(gtk_widget_get_allocated_width(area) * scale,
															gtk_widget_get_allocated_height(area) * scale,
															{text.red, text.green, text.blue});
	if (!Report(drawn))
		return TRUE;
	const orvan::SVGRenderPixels& pixels = drawn.GetValue();
	cairo_surface_t* const surface = cairo_image_surface_create_for_data(
		const_cast<unsigned char*>(pixels.data), CAIRO_FORMAT_ARGB32, pixels.width, pixels.height, pixels.stride);
	cairo_surface_set_device_scale(surface, scale, scale);
	cairo_set_source_surface(cairo, surface, 0, 0);
	cairo_paint(cairo);
	cairo_surface_destroy(surface);
	return TRUE;
}

gboolean Click(GtkWidget* area, GdkEvent*, gpointer icon)
{
	if (Report(static_cast<ViewedIcon*>(icon)->ShowNextState()))
		gtk_widget_queue_draw(area);
	return TRUE;
}

} // namespace

int main(int count, char** arguments)
{
	gtk_init(&count, &arguments);
	if (count != 2)
		return 2;
	GSource* monitor = NewFileMonitorSource();
	g_source_attach(monitor, nullptr);
	const int status = RunWithModules(
		[&]() -> orvan::Result<void>
		{
			GtkWidget* const area = gtk_drawing_area_new();
			ViewedIcon icon([](void* widget) { gtk_widget_queue_draw(static_cast<GtkWidget*>(widget)); }, area);
			GtkWidget* const window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
			gtk_container_add(GTK_CONTAINER(window), area);
			ORVAN_TRY(icon.Open(arguments[1]));
			gtk_window_set_title(GTK_WINDOW(window), arguments[1]);
			gtk_window_set_default_size(GTK_WINDOW(window), 240, 240);
			gtk_widget_add_events(area, GDK_BUTTON_PRESS_MASK);
			g_signal_connect(area, "draw", G_CALLBACK(&Draw), &icon);
			g_signal_connect(area, "button-press-event", G_CALLBACK(&Click), &icon);
			g_signal_connect(window, "destroy", G_CALLBACK(&gtk_main_quit), nullptr);
			gtk_widget_show_all(window);
			gtk_main();
			return {};
		});
	g_source_destroy(monitor);
	g_source_unref(monitor);
	return status;
}
