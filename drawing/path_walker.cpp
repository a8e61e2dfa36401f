// SPDX-License-Identifier: MIT
#include "path_walker.h"

namespace orvan::drawing
{
namespace
{

Vector2d Mix(const Vector2d& a, const Vector2d& b, double t) noexcept
{
	return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}

Vector2d Normalize(const Vector2d& direction) noexcept
{
	const double length = std::hypot(direction.x, direction.y);
	return length > 0.0 ? Vector2d{direction.x / length, direction.y / length} : Vector2d();
}

} // namespace

Result<PathWalker> PathWalker::Create(const Outline& outline) noexcept
{
	// Paths of very many curves have short ones.
	constexpr std::size_t kMostPieces = 1 << 18;
	const auto pieces =
		static_cast<int>(std::clamp<std::size_t>(kMostPieces / (outline.GetCommands().GetCount() + 1), 4, 32));
	PathWalker walker;
	Vector2d start;
	Vector2d current;
	for (const SVGPathCommand& command : outline.GetCommands())
	{
		const Vector2d& end = command.points[2];
		switch (command.type)
		{
		case SVGPathCommandType::move:
			start = current = end;
			break;
		case SVGPathCommandType::line:
			ORVAN_TRY(walker.AddLine(current, end));
			current = end;
			break;
		case SVGPathCommandType::cubic:
			ORVAN_TRY(walker.AddCurve(current, command.points, pieces));
			current = end;
			break;
		case SVGPathCommandType::close:
			ORVAN_TRY(walker.AddLine(current, start));
			current = start;
			break;
		}
	}
	return walker;
}

PathPoint PathWalker::GetPoint(double distance) const noexcept
{
	if (_pieces.IsEmpty())
		return {};
	const auto* const after =
		std::upper_bound(_pieces.begin(), _pieces.end(), distance,
						 [](double wanted, const Piece& piece) { return wanted < piece.distance; });
	const Piece& piece = after == _pieces.begin() ? *after : *(after - 1);
	const double t = std::clamp((distance - piece.distance) / piece.length, 0.0, 1.0);
	const Vector2d direction = Mix(piece.startDirection, piece.endDirection, t);
	return {Mix(piece.start, piece.end, t), std::atan2(direction.y, direction.x)};
}

Result<void> PathWalker::AddLine(const Vector2d& start, const Vector2d& end) noexcept
{
	const Vector2d direction = Normalize(end - start);
	return Add(start, end, direction, direction);
}

Result<void> PathWalker::AddCurve(const Vector2d& start, const Vector2d (&points)[3], int pieces) noexcept
{
	Vector2d last = start;
	Vector2d lastDirection;
	for (int i = 0; i <= pieces; i++)
	{
		const double t = static_cast<double>(i) / pieces;
		const Vector2d a = Mix(start, points[0], t);
		const Vector2d b = Mix(points[0], points[1], t);
		const Vector2d c = Mix(points[1], points[2], t);
		const Vector2d left = Mix(a, b, t);
		const Vector2d right = Mix(b, c, t);
		const Vector2d point = Mix(left, right, t);
		// Where a control point coincides with an end there is no direction at that end.
		Vector2d direction = Normalize(right - left);
		if (direction == Vector2d())
			direction = Normalize(points[2] - start);
		if (i > 0)
			ORVAN_TRY(Add(last, point, lastDirection, direction));
		last = point;
		lastDirection = direction;
	}
	return {};
}

Result<void> PathWalker::Add(const Vector2d& start, const Vector2d& end, const Vector2d& startDirection,
							 const Vector2d& endDirection) noexcept
{
	const double length = std::hypot(end.x - start.x, end.y - start.y);
	if (!(length > 0.0) || !std::isfinite(length))
		return {};
	ORVAN_TRY(_pieces.Append({start, end, startDirection, endDirection, _length, length}));
	_length += length;
	return {};
}

} // namespace orvan::drawing
