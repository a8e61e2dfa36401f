// SPDX-License-Identifier: MIT
/// Owners for the drawing library's objects, and values in its form.
#pragma once

#include "drawing/fonts.h"
#include "orvan/geometry.h"

#include <algorithm>
#include <cmath>

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

/// Gives a pattern the transform from the canvas to its own coordinates; `reach` is how far its colours are from its
/// origin, where it has no pixels. False for a transform that the library cannot turn around, or has no numbers for:
/// with such a source it would take the canvas for broken. There is nothing to see then but many colours in one pixel.
inline bool SetMatrix(cairo_pattern_t* pattern, const Matrix2d& toPattern, double reach = 0.0) noexcept
{
	constexpr double kMost = 32000.0;
	const double largest = std::max({std::abs(toPattern.axis1.x), std::abs(toPattern.axis1.y),
									 std::abs(toPattern.axis2.x), std::abs(toPattern.axis2.y)});
	if (!(largest < std::max(kMost, 0.9 * reach)))
		return false;
	const cairo_matrix_t matrix = ToCairo(toPattern);
	cairo_pattern_set_matrix(pattern, &matrix);
	return cairo_pattern_status(pattern) == CAIRO_STATUS_SUCCESS;
}

} // namespace orvan::cairo
