// SPDX-License-Identifier: MIT
/// Colours and paint servers as sources of the drawing library.
#pragma once

#include "canvas.h"

namespace orvan::cairo
{

/// What a paint needs to know about the element that it is for.
struct PaintPlace
{
	const drawing::Frame& frame;
	drawing::LazyBox box; ///< The element's bounding box in its own coordinates.
};

/// What became of a paint.
enum class PaintResult
{
	painted, ///< It is the source now.
	nothing, ///< It paints nothing.
	invalid, ///< Its reference leads to no paint server, or to one that cannot be used here: the fallback counts.
};

/// Makes a paint the source of the canvas, whose transform must be the identity. False when nothing is to be painted.
Result<bool> SetSource(const Canvas& canvas, const SVGPaint& paint, double opacity, const PaintPlace& at) noexcept;

/// Makes a colour the source.
void SetColor(cairo_t* drawing, const Color& color, double opacity) noexcept;

/// The fill and the stroke of a style, initial values included.
const SVGPaint& GetFill(const drawing::Style& style) noexcept;
const SVGPaint& GetStroke(const drawing::Style& style) noexcept;

} // namespace orvan::cairo
