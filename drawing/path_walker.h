// SPDX-License-Identifier: MIT
/// Places along a path.
#pragma once

#include "outline.h"

namespace orvan::drawing
{

/// A place on a path.
struct PathPoint
{
	Vector2d point;
	double angle = 0.0; ///< Of the path's direction there, in radians, clockwise from the x axis.
};

/// An outline by the distance from its start. The way from the end of one subpath to the start of the next has no
/// length.
class PathWalker
{
public:
	static Result<PathWalker> Create(const Outline& outline) noexcept;

	double GetLength() const noexcept
	{
		return _length;
	}

	/// The place at a distance from the start; before the start and behind the end it is the start or the end.
	PathPoint GetPoint(double distance) const noexcept;

private:
	/// A straight piece, with the path's directions at both of its ends.
	struct Piece
	{
		Vector2d start;
		Vector2d end;
		Vector2d startDirection;
		Vector2d endDirection;
		double distance; ///< Of its start from the start of the path.
		double length;
	};

	Result<void> AddLine(const Vector2d& start, const Vector2d& end) noexcept;
	Result<void> AddCurve(const Vector2d& start, const Vector2d (&points)[3], int pieces) noexcept;
	Result<void> Add(const Vector2d& start, const Vector2d& end, const Vector2d& startDirection,
					 const Vector2d& endDirection) noexcept;

	BaseArray<Piece> _pieces;
	double _length = 0.0;
};

} // namespace orvan::drawing
