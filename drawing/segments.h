// SPDX-License-Identifier: MIT
/// An outline piece by piece.
#pragma once

#include "curve.h"
#include "outline.h"

namespace orvan::drawing
{

/// Calls `visitor.Move(point)`, `visitor.Add(curve)` for each line and curve, and `visitor.Close(line)` with the line
/// that closes a subpath, which may have no length. What is not usable as a coordinate ends its subpath: everything is
/// left out up to the next move.
template <typename Commands, typename Visitor>
void VisitSegments(const Commands& commands, const Matrix2d& transform, Visitor& visitor) noexcept
{
	Vector2d start;
	Vector2d current;
	bool isBroken = true; // Before the first point there is nowhere to start from.
	bool isClosed = false;
	for (const SVGPathCommand& command : commands)
	{
		const Vector2d end = transform.Apply(command.points[2]);
		if (command.type == SVGPathCommandType::close)
		{
			if (!isBroken)
			{
				visitor.Close(Curve::Line(current, start));
				current = start;
				isClosed = true;
			}
			continue;
		}
		const bool isMove = command.type == SVGPathCommandType::move;
		if (isMove || !IsUsable(end))
		{
			isBroken = !IsUsable(end);
			isClosed = false;
			start = current = end;
			if (!isBroken)
				visitor.Move(end);
			continue;
		}
		if (isBroken)
			continue;
		if (isClosed)
		{
			// What follows a closed subpath without a move starts where that one did.
			visitor.Move(start);
			isClosed = false;
		}
		if (command.type == SVGPathCommandType::line)
			visitor.Add(Curve::Line(current, end));
		else
		{
			const Curve curve{{current, transform.Apply(command.points[0]), transform.Apply(command.points[1]), end}};
			if (IsUsable(curve.p[1]) && IsUsable(curve.p[2]))
				visitor.Add(curve);
			else
				isBroken = true;
		}
		current = end;
	}
}

} // namespace orvan::drawing
