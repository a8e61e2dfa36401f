// SPDX-License-Identifier: MIT
/// Filling outlines without the drawing library, where there is nothing but pixels to fill.
#pragma once

#include "canvas.h"
#include "drawing/outline.h"

namespace orvan::cairo
{

/// Fills an outline with the canvas's source, and tells whether it did. It does where the canvas is a surface of pixels
/// without a transform of its own, nothing is clipped but at whole pixels, and the area is not too large; all else is
/// the drawing library's. The result is the same but for the last bits of soft edges.
///
/// `bounds` is a box around the outline once it is transformed, all of whose coordinates are finite.
bool FillPlainly(const Canvas& canvas, const drawing::Outline& outline, const Matrix2d& transform,
				 const drawing::Rectangle& bounds, SVGFillRule rule) noexcept;

/// The same for the solid stroke of a shape; `bounds` is a box around what it paints.
bool StrokePlainly(const Canvas& canvas, const drawing::Frame& frame, const drawing::Outline& outline,
				   const drawing::Rectangle& bounds) noexcept;

} // namespace orvan::cairo
