// SPDX-License-Identifier: MIT
#include "complete/quarter_arc.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace orvan::grammar::complete
{
namespace
{
struct Vector
{
	double x, y;
};

Vector operator+(Vector a, Vector b) noexcept
{
	return {a.x + b.x, a.y + b.y};
}

Vector operator*(Vector v, double factor) noexcept
{
	return {v.x * factor, v.y * factor};
}

/// What the unit circle is mapped by to become the ellipse, but for its place.
struct Axes
{
	double radiusX, radiusY;
	double cosine, sine;

	Vector Map(Vector v) const noexcept
	{
		const double x = v.x * radiusX;
		const double y = v.y * radiusY;
		return {cosine * x - sine * y, sine * x + cosine * y};
	}

	Vector Unmap(Vector v) const noexcept
	{
		return {(cosine * v.x + sine * v.y) / radiusX, (cosine * v.y - sine * v.x) / radiusY};
	}
};

/// How an arc is cut into equal parts.
struct Steps
{
	std::size_t count;
	double cosine, sine; ///< Of one part's angle.
};

/// Cuts an arc, of whose angle the half's cosine and sine are given. A quarter turn that rounding has made a trifle
/// larger stays one part.
Steps Cut(double cosine, double sine) noexcept
{
	constexpr double kEighth = 0.70675;        // A little more than an eighth of a turn,
	constexpr double kQuarter = -0.001;        // a quarter,
	constexpr double kThreeEighths = -0.70816; // and three eighths.
	if (cosine >= kEighth)
		return {1, cosine * cosine - sine * sine, 2 * sine * cosine};
	if (cosine >= kQuarter)
		return {2, cosine, sine};
	if (cosine >= kThreeEighths)
	{
		const double angle = std::atan2(sine, cosine) * (2.0 / 3);
		return {3, std::cos(angle), std::sin(angle)};
	}
	return {4, std::sqrt((1 + cosine) / 2), std::sqrt((1 - cosine) / 2)};
}

struct Cubic
{
	Vector first, second, end;
};

/// An arc as up to four cubics.
struct Cubics
{
	std::array<Cubic, 4> items;
	std::size_t count = 0;
};

/// False when the arc leaves the range of finite numbers.
///
/// On the unit circle that the ellipse is mapped to, the chord's half h alone says how long the arc is: the sine of
/// half its angle is |h|. So no angle is looked at, but when the arc is cut into three.
bool MakeCubics(const Arc& arc, Cubics& cubics) noexcept
{
	Axes axes{std::fabs(arc.radiusX), std::fabs(arc.radiusY), 1, 0};
	if (arc.rotation != 0 && axes.radiusX != axes.radiusY)
	{
		const double angle = arc.rotation * (std::numbers::pi / 180);
		axes.cosine = std::cos(angle);
		axes.sine = std::sin(angle);
	}
	const Vector start{arc.startX, arc.startY};
	const Vector end{arc.endX, arc.endY};
	const Vector middle = (start + end) * 0.5;
	Vector half = axes.Unmap((end + start * -1) * 0.5);
	double square = half.x * half.x + half.y * half.y;
	if (square > 1)
	{
		// Radii that are too small for the chord grow until they fit.
		const double factor = std::sqrt(square);
		axes.radiusX *= factor;
		axes.radiusY *= factor;
		half = half * (1 / factor);
		square = 1;
	}
	const double sine = std::sqrt(square);
	const double distance = std::sqrt(1 - square);
	const double side = arc.isSweep != arc.isLarge ? distance / sine : -distance / sine;
	const Vector center{-half.y * side, half.x * side}; // From the chord's middle.
	const Steps steps = Cut(arc.isLarge ? -distance : distance, sine);

	const double turn = arc.isSweep ? 1 : -1;
	const double tangentOfHalf = steps.sine / (1 + steps.cosine);
	const double length = 4.0 / 3 * turn * tangentOfHalf / (1 + std::sqrt(1 + tangentOfHalf * tangentOfHalf));
	const Vector place = middle + axes.Map(center);
	Vector radius = half * -1 + center * -1;
	Vector from = start;
	Vector slope = axes.Map(Vector{-radius.y, radius.x} * length);
	double check = 0;
	for (std::size_t i = 1; i <= steps.count; ++i)
	{
		radius = {radius.x * steps.cosine - radius.y * steps.sine * turn,
				  radius.y * steps.cosine + radius.x * steps.sine * turn};
		const Vector to = i == steps.count ? end : place + axes.Map(radius);
		const Vector slopeThere = axes.Map(Vector{-radius.y, radius.x} * length);
		const Cubic& cubic = cubics.items[cubics.count++] = {from + slope, to + slopeThere * -1, to};
		check += (cubic.first.x + cubic.first.y + cubic.second.x + cubic.second.y + to.x + to.y) * 0;
		from = to;
		slope = slopeThere;
	}
	// Zero times a number is zero just when the number is finite.
	return check == 0;
}
} // namespace

void DeliverArc(const Arc& arc, PathSink& sink)
{
	if (arc.startX == arc.endX && arc.startY == arc.endY)
		return;
	Cubics cubics;
	if (arc.radiusX == 0 || arc.radiusY == 0 || !MakeCubics(arc, cubics))
	{
		sink.LineTo(arc.endX, arc.endY);
		return;
	}
	for (std::size_t i = 0; i != cubics.count; ++i)
	{
		const auto& [first, second, end] = cubics.items[i];
		sink.CubicTo(first.x, first.y, second.x, second.y, end.x, end.y);
	}
}
} // namespace orvan::grammar::complete
