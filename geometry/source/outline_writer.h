// SPDX-License-Identifier: MIT
/// Making outlines where many points are added and memory may run out with each.
#pragma once

#include "curve.h"
#include "drawing/outline.h"

#include <numbers>

namespace orvan::geometry
{

/// Adds to an outline, and remembers whether that went well. Used as a visitor it copies what it visits.
class OutlineWriter
{
public:
	void Move(const Vector2d& point) noexcept
	{
		Note(_outline.MoveTo(point));
	}

	void Line(const Vector2d& to) noexcept
	{
		Note(_outline.LineTo(to));
	}

	/// A line or curve from the current point, whatever that is.
	void Add(const Curve& curve) noexcept
	{
		if (curve.isLine)
			Line(curve.p[3]);
		else
			Note(_outline.CurveTo(curve.p[1], curve.p[2], curve.p[3]));
	}

	void Close() noexcept
	{
		Note(_outline.Close());
	}

	void Close(const Curve&) noexcept
	{
		Close();
	}

	/// A part of a circle from the point at `from`, an offset from the center, turned by `angle`.
	void Arc(const Vector2d& center, const Vector2d& from, double angle) noexcept
	{
		constexpr double kLargestPart = std::numbers::pi / 4.0;
		const int count = std::max(1, static_cast<int>(std::ceil(std::abs(angle) / kLargestPart - 1e-9)));
		const double part = angle / count;
		const double handle = 4.0 / 3.0 * std::tan(part / 4.0);
		const double cosine = std::cos(part);
		const double sine = std::sin(part);
		Vector2d last = from;
		for (int i = 0; i < count; i++)
		{
			const Vector2d next = Times(last, cosine) + Times(Turn(last), sine);
			Note(_outline.CurveTo(center + last + Times(Turn(last), handle), center + next - Times(Turn(next), handle),
								  center + next));
			last = next;
		}
	}

	/// What was made, or the error that prevented it.
	Result<drawing::Outline> Take() noexcept
	{
		if (!_isGood)
			return OutOfMemoryError();
		return std::move(_outline);
	}

private:
	void Note(const Result<void>& result) noexcept
	{
		_isGood = _isGood && result.IsOk();
	}

	drawing::Outline _outline;
	bool _isGood = true;
};

} // namespace orvan::geometry
