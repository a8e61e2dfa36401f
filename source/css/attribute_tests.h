// SPDX-License-Identifier: MIT
#pragma once

#include "selector.h"

#include <cstdint>
#include <string_view>

namespace orvan::css
{
/// True when the list of names, parted by blanks, has this one; it must be a single name.
bool HasWord(std::string_view words, std::string_view word);

/// The steps that a test of a value takes at most.
std::uint64_t FindCost(const Simple& simple, std::string_view value);

/// True when the value of an attribute is as the condition wants it.
bool MatchesValue(const Simple& simple, std::string_view value);
} // namespace orvan::css
