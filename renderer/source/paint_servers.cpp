// SPDX-License-Identifier: MIT
#include "paint_servers.h"

#include "drawing/references.h"
#include "gradients.h"
#include "patterns.h"

namespace orvan::cairo
{
namespace
{

using namespace drawing;

const SVGPaint kBlack{};
const SVGPaint kNone{SVGPaintType::none, {}, {}};

Result<PaintResult> SetServer(const Canvas& canvas, const String& id, double opacity, const PaintPlace& at) noexcept
{
	const SVGElementRef found = ORVAN_TRY(FindElement(canvas.job.scene.document, id));
	ObjectBase* const element = found.GetObject();
	if (IsGradient(element))
		return SetGradient(canvas, element, opacity, at);
	if (IsPattern(element))
		return SetPattern(canvas, element, opacity, at);
	return PaintResult::invalid;
}

/// The paint of the element that a marker or a use is drawn for, in that element's coordinates.
Result<bool> SetContextPaint(const Canvas& canvas, bool isFill, double opacity, const PaintPlace& at) noexcept
{
	const ContextPaints* const context = at.frame.place.context;
	if (context == nullptr)
		return false;
	const Style& style = context->frame.place.style;
	return SetSource(canvas, isFill ? GetFill(style) : GetStroke(style), opacity, {context->frame, context->box});
}

} // namespace

const SVGPaint& GetFill(const Style& style) noexcept
{
	return style.fill != nullptr ? *style.fill : kBlack;
}

const SVGPaint& GetStroke(const Style& style) noexcept
{
	return style.stroke != nullptr ? *style.stroke : kNone;
}

void SetColor(cairo_t* drawing, const Color& color, double opacity) noexcept
{
	cairo_set_source_rgba(drawing, ClampToUnit(color.red), ClampToUnit(color.green), ClampToUnit(color.blue), opacity);
}

Result<bool> SetSource(const Canvas& canvas, const SVGPaint& paint, double opacity, const PaintPlace& at) noexcept
{
	if (!(opacity > 0.0))
		return false;
	const auto setColor = [&](const Color& color, double alpha)
	{
		SetColor(canvas.drawing, color, ClampToUnit(alpha) * opacity);
		return true;
	};
	const Style& style = at.frame.place.style;
	switch (paint.type)
	{
	case SVGPaintType::none:
		return false;
	case SVGPaintType::color:
		return setColor(paint.color, paint.alpha);
	case SVGPaintType::currentColor:
		return setColor(style.color, style.colorAlpha);
	case SVGPaintType::contextFill:
	case SVGPaintType::contextStroke:
		return SetContextPaint(canvas, paint.type == SVGPaintType::contextFill, opacity, at);
	case SVGPaintType::reference:
		break;
	}
	const PaintResult result = ORVAN_TRY(SetServer(canvas, paint.reference, opacity, at));
	if (result != PaintResult::invalid)
		return result == PaintResult::painted;
	switch (paint.fallback)
	{
	case SVGPaintFallback::absent:
	case SVGPaintFallback::none:
		break;
	case SVGPaintFallback::color:
		return setColor(paint.color, paint.alpha);
	case SVGPaintFallback::currentColor:
		return setColor(style.color, style.colorAlpha);
	}
	return false;
}

} // namespace orvan::cairo
