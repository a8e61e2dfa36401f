// SPDX-License-Identifier: MIT
#include "pen.h"

#include "drawing/strokes.h"

#include <memory>

namespace orvan::cairo
{
namespace
{

using namespace drawing;

/// The drawing library squares the limit in numbers that have no room for more; corners as sharp are hardly drawn.
constexpr double kLargestMiterLimit = 1e4;

/// More dashes than this in one element are not drawn one by one.
constexpr double kMaxDashes = 100000.0;
/// How many of them a second is enough for when a page is written.
constexpr double kDashesPerSecond = 5e6;
/// A dash with round ends takes the library as long as these many others.
constexpr double kRoundDash = 4.0;
constexpr int kMaxDashArray = 256;
constexpr double kUnseenGap = 1.0 / 64.0; ///< In pixels, likewise.
constexpr double kLinesOfACurve = 8.0;    ///< Curves are many lines to the library.
constexpr double kShortestDash = 0.05;    ///< In pixels; what is shorter looks solid anyway.

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
	case SVGLineJoin::miterClip:
		break;
	}
	return CAIRO_LINE_JOIN_MITER;
}

using PathPtr = std::unique_ptr<cairo_path_t, Releaser<&cairo_path_destroy>>;

/// Calls `visit` with each element of a path: its kind, its points and how many they are.
template <typename Visit>
void ForEach(const cairo_path_t& path, Visit visit) noexcept
{
	for (int i = 0; i < path.num_data; i += path.data[i].header.length)
		visit(path.data[i].header.type, &path.data[i + 1], path.data[i].header.length - 1);
}

/// How long the current path is, and how many lines and curves it has. A curve counts as long as its control points lie
/// apart, which is never less than it is.
struct PathMeasure
{
	double length = 0.0;
	int segmentCount = 0;
};

PathMeasure MeasurePath(cairo_t* drawing) noexcept
{
	const PathPtr path(cairo_copy_path(drawing));
	PathMeasure measure;
	cairo_path_data_t start{};
	cairo_path_data_t at{};
	const auto goTo = [&](const cairo_path_data_t& point)
	{
		measure.length += std::hypot(point.point.x - at.point.x, point.point.y - at.point.y);
		at = point;
	};
	ForEach(*path,
			[&](cairo_path_data_type_t type, const cairo_path_data_t* points, int count)
			{
				if (type == CAIRO_PATH_MOVE_TO)
				{
					start = at = points[0];
					return;
				}
				measure.segmentCount++;
				for (int i = 0; i < count; i++)
					goTo(points[i]);
				if (type == CAIRO_PATH_CLOSE_PATH)
					goTo(start);
			});
	return measure;
}

/// Sets the dashes of the stroke; false when the line is solid. `stretch` is how much the pen's transform lengthens.
bool SetDashes(const Canvas& canvas, const Place& place, double stretch, double pathLength) noexcept
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
		const double length = ToUserUnits(dash, Axis::other, place.viewport, style, style.dashFontSize) * pathLength;
		if (!std::isfinite(length) || length < 0.0)
			return false;
		dashes[count++] = length;
		sum += length;
	}
	if (!std::isfinite(sum) || sum * stretch < kShortestDash * count)
		return false;
	// The library works through every dash of a line, also far outside of the picture.
	const double factor = style.lineCap == SVGLineCap::round ? kRoundDash : 1.0;
	const double dashCount = MeasurePath(canvas.drawing).length / (sum * stretch) * count * factor;
	if (dashCount > kMaxDashes || (place.isByReference && !limits.Pay(dashCount * kDashWork)))
	{
		limits.Omit(Omission::dashes);
		return false;
	}
	if (canvas.job.output == SVGRenderOutput::page)
		limits.Reserve(dashCount / kDashesPerSecond);
	double offset = place.Resolve(style.dashOffset, Axis::other) * pathLength;
	offset = std::isfinite(offset) ? std::fmod(offset, sum * 2.0) : 0.0;
	// Where a dash begins or ends exactly at a corner the library joins it to a dash without length around the corner.
	// A little room between them, which cannot be seen, keeps them apart.
	const double room = kUnseenGap / stretch;
	const auto isWide = [&](int i)
	{
		return dashes[i] > 64.0 * room;
	};
	bool hasRoom = count % 2 == 0;
	for (int i = 0; i < count && hasRoom; i++)
		hasRoom = isWide(i);
	for (int i = 0; i < count && hasRoom; i++)
		dashes[i] += i % 2 == 0 ? -2.0 * room : 2.0 * room;
	cairo_set_dash(canvas.drawing, dashes, count, hasRoom ? offset - room : offset);
	return true;
}

/// Strokes the current path in pieces, and stops when the time is up. Each piece begins with the last line of the one
/// before, so that their joins are there. The pieces make up one area, which the source then fills once.
void StrokeInPieces(const Canvas& canvas, const Matrix2d& pen, int pieceLength) noexcept
{
	cairo_t* const drawing = canvas.drawing;
	const PathPtr path(cairo_copy_path(drawing));
	const PatternPtr source(cairo_pattern_reference(cairo_get_source(drawing)));
	cairo_push_group_with_content(drawing, CAIRO_CONTENT_ALPHA);
	cairo_set_source_rgba(drawing, 0.0, 0.0, 0.0, 1.0);
	const auto stroke = [&]
	{
		const TransformedDrawing inPen(drawing, pen);
		cairo_stroke(drawing);
	};
	cairo_new_path(drawing);
	cairo_path_data_t start{};
	cairo_path_data_t before{}; // Where the line begins that leads to `at`.
	cairo_path_data_t at{};
	int length = 0;
	ForEach(*path,
			[&](cairo_path_data_type_t type, const cairo_path_data_t* points, int count)
			{
				if (canvas.job.scene.limits.IsOver())
					return;
				if (length >= pieceLength)
				{
					stroke();
					length = 0;
					cairo_move_to(drawing, before.point.x, before.point.y);
					cairo_line_to(drawing, at.point.x, at.point.y);
				}
				length++;
				if (type == CAIRO_PATH_MOVE_TO)
				{
					cairo_move_to(drawing, points[0].point.x, points[0].point.y);
					start = before = at = points[0];
				}
				else if (type == CAIRO_PATH_CURVE_TO)
				{
					cairo_curve_to(drawing, points[0].point.x, points[0].point.y, points[1].point.x, points[1].point.y,
								   points[2].point.x, points[2].point.y);
					before = points[1];
					at = points[2];
				}
				else
				{
					// A piece may lack the start of its subpath, so that closing it is a line.
					before = at;
					at = count != 0 ? points[0] : start;
					cairo_line_to(drawing, at.point.x, at.point.y);
				}
			});
	stroke();
	const PatternPtr area(cairo_pop_group(drawing));
	cairo_set_source(drawing, source.get());
	cairo_mask(drawing, area.get());
}

} // namespace

void StrokePath(const Canvas& canvas, const Frame& frame, double pathLength) noexcept
{
	const Place& place = frame.place;
	const Style& style = place.style;
	const double width = GetStrokeWidth(place);
	// The pen is round in the element's coordinates, not in those of the picture, unless the element says so.
	const double unit = canvas.job.scene.unit;
	const Matrix2d pen = IsStrokeUnscaled(frame) ? Scaling(unit, unit) : place.transform;
	const double stretch = GetStretch(pen);
	const bool isDashed = SetDashes(canvas, place, stretch, pathLength);
	if (!isDashed)
		cairo_set_dash(canvas.drawing, nullptr, 0, 0.0);
	cairo_set_line_cap(canvas.drawing, ToCairo(style.lineCap));
	cairo_set_line_join(canvas.drawing, ToCairo(style.lineJoin));
	cairo_set_miter_limit(canvas.drawing,
						  style.miterLimit >= 1.0 ? std::min(style.miterLimit, kLargestMiterLimit) : 1.0);
	cairo_set_line_width(canvas.drawing, width);
	if (!isDashed && canvas.job.output == SVGRenderOutput::pixels)
	{
		// A join at each line takes as many rows as the pen is wide.
		constexpr int kFewSegments = 1000;
		const PathMeasure measure = MeasurePath(canvas.drawing);
		const double rows = measure.length * 2.0 + measure.segmentCount * kLinesOfACurve * width * stretch;
		if (measure.segmentCount > kFewSegments && rows > kManyRows)
		{
			StrokeInPieces(canvas, pen, std::max(1, static_cast<int>(measure.segmentCount * kManyRows / rows)));
			return;
		}
	}
	// For a page the library works out what a stroke covers, with as many points as such a wide pen has.
	constexpr double kWide = 1000.0;
	constexpr double kManyPoints = 4e6;
	const double pixels = width * stretch;
	if (canvas.job.output == SVGRenderOutput::page && pixels > kWide &&
		MeasurePath(canvas.drawing).segmentCount * kLinesOfACurve * std::sqrt(pixels) > kManyPoints)
	{
		canvas.job.scene.limits.Omit(Omission::outlines);
		cairo_new_path(canvas.drawing);
		return;
	}
	const TransformedDrawing inPen(canvas.drawing, pen);
	cairo_stroke(canvas.drawing);
}

} // namespace orvan::cairo
