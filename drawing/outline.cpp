// SPDX-License-Identifier: MIT
#include "outline.h"

#include "turns.h"

#include <numbers>

namespace orvan::drawing
{
namespace
{

double Cubic(double p0, double p1, double p2, double p3, double t) noexcept
{
	const double s = 1.0 - t;
	return s * s * s * p0 + 3.0 * s * s * t * p1 + 3.0 * s * t * t * p2 + t * t * t * p3;
}

/// Collects the bounding box of lines and curves. A move alone touches nothing.
class BoundsFinder
{
public:
	void MoveTo(const Vector2d& point) noexcept
	{
		_start = _current = point;
	}

	void LineTo(const Vector2d& point) noexcept
	{
		_bounds.Add(_current);
		_bounds.Add(point);
		_current = point;
	}

	void CurveTo(const Vector2d& c1, const Vector2d& c2, const Vector2d& end) noexcept
	{
		_bounds.Add(_current);
		_bounds.Add(end);
		// A curve stays within its control points.
		if (!_bounds.Contains(c1) || !_bounds.Contains(c2))
		{
			double at[2];
			for (int i = FindTurns(c1.x - _current.x, c2.x - c1.x, end.x - c2.x, at); i-- > 0;)
				_bounds.Add({Cubic(_current.x, c1.x, c2.x, end.x, at[i]), end.y});
			for (int i = FindTurns(c1.y - _current.y, c2.y - c1.y, end.y - c2.y, at); i-- > 0;)
				_bounds.Add({end.x, Cubic(_current.y, c1.y, c2.y, end.y, at[i])});
		}
		_current = end;
	}

	void Close() noexcept
	{
		_bounds.Add(_current);
		_current = _start;
	}

	const Rectangle& GetBounds() const noexcept
	{
		return _bounds;
	}

private:
	Rectangle _bounds;
	Vector2d _start;
	Vector2d _current;
};

} // namespace

Result<void> Outline::MoveTo(const Vector2d& point) noexcept
{
	return _commands.Append({SVGPathCommandType::move, {{}, {}, point}});
}

Result<void> Outline::LineTo(const Vector2d& point) noexcept
{
	return _commands.Append({SVGPathCommandType::line, {{}, {}, point}});
}

Result<void> Outline::CurveTo(const Vector2d& control1, const Vector2d& control2, const Vector2d& point) noexcept
{
	return _commands.Append({SVGPathCommandType::cubic, {control1, control2, point}});
}

Result<void> Outline::Close() noexcept
{
	return _commands.Append({SVGPathCommandType::close, {}});
}

Result<void> Outline::Append(const Outline& other, const Matrix2d& transform) noexcept
{
	ORVAN_TRY(_commands.Reserve(_commands.GetCount() + other._commands.GetCount()));
	for (const SVGPathCommand& command : other._commands)
	{
		const auto& [control1, control2, point] = command.points;
		ORVAN_TRY(_commands.Append(
			{command.type, {transform.Apply(control1), transform.Apply(control2), transform.Apply(point)}}));
	}
	return {};
}

Rectangle Outline::GetBounds(const Matrix2d& transform) const noexcept
{
	BoundsFinder finder;
	for (const SVGPathCommand& command : _commands)
	{
		const Vector2d end = transform.Apply(command.points[2]);
		switch (command.type)
		{
		case SVGPathCommandType::move:
			finder.MoveTo(end);
			break;
		case SVGPathCommandType::line:
			finder.LineTo(end);
			break;
		case SVGPathCommandType::cubic:
			finder.CurveTo(transform.Apply(command.points[0]), transform.Apply(command.points[1]), end);
			break;
		case SVGPathCommandType::close:
			finder.Close();
			break;
		}
	}
	return finder.GetBounds();
}

const Rectangle& Outline::GetBounds() const noexcept
{
	if (!_bounds)
		_bounds = GetBounds({});
	return *_bounds;
}

double Outline::GetLength() const noexcept
{
	// Straight pieces of a curve; their sum is off by less than a thousandth.
	constexpr int kPieces = 32;
	const auto distance = [](const Vector2d& a, const Vector2d& b)
	{
		return std::hypot(b.x - a.x, b.y - a.y);
	};
	double length = 0.0;
	Vector2d start;
	Vector2d current;
	for (const SVGPathCommand& command : _commands)
	{
		const auto& [c1, c2, end] = command.points;
		switch (command.type)
		{
		case SVGPathCommandType::move:
			start = current = end;
			break;
		case SVGPathCommandType::line:
			length += distance(current, end);
			current = end;
			break;
		case SVGPathCommandType::cubic:
		{
			Vector2d last = current;
			for (int piece = 1; piece <= kPieces; piece++)
			{
				const double t = static_cast<double>(piece) / kPieces;
				const Vector2d next{Cubic(current.x, c1.x, c2.x, end.x, t), Cubic(current.y, c1.y, c2.y, end.y, t)};
				length += distance(last, next);
				last = next;
			}
			current = end;
			break;
		}
		case SVGPathCommandType::close:
			length += distance(current, start);
			current = start;
			break;
		}
	}
	return length;
}

Result<void> Outline::AddEllipse(const Vector2d& center, double radiusX, double radiusY) noexcept
{
	// Eighths: with quarters the error shows on large circles.
	constexpr int kParts = 8;
	constexpr double kAngle = 2.0 * std::numbers::pi / kParts;
	const double handle = 4.0 / 3.0 * std::tan(kAngle / 4.0);
	const auto at = [&](double x, double y)
	{
		return Vector2d{center.x + x * radiusX, center.y + y * radiusY};
	};
	double cosine = 1.0;
	double sine = 0.0;
	ORVAN_TRY(_commands.Reserve(_commands.GetCount() + kParts + 2));
	ORVAN_TRY(MoveTo(at(1.0, 0.0)));
	for (int part = 1; part <= kParts; part++)
	{
		const double nextCosine = part == kParts ? 1.0 : std::cos(part * kAngle);
		const double nextSine = part == kParts ? 0.0 : std::sin(part * kAngle);
		ORVAN_TRY(CurveTo(at(cosine - handle * sine, sine + handle * cosine),
						  at(nextCosine + handle * nextSine, nextSine - handle * nextCosine),
						  at(nextCosine, nextSine)));
		cosine = nextCosine;
		sine = nextSine;
	}
	return Close();
}

Result<void> Outline::AddRectangle(const Rectangle& rectangle, double radiusX, double radiusY) noexcept
{
	const auto [x, y, right, bottom] = rectangle;
	const double rx = std::min(radiusX, (right - x) / 2.0);
	const double ry = std::min(radiusY, (bottom - y) / 2.0);
	ORVAN_TRY(_commands.Reserve(_commands.GetCount() + 10));
	if (!(rx > 0.0 && ry > 0.0))
	{
		ORVAN_TRY(MoveTo({x, y}));
		ORVAN_TRY(LineTo({right, y}));
		ORVAN_TRY(LineTo({right, bottom}));
		ORVAN_TRY(LineTo({x, bottom}));
		return Close();
	}
	// Distance from a corner to the control points, for a quarter of an ellipse.
	constexpr double kCorner = 1.0 - 0.5522847498307936;
	const double cx = rx * kCorner;
	const double cy = ry * kCorner;
	ORVAN_TRY(MoveTo({x + rx, y}));
	ORVAN_TRY(LineTo({right - rx, y}));
	ORVAN_TRY(CurveTo({right - cx, y}, {right, y + cy}, {right, y + ry}));
	ORVAN_TRY(LineTo({right, bottom - ry}));
	ORVAN_TRY(CurveTo({right, bottom - cy}, {right - cx, bottom}, {right - rx, bottom}));
	ORVAN_TRY(LineTo({x + rx, bottom}));
	ORVAN_TRY(CurveTo({x + cx, bottom}, {x, bottom - cy}, {x, bottom - ry}));
	ORVAN_TRY(LineTo({x, y + ry}));
	ORVAN_TRY(CurveTo({x, y + cy}, {x + cx, y}, {x + rx, y}));
	return Close();
}

} // namespace orvan::drawing
