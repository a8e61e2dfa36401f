// SPDX-License-Identifier: MIT
/// How characters stand in lines that run downwards.
#pragma once

#include "svg_types.h"

namespace orvan::drawing
{

/// True for characters that are not turned in vertical lines, such as those of Chinese and Japanese.
bool IsUpright(char32_t code, SVGWritingMode mode) noexcept;

} // namespace orvan::drawing
