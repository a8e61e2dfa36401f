// SPDX-License-Identifier: MIT
#include "measure.h"

#include "strokes.h"
#include "text_line.h"

namespace orvan::drawing
{

Rectangle GetPaintedBounds(const Place& place, const Rectangle& bounds) noexcept
{
	// One pixel more for the soft edges.
	if (!HasStroke(place))
		return bounds.Grow(1.0);
	const Style& style = place.style;
	const double reach = style.lineJoin == SVGLineJoin::miter ? std::max(style.miterLimit, 1.5) : 1.5;
	return bounds.Grow(GetStrokeWidth(place) / 2.0 * reach * GetStretch(place.transform) + 1.0);
}

Result<void> MeasureSink::DrawShape(const Frame& frame, const Outline& outline) noexcept
{
	const Rectangle bounds = outline.GetBounds(frame.place.transform);
	if (frame.place.style.visibility == SVGVisibility::visible && bounds.IsFinite())
		_touched.Include(GetPaintedBounds(frame.place, bounds));
	return {};
}

Result<void> MeasureSink::DrawText(const Frame& frame, const TextLine& line) noexcept
{
	if (frame.place.style.visibility == SVGVisibility::visible)
		_touched.Include(GetPaintedBounds(frame.place, Transform(frame.place.transform, line.GetReach())));
	return {};
}

Result<void> MeasureSink::DrawGroup(const Frame&, const Content& content) noexcept
{
	return content.DrawInto(*this);
}

Result<void> MeasureSink::DrawClipped(const Place& place, const Rectangle& clip, const Content& content) noexcept
{
	MeasureSink inside;
	ORVAN_TRY(content.DrawInto(inside));
	_touched.Include(inside._touched.Intersect(Transform(place.transform, clip)));
	return {};
}

} // namespace orvan::drawing
