// SPDX-License-Identifier: MIT
/// Rectangles and what transforms do to them.
#pragma once

#include "orvan/geometry.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvan::drawing
{

/// A rectangle by its edges; empty as long as nothing was added to it.
struct Rectangle
{
	double left = std::numeric_limits<double>::infinity();
	double top = std::numeric_limits<double>::infinity();
	double right = -std::numeric_limits<double>::infinity();
	double bottom = -std::numeric_limits<double>::infinity();

	void Add(const Vector2d& point) noexcept
	{
		left = std::min(left, point.x);
		top = std::min(top, point.y);
		right = std::max(right, point.x);
		bottom = std::max(bottom, point.y);
	}

	void Include(const Rectangle& other) noexcept
	{
		if (other.IsEmpty())
			return;
		left = std::min(left, other.left);
		top = std::min(top, other.top);
		right = std::max(right, other.right);
		bottom = std::max(bottom, other.bottom);
	}

	bool Contains(const Vector2d& point) const noexcept
	{
		return point.x >= left && point.x <= right && point.y >= top && point.y <= bottom;
	}

	bool IsEmpty() const noexcept
	{
		return !(left <= right && top <= bottom);
	}

	/// False when nothing was added, and when an edge is not a number or infinite.
	bool IsFinite() const noexcept
	{
		return !IsEmpty() && std::isfinite(left + top + right + bottom);
	}

	double GetWidth() const noexcept
	{
		return std::max(0.0, right - left);
	}

	double GetHeight() const noexcept
	{
		return std::max(0.0, bottom - top);
	}

	double GetArea() const noexcept
	{
		return GetWidth() * GetHeight();
	}

	Rectangle Intersect(const Rectangle& other) const noexcept
	{
		return {std::max(left, other.left), std::max(top, other.top), std::min(right, other.right),
				std::min(bottom, other.bottom)};
	}

	Rectangle Grow(double by) const noexcept
	{
		return {left - by, top - by, right + by, bottom + by};
	}

	/// The smallest rectangle with whole edges around this one.
	Rectangle RoundOut() const noexcept
	{
		return {std::floor(left), std::floor(top), std::ceil(right), std::ceil(bottom)};
	}
};

constexpr Matrix2d Translation(double x, double y) noexcept
{
	return {{x, y}, {1.0, 0.0}, {0.0, 1.0}};
}

constexpr Matrix2d Scaling(double x, double y) noexcept
{
	return {{0.0, 0.0}, {x, 0.0}, {0.0, y}};
}

/// A transform with this point as its origin.
constexpr Matrix2d Around(const Vector2d& origin, const Matrix2d& matrix) noexcept
{
	return Translation(origin.x, origin.y) * matrix * Translation(-origin.x, -origin.y);
}

/// The bounds of a transformed rectangle.
inline Rectangle Transform(const Matrix2d& matrix, const Rectangle& r) noexcept
{
	Rectangle result;
	for (const Vector2d& corner : {Vector2d{r.left, r.top}, {r.right, r.top}, {r.right, r.bottom}, {r.left, r.bottom}})
		result.Add(matrix.Apply(corner));
	return result;
}

/// True when the transform keeps areas areas. Anything else draws nothing, and would leave the drawing library in an
/// error state.
inline bool IsInvertible(const Matrix2d& m) noexcept
{
	const double determinant = m.axis1.x * m.axis2.y - m.axis1.y * m.axis2.x;
	return std::isfinite(determinant) && std::abs(determinant) > 1e-30 && std::isfinite(m.offset.x) &&
		   std::isfinite(m.offset.y);
}

/// The transform back; only of one that is invertible.
inline Matrix2d Invert(const Matrix2d& m) noexcept
{
	const double determinant = m.axis1.x * m.axis2.y - m.axis1.y * m.axis2.x;
	Matrix2d inverse;
	inverse.axis1 = {m.axis2.y / determinant, -m.axis1.y / determinant};
	inverse.axis2 = {-m.axis2.x / determinant, m.axis1.x / determinant};
	inverse.offset = inverse.ApplyToDirection({-m.offset.x, -m.offset.y});
	return inverse;
}

/// The transform from the fractions of a box to the coordinates that the box is in.
inline Matrix2d BoxTransform(const Rectangle& box) noexcept
{
	return {{box.left, box.top}, {box.GetWidth(), 0.0}, {0.0, box.GetHeight()}};
}

/// How much the transform lengthens lines on average: the square root of what it does to areas.
inline double GetMeanScale(const Matrix2d& m) noexcept
{
	return std::sqrt(std::abs(m.axis1.x * m.axis2.y - m.axis1.y * m.axis2.x));
}

/// Upper bound of how much the transform lengthens a line.
inline double GetStretch(const Matrix2d& m) noexcept
{
	return std::hypot(std::hypot(m.axis1.x, m.axis1.y), std::hypot(m.axis2.x, m.axis2.y));
}

} // namespace orvan::drawing
