// SPDX-License-Identifier: MIT
#include "strokes.h"

#include "stroke_bounds.h"

namespace orvan::drawing
{

bool HasFill(const Style& style) noexcept
{
	return style.fill == nullptr || style.fill->type != SVGPaintType::none;
}

bool HasStroke(const Place& place) noexcept
{
	const SVGPaint* stroke = place.style.stroke;
	return stroke != nullptr && stroke->type != SVGPaintType::none && GetStrokeWidth(place) > 0.0;
}

bool IsStrokeUnscaled(const Frame& frame) noexcept
{
	return frame.GetKeyword(SVGImportAttribute::vectorEffect, SVGVectorEffect::none) ==
		   SVGVectorEffect::nonScalingStroke;
}

double GetStrokeWidth(const Place& place) noexcept
{
	const double width = place.Resolve(place.style.strokeWidth, Axis::other);
	return std::isfinite(width) ? width : 0.0;
}

Rectangle GetStrokeBox(const Place& place, const Outline& outline, const Matrix2d& toBox) noexcept
{
	Rectangle box = outline.GetBounds(toBox);
	const Style& style = place.style;
	if (HasStroke(place))
		box.Include(GetStrokeBounds(outline, {GetStrokeWidth(place), style.lineCap, style.lineJoin, style.miterLimit},
									{}, toBox));
	return box;
}

} // namespace orvan::drawing
