#pragma once

/// Decimal numbers of up to nineteen digits, converted exactly as the grammar library converts them: the digits,
/// without the point, as an unsigned 64-bit integer, rounded to a double, then multiplied or divided once by a power of
/// ten. With more than fifteen digits that is not always the nearest double, but it is what the library yields.

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace orvan::grammar
{
inline constexpr std::array<double, 40> kPowersOfTen{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,
													 1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19,
													 1e20, 1e21, 1e22, 1e23, 1e24, 1e25, 1e26, 1e27, 1e28, 1e29,
													 1e30, 1e31, 1e32, 1e33, 1e34, 1e35, 1e36, 1e37, 1e38, 1e39};
inline constexpr std::array<std::uint64_t, 9> kIntegerPowersOfTen{1,      10,      100,      1000,     10000,
																  100000, 1000000, 10000000, 100000000};

/// mantissa * 10^exponent; the exponent lies within the table of powers.
inline double Scale(std::uint64_t mantissa, int exponent)
{
	const double number = static_cast<double>(mantissa);
	return exponent < 0 ? number / kPowersOfTen[static_cast<std::size_t>(-exponent)]
						: number * kPowersOfTen[static_cast<std::size_t>(exponent)];
}

/// One bit for each of sixteen characters, the first character's lowest.
struct CharacterMasks
{
	std::uint32_t digits;
	std::uint32_t points;
};

/// Looks at the sixteen characters at `at`, all of which must be readable.
inline CharacterMasks ClassifySixteen(const char* at)
{
#if defined(__SSE2__)
	const __m128i characters = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
	const __m128i offsets = _mm_sub_epi8(characters, _mm_set1_epi8('0'));
	const __m128i isDigit = _mm_cmpeq_epi8(_mm_min_epu8(offsets, _mm_set1_epi8(9)), offsets);
	const __m128i isPoint = _mm_cmpeq_epi8(characters, _mm_set1_epi8('.'));
	return {static_cast<std::uint32_t>(_mm_movemask_epi8(isDigit)),
			static_cast<std::uint32_t>(_mm_movemask_epi8(isPoint))};
#else
	CharacterMasks masks{};
	for (int i = 0; i != 16; ++i)
	{
		masks.digits |= static_cast<std::uint32_t>(at[i] >= '0' && at[i] <= '9') << i;
		masks.points |= static_cast<std::uint32_t>(at[i] == '.') << i;
	}
	return masks;
#endif
}

/// The value of the first `count` characters at `at`, all digits; zero to eight of them, but eight must be readable.
inline std::uint64_t ReadDigits(const char* at, unsigned count)
{
	if constexpr (std::endian::native == std::endian::little)
	{
		std::uint64_t digits;
		std::memcpy(&digits, at, sizeof digits);
		// The last digit moves to the highest byte and zeros come in before the first, so that eight digits are left
		// whatever the count. Neighbours are then joined to pairs, pairs to fours, and fours to the number.
		const std::uint64_t any = std::uint64_t{0} - static_cast<std::uint64_t>(count != 0);
		digits = digits << ((64 - 8 * count) & 63) & any;
		digits = (digits & 0x0f0f0f0f0f0f0f0f) * 2561 >> 8;
		digits = (digits & 0x00ff00ff00ff00ff) * 6553601 >> 16;
		return (digits & 0x0000ffff0000ffff) * 42949672960001 >> 32;
	}
	else
	{
		std::uint64_t number = 0;
		for (unsigned i = 0; i != count; ++i)
			number = number * 10 + static_cast<std::uint64_t>(at[i] - '0');
		return number;
	}
}

/// Reads digits, a point and digits, and an exponent if `mayHaveExponent`, without a sign, at `at`, which moves behind
/// them. False, with `at` left alone, when there is no such number or when it takes the library to tell: too many
/// digits, a point with nothing after it, an exponent out of the table.
bool ReadDecimal(const char*& at, const char* end, bool mayHaveExponent, double& number);
} // namespace orvan::grammar
