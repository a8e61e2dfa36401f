// SPDX-License-Identifier: MIT
#include "text_lines.h"

namespace orvan::drawing
{
namespace
{

/// More dots or waves than this are too small to be told apart.
constexpr double kManyPieces = 1000.0;

Result<void> AddBar(double start, double end, double center, double thickness, const Matrix2d& place,
					Outline& outline) noexcept
{
	Outline bar;
	ORVAN_TRY(bar.AddRectangle({start, center - thickness / 2.0, end, center + thickness / 2.0}, 0.0, 0.0));
	return outline.Append(bar, place);
}

/// The side on which a line has room: away from the letters, or both.
double GetSide(TextLineKind kind) noexcept
{
	return kind == TextLineKind::underline ? 1.0 : kind == TextLineKind::overline ? -1.0 : 0.0;
}

Result<void> AddDouble(const TextLine& line, const Matrix2d& place, Outline& outline) noexcept
{
	// One line stands where a single one would, and the other beside it: as in browsers, below a line through letters.
	const double apart = (line.thickness + 1.0) * (line.kind == TextLineKind::overline ? -1.0 : 1.0);
	ORVAN_TRY(AddBar(line.start, line.end, line.center, line.thickness, place, outline));
	return AddBar(line.start, line.end, line.center + apart, line.thickness, place, outline);
}

/// How many pieces of a length are spread over a line with gaps that come nearest to `gap`.
double CountPieces(double length, double piece, double gap) noexcept
{
	const double fewer = std::max(1.0, std::floor((length + gap) / (piece + gap)));
	const double narrow = (length - (fewer + 1.0) * piece) / fewer;
	if (narrow <= 0.0 || fewer == 1.0)
		return narrow <= 0.0 ? fewer : 2.0;
	const double wide = (length - fewer * piece) / (fewer - 1.0);
	return wide - gap < gap - narrow ? fewer : fewer + 1.0;
}

Result<void> AddPieces(const TextLine& line, const Matrix2d& place, Outline& outline) noexcept
{
	// Thin lines need longer dashes to look like dashes.
	constexpr double kThick = 3.0;
	const bool isDotted = line.style == SVGTextDecorationStyle::dotted;
	const bool isThick = line.thickness >= kThick;
	const double piece = line.thickness * (isDotted ? 1.0 : isThick ? 2.0 : 3.0);
	const double gap = line.thickness * (isDotted || isThick ? 1.0 : 2.0);
	const double length = line.end - line.start;
	const double count = CountPieces(length, piece, gap);
	const double step = count > 1.0 ? (length - piece) / (count - 1.0) : 0.0;
	for (double i = 0.0; i < count; i++)
	{
		const double start = line.start + i * step;
		if (isDotted)
		{
			Outline dot;
			ORVAN_TRY(dot.AddEllipse({start + piece / 2.0, line.center}, piece / 2.0, piece / 2.0));
			ORVAN_TRY(outline.Append(dot, place));
		}
		else
			ORVAN_TRY(AddBar(start, std::min(start + piece, line.end), line.center, line.thickness, place, outline));
	}
	return {};
}

/// A band along cubics that swing to one side and the other.
Result<void> AddWave(const TextLine& line, const Matrix2d& place, Outline& outline) noexcept
{
	constexpr int kSteps = 12;
	const double half = std::round(line.thickness * 2.0 + 0.5) + 0.5;
	const double swing = std::round(line.thickness * 3.0 + 0.5) + 0.5;
	const double center = line.center - line.thickness / 2.0 + GetSide(line.kind) * (line.thickness + 1.0);
	const double length = line.end - line.start;
	const int count = std::max(1, static_cast<int>(std::ceil(length / half / 2.0))) * kSteps;
	const auto getEdge = [&](int i, double side)
	{
		const double wave = std::floor(static_cast<double>(i) / kSteps);
		const double t = static_cast<double>(i) / kSteps - wave;
		const double s = 1.0 - t;
		const double x = (2.0 * wave + 3.0 * t * s + 2.0 * t * t * t) * half;
		const double y = 3.0 * t * s * (s - t) * swing;
		const double dx = (3.0 * (s - t) + 6.0 * t * t) * half;
		const double dy = 3.0 * (1.0 - 6.0 * t * s) * swing;
		const double scale = line.thickness / 2.0 * side / std::hypot(dx, dy);
		const double along = std::clamp(x - dy * scale, 0.0, length);
		return place.Apply({line.start + along, center + y + dx * scale});
	};
	ORVAN_TRY(outline.MoveTo(getEdge(0, -1.0)));
	for (int i = 1; i <= count; i++)
		ORVAN_TRY(outline.LineTo(getEdge(i, -1.0)));
	for (int i = count; i >= 0; i--)
		ORVAN_TRY(outline.LineTo(getEdge(i, 1.0)));
	return outline.Close();
}

} // namespace

Result<void> AddTextLine(const TextLine& line, const Matrix2d& place, Outline& outline) noexcept
{
	if (!(line.thickness > 0.0) || !(line.end > line.start))
		return {};
	const bool hasMany = !((line.end - line.start) / line.thickness < kManyPieces);
	switch (line.style)
	{
	case SVGTextDecorationStyle::solid:
		break;
	case SVGTextDecorationStyle::doubled:
		return AddDouble(line, place, outline);
	case SVGTextDecorationStyle::dotted:
	case SVGTextDecorationStyle::dashed:
		if (!hasMany)
			return AddPieces(line, place, outline);
		break;
	case SVGTextDecorationStyle::wavy:
		if (!hasMany)
			return AddWave(line, place, outline);
		break;
	}
	return AddBar(line.start, line.end, line.center, line.thickness, place, outline);
}

} // namespace orvan::drawing
