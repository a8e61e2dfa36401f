// SPDX-License-Identifier: MIT
/// How characters stand in lines that run downwards.
#pragma once

#include "style.h"

namespace orvan::drawing
{

/// False where lines are horizontal, or all letters of vertical ones are turned. `mode` is that of the text itself,
/// which counts for all of its parts.
bool HasUprightLetters(SVGWritingMode mode, const Style& style) noexcept;

/// True for characters that are not turned in vertical lines: those of Chinese and Japanese, say, or all.
bool IsUpright(char32_t code, SVGWritingMode mode, const Style& style) noexcept;

} // namespace orvan::drawing
