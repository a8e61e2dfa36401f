// SPDX-License-Identifier: MIT
/// `data:` URLs.
#pragma once

#include "orvan/array.h"

#include <span>
#include <string_view>

namespace orvan::images
{

/// True for a URL that holds its data itself.
bool IsDataUrl(std::string_view url) noexcept;

/// The data of a `data:` URL, in base 64 or as text with escapes; null when they are damaged. Blanks within are passed
/// over. The text is in UTF-8 and so are the data, whatever a type says. Fails for want of memory only.
Result<BaseArray<unsigned char>> DecodeDataUrl(std::string_view url) noexcept;

/// Replaces "%41" and the like by the bytes that they stand for.
Result<BaseArray<unsigned char>> DecodePercents(std::string_view text) noexcept;

} // namespace orvan::images
