// SPDX-License-Identifier: MIT
#pragma once

#include "characters.h"

#include <cstddef>
#include <string_view>

namespace orvan::css
{
/// Takes the next word off a list of words that blanks part; false when there is none left.
inline bool TakeWord(std::string_view& rest, std::string_view& word)
{
	const char* at = rest.data();
	const char* const end = at + rest.size();
	while (at < end && Is(*at, kSpaceKind))
		at++;
	const char* const begin = at;
	while (at < end && !Is(*at, kSpaceKind))
		at++;
	word = {begin, static_cast<std::size_t>(at - begin)};
	rest = {at, static_cast<std::size_t>(end - at)};
	return !word.empty();
}
} // namespace orvan::css
