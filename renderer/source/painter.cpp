// SPDX-License-Identifier: MIT
#include "painter.h"

#include "composition.h"
#include "drawing/markers.h"
#include "drawing/measure.h"
#include "drawing/strokes.h"
#include "image_painter.h"
#include "paint_servers.h"
#include "paths.h"
#include "pen.h"
#include "plain_fill.h"
#include "texts.h"

#include <array>
#include <iterator>
#include <optional>
#include <utility>

namespace orvan::cairo
{
namespace
{

using namespace drawing;

/// The parts of a shape.
enum class Part
{
	fill,
	stroke,
	markers,
};

using Parts = std::array<Part, 3>;

/// The parts in the order in which they are painted, by the number of the order.
constexpr Parts kOrders[] = {
	{Part::fill, Part::stroke, Part::markers}, {Part::fill, Part::markers, Part::stroke},
	{Part::stroke, Part::fill, Part::markers}, {Part::stroke, Part::markers, Part::fill},
	{Part::markers, Part::fill, Part::stroke}, {Part::markers, Part::stroke, Part::fill},
};

const Parts& GetOrder(const Style& style) noexcept
{
	const auto number = static_cast<std::size_t>(style.paintOrder);
	return kOrders[number < std::size(kOrders) ? number : 0];
}

cairo_antialias_t GetAntialias(const Style& style) noexcept
{
	const bool isCrisp = style.shapeRendering == SVGShapeRendering::crispEdges ||
						 style.shapeRendering == SVGShapeRendering::optimizeSpeed;
	return isCrisp ? CAIRO_ANTIALIAS_NONE : CAIRO_ANTIALIAS_DEFAULT;
}

/// Takes the opacity out of the effects where there is but one paint, which can be made transparent itself; only
/// several together need a layer.
double TakeOpacity(const Frame& frame, Effects& effects) noexcept
{
	const bool isOne = !(HasFill(frame.place.style) && HasStroke(frame.place)) && !HasMarkers(frame);
	return isOne && effects.filter == nullptr ? std::exchange(effects.opacity, 1.0) : 1.0;
}

/// How the document counts the length of a shape's outline, as a factor on its dashes; 0 when the dashes are endless.
double GetDashScale(const Frame& frame, const Outline& outline) noexcept
{
	const Style& style = frame.place.style;
	if (style.dashes == nullptr || !frame.Has(SVGImportAttribute::pathLength))
		return 1.0;
	const double counted = frame.GetOr(SVGImportAttribute::pathLength, 0.0);
	return counted > 0.0 ? outline.GetLength() / counted : counted == 0.0 ? 0.0 : 1.0;
}

} // namespace

cairo_fill_rule_t ToCairo(SVGFillRule rule) noexcept
{
	return rule == SVGFillRule::evenodd ? CAIRO_FILL_RULE_EVEN_ODD : CAIRO_FILL_RULE_WINDING;
}

// Shapes -------------------------------------------------------------------------------------------------------------

Result<void> Painter::DrawShape(const Frame& frame, Outline& outline) noexcept
{
	const Place& place = frame.place;
	// What is hidden may still have a filter that makes something of nothing.
	const bool isHidden = place.style.visibility != SVGVisibility::visible;
	if (isHidden && frame.effects.filter == nullptr)
		return {};
	const PathExtent extent = MeasurePath(outline, place.transform);
	// A path that goes nowhere may still have markers.
	if (!extent.IsDrawable() && !(extent.isFinite && HasMarkers(frame)))
		return {};
	Rectangle painted = GetPaintedBounds(_canvas.job.scene, frame, extent.bounds);
	const bool isTooMuch = extent.rows > kManyRows && !_canvas.job.scene.limits.CanTake(extent.rows / kRowsPerSecond);
	if (isTooMuch || !Pay(place, painted, extent.segmentCount * kCommandWork))
		return {};
	Effects effects = frame.effects;
	const double opacity = TakeOpacity(frame, effects);
	if (effects.IsNone())
		return PaintPath(frame, outline, extent.bounds, opacity);
	// A filter has it painted elsewhere.
	const auto paint = [&](Sink& sink) noexcept
	{
		auto& painter = static_cast<Painter&>(sink);
		return isHidden ? Result<void>() : painter.PaintPath(frame, outline, extent.bounds, opacity);
	};
	if (HasMarkers(frame))
	{
		MeasureSink measure(_canvas.job.scene, place.transform);
		ORVAN_TRY(measure.DrawShape(frame, outline));
		painted.Include(measure.GetTouched());
	}
	Extent known(outline.GetBounds(), painted);
	return Compose(_canvas, frame, effects, known, paint, *this);
}

/// Paints an outline that has these bounds in the picture.
Result<void> Painter::PaintPath(const Frame& frame, const Outline& outline, const Rectangle& bounds,
								double opacity) noexcept
{
	const Style& style = frame.place.style;
	cairo_t* const drawing = _canvas.drawing;
	const cairo_antialias_t antialias = GetAntialias(style);
	if (antialias != CAIRO_ANTIALIAS_DEFAULT)
		cairo_set_antialias(drawing, antialias);
	bool isPathSet = false;
	// A part that paints with a path uses it up, or keeps it, as its followers need it.
	const auto setPath = [&]
	{
		if (!std::exchange(isPathSet, true))
			SetPath(drawing, outline, frame.place.transform);
	};
	// Calls `paint` where something is left to paint with the drawing library.
	const auto paintRest = [&](const Remainder& rest, auto paint)
	{
		if (rest.IsNothing())
			return;
		std::optional<SavedDrawing> saved;
		if (!rest.IsEverything())
		{
			saved.emplace(_canvas);
			rest.ClipTo(_canvas);
			isPathSet = false;
		}
		setPath();
		paint();
	};
	const bool isSoft = antialias == CAIRO_ANTIALIAS_DEFAULT;
	for (const Part part : GetOrder(style))
	{
		if (part == Part::fill && HasFill(style) && ORVAN_TRY(SetFill(frame, outline, opacity)))
		{
			const Matrix2d& transform = frame.place.transform;
			paintRest(isSoft ? FillPlainly(_canvas, outline, transform, bounds, style.fillRule) : Remainder(),
					  [&]
					  {
						  cairo_set_fill_rule(drawing, ToCairo(style.fillRule));
						  cairo_fill_preserve(drawing);
					  });
		}
		else if (part == Part::stroke && HasStroke(frame.place) && ORVAN_TRY(SetStroke(frame, outline, opacity)))
		{
			const Rectangle painted = GetPaintedBounds(_canvas.job.scene, frame, bounds);
			paintRest(isSoft ? StrokePlainly(_canvas, frame, outline, painted) : Remainder(),
					  [&]
					  {
						  StrokePath(_canvas, frame, GetDashScale(frame, outline));
						  isPathSet = false;
					  });
		}
		else if (part == Part::markers && HasMarkers(frame))
		{
			cairo_new_path(drawing);
			isPathSet = false;
			ORVAN_TRY(DrawMarkers(_canvas.job.scene, frame, outline, *this));
		}
	}
	// Clips are soft whatever is drawn in them.
	if (antialias != CAIRO_ANTIALIAS_DEFAULT)
		cairo_set_antialias(drawing, CAIRO_ANTIALIAS_DEFAULT);
	cairo_new_path(drawing);
	return {};
}

// Text ---------------------------------------------------------------------------------------------------------------

Result<void> Painter::DrawText(const Frame& frame, const TextLayout& text) noexcept
{
	const Rectangle painted = GetPaintedBounds(_canvas.job.scene, frame, text);
	if (!Pay(frame.place, painted, text.GetLength() * kCharacterWork))
		return {};
	const BaseArray<TextFragment>& fragments = text.GetFragments();
	return PaintPart(frame, text, {fragments.begin(), fragments.GetCount()}, painted, 1.0);
}

Result<void> Painter::PaintPart(const Frame& frame, const TextLayout& text, std::span<const TextFragment> fragments,
								const Rectangle& painted, double opacity) noexcept
{
	Effects effects = frame.effects;
	if (IsPaintedOnce(fragments) && effects.filter == nullptr)
		opacity *= std::exchange(effects.opacity, 1.0);
	const auto paint = [&](Sink& sink) noexcept
	{
		return static_cast<Painter&>(sink).PaintFragments(frame, text, fragments, painted, opacity);
	};
	// Boxes are those of the whole text, as for its paints.
	Extent known(text.GetBounds(), painted);
	return Compose(_canvas, frame, effects, known, paint, *this);
}

Result<void> Painter::PaintFragments(const Frame& around, const TextLayout& text,
									 std::span<const TextFragment> fragments, const Rectangle& painted,
									 double opacity) noexcept
{
	while (!fragments.empty())
	{
		const Frame* const picture = TextLayout::FindPicture(fragments.front(), around);
		std::size_t count = 1;
		while (count < fragments.size() && TextLayout::FindPicture(fragments[count], around) == picture)
			count++;
		const auto part = fragments.first(count);
		fragments = fragments.subspan(count);
		if (picture == nullptr)
			ORVAN_TRY(PaintText(_canvas, around, text, part, opacity));
		else
			ORVAN_TRY(PaintPart(*picture, text, part, painted, opacity));
	}
	return {};
}

// Images -------------------------------------------------------------------------------------------------------------

Result<void> Painter::DrawImage(const Frame& frame, const PlacedImage& image) noexcept
{
	const bool isHidden = frame.place.style.visibility != SVGVisibility::visible;
	if (isHidden && frame.effects.filter == nullptr)
		return {};
	const Rectangle touched = Transform(frame.place.transform, image.viewport).Grow(1.0);
	if (!Pay(frame.place, touched, kElementWork))
		return {};
	const auto paint = [&](Sink& sink) noexcept
	{
		return isHidden ? Result<void>() : PaintImage(static_cast<Painter&>(sink)._canvas, frame, image);
	};
	Extent known(image.viewport, touched);
	return Compose(_canvas, frame, frame.effects, known, paint, *this);
}

// Groups -------------------------------------------------------------------------------------------------------------

Result<void> Painter::DrawGroup(const Frame& frame, const Content& content) noexcept
{
	Extent extent(_canvas.job.scene, frame, content);
	return Compose(_canvas, frame, frame.effects, extent, content, *this);
}

Result<void> Painter::DrawClipped(const Place& place, const Rectangle& clip, const Content& content) noexcept
{
	const SavedDrawing saved(_canvas);
	_canvas.ClipTo(clip, place.transform);
	return content.DrawInto(*this);
}

// Paints and costs ---------------------------------------------------------------------------------------------------

Result<bool> Painter::SetFill(const Frame& frame, const LazyBox& box, double opacity) noexcept
{
	const Style& style = frame.place.style;
	return SetSource(_canvas, GetFill(style), ClampToUnit(style.fillOpacity) * opacity, {frame, box});
}

Result<bool> Painter::SetStroke(const Frame& frame, const LazyBox& box, double opacity) noexcept
{
	const Style& style = frame.place.style;
	return SetSource(_canvas, GetStroke(style), ClampToUnit(style.strokeOpacity) * opacity, {frame, box});
}

bool Painter::Pay(const Place& place, const Rectangle& painted, double details) noexcept
{
	if (!place.isByReference)
		return true;
	const auto isGradient = [](const SVGPaint* paint)
	{
		return paint != nullptr && paint->type == SVGPaintType::reference;
	};
	Limits& limits = _canvas.job.scene.limits;
	if (_canvas.job.output == SVGRenderOutput::page)
	{
		if (!limits.Hold(kPageElementBytes + details / kCommandWork * kPageCommandBytes))
			return false;
		limits.Reserve(1.0 / kPageElementsPerSecond);
	}
	const double factor = isGradient(place.style.fill) || isGradient(place.style.stroke) ? kGradientFactor : 1.0;
	return limits.Pay(painted.Intersect(_canvas.GetClipExtents()).GetArea() * factor + details);
}

} // namespace orvan::cairo
