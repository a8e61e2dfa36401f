// SPDX-License-Identifier: MIT
#include "stroker.h"

#include <array>
#include <cmath>
#include <numbers>

namespace orvan::cairo
{

using namespace drawing;

namespace
{

constexpr int kMostFanPoints = 128;

double Cross(const Vector2d& a, const Vector2d& b) noexcept
{
	return a.x * b.y - a.y * b.x;
}

double Dot(const Vector2d& a, const Vector2d& b) noexcept
{
	return a.x * b.x + a.y * b.y;
}

Vector2d Times(const Vector2d& v, double factor) noexcept
{
	return {v.x * factor, v.y * factor};
}

/// The direction of the first of some vectors that has one, with length 1; zero when none has.
Vector2d GetDirection(const std::array<Vector2d, 3>& vectors) noexcept
{
	for (const Vector2d& v : vectors)
	{
		const double length = std::sqrt(Dot(v, v));
		if (length > 0.0)
			return Times(v, 1.0 / length);
	}
	return {};
}

/// A quarter turn to the left.
Vector2d Turn(const Vector2d& v) noexcept
{
	return {-v.y, v.x};
}

} // namespace

Stroker::Stroker(Rasterizer& rasterizer, const Pen& pen, const Matrix2d& toPixels, Limits& limits) noexcept
	: _rasterizer(rasterizer), _pen(pen), _toPixels(toPixels), _limits(limits)
{
	_isReversed = Cross(toPixels.axis1, toPixels.axis2) > 0.0;
	// A chord is a thirty-second of a pixel away from its arc at most.
	const double radius = pen.radius * GetStretch(toPixels);
	constexpr double kOff = 1.0 / 32.0;
	_step = radius > kOff ? 2.0 * std::acos(1.0 - std::min(kOff / radius, 0.6)) : 1.5;
	_step = std::max(_step, 2.0 * std::numbers::pi / (kMostFanPoints - 2));
}

void Stroker::Add(const Outline& outline, const Matrix2d& toPen) noexcept
{
	constexpr int kCommandsAtOnce = 256;
	int count = 0;
	for (const SVGPathCommand& command : outline.GetCommands())
	{
		if (++count % kCommandsAtOnce == 0 && _limits.IsOver())
			break;
		const Vector2d end = toPen.Apply(command.points[2]);
		switch (command.type)
		{
		case SVGPathCommandType::move:
			FinishSubpath();
			_start = _current = end;
			break;
		case SVGPathCommandType::line:
			_hasSegments = true;
			LineTo(end, _pen.join);
			break;
		case SVGPathCommandType::cubic:
			_hasSegments = true;
			CurveTo(toPen.Apply(command.points[0]), toPen.Apply(command.points[1]), end);
			break;
		case SVGPathCommandType::close:
			_hasSegments = true;
			Close();
			break;
		}
	}
	FinishSubpath();
}

void Stroker::LineTo(const Vector2d& to, SVGLineJoin join) noexcept
{
	const Vector2d along = to - _current;
	const double length = std::hypot(along.x, along.y);
	if (!(length > 0.0))
		return;
	const Vector2d direction = Times(along, 1.0 / length);
	if (_hasLength)
		AddJoin(_current, _lastDirection, direction, join);
	else
		_firstDirection = direction;
	const Vector2d side = Times(Turn(direction), _pen.radius);
	const Vector2d corners[] = {_current + side, to + side, to - side, _current - side};
	AddPolygon(corners, 4);
	_hasLength = true;
	_lastDirection = direction;
	_current = to;
}

/// A curve becomes a strip along its tangents, whose pieces share their ends. Where it turns sharper than the pen is
/// wide the strip turns over, and what it then covers the other way round counts against the rest, as in an outline.
void Stroker::CurveTo(const Vector2d& c1, const Vector2d& c2, const Vector2d& to) noexcept
{
	const Vector2d from = _current;
	Vector2d direction = GetDirection({c1 - from, c2 - from, to - from});
	const Vector2d lastDirection = GetDirection({to - c2, to - c1, to - from});
	if (direction == Vector2d())
		return;
	const Vector2d a{to.x - from.x + 3.0 * (c1.x - c2.x), to.y - from.y + 3.0 * (c1.y - c2.y)};
	const Vector2d b{3.0 * (from.x - 2.0 * c1.x + c2.x), 3.0 * (from.y - 2.0 * c1.y + c2.y)};
	const Vector2d c{3.0 * (c1.x - from.x), 3.0 * (c1.y - from.y)};
	const int count = CountPieces(from, c1, c2, to);
	Enter(direction);
	AddSide(from - Times(Turn(direction), _pen.radius), from + Times(Turn(direction), _pen.radius));
	for (int i = 1; i <= count; i++)
	{
		const double t = static_cast<double>(i) / count;
		const bool isLast = i == count;
		const Vector2d next =
			isLast ? to : Vector2d{((a.x * t + b.x) * t + c.x) * t + from.x, ((a.y * t + b.y) * t + c.y) * t + from.y};
		const Vector2d tangent{(3.0 * a.x * t + 2.0 * b.x) * t + c.x, (3.0 * a.y * t + 2.0 * b.y) * t + c.y};
		const Vector2d nextDirection = isLast ? lastDirection : GetDirection({tangent, next - _current, direction});
		const Vector2d side = Times(Turn(direction), _pen.radius);
		const Vector2d nextSide = Times(Turn(nextDirection), _pen.radius);
		constexpr double kCorner = 0.5;
		if (Dot(direction, nextDirection) < kCorner)
		{
			// A point in the curve: its two sides are lines, and the pen turns around on it.
			_hasTurnedBack = true;
			AddSide(_current + side, _current - side);
			_lastDirection = direction;
			LineTo(next, SVGLineJoin::round);
			if (_lastDirection != nextDirection)
				AddJoin(next, _lastDirection, nextDirection, SVGLineJoin::round);
			AddSide(next - nextSide, next + nextSide);
		}
		else
		{
			AddSide(_current + side, next + nextSide);
			AddSide(next - nextSide, _current - side);
		}
		direction = nextDirection;
		_current = next;
	}
	const Vector2d side = Times(Turn(direction), _pen.radius);
	AddSide(to + side, to - side);
	_lastDirection = direction;
}

/// As many pieces as keep the curve, and what the pen makes of its turns, within a sixteenth of a pixel.
int Stroker::CountPieces(const Vector2d& from, const Vector2d& c1, const Vector2d& c2,
						 const Vector2d& to) const noexcept
{
	constexpr double kPieces = 0.75 * 16.0;
	constexpr double kMostPieces = 512.0;
	const auto bend = [&](const Vector2d& p0, const Vector2d& p1, const Vector2d& p2)
	{
		const Vector2d second = _toPixels.ApplyToDirection({p0.x - 2.0 * p1.x + p2.x, p0.y - 2.0 * p1.y + p2.y});
		return second.x * second.x + second.y * second.y;
	};
	const auto turn = [](const Vector2d& in, const Vector2d& out)
	{
		return std::abs(std::atan2(Cross(in, out), Dot(in, out)));
	};
	const double flat = std::sqrt(std::sqrt(std::max(bend(from, c1, c2), bend(c1, c2, to))) * kPieces);
	const double turns = (turn(c1 - from, c2 - c1) + turn(c2 - c1, to - c2)) / _step;
	return static_cast<int>(std::clamp(std::ceil(std::max(flat, turns)), 1.0, kMostPieces));
}

/// Goes on in a direction from where the subpath has led to.
void Stroker::Enter(const Vector2d& direction) noexcept
{
	if (_hasLength)
		AddJoin(_current, _lastDirection, direction, _pen.join);
	else
		_firstDirection = direction;
	_hasLength = true;
}

void Stroker::Close() noexcept
{
	LineTo(_start, _pen.join);
	_current = _start;
	if (_hasLength)
	{
		AddJoin(_start, _lastDirection, _firstDirection, _pen.join);
		_hasSegments = _hasLength = false;
	}
	else
		FinishSubpath();
}

/// Ends a subpath that is open: with its caps, which is all that there is of one without length.
void Stroker::FinishSubpath() noexcept
{
	if (_hasLength)
	{
		AddCap(_start, Times(_firstDirection, -1.0));
		AddCap(_current, _lastDirection);
	}
	else if (_hasSegments && _pen.cap != SVGLineCap::butt)
	{
		AddCap(_start, {1.0, 0.0});
		AddCap(_start, {-1.0, 0.0});
	}
	_hasSegments = _hasLength = false;
}

void Stroker::AddJoin(const Vector2d& point, const Vector2d& in, const Vector2d& out, SVGLineJoin join) noexcept
{
	const double cross = Cross(in, out);
	const double dot = Dot(in, out);
	constexpr double kStraight = 1e-4;
	if (std::abs(cross) < kStraight && dot > 0.0)
		return;
	// The outer side lies away from the turn.
	const double side = cross > 0.0 ? -_pen.radius : _pen.radius;
	const Vector2d from = Times(Turn(in), side);
	const Vector2d to = Times(Turn(out), side);
	if (join == SVGLineJoin::round)
	{
		// Right back the turn is as much to the left as to the right: it goes around the side that was chosen.
		AddFan(point, from, std::copysign(std::atan2(std::abs(cross), dot), -side));
		return;
	}
	const bool isMitred = join == SVGLineJoin::miter || join == SVGLineJoin::miterClip;
	if (isMitred && 2.0 <= _pen.miterLimit * _pen.miterLimit * (1.0 + dot))
	{
		const Vector2d tip = Times(from + to, 1.0 / (1.0 + dot));
		const Vector2d corners[] = {point, point + from, point + tip, point + to};
		AddPolygon(corners, 4);
		return;
	}
	if (join == SVGLineJoin::miterClip)
	{
		// Cut off across the direction of the tip, which right back is that of the line.
		const double length = std::hypot(from.x + to.x, from.y + to.y);
		const Vector2d ahead = length > kStraight * _pen.radius ? Times(from + to, 1.0 / length) : in;
		const double rest = (_pen.miterLimit * _pen.radius - Dot(from, ahead)) / Dot(in, ahead);
		const Vector2d corners[] = {point, point + from, point + from + Times(in, rest), point + to - Times(out, rest),
									point + to};
		AddPolygon(corners, 5);
		return;
	}
	const Vector2d corners[] = {point, point + from, point + to};
	AddPolygon(corners, 3);
}

void Stroker::AddCap(const Vector2d& point, const Vector2d& direction) noexcept
{
	const Vector2d side = Times(Turn(direction), _pen.radius);
	if (_pen.cap == SVGLineCap::round)
		AddFan(point, Times(side, -1.0), std::numbers::pi);
	else if (_pen.cap == SVGLineCap::square)
	{
		const Vector2d ahead = Times(direction, _pen.radius);
		const Vector2d corners[] = {point + side, point + side + ahead, point - side + ahead, point - side};
		AddPolygon(corners, 4);
	}
}

/// A part of a disc around `center`, from one of its points by an angle.
void Stroker::AddFan(const Vector2d& center, const Vector2d& from, double angle) noexcept
{
	const int count = std::clamp(static_cast<int>(std::ceil(std::abs(angle) / _step)), 1, kMostFanPoints - 2);
	const double cosine = std::cos(angle / count);
	const double sine = std::sin(angle / count);
	std::array<Vector2d, kMostFanPoints> points;
	points[0] = center;
	Vector2d at = from;
	for (int i = 0; i <= count; i++)
	{
		points[static_cast<std::size_t>(i) + 1] = center + at;
		at = {at.x * cosine - at.y * sine, at.x * sine + at.y * cosine};
	}
	AddPolygon(points.data(), count + 2);
}

/// Adds one side of a strip; each has its opposite.
void Stroker::AddSide(const Vector2d& from, const Vector2d& to) noexcept
{
	const Vector2d first = _toPixels.Apply(from);
	const Vector2d second = _toPixels.Apply(to);
	_isReversed ? _rasterizer.AddLine(second, first) : _rasterizer.AddLine(first, second);
}

void Stroker::AddPolygon(const Vector2d* points, int count) noexcept
{
	std::array<Vector2d, kMostFanPoints> pixels;
	double area = 0.0;
	for (int i = 0; i < count; i++)
	{
		pixels[static_cast<std::size_t>(i)] = _toPixels.Apply(points[i]);
		if (i >= 2)
			area += Cross(pixels[static_cast<std::size_t>(i) - 1] - pixels[0],
						  pixels[static_cast<std::size_t>(i)] - pixels[0]);
	}
	_rasterizer.AddPolygon(pixels.data(), count, area < 0.0);
}

} // namespace orvan::cairo
