// SPDX-License-Identifier: MIT
#pragma once

#include "declarations.h"

namespace orvan::css
{
/// Reads a style attribute as drawing programs write it, in one pass and several times as fast as through tokens. Tells
/// false, with nothing appended, where the text has anything that needs more than a look at its characters: quotes,
/// comments, escapes, "!", capital letters in names, functions other than rgb(), rgba() and url(), or a fault. What it
/// reads comes to what the tokens would have come to. Throws std::bad_alloc.
bool ReadSimpleDeclarations(std::string_view text, std::uint32_t source, std::pmr::vector<Declaration>& declarations);
} // namespace orvan::css
