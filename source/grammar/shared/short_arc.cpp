// SPDX-License-Identifier: MIT
#include "shared/short_arc.h"

#include <cmath>

namespace orvan::grammar
{
namespace
{
/// How long the handles of a cubic are that spans an angle, as a part of the slope at its ends. The library has
/// sin(angle) * (sqrt(4 + 3 * tan(angle / 2)^2) - 1) / 3, which is the same.
double HandleLength(double tangentOfHalf)
{
	return 2 * tangentOfHalf / (1 + std::sqrt(4 + 3 * (tangentOfHalf * tangentOfHalf)));
}
} // namespace

bool DeliverShortArc(const Arc& arc, PathSink& sink)
{
	// Half the chord, over the radius, is the sine of half the angle. Its square is part over whole.
	const double halfX = (arc.startX - arc.endX) * 0.5;
	const double halfY = (arc.startY - arc.endY) * 0.5;
	const double whole = arc.radiusX * arc.radiusX;
	const double part = halfX * halfX + halfY * halfY;
	const double rest = whole - part;

	// The bounds also keep everything below finite. Towards half a turn the distance of the centre from the chord,
	// which comes from the rest, loses digits.
	constexpr double kSmallest = 1e-100;
	constexpr double kLargest = 1e100;
	constexpr double kFlattest = 1e-6;
	constexpr double kLongest = 0.8;
	constexpr double kQuarter = 0.5; // A quarter turn is cut into one or two.
	constexpr double kNearQuarter = 1e-9;
	const bool isSimple = arc.radiusX == arc.radiusY && arc.rotation == 0 && !arc.isLarge && part > kSmallest &&
						  whole < kLargest && part > kFlattest * whole && part < kLongest * whole &&
						  std::fabs(part - kQuarter * whole) > kNearQuarter * whole;
	if (!isSimple)
		return false;

	// The centre, seen from the chord's middle.
	const double turn = arc.isSweep ? 1 : -1;
	const double cotangent = turn * std::sqrt(rest / part);
	const double centerX = cotangent * halfY;
	const double centerY = -cotangent * halfX;
	const auto deliver = [&](double handle, auto between)
	{
		between(arc.startX - (halfY - centerY) * handle, arc.startY + (halfX - centerX) * handle,
				arc.endX - (halfY + centerY) * handle, arc.endY + (halfX + centerX) * handle);
	};
	if (part < kQuarter * whole)
	{
		deliver(turn * HandleLength(std::sqrt(part / rest)),
				[&](double x1, double y1, double x2, double y2) { sink.CubicTo(x1, y1, x2, y2, arc.endX, arc.endY); });
		return true;
	}
	// Halfway the slope is that of the chord.
	const double sine = std::sqrt(part / whole);
	const double tangentOfHalf = sine / (1 + std::sqrt(rest / whole));
	const double handle = HandleLength(tangentOfHalf);
	const double chordX = (arc.startX + arc.endX) * 0.5;
	const double chordY = (arc.startY + arc.endY) * 0.5;
	const double upX = -turn * tangentOfHalf * halfY;
	const double upY = turn * tangentOfHalf * halfX;
	const double alongX = halfX * (handle / sine);
	const double alongY = halfY * (handle / sine);
	const double middleX = chordX + upX;
	const double middleY = chordY + upY;
	deliver(turn * handle,
			[&](double x1, double y1, double x2, double y2)
			{
				sink.CubicTo(x1, y1, chordX + (upX + alongX), chordY + (upY + alongY), middleX, middleY);
				sink.CubicTo(chordX + (upX - alongX), chordY + (upY - alongY), x2, y2, arc.endX, arc.endY);
			});
	return true;
}
} // namespace orvan::grammar
