// SPDX-License-Identifier: MIT
/// What is dropped of the characters of a text, and what stays together.
#pragma once

#include "orvan/array.h"

#include <glib.h>

#include <string_view>

namespace orvan::drawing
{

inline bool IsBlank(char c) noexcept
{
	return c == ' ' || c == '\t';
}

/// Drops line breaks, and makes one blank of several and none of those at the ends: what a text without runs wants,
/// whose characters are as the file has them.
inline Result<BaseArray<char>> CollapseSpace(std::string_view text) noexcept
{
	BaseArray<char> result;
	ORVAN_TRY(result.Reserve(text.size() + 1));
	bool isSpacePending = false;
	for (const char c : text)
	{
		if (c == '\n' || c == '\r')
			continue;
		if (IsBlank(c))
		{
			isSpacePending = !result.IsEmpty();
			continue;
		}
		if (isSpacePending)
			ORVAN_TRY(result.Append(' '));
		isSpacePending = false;
		ORVAN_TRY(result.Append(c));
	}
	return result;
}

/// True for what stays with the character before it, whatever a document says about its position.
inline bool JoinsWithPrevious(char32_t code, char32_t previous) noexcept
{
	constexpr char32_t kJoiner = 0x200d;
	constexpr char32_t kFirstSkinTone = 0x1f3fb;
	constexpr char32_t kLastSkinTone = 0x1f3ff;
	const GUnicodeType type = g_unichar_type(code);
	return type == G_UNICODE_NON_SPACING_MARK || type == G_UNICODE_ENCLOSING_MARK || type == G_UNICODE_SPACING_MARK ||
		   code == kJoiner || previous == kJoiner || (code >= kFirstSkinTone && code <= kLastSkinTone);
}

} // namespace orvan::drawing
