// SPDX-License-Identifier: MIT
#include "painter.h"

#include "composition.h"
#include "drawing/measure.h"
#include "drawing/strokes.h"
#include "glyphs.h"
#include "paint_servers.h"
#include "paths.h"
#include "pen.h"

#include <utility>

namespace orvan::cairo
{
namespace
{

using namespace drawing;

const SVGPaint kBlack{};

/// Takes the opacity out of the effects where there is but one paint, which can be made transparent itself; only fill
/// and stroke together need a layer.
double TakeOpacity(const Place& place, Effects& effects) noexcept
{
	return HasFill(place.style) && HasStroke(place) ? 1.0 : std::exchange(effects.opacity, 1.0);
}

} // namespace

cairo_fill_rule_t ToCairo(SVGFillRule rule) noexcept
{
	return rule == SVGFillRule::evenodd ? CAIRO_FILL_RULE_EVEN_ODD : CAIRO_FILL_RULE_WINDING;
}

// Shapes -------------------------------------------------------------------------------------------------------------

Result<void> Painter::DrawShape(const Frame& frame, const Outline& outline) noexcept
{
	const Place& place = frame.place;
	if (place.style.visibility != SVGVisibility::visible)
		return {};
	const PathExtent extent = SetPath(_canvas.drawing, outline, place.transform);
	if (!extent.IsDrawable())
	{
		cairo_new_path(_canvas.drawing);
		return {};
	}
	const Rectangle painted = GetPaintedBounds(place, extent.bounds);
	if (!Pay(place, painted, extent.segmentCount * kCommandWork))
		return {};
	Effects effects = frame.effects;
	const double opacity = TakeOpacity(place, effects);
	if (effects.IsNone())
		return PaintPath(frame, outline, opacity);
	const auto paint = [&](Sink&) noexcept
	{
		SetPath(_canvas.drawing, outline, place.transform);
		return PaintPath(frame, outline, opacity);
	};
	return Compose(_canvas, frame, effects, {&outline.GetBounds(), &painted}, paint, *this);
}

/// Paints the current path, which is that of the outline.
Result<void> Painter::PaintPath(const Frame& frame, const Outline& outline, double opacity) noexcept
{
	if (HasFill(frame.place.style) && ORVAN_TRY(SetFill(frame, outline.GetBounds(), opacity)))
	{
		cairo_set_fill_rule(_canvas.drawing, ToCairo(frame.place.style.fillRule));
		cairo_fill_preserve(_canvas.drawing);
	}
	if (HasStroke(frame.place) && ORVAN_TRY(SetStroke(frame, outline.GetBounds(), opacity)))
		StrokePath(_canvas, frame.place);
	cairo_new_path(_canvas.drawing);
	return {};
}

// Text ---------------------------------------------------------------------------------------------------------------

Result<void> Painter::DrawText(const Frame& frame, const TextLine& line) noexcept
{
	const Place& place = frame.place;
	if (place.style.visibility != SVGVisibility::visible)
		return {};
	const Rectangle painted = GetPaintedBounds(place, Transform(place.transform, line.GetReach()));
	if (!Pay(place, painted, line.GetLength() * kCharacterWork))
		return {};
	Effects effects = frame.effects;
	const double opacity = TakeOpacity(place, effects);
	const auto paint = [&](Sink&) noexcept
	{
		return PaintText(frame, line, opacity);
	};
	return Compose(_canvas, frame, effects, {&line.GetBounds(), &painted}, paint, *this);
}

Result<void> Painter::PaintText(const Frame& frame, const TextLine& line, double opacity) noexcept
{
	const Rectangle& bounds = line.GetBounds();
	if (HasFill(frame.place.style) && ORVAN_TRY(SetFill(frame, bounds, opacity)))
		FillGlyphs(_canvas.drawing, line, frame.place.transform);
	if (HasStroke(frame.place) && ORVAN_TRY(SetStroke(frame, bounds, opacity)))
	{
		SetGlyphPath(_canvas.drawing, line, frame.place.transform);
		StrokePath(_canvas, frame.place);
	}
	cairo_new_path(_canvas.drawing);
	return {};
}

// Groups -------------------------------------------------------------------------------------------------------------

Result<void> Painter::DrawGroup(const Frame& frame, const Content& content) noexcept
{
	return Compose(_canvas, frame, frame.effects, {}, content, *this);
}

Result<void> Painter::DrawClipped(const Place& place, const Rectangle& clip, const Content& content) noexcept
{
	const SavedDrawing saved(_canvas);
	_canvas.ClipTo(clip, place.transform);
	return content.DrawInto(*this);
}

// Paints and costs ---------------------------------------------------------------------------------------------------

Result<bool> Painter::SetFill(const Frame& frame, const Rectangle& bounds, double opacity) noexcept
{
	const Style& style = frame.place.style;
	return SetSource(_canvas, style.fill != nullptr ? *style.fill : kBlack, ClampToUnit(style.fillOpacity) * opacity,
					 {frame, frame.place, bounds});
}

Result<bool> Painter::SetStroke(const Frame& frame, const Rectangle& bounds, double opacity) noexcept
{
	const Style& style = frame.place.style;
	return SetSource(_canvas, *style.stroke, ClampToUnit(style.strokeOpacity) * opacity, {frame, frame.place, bounds});
}

bool Painter::Pay(const Place& place, const Rectangle& painted, double details) noexcept
{
	if (!place.isByReference)
		return true;
	const auto isGradient = [](const SVGPaint* paint)
	{
		return paint != nullptr && paint->type == SVGPaintType::reference;
	};
	const double factor = isGradient(place.style.fill) || isGradient(place.style.stroke) ? kGradientFactor : 1.0;
	return _canvas.job.scene.limits.Pay(painted.Intersect(_canvas.GetClipExtents()).GetArea() * factor + details);
}

} // namespace orvan::cairo
