// SPDX-License-Identifier: MIT
/// Fill and stroke: what they are painted with, how far they reach and what they cost.
#include "cairo_context.h"

namespace orvan::cairo
{
namespace
{

/// More dashes than this in one element are not drawn one by one.
constexpr double kMaxDashes = 100000.0;
constexpr int kMaxDashArray = 256;

cairo_line_cap_t ToCairo(SVGLineCap cap) noexcept
{
	switch (cap)
	{
	case SVGLineCap::round:
		return CAIRO_LINE_CAP_ROUND;
	case SVGLineCap::square:
		return CAIRO_LINE_CAP_SQUARE;
	case SVGLineCap::butt:
		break;
	}
	return CAIRO_LINE_CAP_BUTT;
}

cairo_line_join_t ToCairo(SVGLineJoin join) noexcept
{
	switch (join)
	{
	case SVGLineJoin::round:
		return CAIRO_LINE_JOIN_ROUND;
	case SVGLineJoin::bevel:
		return CAIRO_LINE_JOIN_BEVEL;
	case SVGLineJoin::miter:
		break;
	}
	return CAIRO_LINE_JOIN_MITER;
}

const SVGPaint kBlack{};
constexpr double kShortestDash = 0.05; ///< In pixels; what is shorter looks solid anyway.

} // namespace

double CairoContext::Resolve(const SVGLength& length, Axis axis) const noexcept
{
	return ToUserUnits(length, axis, _state.viewport, _state.style.fontSize);
}

bool CairoContext::HasFill() const noexcept
{
	const SVGPaint* fill = _state.style.fill;
	return _mode == Mode::clip || fill == nullptr || fill->type != SVGPaintType::none;
}

bool CairoContext::HasStroke() const noexcept
{
	const SVGPaint* stroke = _state.style.stroke;
	return (_mode == Mode::paint || _mode == Mode::measure) && stroke != nullptr &&
		   stroke->type != SVGPaintType::none && GetStrokeWidth() > 0.0;
}

double CairoContext::GetStrokeWidth() const noexcept
{
	const double width = Resolve(_state.style.strokeWidth, Axis::other);
	return std::isfinite(width) ? width : 0.0;
}

Result<bool> CairoContext::SetFill(const Rectangle& bounds, double opacity) noexcept
{
	const Style& style = _state.style;
	if (_mode == Mode::clip)
	{
		cairo_set_source_rgba(_drawing, 0.0, 0.0, 0.0, 1.0);
		return true;
	}
	return SetSource(_drawing, style.fill != nullptr ? *style.fill : kBlack, ClampToUnit(style.fillOpacity) * opacity,
					 {_picture.GetDocument(), _state.transform, _state.viewport, style.fontSize, bounds});
}

Result<bool> CairoContext::SetStroke(const Rectangle& bounds, double opacity) noexcept
{
	const Style& style = _state.style;
	if (!HasStroke())
		return false;
	return SetSource(_drawing, *style.stroke, ClampToUnit(style.strokeOpacity) * opacity,
					 {_picture.GetDocument(), _state.transform, _state.viewport, style.fontSize, bounds});
}

/// Sets the dashes of the stroke; false when the line is solid.
bool CairoContext::SetDashes(double width) noexcept
{
	const Style& style = _state.style;
	if (style.dashes == nullptr || style.dashes->IsEmpty() || style.dashes->GetCount() > kMaxDashArray)
		return false;
	double dashes[kMaxDashArray];
	int count = 0;
	double sum = 0.0;
	for (const SVGLength& dash : *style.dashes)
	{
		const double length = ToUserUnits(dash, Axis::other, _state.viewport, style.dashFontSize);
		if (!std::isfinite(length) || length < 0.0)
			return false;
		dashes[count++] = length;
		sum += length;
	}
	const double scale = GetStretch(_state.transform);
	if (!std::isfinite(sum) || sum * scale < kShortestDash * count)
		return false;
	// The library works through every dash of a line, also far outside of the picture.
	double left = 0.0;
	double top = 0.0;
	double right = 0.0;
	double bottom = 0.0;
	cairo_path_extents(_drawing, &left, &top, &right, &bottom);
	const double dashCount = (right - left + bottom - top + width * scale) / (sum * scale) * count;
	if (dashCount > kMaxDashes || !PayInReference(dashCount * kDashWork))
	{
		Omit(Omission::dashes);
		return false;
	}
	const double offset = Resolve(style.dashOffset, Axis::other);
	cairo_set_dash(_drawing, dashes, count, std::isfinite(offset) ? std::fmod(offset, sum * 2.0) : 0.0);
	return true;
}

/// Strokes the current path, which is used up.
void CairoContext::StrokePath() noexcept
{
	const Style& style = _state.style;
	const double width = GetStrokeWidth();
	if (!SetDashes(width))
		cairo_set_dash(_drawing, nullptr, 0, 0.0);
	cairo_set_line_cap(_drawing, ToCairo(style.lineCap));
	cairo_set_line_join(_drawing, ToCairo(style.lineJoin));
	cairo_set_miter_limit(_drawing, style.miterLimit >= 1.0 ? style.miterLimit : 1.0);
	// The pen is round in the element's coordinates, not in those of the picture.
	const cairo_matrix_t matrix = cairo::ToCairo(_state.transform);
	cairo_set_matrix(_drawing, &matrix);
	cairo_set_line_width(_drawing, width);
	cairo_stroke(_drawing);
	cairo_identity_matrix(_drawing);
}

/// A box around what fill and stroke of a shape touch.
Rectangle CairoContext::GetPaintedBounds(const Rectangle& deviceBounds) const noexcept
{
	// One pixel more for the soft edges.
	if (!HasStroke())
		return deviceBounds.Grow(1.0);
	const Style& style = _state.style;
	const double reach = style.lineJoin == SVGLineJoin::miter ? std::max(style.miterLimit, 1.5) : 1.5;
	return deviceBounds.Grow(GetStrokeWidth() / 2.0 * reach * GetStretch(_state.transform) + 1.0);
}

/// What painting a box and going through `details` costs.
double CairoContext::GetWork(const Rectangle& painted, double details) const noexcept
{
	const Style& style = _state.style;
	const auto isGradient = [](const SVGPaint* paint)
	{
		return paint != nullptr && paint->type == SVGPaintType::reference;
	};
	const double factor = isGradient(style.fill) || isGradient(style.stroke) ? kGradientFactor : 1.0;
	return painted.Intersect(GetClipExtents()).GetArea() * factor + details;
}

} // namespace orvan::cairo
