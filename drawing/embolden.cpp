// SPDX-License-Identifier: MIT
#include "embolden.h"

namespace orvan::drawing
{
namespace
{

double Length(const Vector2d& v) noexcept
{
	return std::hypot(v.x, v.y);
}

/// The points of one contour, control points included, without those that coincide with the one before.
struct Contour
{
	BaseArray<Vector2d> points;

	Result<void> Add(const Vector2d& point) noexcept
	{
		if (points.IsEmpty() || !(*(points.end() - 1) == point))
			return points.Append(point);
		return {};
	}

	/// Twice the area that it runs around, positive when that is on its left.
	double GetArea() const noexcept
	{
		double area = 0.0;
		for (std::size_t i = 0; i < points.GetCount(); i++)
		{
			const Vector2d& a = points[i];
			const Vector2d& b = points[(i + 1) % points.GetCount()];
			area += a.x * b.y - a.y * b.x;
		}
		return area;
	}

	/// Where a point of the contour goes when its edges move to their right by `half`, or to their left by -half. Sharp
	/// corners stay where they are, and no corner goes further than its edges are long.
	Vector2d Move(const Vector2d& point, double half) const noexcept
	{
		constexpr double kSharpest = -0.9375;
		const std::size_t count = points.GetCount();
		const auto at = static_cast<std::size_t>(std::find(points.begin(), points.end(), point) - points.begin());
		if (count < 2 || at == count)
			return point;
		const Vector2d in = point - points[(at + count - 1) % count];
		const Vector2d out = points[(at + 1) % count] - point;
		const double lengthIn = Length(in);
		const double lengthOut = Length(out);
		if (lengthIn == 0.0 || lengthOut == 0.0)
			return point;
		const double cosine = (in.x * out.x + in.y * out.y) / (lengthIn * lengthOut);
		if (cosine <= kSharpest)
			return point;
		const Vector2d normal{in.y / lengthIn + out.y / lengthOut, -in.x / lengthIn - out.x / lengthOut};
		const double limit = std::min(lengthIn, lengthOut);
		const double scale = std::clamp(half / (1.0 + cosine), -limit, limit);
		return {point.x + normal.x * scale, point.y + normal.y * scale};
	}
};

} // namespace

Result<Outline> Embolden(const Outline& glyph, double strength) noexcept
{
	const BaseArray<SVGPathCommand>& commands = glyph.GetCommands();
	BaseArray<Contour> contours;
	double area = 0.0;
	for (const SVGPathCommand& command : commands)
	{
		if (command.type == SVGPathCommandType::move)
			ORVAN_TRY(contours.Append(Contour()));
		if (command.type == SVGPathCommandType::close || contours.IsEmpty())
			continue;
		Contour& contour = *(contours.end() - 1);
		if (command.type == SVGPathCommandType::cubic)
		{
			ORVAN_TRY(contour.Add(command.points[0]));
			ORVAN_TRY(contour.Add(command.points[1]));
		}
		ORVAN_TRY(contour.Add(command.points[2]));
	}
	for (Contour& contour : contours)
	{
		// The way back to the start counts as an edge already.
		const std::size_t count = contour.points.GetCount();
		if (count > 1 && contour.points[count - 1] == contour.points[0])
			ORVAN_TRY(contour.points.Resize(count - 1));
		area += contour.GetArea();
	}
	const double half = area > 0.0 ? strength / 2.0 : -strength / 2.0;
	Outline bold;
	std::size_t number = 0;
	for (const SVGPathCommand& command : commands)
	{
		number += command.type == SVGPathCommandType::move ? 1 : 0;
		if (number == 0)
			continue;
		const auto move = [&](const Vector2d& point)
		{
			const Vector2d moved = contours[number - 1].Move(point, half);
			return Vector2d{moved.x + strength / 2.0, moved.y + strength / 2.0};
		};
		const auto& [control1, control2, point] = command.points;
		switch (command.type)
		{
		case SVGPathCommandType::move:
			ORVAN_TRY(bold.MoveTo(move(point)));
			break;
		case SVGPathCommandType::line:
			ORVAN_TRY(bold.LineTo(move(point)));
			break;
		case SVGPathCommandType::cubic:
			ORVAN_TRY(bold.CurveTo(move(control1), move(control2), move(point)));
			break;
		case SVGPathCommandType::close:
			ORVAN_TRY(bold.Close());
			break;
		}
	}
	return bold;
}

} // namespace orvan::drawing
