// SPDX-License-Identifier: MIT
/// What a stroke is made of: the strips along lines and curves, the joins between them, and caps.
#pragma once

#include "segments.h"
#include "svg_geometry.h"

namespace orvan::drawing
{

/// True when a curve turns right back at a place between its ends. Whatever the joins are, the pen turns there as if it
/// was round.
inline bool IsCusp(const Curve& curve, double t) noexcept
{
	constexpr double kNothing = 1e-4;
	constexpr double kEnd = 1e-6;
	const auto size = [](const Vector2d& v)
	{
		return std::abs(v.x) + std::abs(v.y);
	};
	const double all = size(curve.p[1] - curve.p[0]) + size(curve.p[2] - curve.p[1]) + size(curve.p[3] - curve.p[2]);
	return t > kEnd && t < 1.0 - kEnd && size(curve.GetSpeed(t)) <= kNothing * all;
}

/// Calls `visit` with each such place of a curve, perhaps twice.
template <typename Visit>
void ForEachCusp(const Curve& curve, Visit visit) noexcept
{
	if (curve.isLine)
		return;
	// It stands still along both axes there, and turns along one of them at least.
	double at[2];
	for (int i = FindTurns(curve, {1.0, 0.0}, at); i-- > 0;)
	{
		if (IsCusp(curve, at[i]))
			visit(curve.GetPoint(at[i]));
	}
	for (int i = FindTurns(curve, {0.0, 1.0}, at); i-- > 0;)
	{
		if (IsCusp(curve, at[i]))
			visit(curve.GetPoint(at[i]));
	}
}

/// Calls `parts.Strip(curve)`, with the directions at its ends where the parts want them, `parts.Join(point, in, out)`,
/// `parts.Cap(point, outwards)` and `parts.Point(point)` for the parts of a stroke, in the order of the outline; the
/// two caps of a subpath, that of its start first, come behind the rest of it, and behind a closed one `parts.Ring()`
/// where the parts have that. Directions have length 1. Lines of no length are passed over; a subpath of nothing else
/// is a dot.
template <typename Parts>
class StrokeVisitor
{
public:
	explicit StrokeVisitor(Parts& parts) noexcept : _parts(parts)
	{
	}

	void Move(const Vector2d& point) noexcept
	{
		Finish();
		_start = point;
		_hasSegment = _hasDirection = false;
	}

	void Add(const Curve& curve) noexcept
	{
		_hasSegment = true;
		_in = curve.GetDirection(0.0);
		if (_in == Vector2d())
			return;
		if (_hasDirection)
			_parts.Join(curve.p[0], _direction, _in);
		else
			_firstDirection = _in;
		_hasDirection = true;
		_direction = curve.isLine ? _in : curve.GetDirection(1.0);
		if constexpr (requires { _parts.Strip(curve, _in, _direction); })
			_parts.Strip(curve, _in, _direction);
		else
			_parts.Strip(curve);
		_end = curve.p[3];
	}

	void Close(const Curve& line) noexcept
	{
		Add(line);
		if (_hasDirection)
		{
			_parts.Join(line.p[3], _direction, _firstDirection);
			if constexpr (requires { _parts.Ring(); })
				_parts.Ring();
		}
		else
			_parts.Point(_start);
		_hasSegment = _hasDirection = false;
	}

	/// Must be called behind the last segment.
	void Finish() noexcept
	{
		if (_hasDirection)
		{
			_parts.Cap(_start, Times(_firstDirection, -1.0));
			_parts.Cap(_end, _direction);
		}
		else if (_hasSegment)
			_parts.Point(_start);
		_hasSegment = _hasDirection = false;
	}

private:
	Parts& _parts;
	Vector2d _start;
	Vector2d _end;
	Vector2d _firstDirection;
	Vector2d _in;        ///< Where the segment begins.
	Vector2d _direction; ///< Where the segment before it ended.
	bool _hasSegment = false;
	bool _hasDirection = false;
};

template <typename Commands, typename Parts>
void VisitStroke(const Commands& commands, const Matrix2d& transform, Parts& parts) noexcept
{
	StrokeVisitor<Parts> visitor(parts);
	VisitSegments(commands, transform, visitor);
	visitor.Finish();
}

/// Whether joins have tips. What a tip that is cut off at the limit leaves beyond a bevel does not count here.
inline bool IsMitred(SVGLineJoin join) noexcept
{
	return join == SVGLineJoin::miter || join == SVGLineJoin::miterClip;
}

/// Where the edges of a mitred join meet, as an offset from the corner by half widths; false when it is cut off.
inline bool FindMiter(const Vector2d& in, const Vector2d& out, double limit, Vector2d& tip) noexcept
{
	const double cosine = Dot(in, out);
	// The tip is as far away as 1 / sin of half of the angle between the lines; its square is 2 / (1 + cosine).
	const double least = limit < 1.0 ? 1.0 : limit;
	if (!(2.0 <= least * least * (1.0 + cosine)))
		return false;
	// On the outer side, which is the left one of a turn to the right.
	const double side = Cross(in, out) > 0.0 ? -1.0 : 1.0;
	tip = Times(Turn(in) + Turn(out), side / (1.0 + cosine));
	return true;
}

} // namespace orvan::drawing
