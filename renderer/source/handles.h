// SPDX-License-Identifier: MIT
/// Owners for the drawing libraries' objects.
#pragma once

#include <cairo.h>
#include <pango/pangocairo.h>

#include <memory>

namespace orvan::cairo
{

template <auto release>
struct Releaser
{
	void operator()(auto* handle) const noexcept
	{
		release(handle);
	}
};

using CairoPtr = std::unique_ptr<cairo_t, Releaser<&cairo_destroy>>;
using SurfacePtr = std::unique_ptr<cairo_surface_t, Releaser<&cairo_surface_destroy>>;
using PatternPtr = std::unique_ptr<cairo_pattern_t, Releaser<&cairo_pattern_destroy>>;
using FontOptionsPtr = std::unique_ptr<cairo_font_options_t, Releaser<&cairo_font_options_destroy>>;
using PangoContextPtr = std::unique_ptr<PangoContext, Releaser<&g_object_unref>>;
using PangoLayoutPtr = std::unique_ptr<PangoLayout, Releaser<&g_object_unref>>;
using FontDescriptionPtr = std::unique_ptr<PangoFontDescription, Releaser<&pango_font_description_free>>;

} // namespace orvan::cairo
