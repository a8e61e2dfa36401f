// SPDX-License-Identifier: MIT
#include "measure.h"

#include "filters.h"
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
	// A tip that is cut off is half of the line's width broad there at most, to each side.
	const bool isClipped = style.lineJoin == SVGLineJoin::miterClip;
	const bool isMitred = style.lineJoin == SVGLineJoin::miter || isClipped;
	const double reach = isMitred ? std::max(style.miterLimit, 1.5) + (isClipped ? 1.0 : 0.0) : 1.5;
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

Result<void> MeasureSink::DrawShape(const Frame& frame, Outline& outline) noexcept
{
	const Rectangle bounds = outline.GetBounds(frame.place.transform);
	if (!bounds.IsFinite())
		return {};
	const Matrix2d toUser = _toUser * frame.place.transform;
	_box.Include(_strokes == BoxStrokes::included ? GetStrokeBox(frame.place, outline, toUser)
												  : outline.GetBounds(toUser));
	Rectangle touched;
	if (frame.place.style.visibility == SVGVisibility::visible)
		touched = GetPaintedBounds(_scene, frame, bounds);
	// Markers belong to what is painted, not to the box.
	MeasureSink markers(_scene, {});
	ORVAN_TRY(DrawMarkers(_scene, frame, outline, markers));
	touched.Include(markers._touched);
	return Touch(frame, Extent(outline.GetBounds(), touched));
}

Result<void> MeasureSink::DrawText(const Frame& frame, const TextLayout& text) noexcept
{
	const bool isStroked = _strokes == BoxStrokes::included && HasStroke(frame.place);
	const Rectangle box = text.GetBounds().Grow(isStroked ? GetStrokeWidth(frame.place) / 2.0 : 0.0);
	_box.Include(Transform(_toUser * frame.place.transform, box));
	return Touch(frame, Extent(text.GetBounds(), GetPaintedBounds(_scene, frame, text)));
}

Result<void> MeasureSink::DrawImage(const Frame& frame, const PlacedImage& image) noexcept
{
	_box.Include(Transform(_toUser * frame.place.transform, image.viewport));
	Rectangle touched;
	if (frame.place.style.visibility == SVGVisibility::visible)
		touched = Transform(frame.place.transform, image.viewport).Grow(1.0);
	return Touch(frame, Extent(image.viewport, touched));
}

Result<void> MeasureSink::DrawGroup(const Frame& frame, const Content& content) noexcept
{
	if (frame.effects.filter == nullptr)
		return content.DrawInto(*this);
	MeasureSink inside = MakeInside();
	ORVAN_TRY(content.DrawInto(inside));
	_box.Include(inside._box);
	return Touch(frame, Extent(Transform(Invert(_toUser * frame.place.transform), inside._box), inside._touched));
}

MeasureSink MeasureSink::MakeInside() const noexcept
{
	MeasureSink inside(_scene, {}, _strokes);
	inside._toUser = _toUser;
	return inside;
}

/// Adds what an element touches that has this extent without its filters.
Result<void> MeasureSink::Touch(const Frame& frame, Extent extent) noexcept
{
	const Rectangle touched = ORVAN_TRY(extent.GetTouched());
	if (frame.effects.filter == nullptr)
	{
		_touched.Include(touched);
		return {};
	}
	const BaseArray<FilterStage> stages = ORVAN_TRY(GetFilterStages(_scene, frame, extent));
	_touched.Include(GetFilteredBounds(stages, frame, touched));
	return {};
}

Result<void> MeasureSink::DrawClipped(const Place& place, const Rectangle& clip, const Content& content) noexcept
{
	MeasureSink inside = MakeInside();
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

Result<Rectangle> Extent::GetStrokeBox() noexcept
{
	if (_content == nullptr)
		return GetBox();
	MeasureSink measure(*_scene, _frame->place.transform, BoxStrokes::included);
	ORVAN_TRY(_content->DrawInto(measure));
	return measure.GetBox();
}

Result<Rectangle> Extent::GetTouched() noexcept
{
	ORVAN_TRY(Measure());
	return _touched;
}

} // namespace orvan::drawing
