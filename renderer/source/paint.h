// SPDX-License-Identifier: MIT
/// Colours and gradients as sources of the drawing library.
#pragma once

#include "geometry.h"
#include "style.h"
#include "svg_base.h"

#include <cairo.h>

namespace orvan::cairo
{

/// What a paint needs to know about the element that it is for.
struct PaintPlace
{
	const SVGDocumentRef& document;
	const Matrix2d& transform; ///< From the element's coordinates to the drawing's.
	const Viewport& viewport;
	double fontSize;
	const Rectangle& bounds; ///< The element's bounding box in its own coordinates.
};

/// Makes a paint the source of `drawing`, whose transform must be the identity. False when nothing is to be painted: no
/// paint, an opacity of zero, a reference to nothing or to something that is no gradient, a gradient without stops.
Result<bool> SetSource(cairo_t* drawing, const SVGPaint& paint, double opacity, const PaintPlace& place) noexcept;

} // namespace orvan::cairo
