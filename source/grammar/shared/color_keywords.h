// SPDX-License-Identifier: MIT
#pragma once

#include "grammar.h"

namespace orvan::grammar
{
/// Finds one of the 147 colour keywords, in any case. False when the word is none of them.
bool FindColorKeyword(std::string_view word, PackedColor& color);
} // namespace orvan::grammar
