// SPDX-License-Identifier: MIT
#include "measure.h"

#include "markers.h"
#include "strokes.h"
#include "text_layout.h"

namespace orvan::drawing
{

Rectangle GetPaintedBounds(const Scene& scene, const Frame& frame, const Rectangle& bounds) noexcept
{
	const Place& place = frame.place;
	// One pixel more for the soft edges.
	if (!HasStroke(place))
		return bounds.Grow(1.0);
	const Style& style = place.style;
	const double reach = style.lineJoin == SVGLineJoin::miter ? std::max(style.miterLimit, 1.5) : 1.5;
	const double stretch = IsStrokeUnscaled(frame) ? scene.unit * 2.0 : GetStretch(place.transform);
	return bounds.Grow(GetStrokeWidth(place) / 2.0 * reach * stretch + 1.0);
}

Rectangle GetPaintedBounds(const Scene& scene, const Frame& frame, const TextLayout& text) noexcept
{
	const Rectangle reach = Transform(frame.place.transform, text.GetReach());
	Rectangle painted;
	for (const TextFragment& fragment : text.GetFragments())
	{
		// Decorations are stroked by the elements around it.
		for (const Frame* part = fragment.frame; part != nullptr; part = part != &frame ? part->outer : nullptr)
		{
			if (part->place.style.visibility == SVGVisibility::visible)
				painted.Include(GetPaintedBounds(scene, *part, reach));
		}
	}
	return painted;
}

Result<void> MeasureSink::DrawShape(const Frame& frame, const Outline& outline) noexcept
{
	const Rectangle bounds = outline.GetBounds(frame.place.transform);
	if (!bounds.IsFinite())
		return {};
	_box.Include(outline.GetBounds(_toUser * frame.place.transform));
	if (frame.place.style.visibility == SVGVisibility::visible)
		_touched.Include(GetPaintedBounds(_scene, frame, bounds));
	// Markers belong to what is painted, not to the box.
	MeasureSink markers(_scene, {});
	ORVAN_TRY(DrawMarkers(_scene, frame, outline, markers));
	_touched.Include(markers._touched);
	return {};
}

Result<void> MeasureSink::DrawText(const Frame& frame, const TextLayout& text) noexcept
{
	_box.Include(Transform(_toUser * frame.place.transform, text.GetBounds()));
	_touched.Include(GetPaintedBounds(_scene, frame, text));
	return {};
}

Result<void> MeasureSink::DrawGroup(const Frame&, const Content& content) noexcept
{
	return content.DrawInto(*this);
}

Result<void> MeasureSink::DrawClipped(const Place& place, const Rectangle& clip, const Content& content) noexcept
{
	MeasureSink inside(_scene, {});
	inside._toUser = _toUser;
	ORVAN_TRY(content.DrawInto(inside));
	_touched.Include(inside._touched.Intersect(Transform(place.transform, clip)));
	_box.Include(inside._box);
	return {};
}

Result<void> Extent::Measure() noexcept
{
	if (_box)
		return {};
	MeasureSink measure(*_scene, _frame->place.transform);
	ORVAN_TRY(_content->DrawInto(measure));
	_box = measure.GetBox();
	_touched = measure.GetTouched();
	return {};
}

Result<Rectangle> Extent::GetBox() noexcept
{
	ORVAN_TRY(Measure());
	return *_box;
}

Result<Rectangle> Extent::GetTouched() noexcept
{
	ORVAN_TRY(Measure());
	return _touched;
}

} // namespace orvan::drawing
