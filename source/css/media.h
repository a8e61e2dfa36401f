// SPDX-License-Identifier: MIT
#pragma once

#include "tokenizer.h"

namespace orvan::css
{
/// Reads the condition of an @media rule, up to the "{" or ";" or the end of the text, and answers whether it holds for
/// a drawing that is shown: one of its queries must be nothing but "all" or "screen" or the negation of another medium.
/// Of features in parentheses only (prefers-color-scheme: light) holds; everything else is false, also when negated.
bool ReadMediaCondition(Tokenizer& tokens);
} // namespace orvan::css
