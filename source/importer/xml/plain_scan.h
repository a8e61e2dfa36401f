// SPDX-License-Identifier: MIT
/// How the reader of plain XML moves over a text, which zeros follow: sixteen characters at a look.
#pragma once

#include "importer/names.h"
#include "importer/text/source_text.h"
#include "importer/xml/text_block.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace orvan::svg::plain
{

/// Longer names are left to the library, and prefixes that are no short names.
inline constexpr std::size_t kLongestPlainName = 48;
static_assert(kLongestPlainName + TextBlock::kSize <= kTextPadding);

inline std::size_t FirstOf(std::uint32_t bits) noexcept
{
	return static_cast<unsigned>(std::countr_zero(bits));
}

inline const char* SkipBlanks(const char* at) noexcept
{
	for (;; at += TextBlock::kSize)
	{
		const std::uint32_t others = TextBlock(at).WhereBlank().Bits() ^ 0xffff;
		if (others != 0)
			return at + FirstOf(others);
	}
}

/// The first of the places that `find` finds in a name's next blocks; null when there is none as far as names reach.
template <typename FindPlaces>
const char* FindInName(const char* at, FindPlaces find) noexcept
{
	for (const char* const end = at + kLongestPlainName; at < end; at += TextBlock::kSize)
	{
		if (const std::uint32_t found = find(TextBlock(at)).Bits(); found != 0) [[likely]]
			return at + FirstOf(found);
	}
	return nullptr;
}

/// What cannot be part of an element's name, or is no ASCII, ends it, and is looked at afterwards.
inline const char* FindTagNameEnd(const char* at) noexcept
{
	return FindInName(at, [](const TextBlock& block)
					  { return block.WhereBelow('!') | block.Where('/') | block.Where('>'); });
}

inline const char* FindEqualsSign(const char* at) noexcept
{
	return FindInName(at, [](const TextBlock& block) { return block.Where('='); });
}

/// The next `c`; null when there is none.
template <char c>
const char* Find(const char* at) noexcept
{
	if (const std::uint32_t found = TextBlock(at).Where(c).Bits(); found != 0)
		return at + FirstOf(found);
	// What is not short is long, most of the time.
	at = strchrnul(at + TextBlock::kSize, c);
	return *at == c ? at : nullptr;
}

inline bool IsLetter(char c) noexcept
{
	return static_cast<unsigned char>((c | 0x20) - 'a') < 26;
}

/// Whether no attribute begins here.
inline bool EndsTag(char c) noexcept
{
	return c == '>' || c == '/';
}

/// The place behind the next `mark`, which ends with ">"; null when there is none.
inline const char* SkipPast(const char* at, std::string_view mark) noexcept
{
	const char* end = at;
	do
	{
		end = strchrnul(end, '>');
		if (*end++ == '\0')
			return nullptr;
	} while (!std::string_view(at, end).ends_with(mark));
	return end;
}

/// Where the prefix of a name ends.
struct NameParts
{
	std::size_t prefixSize = 0;
	bool isPlain = false;
};

/// Whether two names are the same; sixteen characters are readable at both.
inline bool AreSame(const char* one, const char* other, std::size_t size) noexcept
{
	if (size >= TextBlock::kSize) [[unlikely]]
		return std::memcmp(one, other, size) == 0;
	const std::uint32_t others = ~TextBlock(one).WhereAs(TextBlock(other)).Bits();
	return (others & ((std::uint32_t{1} << size) - 1)) == 0;
}

/// Looks at a name that may be any. The library takes more; but then it stops at other characters in an element's name
/// than in an attribute's.
inline NameParts PartName(std::string_view name) noexcept
{
	NameParts parts;
	if (name.empty() || name.size() > kLongestPlainName)
		return parts;
	for (std::size_t from = 0; from < name.size(); from += TextBlock::kSize)
	{
		const TextBlock block(name.data() + from);
		const std::size_t count = std::min(name.size() - from, TextBlock::kSize);
		const std::uint32_t inside = (std::uint32_t{1} << count) - 1;
		const auto odd = block.WhereBelow('-') | block.Where('/') | block.WhereBetween('<', '?');
		if ((odd.Bits() & inside) != 0)
			return parts;
		if (const std::uint32_t colons = block.Where(':').Bits() & inside; colons != 0)
		{
			// A colon parts a name once, and not at one of its ends.
			const std::size_t colon = from + FirstOf(colons);
			if (colon > NameWords::kLongest || parts.prefixSize != 0 || (colons & (colons - 1)) != 0 || colon == 0 ||
				colon + 1 == name.size())
				return parts;
			parts.prefixSize = colon;
		}
	}
	parts.isPlain = true;
	return parts;
}

} // namespace orvan::svg::plain
