// SPDX-License-Identifier: MIT
/// Lengths along an outline.
#pragma once

#include "curve.h"
#include "drawing/outline.h"
#include "svg_geometry.h"

namespace orvan::geometry
{

/// The length of a part of a curve, from its start to a parameter.
double GetLengthTo(const Curve& curve, double t) noexcept;

/// An outline's lines and curves, with where each begins.
class LengthTable
{
public:
	static Result<LengthTable> Create(const drawing::Outline& outline) noexcept;

	double GetLength() const noexcept
	{
		return _length;
	}

	/// True when there is no point to go to.
	bool IsEmpty() const noexcept
	{
		return !_hasPoint;
	}

	SVGOutlinePlace GetPlace(double length) const noexcept;
	SVGOutlinePlace FindNearest(const Vector2d& point) const noexcept;

private:
	friend class LengthCollector;

	struct Row
	{
		Curve curve;
		double start;
		double length;
	};

	SVGOutlinePlace PlaceOn(const Row& row, double t) const noexcept;

	BaseArray<Row> _rows;
	double _length = 0.0;
	Vector2d _firstPoint;
	bool _hasPoint = false;
};

} // namespace orvan::geometry
