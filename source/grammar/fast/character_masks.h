// SPDX-License-Identifier: MIT
#pragma once

/// What stands where in the text of numbers, found for many characters at once by SIMD instructions.

#include "shared/text_checks.h"

#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace orvan::grammar
{
/// One bit for each of sixty-four characters, the first character's lowest.
struct CharacterMasks
{
	static constexpr std::size_t kCount = 64;

	std::uint64_t digits = 0;
	std::uint64_t points = 0; ///< Decimal points.
	std::uint64_t blanks = 0;
	std::uint64_t commas = 0;
	std::uint64_t minuses = 0;
	std::uint64_t exponents = 0; ///< The letter "e" in both cases.

	/// Of no characters.
	CharacterMasks() = default;

	/// Looks at the characters at `at`, all of which must be readable.
	explicit CharacterMasks(const char* at)
	{
#if defined(__SSE2__)
		for (std::size_t i = 0; i != kCount; i += sizeof(__m128i))
		{
			const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at + i));
			const auto add = [i](std::uint64_t& mask, __m128i found)
			{
				mask |= std::uint64_t{static_cast<std::uint16_t>(_mm_movemask_epi8(found))} << i;
			};
			const auto is = [](__m128i characters, char c)
			{
				return _mm_cmpeq_epi8(characters, _mm_set1_epi8(c));
			};
			const auto isBetween = [text](char first, char last)
			{
				const __m128i offsets = _mm_sub_epi8(text, _mm_set1_epi8(first));
				const __m128i most = _mm_set1_epi8(static_cast<char>(last - first));
				return _mm_cmpeq_epi8(_mm_min_epu8(offsets, most), offsets);
			};
			add(digits, isBetween('0', '9'));
			add(points, is(text, '.'));
			add(blanks, _mm_or_si128(is(text, ' '), isBetween('\t', '\r')));
			add(commas, is(text, ','));
			add(minuses, is(text, '-'));
			add(exponents, is(_mm_or_si128(text, _mm_set1_epi8('a' - 'A')), 'e'));
		}
#else
		for (std::size_t i = 0; i != kCount; ++i)
		{
			const char c = at[i];
			const std::uint64_t bit = std::uint64_t{1} << i;
			digits |= IsDigit(c) ? bit : 0;
			points |= c == '.' ? bit : 0;
			blanks |= IsSpace(c) ? bit : 0;
			commas |= c == ',' ? bit : 0;
			minuses |= c == '-' ? bit : 0;
			exponents |= c == 'e' || c == 'E' ? bit : 0;
		}
#endif
	}
};
} // namespace orvan::grammar
