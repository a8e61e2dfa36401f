// SPDX-License-Identifier: MIT
#include "texts.h"

#include "drawing/strokes.h"
#include "glyphs.h"
#include "paint_servers.h"
#include "paths.h"
#include "pen.h"

namespace orvan::cairo
{
namespace
{

using namespace drawing;

constexpr TextLineKind kLinesBelow[] = {TextLineKind::underline, TextLineKind::overline};
constexpr TextLineKind kLinesAbove[] = {TextLineKind::lineThrough};

bool IsVisible(const TextFragment& fragment) noexcept
{
	return fragment.frame->place.style.visibility == SVGVisibility::visible;
}

bool IsStrokeFirst(const Style& style) noexcept
{
	return style.paintOrder == SVGPaintOrder::strokeFillMarkers ||
		   style.paintOrder == SVGPaintOrder::strokeMarkersFill || style.paintOrder == SVGPaintOrder::markersStrokeFill;
}

/// Paints the fragments of one text, one after the other.
class TextPainter
{
public:
	TextPainter(const Canvas& canvas, const Frame& frame, const TextLayout& text) noexcept
		: _canvas(canvas), _drawing(canvas.drawing), _transform(frame.place.transform), _text(text)
	{
	}

	Result<void> Paint(const TextFragment& fragment, double opacity) noexcept
	{
		ORVAN_TRY(PaintLines(fragment, kLinesBelow, opacity));
		ORVAN_TRY(PaintOutline(ORVAN_TRY(_text.GetOutline(fragment)), *fragment.frame, opacity));
		const Style& style = fragment.frame->place.style;
		if (HasFill(style))
			DrawColorGlyphs(_drawing, _text, fragment, _transform, ClampToUnit(style.fillOpacity) * opacity);
		return PaintLines(fragment, kLinesAbove, opacity);
	}

private:
	Result<void> PaintLines(const TextFragment& fragment, std::span<const TextLineKind> kinds, double opacity) noexcept
	{
		for (const TextLineKind kind : kinds)
		{
			for (int i = 0; const Frame* const frame = TextLayout::FindDecorating(fragment, kind, i); i++)
				ORVAN_TRY(PaintOutline(ORVAN_TRY(_text.GetLines(fragment, kind, *frame)), *frame, opacity));
		}
		return {};
	}

	Result<void> PaintOutline(const Outline& outline, const Frame& frame, double opacity) noexcept
	{
		if (outline.GetCommands().IsEmpty())
			return {};
		if (IsStrokeFirst(frame.place.style))
		{
			ORVAN_TRY(Stroke(outline, frame, opacity));
			return Fill(outline, frame, opacity);
		}
		ORVAN_TRY(Fill(outline, frame, opacity));
		return Stroke(outline, frame, opacity);
	}

	Result<void> Fill(const Outline& outline, const Frame& frame, double opacity) noexcept
	{
		const Style& style = frame.place.style;
		const double alpha = ClampToUnit(style.fillOpacity) * opacity;
		if (!HasFill(style) || !ORVAN_TRY(SetSource(_canvas, GetFill(style), alpha, {frame, _text.GetBounds()})))
			return {};
		if (SetPath(outline))
			cairo_fill(_drawing);
		return {};
	}

	Result<void> Stroke(const Outline& outline, const Frame& frame, double opacity) noexcept
	{
		const Style& style = frame.place.style;
		const double alpha = ClampToUnit(style.strokeOpacity) * opacity;
		if (!HasStroke(frame.place) ||
			!ORVAN_TRY(SetSource(_canvas, GetStroke(style), alpha, {frame, _text.GetBounds()})))
			return {};
		if (SetPath(outline))
			StrokePath(_canvas, frame, 1.0);
		return {};
	}

	/// False, and no path, when there is nothing to draw or too much.
	bool SetPath(const Outline& outline) noexcept
	{
		const PathExtent extent = cairo::SetPath(_drawing, outline, _transform);
		cairo_set_fill_rule(_drawing, CAIRO_FILL_RULE_WINDING);
		const bool isTooMuch =
			extent.rows > kManyRows && !_canvas.job.scene.limits.CanTake(extent.rows / kRowsPerSecond);
		if (extent.IsDrawable() && !isTooMuch)
			return true;
		cairo_new_path(_drawing);
		return false;
	}

	const Canvas& _canvas;
	cairo_t* _drawing;
	const Matrix2d& _transform;
	const TextLayout& _text;
};

} // namespace

bool IsPaintedOnce(std::span<const TextFragment> fragments) noexcept
{
	if (fragments.size() != 1)
		return false;
	const TextFragment& fragment = fragments.front();
	const auto isDecorated = [&](TextLineKind kind)
	{
		return TextLayout::FindDecorating(fragment, kind, 0) != nullptr;
	};
	return !(HasFill(fragment.frame->place.style) && HasStroke(fragment.frame->place)) &&
		   !isDecorated(TextLineKind::underline) && !isDecorated(TextLineKind::overline) &&
		   !isDecorated(TextLineKind::lineThrough);
}

Result<void> PaintText(const Canvas& canvas, const Frame& frame, const TextLayout& text,
					   std::span<const TextFragment> fragments, double opacity) noexcept
{
	TextPainter painter(canvas, frame, text);
	for (const TextFragment& fragment : fragments)
	{
		if (canvas.job.scene.limits.IsOver())
			break;
		if (IsVisible(fragment))
			ORVAN_TRY(painter.Paint(fragment, opacity));
	}
	cairo_new_path(canvas.drawing);
	return {};
}

Result<void> FillText(const Canvas& canvas, const Frame& frame, const TextLayout& text) noexcept
{
	const Matrix2d& transform = frame.place.transform;
	cairo_set_fill_rule(canvas.drawing, CAIRO_FILL_RULE_WINDING);
	const auto fill = [&](const Outline& outline)
	{
		if (SetPath(canvas.drawing, outline, transform).IsDrawable())
			cairo_fill(canvas.drawing);
	};
	for (const TextFragment& fragment : text.GetFragments())
	{
		if (!IsVisible(fragment))
			continue;
		fill(ORVAN_TRY(text.GetOutline(fragment)));
		for (const TextLineKind kind : {TextLineKind::underline, TextLineKind::overline, TextLineKind::lineThrough})
		{
			for (int i = 0; const Frame* const decorating = TextLayout::FindDecorating(fragment, kind, i); i++)
				fill(ORVAN_TRY(text.GetLines(fragment, kind, *decorating)));
		}
		DrawColorGlyphs(canvas.drawing, text, fragment, transform, 1.0);
	}
	cairo_new_path(canvas.drawing);
	return {};
}

} // namespace orvan::cairo
