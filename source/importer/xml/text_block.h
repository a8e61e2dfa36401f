// SPDX-License-Identifier: MIT
/// Sixteen characters of a text, looked at at once by SIMD instructions.
#pragma once

#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace orvan::svg
{

/// Tells where characters of a kind stand, with one bit for each of the sixteen, the first character's lowest:
///
///     const TextBlock block(at);  // fill="red" d="M0,0
///     block.Where('"').Bits();    // .....1...1...1..
class TextBlock
{
public:
	static constexpr std::size_t kSize = 16;

	/// Places in the block. Sets are joined before they are made bits of, which is what costs.
	class Places
	{
	public:
#if defined(__SSE2__)
		explicit Places(__m128i places) noexcept : _places(places)
		{
		}

		Places operator|(Places other) const noexcept
		{
			return Places(_mm_or_si128(_places, other._places));
		}

		std::uint32_t Bits() const noexcept
		{
			return static_cast<std::uint32_t>(_mm_movemask_epi8(_places));
		}

	private:
		__m128i _places;
#else
		explicit Places(std::uint32_t places) noexcept : _places(places)
		{
		}

		Places operator|(Places other) const noexcept
		{
			return Places(_places | other._places);
		}

		std::uint32_t Bits() const noexcept
		{
			return _places;
		}

	private:
		std::uint32_t _places;
#endif
	};

	/// Looks at the characters at `at`, all of which must be readable.
	explicit TextBlock(const char* at) noexcept
#if defined(__SSE2__)
		: _text(_mm_loadu_si128(reinterpret_cast<const __m128i*>(at)))
#else
		: _text(at)
#endif
	{
	}

	Places Where(char c) const noexcept
	{
#if defined(__SSE2__)
		return Places(_mm_cmpeq_epi8(_text, _mm_set1_epi8(c)));
#else
		return Find([c](char at) { return at == c; });
#endif
	}

	/// Characters before `c`, of ASCII, and all beyond ASCII.
	Places WhereBelow(char c) const noexcept
	{
#if defined(__SSE2__)
		return Places(_mm_cmplt_epi8(_text, _mm_set1_epi8(c)));
#else
		return Find([c](char at) { return static_cast<signed char>(at) < c; });
#endif
	}

	Places WhereBetween(char first, char last) const noexcept
	{
#if defined(__SSE2__)
		const __m128i offsets = _mm_sub_epi8(_text, _mm_set1_epi8(first));
		const __m128i most = _mm_set1_epi8(static_cast<char>(last - first));
		return Places(_mm_cmpeq_epi8(_mm_min_epu8(offsets, most), offsets));
#else
		return Find([first, last](char at) { return at >= first && at <= last; });
#endif
	}

	/// Where another block has the same.
	Places WhereAs(const TextBlock& other) const noexcept
	{
#if defined(__SSE2__)
		return Places(_mm_cmpeq_epi8(_text, other._text));
#else
		const char* as = other._text;
		return Find([&as](char at) { return at == *as++; });
#endif
	}

	Places WhereBlank() const noexcept
	{
		return Where(' ') | Where('\n') | Where('\t') | Where('\r');
	}

private:
#if defined(__SSE2__)
	__m128i _text;
#else
	template <typename Is>
	Places Find(Is is) const noexcept
	{
		std::uint32_t places = 0;
		for (std::size_t i = 0; i < kSize; i++)
			places |= is(_text[i]) ? std::uint32_t{1} << i : 0;
		return Places(places);
	}

	const char* _text;
#endif
};

} // namespace orvan::svg
