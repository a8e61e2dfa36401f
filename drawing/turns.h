// SPDX-License-Identifier: MIT
/// Where cubics turn back.
#pragma once

#include <cmath>

namespace orvan::drawing
{

/// The zeros of a + b t + c t² between 0 and 1, ends left out. Returns how many.
inline int FindZeros(double a, double b, double c, double (&at)[2]) noexcept
{
	int count = 0;
	const auto add = [&](double t)
	{
		if (t > 0.0 && t < 1.0)
			at[count++] = t;
	};
	if (std::abs(c) < 1e-14 * (std::abs(a) + std::abs(b)))
	{
		if (b != 0.0)
			add(-a / b);
		return count;
	}
	const double discriminant = b * b - 4.0 * a * c;
	if (discriminant < 0.0)
		return 0;
	// The larger zero first, the other by the product of both: subtracting nearly equal numbers would lose digits.
	const double q = -0.5 * (b + std::copysign(std::sqrt(discriminant), b));
	add(q / c);
	if (q != 0.0)
		add(a / q);
	return count;
}

/// Where between its ends a cubic turns back in one coordinate: the zeros of its derivative. Of the coordinate it takes
/// the steps from each point to the next. Returns how many.
inline int FindTurns(double first, double second, double third, double (&at)[2]) noexcept
{
	return FindZeros(first, 2.0 * (second - first), first - 2.0 * second + third, at);
}

} // namespace orvan::drawing
