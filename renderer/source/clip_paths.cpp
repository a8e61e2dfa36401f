// SPDX-License-Identifier: MIT
#include "clip_paths.h"

#include "composition.h"
#include "drawing/clip_shapes.h"
#include "drawing/conditions.h"
#include "drawing/references.h"
#include "drawing/walk.h"
#include "painter.h"
#include "paths.h"
#include "texts.h"

namespace orvan::cairo
{
namespace
{

using namespace drawing;

/// An outline of more lines and curves than this is no clip of the library's, which finds out where each crosses each
/// other one, and does so anew for whatever is clipped.
constexpr int kMostClipSegments = 500;

bool IsClip(const Canvas& canvas, const Outline& outline, const Matrix2d& transform) noexcept
{
	const bool isPage = cairo_surface_get_type(cairo_get_group_target(canvas.drawing)) != CAIRO_SURFACE_TYPE_IMAGE;
	return isPage || MeasurePath(outline, transform).segmentCount <= kMostClipSegments;
}

/// True, and reported, when there is no time to fill an outline.
bool IsTooMuch(Limits& limits, const PathExtent& extent) noexcept
{
	return extent.rows > kManyRows && !limits.CanTake(extent.rows / kRowsPerSecond);
}

/// How a shape's area is found. A plain import knows no "clip-rule", and files that have one have "fill-rule" as well.
cairo_fill_rule_t GetRule(const Job& job, const Frame& frame) noexcept
{
	const Style& style = frame.place.style;
	return ToCairo(job.scene.isComplete ? style.clipRule : style.fillRule);
}

/// Collects the areas of shapes and texts, whatever they are painted with. Of the effects only clip paths count.
class ClipSink final : public Sink
{
public:
	explicit ClipSink(const Canvas& canvas) noexcept : _canvas(canvas)
	{
	}

	bool TakesContainers() const noexcept override
	{
		return false;
	}

	Result<void> DrawShape(const Frame& frame, Outline& outline) noexcept override
	{
		const auto fill = [&]() noexcept
		{
			cairo_set_fill_rule(_canvas.drawing, GetRule(_canvas.job, frame));
			cairo_fill(_canvas.drawing);
		};
		if (frame.place.style.visibility != SVGVisibility::visible)
			return {};
		const PathExtent extent = SetPath(_canvas.drawing, outline, frame.place.transform);
		const Rectangle touched = extent.bounds.Grow(1.0);
		const double work = touched.Intersect(_canvas.GetClipExtents()).GetArea() + extent.segmentCount * kCommandWork;
		Limits& limits = _canvas.job.scene.limits;
		if (!extent.IsDrawable() || IsTooMuch(limits, extent) || !limits.Pay(work))
		{
			cairo_new_path(_canvas.drawing);
			return {};
		}
		cairo_set_source_rgba(_canvas.drawing, 0.0, 0.0, 0.0, 1.0);
		if (frame.effects.clipPath == nullptr && frame.effects.clipShape == nullptr)
		{
			fill();
			return {};
		}
		const auto fillAnew = [&](Sink&) noexcept -> Result<void>
		{
			SetPath(_canvas.drawing, outline, frame.place.transform);
			cairo_set_source_rgba(_canvas.drawing, 0.0, 0.0, 0.0, 1.0);
			fill();
			return {};
		};
		Extent known(outline.GetBounds(), touched);
		return ComposeClipped(frame, known, fillAnew);
	}

	Result<void> DrawText(const Frame& frame, const TextLayout& text) noexcept override
	{
		const Rectangle touched = Transform(frame.place.transform, text.GetReach()).Grow(1.0);
		const double work = touched.Intersect(_canvas.GetClipExtents()).GetArea() + text.GetLength() * kCharacterWork;
		if (!_canvas.job.scene.limits.Pay(work))
			return {};
		const auto fill = [&](Sink&) noexcept -> Result<void>
		{
			cairo_set_source_rgba(_canvas.drawing, 0.0, 0.0, 0.0, 1.0);
			return FillText(_canvas, frame, text);
		};
		Extent known(text.GetBounds(), touched);
		return ComposeClipped(frame, known, fill);
	}

	Result<void> DrawImage(const Frame&, const PlacedImage&) noexcept override
	{
		return {};
	}

	Result<void> DrawGroup(const Frame& frame, const Content& content) noexcept override
	{
		Extent extent(_canvas.job.scene, frame, content);
		return ComposeClipped(frame, extent, content);
	}

	Result<void> DrawClipped(const Place&, const Rectangle&, const Content&) noexcept override
	{
		return {};
	}

	/// Draws content clipped by the clip path that the frame's element has.
	Result<void> ComposeClipped(const Frame& frame, Extent& extent, const Content& content) noexcept
	{
		Effects effects;
		effects.clipPath = frame.effects.clipPath;
		effects.clipShape = frame.effects.clipShape;
		return Compose(_canvas, frame, effects, extent, content, *this);
	}

private:
	const Canvas& _canvas;
};

/// What a clip path is made of, as far as that decides how to apply it.
struct ClipContent
{
	SVGElementRef shape; ///< The only shape, or null.
	bool isSimple = true;
};

ClipContent GetClipContent(const Scene& scene, const SVGElementRef& clip) noexcept
{
	ClipContent content;
	const auto hierarchy = Cast<HierarchyObjectInterface>(clip);
	for (auto child = hierarchy->GetFirstChild(); child && content.isSimple; child = child->GetNextSibling())
	{
		const auto element = Cast<SVGElementInterface>(child);
		if (!element || element->GetDisplay() == SVGDisplay::none ||
			(scene.isComplete && !PassesConditions(element->GetAttributeDictionary(), scene.language)))
			continue;
		const bool isShape = Cast<SVGPathElementInterface>(child) || Cast<SVGRectElementInterface>(child) ||
							 Cast<SVGCircleElementInterface>(child);
		if (isShape)
		{
			content.isSimple = !content.shape && !element->HasAttribute(SVGImportAttribute::clipPath) &&
							   !element->HasAttribute(SVGImportAttribute::transformBox);
			content.shape = element;
		}
		else if (Cast<SVGUseElementInterface>(child) || Cast<SVGTextElementInterface>(child))
			content.isSimple = false;
	}
	return content;
}

/// A clip path being applied. What clips it in turn refers to the clipped element's coordinates, as its frame does; its
/// content has its transform, and may be in fractions of the clipped element's box.
struct ClipFrame
{
	ClipFrame(Scene& scene, ObjectBase* clip, const Place& place, const Frame& user) noexcept
		: frame(clip, place, &user, scene.limits), content(frame.place)
	{
		frame.place.transform = place.transform;
	}

	Result<void> EnterUnits(Extent& extent) noexcept
	{
		using Key = SVGImportAttribute;
		if (frame.GetKeyword(Key::clipPathUnits, SVGUnits::userSpaceOnUse) == SVGUnits::objectBoundingBox)
			content.transform = content.transform * BoxTransform(ORVAN_TRY(extent.GetBox()));
		return {};
	}

	/// False when nothing is left of what is clipped.
	bool HasArea() const noexcept
	{
		return frame.canDraw && IsInvertible(content.transform);
	}

	Frame frame;
	Place content;
};

} // namespace

Result<SVGElementRef> FindClipPath(Job& job, const Effects& effects, const Frame& frame) noexcept
{
	return FindEffect<SVGClipPathElementInterface>(job.scene, effects.clipPath, frame);
}

Result<bool> ClipToShape(const Canvas& canvas, const SVGClipShape& shape, const Frame& frame, Extent& extent) noexcept
{
	const Outline outline = ORVAN_TRY(GetClipOutline(shape, frame, extent));
	if (!IsClip(canvas, outline, frame.place.transform))
		return false;
	cairo_new_path(canvas.drawing);
	if (!SetPath(canvas.drawing, outline, frame.place.transform).IsDrawable())
		cairo_new_path(canvas.drawing);
	cairo_set_fill_rule(canvas.drawing, ToCairo(shape.fillRule));
	cairo_clip(canvas.drawing);
	return true;
}

Result<PatternPtr> DrawClipShape(const Canvas& canvas, const SVGClipShape& shape, const Frame& frame,
								 Extent& extent) noexcept
{
	const Outline outline = ORVAN_TRY(GetClipOutline(shape, frame, extent));
	cairo_push_group_with_content(canvas.drawing, CAIRO_CONTENT_ALPHA);
	const PathExtent path = SetPath(canvas.drawing, outline, frame.place.transform);
	if (path.IsDrawable() && !IsTooMuch(canvas.job.scene.limits, path))
	{
		cairo_set_source_rgba(canvas.drawing, 0.0, 0.0, 0.0, 1.0);
		cairo_set_fill_rule(canvas.drawing, ToCairo(shape.fillRule));
		cairo_fill_preserve(canvas.drawing);
	}
	cairo_new_path(canvas.drawing);
	return PatternPtr(cairo_pop_group(canvas.drawing));
}

Result<bool> ClipSimply(const Canvas& canvas, const SVGElementRef& clip, const Frame& user, Extent& extent) noexcept
{
	const ClipContent content = GetClipContent(canvas.job.scene, clip);
	if (!content.isSimple)
		return false;
	Limits& limits = canvas.job.scene.limits;
	const Place place = ORVAN_TRY(GetContentPlace(canvas.job.scene, clip.GetObject(), user));
	ClipFrame clipFrame(canvas.job.scene, clip.GetObject(), place, user);
	const Frame& frame = clipFrame.frame;
	if (frame.effects.clipShape != nullptr)
		return false;
	const SVGElementRef nested = ORVAN_TRY(FindClipPath(canvas.job, frame.effects, frame));
	ORVAN_TRY(clipFrame.EnterUnits(extent));
	Outline outline;
	Matrix2d transform;
	cairo_fill_rule_t rule = CAIRO_FILL_RULE_WINDING;
	if (clipFrame.HasArea() && content.shape)
	{
		ObjectBase* const shape = content.shape.GetObject();
		const Frame inner(shape, clipFrame.content, &frame, limits);
		if (inner.canDraw && inner.place.style.visibility == SVGVisibility::visible)
			outline = ORVAN_TRY(GetOutline(GetShapeKind(shape), shape, inner));
		transform = inner.place.transform;
		rule = GetRule(canvas.job, inner);
	}
	if (!IsClip(canvas, outline, transform) || (nested && !ORVAN_TRY(ClipSimply(canvas, nested, frame, extent))))
		return false;
	cairo_new_path(canvas.drawing);
	if (!SetPath(canvas.drawing, outline, transform).IsDrawable())
		cairo_new_path(canvas.drawing);
	cairo_set_fill_rule(canvas.drawing, rule);
	// Without a shape the path is empty, and everything is clipped away.
	cairo_clip(canvas.drawing);
	return true;
}

Result<PatternPtr> DrawClipPath(const Canvas& canvas, const SVGElementRef& clip, const Frame& user,
								Extent& extent) noexcept
{
	const Place place = ORVAN_TRY(GetContentPlace(canvas.job.scene, clip.GetObject(), user));
	ClipFrame clipFrame(canvas.job.scene, clip.GetObject(), place, user);
	ORVAN_TRY(clipFrame.EnterUnits(extent));
	cairo_push_group_with_content(canvas.drawing, CAIRO_CONTENT_ALPHA);
	Result<void> drawn;
	if (clipFrame.HasArea())
	{
		ClipSink sink(canvas);
		const auto draw = [&](Sink& inner) noexcept
		{
			return Walk(canvas.job.scene, inner).DrawChildren(clip.GetObject(), clipFrame.content, clipFrame.frame);
		};
		drawn = sink.ComposeClipped(clipFrame.frame, extent, draw);
	}
	PatternPtr coverage(cairo_pop_group(canvas.drawing));
	ORVAN_TRY(drawn);
	return coverage;
}

} // namespace orvan::cairo
