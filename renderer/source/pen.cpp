// SPDX-License-Identifier: MIT
#include "pen.h"

#include "drawing/strokes.h"

namespace orvan::cairo
{
namespace
{

using namespace drawing;

/// More dashes than this in one element are not drawn one by one.
constexpr double kMaxDashes = 100000.0;
constexpr int kMaxDashArray = 256;
constexpr double kShortestDash = 0.05; ///< In pixels; what is shorter looks solid anyway.

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

/// Sets the dashes of the stroke; false when the line is solid.
bool SetDashes(const Canvas& canvas, const Place& place, double width) noexcept
{
	const Style& style = place.style;
	Limits& limits = canvas.job.scene.limits;
	if (style.dashes == nullptr || style.dashes->IsEmpty() || style.dashes->GetCount() > kMaxDashArray)
		return false;
	double dashes[kMaxDashArray];
	int count = 0;
	double sum = 0.0;
	for (const SVGLength& dash : *style.dashes)
	{
		const double length = ToUserUnits(dash, Axis::other, place.viewport, style.dashFontSize);
		if (!std::isfinite(length) || length < 0.0)
			return false;
		dashes[count++] = length;
		sum += length;
	}
	const double scale = GetStretch(place.transform);
	if (!std::isfinite(sum) || sum * scale < kShortestDash * count)
		return false;
	// The library works through every dash of a line, also far outside of the picture.
	double left = 0.0;
	double top = 0.0;
	double right = 0.0;
	double bottom = 0.0;
	cairo_path_extents(canvas.drawing, &left, &top, &right, &bottom);
	const double dashCount = (right - left + bottom - top + width * scale) / (sum * scale) * count;
	if (dashCount > kMaxDashes || (place.isByReference && !limits.Pay(dashCount * kDashWork)))
	{
		limits.Omit(Omission::dashes);
		return false;
	}
	const double offset = place.Resolve(style.dashOffset, Axis::other);
	cairo_set_dash(canvas.drawing, dashes, count, std::isfinite(offset) ? std::fmod(offset, sum * 2.0) : 0.0);
	return true;
}

} // namespace

void StrokePath(const Canvas& canvas, const Place& place) noexcept
{
	const Style& style = place.style;
	const double width = GetStrokeWidth(place);
	if (!SetDashes(canvas, place, width))
		cairo_set_dash(canvas.drawing, nullptr, 0, 0.0);
	cairo_set_line_cap(canvas.drawing, ToCairo(style.lineCap));
	cairo_set_line_join(canvas.drawing, ToCairo(style.lineJoin));
	cairo_set_miter_limit(canvas.drawing, style.miterLimit >= 1.0 ? style.miterLimit : 1.0);
	// The pen is round in the element's coordinates, not in those of the picture.
	const cairo_matrix_t matrix = ToCairo(place.transform);
	cairo_set_matrix(canvas.drawing, &matrix);
	cairo_set_line_width(canvas.drawing, width);
	cairo_stroke(canvas.drawing);
	cairo_identity_matrix(canvas.drawing);
}

} // namespace orvan::cairo
