// SPDX-License-Identifier: MIT
#include "lengths_along.h"

#include "curve.h"

namespace orvan::geometry
{
namespace
{

/// Length of a part by the rule of Gauss and Legendre with five places.
double Integrate(const Curve& curve, double from, double to) noexcept
{
	constexpr double kAt[] = {0.0, 0.5384693101056831, 0.9061798459386640};
	constexpr double kWeight[] = {0.5688888888888889, 0.4786286704993665, 0.2369268850561891};
	const double half = (to - from) / 2.0;
	const double middle = (to + from) / 2.0;
	double sum = kWeight[0] * LengthOf(curve.GetSpeed(middle));
	for (int i = 1; i < 3; i++)
	{
		sum += kWeight[i] *
			   (LengthOf(curve.GetSpeed(middle - half * kAt[i])) + LengthOf(curve.GetSpeed(middle + half * kAt[i])));
	}
	return sum * half;
}

double IntegrateFinely(const Curve& curve, double from, double to, double whole, double tolerance, int depth) noexcept
{
	const double middle = (from + to) / 2.0;
	const double first = Integrate(curve, from, middle);
	const double second = Integrate(curve, middle, to);
	if (depth == 0 || std::abs(first + second - whole) <= tolerance)
		return first + second;
	return IntegrateFinely(curve, from, middle, first, tolerance, depth - 1) +
		   IntegrateFinely(curve, middle, to, second, tolerance, depth - 1);
}

} // namespace

double GetLengthTo(const Curve& curve, double t) noexcept
{
	if (curve.isLine)
		return LengthOf(curve.p[3] - curve.p[0]) * t;
	constexpr int kDepth = 16;
	const double size =
		LengthOf(curve.p[1] - curve.p[0]) + LengthOf(curve.p[2] - curve.p[1]) + LengthOf(curve.p[3] - curve.p[2]);
	return IntegrateFinely(curve, 0.0, t, Integrate(curve, 0.0, t), size * 1e-11, kDepth);
}

class LengthCollector
{
public:
	explicit LengthCollector(LengthTable& table) noexcept : _table(table)
	{
	}

	void Move(const Vector2d& point) noexcept
	{
		if (!_table._hasPoint)
			_table._firstPoint = point;
		_table._hasPoint = true;
	}

	void Add(const Curve& curve) noexcept
	{
		const double length = GetLengthTo(curve, 1.0);
		if (!(length > 0.0) || !isGood)
			return;
		isGood = _table._rows.Append({curve, _table._length, length}).IsOk();
		_table._length += length;
	}

	void Close(const Curve& line) noexcept
	{
		Add(line);
	}

	bool isGood = true;

private:
	LengthTable& _table;
};

Result<LengthTable> LengthTable::Create(const drawing::Outline& outline) noexcept
{
	LengthTable table;
	LengthCollector collector(table);
	VisitSegments(outline.GetCommands(), {}, collector);
	if (!collector.isGood)
		return OutOfMemoryError();
	return table;
}

SVGOutlinePlace LengthTable::PlaceOn(const Row& row, double t) const noexcept
{
	const double along = t >= 1.0 ? row.length : GetLengthTo(row.curve, t);
	return {row.curve.GetPoint(t), row.curve.GetDirection(t), row.start + along, 0.0};
}

SVGOutlinePlace LengthTable::GetPlace(double length) const noexcept
{
	if (_rows.IsEmpty())
		return {_firstPoint, {}, 0.0, 0.0};
	// Where one ends and the next begins, it is the end: so browsers have it.
	const Row* const after = std::lower_bound(_rows.begin(), _rows.end(), length,
											  [](const Row& row, double wanted) { return row.start < wanted; });
	const Row& row = after == _rows.begin() ? *after : *(after - 1);
	const double wanted = std::clamp(length - row.start, 0.0, row.length);
	if (row.curve.isLine)
		return {row.curve.GetPoint(wanted / row.length), row.curve.GetDirection(0.0), row.start + wanted, 0.0};
	if (wanted >= row.length)
		return PlaceOn(row, 1.0);
	// Newton's steps, kept between bounds that close in.
	double low = 0.0;
	double high = 1.0;
	double t = wanted / row.length;
	constexpr int kSteps = 60;
	for (int step = 0; step < kSteps; step++)
	{
		const double excess = GetLengthTo(row.curve, t) - wanted;
		if (std::abs(excess) <= row.length * 1e-12)
			break;
		(excess > 0.0 ? high : low) = t;
		const double next = t - excess / LengthOf(row.curve.GetSpeed(t));
		t = next > low && next < high ? next : (low + high) / 2.0;
	}
	return {row.curve.GetPoint(t), row.curve.GetDirection(t), row.start + wanted, 0.0};
}

SVGOutlinePlace LengthTable::FindNearest(const Vector2d& point) const noexcept
{
	const auto distanceOf = [&](const Vector2d& other)
	{
		return LengthOf(other - point);
	};
	if (_rows.IsEmpty())
		return {_firstPoint, {}, 0.0, distanceOf(_firstPoint)};
	const Row* best = _rows.begin();
	double bestAt = 0.0;
	double least = distanceOf(best->curve.p[0]);
	const auto consider = [&](const Row& row, double t)
	{
		const double distance = distanceOf(row.curve.GetPoint(t));
		if (distance >= least)
			return;
		least = distance;
		best = &row;
		bestAt = t;
	};
	for (const Row& row : _rows)
	{
		const Rectangle hull = row.curve.GetHull();
		const Vector2d outside{std::max({hull.left - point.x, point.x - hull.right, 0.0}),
							   std::max({hull.top - point.y, point.y - hull.bottom, 0.0})};
		if (LengthOf(outside) >= least)
			continue;
		if (row.curve.isLine)
		{
			const Vector2d way = row.curve.p[3] - row.curve.p[0];
			consider(row, std::clamp(Dot(point - row.curve.p[0], way) / Dot(way, way), 0.0, 1.0));
			continue;
		}
		// The nearest of some places, and from each that is nearer than its neighbours closer and closer.
		constexpr int kPlaces = 24;
		constexpr int kThirds = 60;
		double distances[kPlaces + 1];
		for (int i = 0; i <= kPlaces; i++)
			distances[i] = distanceOf(row.curve.GetPoint(static_cast<double>(i) / kPlaces));
		for (int i = 0; i <= kPlaces; i++)
		{
			const double before = i > 0 ? distances[i - 1] : distances[i];
			const double after = i < kPlaces ? distances[i + 1] : distances[i];
			if (distances[i] > before || distances[i] > after)
				continue;
			double low = static_cast<double>(std::max(i - 1, 0)) / kPlaces;
			double high = static_cast<double>(std::min(i + 1, kPlaces)) / kPlaces;
			for (int third = 0; third < kThirds; third++)
			{
				const double left = low + (high - low) / 3.0;
				const double right = high - (high - low) / 3.0;
				if (distanceOf(row.curve.GetPoint(left)) < distanceOf(row.curve.GetPoint(right)))
					high = right;
				else
					low = left;
			}
			consider(row, (low + high) / 2.0);
			consider(row, static_cast<double>(i) / kPlaces);
		}
	}
	SVGOutlinePlace place = PlaceOn(*best, bestAt);
	place.distance = least;
	return place;
}

} // namespace orvan::geometry
