// SPDX-License-Identifier: MIT
#pragma once

#include "complete/colors.h"
#include "complete/value_cursor.h"

namespace orvan::grammar::complete
{
/// Whether a text is just "#" and six hexadecimal digits, as most colours are. Otherwise `color` is left alone.
bool IsUsualColor(std::string_view text, Color& color) noexcept;

/// Takes a colour off the front of what is left, with the blanks behind it. False when there is none; the cursor then
/// stands anywhere.
bool TakeColor(ValueCursor& cursor, Color& color) noexcept;

/// Takes "url(…)" with the blanks behind it. False, with nothing taken, when there is none.
bool TakeReference(ValueCursor& cursor, Reference& reference) noexcept;
} // namespace orvan::grammar::complete
