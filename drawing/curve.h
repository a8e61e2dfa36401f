// SPDX-License-Identifier: MIT
/// Vectors, lines and cubics: the arithmetic that everything here is made of.
#pragma once

#include "geometry.h"
#include "turns.h"

#include <cmath>
#include <cstddef>

namespace orvan::drawing
{

/// Coordinates beyond this count as missing: squares and products of them stay finite.
inline constexpr double kLargest = 1e100;

inline bool IsUsable(const Vector2d& p) noexcept
{
	return std::abs(p.x) <= kLargest && std::abs(p.y) <= kLargest; // False for NaN.
}

constexpr Vector2d Times(const Vector2d& v, double factor) noexcept
{
	return {v.x * factor, v.y * factor};
}

constexpr Vector2d Mix(const Vector2d& a, const Vector2d& b, double t) noexcept
{
	return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}

constexpr double Dot(const Vector2d& a, const Vector2d& b) noexcept
{
	return a.x * b.x + a.y * b.y;
}

constexpr double Cross(const Vector2d& a, const Vector2d& b) noexcept
{
	return a.x * b.y - a.y * b.x;
}

/// A quarter turn from the x axis towards the y axis.
constexpr Vector2d Turn(const Vector2d& v) noexcept
{
	return {-v.y, v.x};
}

inline double LengthOf(const Vector2d& v) noexcept
{
	const double squared = Dot(v, v);
	// Only where a square has lost digits is the longer way needed.
	return squared > 1e-280 && squared < 1e280 ? std::sqrt(squared) : std::hypot(v.x, v.y);
}

/// The direction of length 1; zero for what leads nowhere.
inline Vector2d Normalize(const Vector2d& v) noexcept
{
	const double length = LengthOf(v);
	return length > 0.0 ? Times(v, 1.0 / length) : Vector2d();
}

/// True when circles stay circles.
inline bool KeepsCircles(const Matrix2d& m) noexcept
{
	const double first = Dot(m.axis1, m.axis1);
	const double second = Dot(m.axis2, m.axis2);
	return std::abs(first - second) + std::abs(Dot(m.axis1, m.axis2)) <= 1e-9 * (first + second);
}

/// A line or a cubic. The control points of a line stand on it, at its thirds.
struct Curve
{
	Vector2d p[4];
	bool isLine = false;

	static Curve Line(const Vector2d& from, const Vector2d& to) noexcept
	{
		return {{from, Mix(from, to, 1.0 / 3.0), Mix(from, to, 2.0 / 3.0), to}, true};
	}

	Vector2d GetPoint(double t) const noexcept
	{
		if (isLine)
			return Mix(p[0], p[3], t);
		const double s = 1.0 - t;
		const double a = s * s * s;
		const double b = 3.0 * s * s * t;
		const double c = 3.0 * s * t * t;
		const double d = t * t * t;
		return {a * p[0].x + b * p[1].x + c * p[2].x + d * p[3].x, a * p[0].y + b * p[1].y + c * p[2].y + d * p[3].y};
	}

	/// The first derivative.
	Vector2d GetSpeed(double t) const noexcept
	{
		if (isLine)
			return p[3] - p[0];
		const double s = 1.0 - t;
		const Vector2d a = p[1] - p[0];
		const Vector2d b = p[2] - p[1];
		const Vector2d c = p[3] - p[2];
		return {3.0 * (s * s * a.x + 2.0 * s * t * b.x + t * t * c.x),
				3.0 * (s * s * a.y + 2.0 * s * t * b.y + t * t * c.y)};
	}

	/// The second derivative.
	Vector2d GetChange(double t) const noexcept
	{
		if (isLine)
			return {};
		const Vector2d a = p[2] - p[1] - (p[1] - p[0]);
		const Vector2d b = p[3] - p[2] - (p[2] - p[1]);
		return {6.0 * Mix(a, b, t).x, 6.0 * Mix(a, b, t).y};
	}

	/// The direction of length 1 at `t`, also where control points coincide; zero for a curve that is a point.
	Vector2d GetDirection(double t) const noexcept
	{
		const Vector2d speed = GetSpeed(t);
		// Where the speed is nothing beside the size of the curve, it is what rounding leaves of none.
		const double size = std::abs(p[3].x - p[0].x) + std::abs(p[3].y - p[0].y) + std::abs(p[2].x - p[1].x) +
							std::abs(p[2].y - p[1].y) + std::abs(p[1].x - p[0].x) + std::abs(p[1].y - p[0].y);
		if (std::abs(speed.x) + std::abs(speed.y) > size * 1e-12)
			return Normalize(speed);
		if (t <= 0.0)
			return Normalize(p[2] != p[0] ? p[2] - p[0] : p[3] - p[0]);
		if (t >= 1.0)
			return Normalize(p[3] != p[1] ? p[3] - p[1] : p[3] - p[0]);
		return Normalize(GetChange(t));
	}

	/// The part between two parameters.
	Curve GetPart(double from, double to) const noexcept
	{
		if (isLine)
			return Line(GetPoint(from), GetPoint(to));
		const double third = (to - from) / 3.0;
		const Vector2d start = GetPoint(from);
		const Vector2d end = GetPoint(to);
		return {{start, start + Times(GetSpeed(from), third), end - Times(GetSpeed(to), third), end}};
	}

	/// The first half and the second half.
	void Halve(Curve& first, Curve& second) const noexcept
	{
		const Vector2d a = Mix(p[0], p[1], 0.5);
		const Vector2d b = Mix(p[1], p[2], 0.5);
		const Vector2d c = Mix(p[2], p[3], 0.5);
		const Vector2d left = Mix(a, b, 0.5);
		const Vector2d right = Mix(b, c, 0.5);
		const Vector2d middle = Mix(left, right, 0.5);
		const Vector2d end = p[3];
		first = {{p[0], a, left, middle}, isLine};
		second = {{middle, right, c, end}, isLine};
	}

	/// A box around the control points, and so around the curve.
	Rectangle GetHull() const noexcept
	{
		Rectangle hull;
		for (const Vector2d& point : p)
			hull.Add(point);
		return hull;
	}

	/// Number of equal steps of the parameter that make lines no farther off than `tolerance`.
	int GetStepCount(double tolerance) const noexcept
	{
		if (isLine)
			return 1;
		const Vector2d a = p[2] - p[1] - (p[1] - p[0]);
		const Vector2d b = p[3] - p[2] - (p[2] - p[1]);
		const double bend = std::max(LengthOf(a), LengthOf(b));
		const double steps = std::ceil(std::sqrt(0.75 * bend / tolerance));
		constexpr double kMost = 4096.0;
		return steps >= 1.0 ? static_cast<int>(std::min(steps, kMost)) : 1;
	}
};

/// Where between its ends a curve runs at a right angle to `direction`: the extrema along it.
inline int FindTurns(const Curve& curve, const Vector2d& direction, double (&at)[2]) noexcept
{
	const double a = Dot(curve.p[1] - curve.p[0], direction);
	const double b = Dot(curve.p[2] - curve.p[1], direction);
	const double c = Dot(curve.p[3] - curve.p[2], direction);
	return FindTurns(a, b, c, at);
}

} // namespace orvan::drawing
