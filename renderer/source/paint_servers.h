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
	const drawing::Place& place;      ///< That of the frame, or of what is painted in it.
	const drawing::Rectangle& bounds; ///< The element's bounding box in its own coordinates.
};

/// Makes a paint the source of the canvas, whose transform must be the identity. False when nothing is to be painted:
/// no paint, an opacity of zero, a reference to nothing or to something that is no gradient, a gradient without stops.
Result<bool> SetSource(const Canvas& canvas, const SVGPaint& paint, double opacity, const PaintPlace& at) noexcept;

} // namespace orvan::cairo
