// SPDX-License-Identifier: MIT
/// The boxes of strokes.
#pragma once

#include "outline.h"
#include "svg_geometry.h"

namespace orvan::drawing
{

/// The box of a stroke along an outline, without dashes: `pen` leads from the outline's coordinates to those in which
/// the pen is round, and `target` from there to those of the box. Tight around curves, joins and caps.
Rectangle GetStrokeBounds(const Outline& outline, const SVGStroke& stroke, const Matrix2d& pen,
						  const Matrix2d& target) noexcept;

} // namespace orvan::drawing
