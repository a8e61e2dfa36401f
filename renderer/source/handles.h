// SPDX-License-Identifier: MIT
/// Owners for the drawing library's objects, and values in its form.
#pragma once

#include "drawing/fonts.h"
#include "orvan/geometry.h"

#include <cairo.h>

namespace orvan::cairo
{

using CairoPtr = std::unique_ptr<cairo_t, drawing::Releaser<&cairo_destroy>>;
using SurfacePtr = std::unique_ptr<cairo_surface_t, drawing::Releaser<&cairo_surface_destroy>>;
using PatternPtr = std::unique_ptr<cairo_pattern_t, drawing::Releaser<&cairo_pattern_destroy>>;
using FontOptionsPtr = std::unique_ptr<cairo_font_options_t, drawing::Releaser<&cairo_font_options_destroy>>;

inline cairo_matrix_t ToCairo(const Matrix2d& m) noexcept
{
	return {m.axis1.x, m.axis1.y, m.axis2.x, m.axis2.y, m.offset.x, m.offset.y};
}

} // namespace orvan::cairo
