// SPDX-License-Identifier: MIT
#include "shared/color_keywords.h"

#include <algorithm>
#include <array>

namespace orvan::grammar
{
namespace
{
struct ColorKeyword
{
	std::string_view name;
	PackedColor color;
};

// The names and values are the library's own.
#define SVGPP_ON(name, red, green, blue) ColorKeyword{#name, (red) << 16 | (green) << 8 | (blue)},
constexpr ColorKeyword kKeywords[]{
#include <svgpp/detail/dict/enumerate_colors.inc>
};
#undef SVGPP_ON

constexpr std::size_t kLongestName = []
{
	std::size_t longest = 0;
	for (const ColorKeyword& keyword : kKeywords)
		longest = std::max(longest, keyword.name.size());
	return longest;
}();

constexpr std::size_t kSlots = 512;

constexpr std::size_t SlotOf(std::string_view name)
{
	std::uint32_t hash = static_cast<std::uint32_t>(name.size());
	for (char c : name)
		hash = (hash ^ static_cast<unsigned char>(c)) * 0x01000193;
	return (hash ^ hash >> 16) % kSlots;
}

// Positions in the list of keywords, plus one; zero is a free slot. Names that collide move on to the next free slot.
constexpr auto kTable = []
{
	std::array<unsigned char, kSlots> table{};
	unsigned char position = 0;
	for (const ColorKeyword& keyword : kKeywords)
	{
		std::size_t slot = SlotOf(keyword.name);
		while (table[slot] != 0)
			slot = (slot + 1) % kSlots;
		table[slot] = ++position;
	}
	return table;
}();
} // namespace

bool FindColorKeyword(std::string_view word, PackedColor& color)
{
	std::array<char, kLongestName> folded;
	if (word.size() > folded.size())
		return false;
	std::transform(word.begin(), word.end(), folded.begin(),
				   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; });
	const std::string_view name(folded.data(), word.size());
	for (std::size_t slot = SlotOf(name); kTable[slot] != 0; slot = (slot + 1) % kSlots)
	{
		const ColorKeyword& keyword = kKeywords[kTable[slot] - 1];
		if (keyword.name == name)
		{
			color = keyword.color;
			return true;
		}
	}
	return false;
}
} // namespace orvan::grammar
