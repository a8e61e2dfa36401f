// SPDX-License-Identifier: MIT
#pragma once

/// The math functions of CSS where what they come to is known at once: `calc()`, `min()`, `max()`, `clamp()` and
/// `abs()` over numbers, percentages, angles and lengths.

#include "complete/value_cursor.h"

namespace orvan::grammar::complete
{
/// What a calculation came to.
struct Quantity
{
	enum class Kind
	{
		number,
		percentage, ///< As its fraction.
		angle,      ///< In degrees.
		length
	};

	Kind kind = Kind::number;
	double value = 0;
	LengthUnit unit = LengthUnit::px; ///< Of a length: pixels for all absolute units.
};

/// Takes a math function at the cursor; what follows is left alone. False when there is none, when it is not valid, or
/// when it comes to no single quantity: one that mixes percentages and lengths, or lengths of different relative units.
/// The cursor then stands anywhere.
bool TakeCalculation(ValueCursor& cursor, Quantity& quantity) noexcept;
} // namespace orvan::grammar::complete
