// SPDX-License-Identifier: MIT
/// 2D vectors, affine matrices and colours in 64-bit floats.
#pragma once

namespace orvan
{

/// 64-bit IEEE double.
using Float = double;

struct Vector2d
{
	Float x = 0.0;
	Float y = 0.0;

	/// The sum, coordinate by coordinate.
	friend constexpr Vector2d operator+(const Vector2d& a, const Vector2d& b) noexcept
	{
		return {a.x + b.x, a.y + b.y};
	}

	/// The difference, coordinate by coordinate.
	friend constexpr Vector2d operator-(const Vector2d& a, const Vector2d& b) noexcept
	{
		return {a.x - b.x, a.y - b.y};
	}

	/// True when both coordinates are the same; 0 equals -0, and NaN nothing.
	friend constexpr bool operator==(const Vector2d&, const Vector2d&) noexcept = default;
};

/// An affine map: a point p goes to offset + p.x·axis1 + p.y·axis2. The default is the identity.
struct Matrix2d
{
	Vector2d offset;
	Vector2d axis1{1.0, 0.0};
	Vector2d axis2{0.0, 1.0};

	/// The image of a point.
	constexpr Vector2d Apply(const Vector2d& p) const noexcept
	{
		return {offset.x + p.x * axis1.x + p.y * axis2.x, offset.y + p.x * axis1.y + p.y * axis2.y};
	}

	/// The image of a direction, which the offset does not move.
	constexpr Vector2d ApplyToDirection(const Vector2d& d) const noexcept
	{
		return {d.x * axis1.x + d.y * axis2.x, d.x * axis1.y + d.y * axis2.y};
	}

	/// A × B applies B first.
	friend constexpr Matrix2d operator*(const Matrix2d& a, const Matrix2d& b) noexcept
	{
		return {a.Apply(b.offset), a.ApplyToDirection(b.axis1), a.ApplyToDirection(b.axis2)};
	}

	/// True when all six numbers are the same, as for vectors.
	friend constexpr bool operator==(const Matrix2d&, const Matrix2d&) noexcept = default;
};

/// Red, green and blue, each 0 to 1. The default is black.
struct Color
{
	Float red = 0.0;
	Float green = 0.0;
	Float blue = 0.0;

	/// True when all three channels are the same, as for vectors.
	friend constexpr bool operator==(const Color&, const Color&) noexcept = default;
};

} // namespace orvan
