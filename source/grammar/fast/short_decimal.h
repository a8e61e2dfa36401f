// SPDX-License-Identifier: MIT
#pragma once

/// Decimal numbers of a few digits whose extent is known, converted one or two at a time.

#include "shared/decimal.h"

#include <cstring>
#include <utility>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace orvan::grammar
{
/// A number of up to eight digits, with a point before the last of them or without one, and its sign.
struct ShortDecimal
{
	static constexpr std::uint64_t kMostDigits = 8;

	const char* text; ///< The first digit or the point. As many characters as there can be, and one, must be readable.
	std::uint64_t integerDigits;
	std::uint64_t hasPoint;
	std::uint64_t digits;
	std::uint64_t isNegative;
};

/// Powers of ten, and behind them the negative ones, for numbers with a minus.
inline constexpr std::size_t kNegativeDivisors = 16;
inline constexpr auto kDivisors = []
{
	std::array<double, 2 * kNegativeDivisors> divisors{};
	for (std::size_t i = 0; i != kNegativeDivisors; ++i)
	{
		divisors[i] = kPowersOfTen[i];
		divisors[i + kNegativeDivisors] = -kPowersOfTen[i];
	}
	return divisors;
}();

/// What makes a number out of its digits.
inline double DivisorOf(const ShortDecimal& number)
{
	return kDivisors[number.digits - number.integerDigits + number.isNegative * kNegativeDivisors];
}

#if defined(__SSE2__)
/// The digits without the point, the last in the highest byte.
inline long long GatherDigits(const ShortDecimal& number)
{
	// Two looks at the text, the second one character later when there is a point, make one without it.
	std::uint64_t before, behind;
	std::memcpy(&before, number.text, sizeof before);
	std::memcpy(&behind, number.text + number.hasPoint, sizeof behind);
	const std::uint64_t isBehind = ~std::uint64_t{0} << (8 * number.integerDigits & 63);
	return static_cast<long long>((before ^ ((before ^ behind) & isBehind)) << (64 - 8 * number.digits));
}

/// The numbers that eight digits in each half make, as doubles.
inline __m128d JoinDigits(__m128i digits)
{
	// Neighbours are joined to pairs, pairs to fours, and fours to the number.
	digits = _mm_and_si128(digits, _mm_set1_epi8(0x0f));
	const __m128i tens = _mm_mullo_epi16(_mm_and_si128(digits, _mm_set1_epi16(0xff)), _mm_set1_epi16(10));
	const __m128i pairs = _mm_add_epi16(tens, _mm_srli_epi16(digits, 8));
	const __m128i fours = _mm_madd_epi16(pairs, _mm_set1_epi32(1 << 16 | 100));
	const __m128i eights = _mm_add_epi64(_mm_mul_epu32(fours, _mm_set1_epi32(10000)), _mm_srli_epi64(fours, 32));
	return _mm_cvtepi32_pd(_mm_shuffle_epi32(eights, _MM_SHUFFLE(3, 1, 2, 0)));
}
#endif

/// The value of a number, exactly as `ReadDecimal` yields it.
[[gnu::always_inline]] inline double Convert(const ShortDecimal& number)
{
#if defined(__SSE2__)
	return _mm_cvtsd_f64(JoinDigits(_mm_cvtsi64_si128(GatherDigits(number)))) / DivisorOf(number);
#else
	std::uint32_t mantissa = 0;
	for (std::uint64_t i = 0; i != number.digits + number.hasPoint; ++i)
	{
		if (number.text[i] != '.')
			mantissa = mantissa * 10 + static_cast<std::uint32_t>(number.text[i] - '0');
	}
	return mantissa / DivisorOf(number);
#endif
}

/// The values of two numbers, in less time than one after the other.
[[gnu::always_inline]] inline std::pair<double, double> Convert(const ShortDecimal& first, const ShortDecimal& second)
{
#if defined(__SSE2__)
	const __m128d mantissas = JoinDigits(_mm_set_epi64x(GatherDigits(second), GatherDigits(first)));
	const __m128d numbers = _mm_div_pd(mantissas, _mm_set_pd(DivisorOf(second), DivisorOf(first)));
	return {_mm_cvtsd_f64(numbers), _mm_cvtsd_f64(_mm_unpackhi_pd(numbers, numbers))};
#else
	return {Convert(first), Convert(second)};
#endif
}

/// As `Convert` for any number of digits. False when there are more than eight before the point or behind it.
bool ConvertLong(const ShortDecimal& number, double& value);
} // namespace orvan::grammar
