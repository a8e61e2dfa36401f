// SPDX-License-Identifier: MIT
#pragma once

/// Decimal numbers of up to nineteen digits, converted exactly as the grammar library converts them: the digits,
/// without the point, as an unsigned 64-bit integer, rounded to a double, then multiplied or divided once by a power of
/// ten. With more than fifteen digits that is not always the nearest double, but it is what the library yields.

#include <array>
#include <cstddef>
#include <cstdint>

namespace orvan::grammar
{
inline constexpr std::array<double, 40> kPowersOfTen{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,
													 1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19,
													 1e20, 1e21, 1e22, 1e23, 1e24, 1e25, 1e26, 1e27, 1e28, 1e29,
													 1e30, 1e31, 1e32, 1e33, 1e34, 1e35, 1e36, 1e37, 1e38, 1e39};

/// mantissa * 10^exponent; the exponent lies within the table of powers.
inline double Scale(std::uint64_t mantissa, int exponent)
{
	const double number = static_cast<double>(mantissa);
	return exponent < 0 ? number / kPowersOfTen[static_cast<std::size_t>(-exponent)]
						: number * kPowersOfTen[static_cast<std::size_t>(exponent)];
}

/// Reads digits, a point and digits, and an exponent if `mayHaveExponent`, without a sign, at `at`, which moves behind
/// them. False, with `at` left alone, when there is no such number or when it takes the library to tell: too many
/// digits, a point with nothing after it, an exponent out of the table.
bool ReadDecimal(const char*& at, const char* end, bool mayHaveExponent, double& number);

/// Whether `ReadDecimal`, without an exponent, has surely made the nearest double of [from, to): the digits fit one
/// without rounding.
inline bool HasFewDigits(const char* from, const char* to)
{
	constexpr std::ptrdiff_t kMostCharacters = 16; // Fifteen digits and a point.
	return to - from <= kMostCharacters;
}

/// Whether `ReadDecimal` has surely made the nearest double of the digits and points of [from, to): they fit one
/// without rounding, and there is no power of ten to multiply with.
inline bool IsNearest(const char* from, const char* to)
{
	if (!HasFewDigits(from, to))
		return false;
	for (; from != to; ++from)
	{
		if (*from == 'e' || *from == 'E')
			return false;
	}
	return true;
}
} // namespace orvan::grammar
