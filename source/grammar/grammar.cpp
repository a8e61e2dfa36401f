#include "grammar.h"

#include "grammar_library.h"

#include <bit>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace orvan::grammar
{
// What has no fast form: the library's reading of these is a comparison with a few words, or happens once a document.

Parsed ParseDisplay(std::string_view text, std::int32_t& display)
{
	return library::ParseDisplay(text, display);
}

Parsed ParseVisibility(std::string_view text, std::int32_t& visibility)
{
	return library::ParseVisibility(text, visibility);
}

Parsed ParseFillRule(std::string_view text, std::int32_t& rule)
{
	return library::ParseFillRule(text, rule);
}

Parsed ParseLineCap(std::string_view text, std::int32_t& cap)
{
	return library::ParseLineCap(text, cap);
}

Parsed ParseLineJoin(std::string_view text, std::int32_t& join)
{
	return library::ParseLineJoin(text, join);
}

Parsed ParseGradientUnits(std::string_view text, std::int32_t& units)
{
	return library::ParseGradientUnits(text, units);
}

Parsed ParseSpreadMethod(std::string_view text, std::int32_t& method)
{
	return library::ParseSpreadMethod(text, method);
}

Parsed ParseFontStyle(std::string_view text, std::int32_t& style)
{
	return library::ParseFontStyle(text, style);
}

Parsed ParseFontWeight(std::string_view text, std::int32_t& weight)
{
	return library::ParseFontWeight(text, weight);
}

Parsed ParsePreserveAspectRatio(std::string_view text, AspectRatio& ratio)
{
	return library::ParsePreserveAspectRatio(text, ratio);
}

namespace
{
/// Finds the next colon, semicolon, blank or control character; `end` when there is none.
const char* FindMark(const char* at, const char* end)
{
#if defined(__SSE2__)
	for (; end - at >= 16; at += 16)
	{
		const __m128i characters = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
		const __m128i isLow = _mm_cmpeq_epi8(_mm_min_epu8(characters, _mm_set1_epi8(' ')), characters);
		// The two marks differ in the last bit alone.
		const __m128i isMark = _mm_cmpeq_epi8(_mm_or_si128(characters, _mm_set1_epi8(1)), _mm_set1_epi8(';'));
		if (const int found = _mm_movemask_epi8(_mm_or_si128(isLow, isMark)); found != 0)
			return at + std::countr_zero(static_cast<unsigned>(found));
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
	const char* const nameEnd = FindMark(nameBegin, end);
	if (nameEnd == nameBegin || nameEnd == end || *nameEnd != ':')
		return library::NextDeclaration(_rest, name, value);
	const char* const valueBegin = skipBlank(nameEnd + 1);
	const char* const valueEnd = FindMark(valueBegin, end);
	if (valueEnd == valueBegin || (valueEnd != end && *valueEnd != ';'))
		return library::NextDeclaration(_rest, name, value);
	name = {nameBegin, nameEnd};
	value = {valueBegin, valueEnd};
	_rest = {valueEnd + (valueEnd != end), end};
	return true;
}
} // namespace orvan::grammar
