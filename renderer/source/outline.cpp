// SPDX-License-Identifier: MIT
#include "outline.h"

#include <numbers>

namespace orvan::cairo
{
namespace
{

/// Half of what the library's fixed-point coordinates hold, so that strokes still fit.
constexpr double kFarthest = 4e6;

/// Where between its ends a cubic turns back in one coordinate: the zeros of its derivative. Returns how many.
int FindTurns(double p0, double p1, double p2, double p3, double (&at)[2]) noexcept
{
	const double a = -p0 + 3.0 * (p1 - p2) + p3;
	const double b = 2.0 * (p0 - 2.0 * p1 + p2);
	const double c = p1 - p0;
	int count = 0;
	const auto add = [&](double t)
	{
		if (t > 0.0 && t < 1.0)
			at[count++] = t;
	};
	if (std::abs(a) < 1e-12 * (std::abs(b) + std::abs(c)))
	{
		if (b != 0.0)
			add(-c / b);
		return count;
	}
	const double discriminant = b * b - 4.0 * a * c;
	if (discriminant < 0.0)
		return 0;
	// The larger root first, the other by the product of both: subtracting nearly equal numbers would lose digits.
	const double q = -0.5 * (b + std::copysign(std::sqrt(discriminant), b));
	add(q / a);
	if (q != 0.0)
		add(c / q);
	return count;
}

double Cubic(double p0, double p1, double p2, double p3, double t) noexcept
{
	const double s = 1.0 - t;
	return s * s * s * p0 + 3.0 * s * s * t * p1 + 3.0 * s * t * t * p2 + t * t * t * p3;
}

} // namespace

Vector2d Outline::ToDevice(const Vector2d& point) noexcept
{
	Vector2d device = _transform.Apply(point);
	_isFinite = _isFinite && std::isfinite(device.x) && std::isfinite(device.y);
	device = {std::clamp(device.x, -kFarthest, kFarthest), std::clamp(device.y, -kFarthest, kFarthest)};
	_deviceBounds.Add(device);
	return device;
}

/// A subpath without length still shows its round or square caps. The library knows only half of that, so such a
/// subpath gets a length that cannot be seen, along the x axis.
void Outline::EndSubpath() noexcept
{
	if (_hasSegments && !_hasLength)
	{
		constexpr double kUnseen = 1.0 / 64.0;
		const Vector2d device = ToDevice(_start);
		const Vector2d& axis = _transform.axis1;
		const double scale = kUnseen / std::hypot(axis.x, axis.y);
		cairo_line_to(_drawing, device.x + axis.x * scale, device.y + axis.y * scale);
	}
	_hasSegments = _hasLength = false;
}

void Outline::MoveTo(const Vector2d& point) noexcept
{
	EndSubpath();
	const Vector2d device = ToDevice(point);
	cairo_move_to(_drawing, device.x, device.y);
	_start = _current = point;
}

void Outline::LineTo(const Vector2d& point) noexcept
{
	const Vector2d device = ToDevice(point);
	cairo_line_to(_drawing, device.x, device.y);
	_userBounds.Add(_current);
	_userBounds.Add(point);
	_commandCount++;
	_hasSegments = true;
	_hasLength = _hasLength || !(point == _current);
	_current = point;
}

void Outline::CurveTo(const Vector2d& control1, const Vector2d& control2, const Vector2d& point) noexcept
{
	const Vector2d c1 = ToDevice(control1);
	const Vector2d c2 = ToDevice(control2);
	const Vector2d end = ToDevice(point);
	cairo_curve_to(_drawing, c1.x, c1.y, c2.x, c2.y, end.x, end.y);
	AddCurveBounds(control1, control2, point);
	_commandCount++;
	_hasSegments = true;
	_hasLength = _hasLength || !(control1 == _current && control2 == _current && point == _current);
	_current = point;
}

void Outline::Close() noexcept
{
	_userBounds.Add(_current);
	_current = _start;
	_hasSegments = true;
	// Closing would replace the caps by a join.
	if (_hasLength)
		cairo_close_path(_drawing);
	EndSubpath();
}

void Outline::AddCurveBounds(const Vector2d& c1, const Vector2d& c2, const Vector2d& end) noexcept
{
	_userBounds.Add(_current);
	_userBounds.Add(end);
	// A curve stays within its control points.
	if (_userBounds.Contains(c1) && _userBounds.Contains(c2))
		return;
	double at[2];
	for (int i = FindTurns(_current.x, c1.x, c2.x, end.x, at); i-- > 0;)
		_userBounds.Add({Cubic(_current.x, c1.x, c2.x, end.x, at[i]), end.y});
	for (int i = FindTurns(_current.y, c1.y, c2.y, end.y, at); i-- > 0;)
		_userBounds.Add({end.x, Cubic(_current.y, c1.y, c2.y, end.y, at[i])});
}

void Outline::AddPath(const BaseArray<SVGPathCommand>& commands) noexcept
{
	for (const SVGPathCommand& command : commands)
	{
		switch (command.type)
		{
		case SVGPathCommandType::move:
			MoveTo(command.points[2]);
			break;
		case SVGPathCommandType::line:
			LineTo(command.points[2]);
			break;
		case SVGPathCommandType::cubic:
			CurveTo(command.points[0], command.points[1], command.points[2]);
			break;
		case SVGPathCommandType::close:
			Close();
			break;
		}
	}
}

void Outline::AddEllipse(const Vector2d& center, double radiusX, double radiusY) noexcept
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
	MoveTo(at(1.0, 0.0));
	for (int part = 1; part <= kParts; part++)
	{
		const double nextCosine = part == kParts ? 1.0 : std::cos(part * kAngle);
		const double nextSine = part == kParts ? 0.0 : std::sin(part * kAngle);
		CurveTo(at(cosine - handle * sine, sine + handle * cosine),
				at(nextCosine + handle * nextSine, nextSine - handle * nextCosine), at(nextCosine, nextSine));
		cosine = nextCosine;
		sine = nextSine;
	}
	Close();
}

void Outline::AddRectangle(double x, double y, double width, double height, double radiusX, double radiusY) noexcept
{
	const double right = x + width;
	const double bottom = y + height;
	const double rx = std::min(radiusX, width / 2.0);
	const double ry = std::min(radiusY, height / 2.0);
	if (!(rx > 0.0 && ry > 0.0))
	{
		MoveTo({x, y});
		LineTo({right, y});
		LineTo({right, bottom});
		LineTo({x, bottom});
		Close();
		return;
	}
	// Distance from a corner to the control points, for a quarter of an ellipse.
	constexpr double kCorner = 1.0 - 0.5522847498307936;
	const double cx = rx * kCorner;
	const double cy = ry * kCorner;
	MoveTo({x + rx, y});
	LineTo({right - rx, y});
	CurveTo({right - cx, y}, {right, y + cy}, {right, y + ry});
	LineTo({right, bottom - ry});
	CurveTo({right, bottom - cy}, {right - cx, bottom}, {right - rx, bottom});
	LineTo({x + rx, bottom});
	CurveTo({x + cx, bottom}, {x, bottom - cy}, {x, bottom - ry});
	LineTo({x, y + ry});
	CurveTo({x, y + cy}, {x + cx, y}, {x + rx, y});
	Close();
}

} // namespace orvan::cairo
