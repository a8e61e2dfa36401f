// SPDX-License-Identifier: MIT
/// The areas of solid strokes.
#pragma once

#include "drawing/limits.h"
#include "drawing/outline.h"
#include "drawing/style.h"
#include "rasterizer.h"

namespace orvan::cairo
{

/// Half the width, the ends and the corners of a stroke.
struct Pen
{
	double radius = 0.5;
	SVGLineCap cap = SVGLineCap::butt;
	SVGLineJoin join = SVGLineJoin::miter;
	double miterLimit = 4.0;
};

/// Adds the area of a stroke to a rasterizer, in pieces that all turn the same way: a rectangle for each line, a strip
/// for each curve, what is missing at each corner, and the caps. A nonzero fill of them all is the stroke.
///
/// The pen draws in coordinates of its own, from which `toPixels` leads to the rasterizer's and in which it is round.
class Stroker
{
public:
	Stroker(Rasterizer& rasterizer, const Pen& pen, const Matrix2d& toPixels, drawing::Limits& limits) noexcept;

	/// Adds the stroke of an outline that `toPen` leads into the pen's coordinates. Stops when the time is up.
	void Add(const drawing::Outline& outline, const Matrix2d& toPen) noexcept;

	/// True once a curve has turned back in a point. The drawing library takes such curves for the line between their
	/// ends.
	bool HasTurnedBack() const noexcept
	{
		return _hasTurnedBack;
	}

private:
	void LineTo(const Vector2d& to, SVGLineJoin join) noexcept;
	void CurveTo(const Vector2d& c1, const Vector2d& c2, const Vector2d& to) noexcept;
	int CountPieces(const Vector2d& from, const Vector2d& c1, const Vector2d& c2, const Vector2d& to) const noexcept;
	void Enter(const Vector2d& direction) noexcept;
	void Close() noexcept;
	void FinishSubpath() noexcept;
	void AddJoin(const Vector2d& point, const Vector2d& in, const Vector2d& out, SVGLineJoin join) noexcept;
	void AddCap(const Vector2d& point, const Vector2d& direction) noexcept;
	void AddFan(const Vector2d& center, const Vector2d& from, double angle) noexcept;
	void AddSide(const Vector2d& from, const Vector2d& to) noexcept;
	void AddPolygon(const Vector2d* points, int count) noexcept;

	Rasterizer& _rasterizer;
	Pen _pen;
	Matrix2d _toPixels;
	drawing::Limits& _limits;
	double _step = 0.5; ///< Angle between the points of round ends and corners.
	Vector2d _start;
	Vector2d _current;
	Vector2d _firstDirection;
	Vector2d _lastDirection;
	bool _isReversed = false;  ///< Sides that turn left in the pen's coordinates turn right in pixels.
	bool _hasSegments = false; ///< The subpath has more than its start, ...
	bool _hasLength = false;   ///< ... and leads away from it.
	bool _hasTurnedBack = false;
};

} // namespace orvan::cairo
