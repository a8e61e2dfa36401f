// SPDX-License-Identifier: MIT
/// Strokes in dashes.
#pragma once

#include "curve.h"
#include "lengths_along.h"
#include "record.h"

#include <algorithm>

namespace orvan::geometry
{

/// Where a part of a curve that begins at its start has a length; `whole` is the length of the curve.
inline double FindParameter(const Curve& curve, double length, double whole) noexcept
{
	double t = length / whole;
	if (curve.isLine)
		return t;
	double low = 0.0;
	double high = 1.0;
	constexpr int kSteps = 40;
	for (int step = 0; step < kSteps; step++)
	{
		const double excess = GetLengthTo(curve, t) - length;
		if (std::abs(excess) <= whole * 1e-9)
			break;
		(excess > 0.0 ? high : low) = t;
		const double next = t - excess / LengthOf(curve.GetSpeed(t));
		t = next > low && next < high ? next : (low + high) / 2.0;
	}
	return t;
}

/// Hands the parts of a dashed stroke on, as `StrokeVisitor` does those of a solid one, but caps where they stand, save
/// for that of a dash that begins its subpath. Dashes begin anew with each subpath. Behind very many dashes the rest is
/// solid.
template <typename Parts>
class DashVisitor
{
public:
	DashVisitor(const RecordedDashes& dashes, Parts& parts) noexcept : _dashes(dashes), _parts(parts)
	{
		double sum = 0.0;
		for (const double length : dashes.lengths)
			sum += length;
		const double period = dashes.lengths.GetCount() % 2 == 0 ? sum : sum * 2.0;
		_offset = std::fmod(dashes.offset, period);
		if (_offset < 0.0)
			_offset += period;
	}

	void Move(const Vector2d& point) noexcept
	{
		Finish();
		_start = point;
	}

	void Add(const Curve& curve) noexcept
	{
		const double length = GetLengthTo(curve, 1.0);
		if (!(length > 0.0))
			return;
		const Vector2d in = curve.GetDirection(0.0);
		if (!_isUnderWay)
			Begin(in);
		else if (_isOn)
			_parts.Join(curve.p[0], _direction, in);
		double position = 0.0;
		double from = 0.0;
		// A dash that ends at a corner ends before it, and one that begins there begins behind it: none goes around.
		const double slack = length * 1e-9;
		while (_isOn ? _remaining <= length - position + slack : _remaining < length - position - slack)
		{
			position += _remaining;
			const double to = std::min(FindParameter(curve, position, length), 1.0);
			const Vector2d point = curve.GetPoint(to);
			const Vector2d direction = curve.GetDirection(to);
			if (_isOn)
			{
				if (to > from)
					_parts.Strip(curve.GetPart(from, to));
				_parts.Cap(point, direction);
			}
			Advance();
			if (_isOn)
				_parts.Cap(point, Times(direction, -1.0));
			from = to;
		}
		_remaining -= length - position;
		if (_isOn)
			_parts.Strip(curve.GetPart(from, 1.0));
		_direction = curve.GetDirection(1.0);
		_end = curve.p[3];
	}

	void Close(const Curve& line) noexcept
	{
		Add(line);
		if (_isUnderWay && _isOn && _startsOn)
		{
			_parts.Join(_start, _direction, _firstDirection);
			if constexpr (requires { _parts.Ring(); })
				_parts.Ring();
			_isUnderWay = false;
		}
		Finish();
	}

	/// Must be called behind the last segment.
	void Finish() noexcept
	{
		if (_isUnderWay && _startsOn)
			_parts.Cap(_start, Times(_firstDirection, -1.0));
		if (_isUnderWay && _isOn)
			_parts.Cap(_end, _direction);
		_isUnderWay = false;
	}

private:
	static constexpr int kMaxDashes = 100000;

	void Begin(const Vector2d& direction) noexcept
	{
		_isUnderWay = true;
		_firstDirection = direction;
		_index = 0;
		_isOn = true;
		_remaining = _dashes.lengths[0] - _offset;
		while (_remaining < 0.0)
		{
			const double past = _remaining;
			Advance();
			_remaining += past;
		}
		_startsOn = _isOn;
	}

	void Advance() noexcept
	{
		_isOn = !_isOn;
		_index = (_index + 1) % _dashes.lengths.GetCount();
		_remaining = _dashes.lengths[_index];
		if (++_count > kMaxDashes)
		{
			_isOn = true;
			_remaining = kLargest;
		}
	}

	const RecordedDashes& _dashes;
	Parts& _parts;
	double _offset = 0.0;
	double _remaining = 0.0; ///< Of the dash, or of the gap.
	std::size_t _index = 0;
	int _count = 0;
	bool _isOn = true;
	bool _startsOn = true;
	bool _isUnderWay = false; ///< The subpath has a segment.
	Vector2d _start;
	Vector2d _end;
	Vector2d _firstDirection;
	Vector2d _direction;
};

template <typename Commands, typename Parts>
void VisitDashes(const Commands& commands, const Matrix2d& transform, const RecordedDashes& dashes,
				 Parts& parts) noexcept
{
	DashVisitor<Parts> visitor(dashes, parts);
	VisitSegments(commands, transform, visitor);
	visitor.Finish();
}

} // namespace orvan::geometry
