// SPDX-License-Identifier: MIT
#include "grammar.h"

#include "svgpp/library.h"

#include <bit>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace orvan::grammar
{
namespace
{
#if defined(__SSE2__)
/// A bit for each character that is a colon, a semicolon, a blank or a control character.
unsigned FindMarks(__m128i characters)
{
	const __m128i isLow = _mm_cmpeq_epi8(_mm_min_epu8(characters, _mm_set1_epi8(' ')), characters);
	// The two marks differ in the last bit alone.
	const __m128i isMark = _mm_cmpeq_epi8(_mm_or_si128(characters, _mm_set1_epi8(1)), _mm_set1_epi8(';'));
	return static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(isLow, isMark)));
}
#endif

/// Finds the next colon, semicolon, blank or control character; `end` when there is none. What stands between `begin`
/// and `at` may be read as well.
const char* FindMark([[maybe_unused]] const char* begin, const char* at, const char* end)
{
#if defined(__SSE2__)
	constexpr std::ptrdiff_t kCount = 8;
	for (; end - at >= kCount; at += kCount)
	{
		// The zeros behind the eight characters count as marks.
		const unsigned marks = FindMarks(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(at)));
		if (const int place = std::countr_zero(marks); place != kCount)
			return at + place;
	}
	if (end - begin >= kCount)
	{
		const __m128i last = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(end - kCount));
		return at + std::countr_zero(FindMarks(last) >> (kCount - (end - at)));
	}
#endif
	while (at != end && *at != ':' && *at != ';' && static_cast<unsigned char>(*at) > ' ')
		++at;
	return at;
}
} // namespace

/// Reads "name:value;" by itself when neither has a blank inside. One blank before each is usual.
bool StyleSplitter::Next(std::string_view& name, std::string_view& value)
{
	const char* const end = _rest.data() + _rest.size();
	const auto skipBlank = [end](const char* at)
	{
		return at + (at != end && *at == ' ');
	};
	const char* const nameBegin = skipBlank(_rest.data());
	if (nameBegin == end)
		return false;
	const char* const nameEnd = FindMark(_rest.data(), nameBegin, end);
	if (nameEnd == nameBegin || nameEnd == end || *nameEnd != ':')
		return library::NextDeclaration(_rest, name, value);
	const char* const valueBegin = skipBlank(nameEnd + 1);
	const char* const valueEnd = FindMark(_rest.data(), valueBegin, end);
	if (valueEnd == valueBegin || (valueEnd != end && *valueEnd != ';'))
		return library::NextDeclaration(_rest, name, value);
	name = {nameBegin, nameEnd};
	value = {valueBegin, valueEnd};
	_rest = {valueEnd + (valueEnd != end), end};
	return true;
}
} // namespace orvan::grammar
