// SPDX-License-Identifier: MIT
#pragma once

#include "complete/color_spaces.h"
#include "complete/colors.h"
#include "complete/value_cursor.h"

namespace orvan::grammar::complete
{
/// A colour with what mixing needs to know of how it was written. Its channels may lie outside of 0 … 1.
struct WrittenColor : Color
{
	const ColorSpace* space = nullptr; ///< The space of the function; null when it was none.
	Components components{};           ///< In that space.
	unsigned missing = 0;              ///< Bits of the components that are "none".
};

/// Colours within each other.
inline constexpr int kMostColors = 16;

/// Takes a colour of any form without what may follow it, with the blanks behind it. `nesting` counts the functions
/// around. False when there is none; the cursor then stands anywhere.
bool TakeWrittenColor(ValueCursor& cursor, int nesting, WrittenColor& color) noexcept;

/// As above, of a colour whose name and parenthesis follow.
bool TakeColorFunction(ValueCursor& cursor, int nesting, WrittenColor& color) noexcept;
} // namespace orvan::grammar::complete
