// SPDX-License-Identifier: MIT
#include "inside.h"

#include "curve.h"
#include "dashes.h"

namespace orvan::geometry
{
namespace
{

/// Counts how often an outline goes around a point: the crossings of a ray to the right, with their directions.
class WindingCounter
{
public:
	explicit WindingCounter(const Vector2d& point) noexcept : _point(point)
	{
	}

	void Move(const Vector2d& point) noexcept
	{
		Finish();
		_start = _current = point;
	}

	void Add(const Curve& curve) noexcept
	{
		_current = curve.p[3];
		if (curve.isLine)
			AddLine(curve.p[0], curve.p[3]);
		else
			AddCurve(curve, kDepth);
	}

	void Close(const Curve& line) noexcept
	{
		Add(line);
		_start = _current;
	}

	/// Closes the last subpath.
	void Finish() noexcept
	{
		AddLine(_current, _start);
		_current = _start;
	}

	bool IsInside(SVGFillRule rule) const noexcept
	{
		return _isOnEdge || (rule == SVGFillRule::evenodd ? (_crossings & 1) != 0 : _winding != 0);
	}

private:
	static constexpr int kDepth = 48;

	void AddLine(const Vector2d& a, const Vector2d& b) noexcept
	{
		const bool isDown = b.y > a.y;
		const double top = isDown ? a.y : b.y;
		const double bottom = isDown ? b.y : a.y;
		if (_point.y < top || _point.y > bottom)
			return;
		const double side = Cross(b - a, _point - a);
		if (side == 0.0 && _point.x >= std::min(a.x, b.x) && _point.x <= std::max(a.x, b.x))
			_isOnEdge = true;
		// A line owns its upper end and not its lower one, so that neighbours share no crossing.
		if (_point.y == bottom)
			return;
		if (isDown ? side > 0.0 : side < 0.0)
			Count(isDown);
	}

	/// Halves the curve until it is plain how its part crosses the ray.
	void AddCurve(const Curve& curve, int depth) noexcept
	{
		const Rectangle hull = curve.GetHull();
		if (_point.y < hull.top || _point.y > hull.bottom || _point.x > hull.right)
			return;
		if (_point.x < hull.left)
		{
			// All of it is to the right: only its ends matter.
			if ((curve.p[0].y <= _point.y) != (curve.p[3].y <= _point.y))
				Count(curve.p[3].y > curve.p[0].y);
			return;
		}
		if (depth == 0 || IsFlat(curve))
		{
			AddLine(curve.p[0], curve.p[3]);
			return;
		}
		Curve first;
		Curve second;
		curve.Halve(first, second);
		AddCurve(first, depth - 1);
		AddCurve(second, depth - 1);
	}

	/// As straight as numbers can tell.
	static bool IsFlat(const Curve& curve) noexcept
	{
		const Vector2d a = curve.p[2] - curve.p[1] - (curve.p[1] - curve.p[0]);
		const Vector2d b = curve.p[3] - curve.p[2] - (curve.p[2] - curve.p[1]);
		const double size = std::abs(curve.p[0].x) + std::abs(curve.p[0].y) + std::abs(curve.p[3].x) +
							std::abs(curve.p[3].y) + LengthOf(curve.p[3] - curve.p[0]);
		return std::max(LengthOf(a), LengthOf(b)) <= size * 1e-13;
	}

	void Count(bool isDown) noexcept
	{
		_winding += isDown ? 1 : -1;
		_crossings++;
	}

	Vector2d _point;
	Vector2d _start;
	Vector2d _current;
	std::int64_t _winding = 0;
	std::int64_t _crossings = 0;
	bool _isOnEdge = false;
};

/// Looks whether a point is on one of the parts of a stroke.
class StrokeProbe
{
public:
	StrokeProbe(const SVGStroke& stroke, const Vector2d& point) noexcept
		: _stroke(stroke), _point(point), _half(stroke.width / 2.0)
	{
	}

	void Strip(const Curve& curve) noexcept
	{
		if (isHit || !IsNear(curve))
			return;
		if (curve.isLine)
		{
			isHit = IsOnStrip(curve.p[0], curve.p[3]);
			return;
		}
		ForEachCusp(curve, [&](const Vector2d& point) { isHit = isHit || IsOnDisc(point); });
		// Quadrangles between the curve's normals at short steps: what the pen sweeps over.
		const int count = std::max(curve.GetStepCount(_half * 1e-3), 4);
		Vector2d last = curve.p[0];
		Vector2d lastSide = Times(Turn(curve.GetDirection(0.0)), _half);
		for (int i = 1; i <= count && !isHit; i++)
		{
			const double t = static_cast<double>(i) / count;
			const Vector2d next = i < count ? curve.GetPoint(t) : curve.p[3];
			const Vector2d side = Times(Turn(curve.GetDirection(t)), _half);
			isHit = IsInQuadrangle(last, last + lastSide, next + side, next) ||
					IsInQuadrangle(last, last - lastSide, next - side, next);
			last = next;
			lastSide = side;
		}
	}

	void Join(const Vector2d& point, Vector2d in, Vector2d out) noexcept
	{
		if (isHit)
			return;
		if (_stroke.join == SVGLineJoin::round)
		{
			isHit = IsOnDisc(point);
			return;
		}
		const double side = Cross(in, out) > 0.0 ? -_half : _half;
		const Vector2d a = point + Times(Turn(in), side);
		const Vector2d b = point + Times(Turn(out), side);
		isHit = IsInTriangle(point, a, b);
		Vector2d tip;
		if (!isHit && IsMitred(_stroke.join) && FindMiter(in, out, _stroke.miterLimit, tip))
			isHit = IsInTriangle(point + Times(tip, _half), a, b);
	}

	void Cap(const Vector2d& point, const Vector2d& outwards) noexcept
	{
		if (isHit)
			return;
		if (_stroke.cap == SVGLineCap::round)
			isHit = IsOnDisc(point);
		else if (_stroke.cap == SVGLineCap::square)
			isHit = IsOnStrip(point, point + Times(outwards, _half));
	}

	void Point(const Vector2d& point) noexcept
	{
		Cap(point, {1.0, 0.0});
		Cap(point, {-1.0, 0.0});
	}

	bool isHit = false;

private:
	bool IsNear(const Curve& curve) const noexcept
	{
		return curve.GetHull().Grow(_half).Contains(_point);
	}

	bool IsOnDisc(const Vector2d& center) const noexcept
	{
		const Vector2d way = _point - center;
		return Dot(way, way) <= _half * _half;
	}

	bool IsOnStrip(const Vector2d& a, const Vector2d& b) const noexcept
	{
		const Vector2d way = b - a;
		const double squared = Dot(way, way);
		const double along = Dot(_point - a, way);
		const double across = Cross(way, _point - a);
		return along >= 0.0 && along <= squared && across * across <= _half * _half * squared && squared > 0.0;
	}

	/// Of four corners that may lie so that its edges cross, as they do on the inner side of a bend.
	bool IsInQuadrangle(const Vector2d& a, const Vector2d& b, const Vector2d& c, const Vector2d& d) const noexcept
	{
		return IsInTriangle(a, b, c) || IsInTriangle(a, c, d);
	}

	bool IsInTriangle(const Vector2d& a, const Vector2d& b, const Vector2d& c) const noexcept
	{
		const double ab = Cross(b - a, _point - a);
		const double bc = Cross(c - b, _point - b);
		const double ca = Cross(a - c, _point - c);
		const bool hasArea = Cross(b - a, c - a) != 0.0;
		return hasArea && ((ab >= 0.0 && bc >= 0.0 && ca >= 0.0) || (ab <= 0.0 && bc <= 0.0 && ca <= 0.0));
	}

	const SVGStroke& _stroke;
	Vector2d _point;
	double _half;
};

} // namespace

bool IsInside(const Outline& outline, const Matrix2d& transform, SVGFillRule rule, const Vector2d& point) noexcept
{
	WindingCounter counter(point);
	VisitSegments(outline.GetCommands(), transform, counter);
	counter.Finish();
	return counter.IsInside(rule);
}

bool IsOnStroke(const Outline& outline, const Matrix2d& transform, const SVGStroke& stroke,
				const RecordedDashes& dashes, const Vector2d& point) noexcept
{
	StrokeProbe probe(stroke, point);
	if (dashes.lengths.IsEmpty())
		VisitStroke(outline.GetCommands(), transform, probe);
	else
		VisitDashes(outline.GetCommands(), transform, dashes, probe);
	return probe.isHit;
}

} // namespace orvan::geometry
