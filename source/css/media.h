// SPDX-License-Identifier: MIT
#pragma once

#include "tokenizer.h"

#include <string_view>

namespace orvan::css
{
/// Reads a list of media queries up to the "{", "}" or ";" behind it, or to the end of the text. True when one of them
/// holds for a picture in colours on a light page, which nobody points at; of sizes nothing is known. An empty list
/// holds.
bool ReadMediaCondition(Tokenizer& tokens);

/// Whether such a list holds that is a text by itself, as of the media attribute.
bool HoldsForMedia(std::string_view list);
} // namespace orvan::css
