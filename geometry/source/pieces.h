// SPDX-License-Identifier: MIT
/// Curves of two outlines cut into straight pieces that meet at their ends only.
#pragma once

#include "curve.h"
#include "drawing/outline.h"

#include <cstdint>

namespace orvan::geometry
{

/// A place on the grid that pieces are cut on. Coordinates stay below 2^28, so that products of differences are exact.
struct GridPoint
{
	std::int64_t x = 0;
	std::int64_t y = 0;

	// NOLINTNEXTLINE(modernize-use-nullptr): the compiler compares with a literal 0.
	friend constexpr auto operator<=>(const GridPoint&, const GridPoint&) noexcept = default;

	friend constexpr GridPoint operator-(const GridPoint& a, const GridPoint& b) noexcept
	{
		return {a.x - b.x, a.y - b.y};
	}
};

constexpr std::int64_t Cross(const GridPoint& a, const GridPoint& b) noexcept
{
	return a.x * b.y - a.y * b.x;
}

constexpr std::int64_t Dot(const GridPoint& a, const GridPoint& b) noexcept
{
	return a.x * b.x + a.y * b.y;
}

/// The grid: whole numbers of cells from an origin.
struct Grid
{
	Vector2d origin;
	double cell = 1.0;

	GridPoint GetPoint(const Vector2d& point) const noexcept
	{
		return {std::llround((point.x - origin.x) / cell), std::llround((point.y - origin.y) / cell)};
	}

	Vector2d GetPlace(const GridPoint& point) const noexcept
	{
		return {origin.x + static_cast<double>(point.x) * cell, origin.y + static_cast<double>(point.y) * cell};
	}
};

/// A line or curve of one of the two outlines.
struct SourceCurve
{
	Curve curve;
	std::uint8_t operand = 0; ///< 0 or 1.
};

/// A straight piece of a curve, between two of its parameters.
struct Piece
{
	GridPoint from;
	GridPoint to;
	std::uint32_t source = 0; ///< Index of the curve.
	std::uint8_t operand = 0; ///< Of which outline it is.
	double start = 0.0;
	double end = 1.0;
};

/// Curves and their pieces.
struct Pieces
{
	BaseArray<SourceCurve> curves;
	BaseArray<Piece> pieces;
	Grid grid;
	double tolerance = 0.0; ///< How far off pieces may be.
};

/// Cuts both outlines, whose subpaths count as closed. Pieces are no farther off than `tolerance`, which is raised
/// where numbers do not reach that far; 0 stands for a millionth of the size of both. Afterwards pieces share no points
/// but their ends, and what was nearer than a cell has become the same. Fails with the illegal-argument error for what
/// is too intricate to be cut in reasonable time.
Result<Pieces> CutIntoPieces(const drawing::Outline& first, const drawing::Outline& second, double tolerance) noexcept;

} // namespace orvan::geometry
