// SPDX-License-Identifier: MIT
#pragma once

/// The math functions of CSS where what they come to is known at once: `calc()`, `min()`, `max()`, `clamp()`, `abs()`,
/// `round()`, `mod()`, `rem()`, `hypot()`, `sign()` over numbers, percentages, angles and lengths, and `pow()`,
/// `sqrt()`, `exp()`, `log()` and those of angles.

#include "complete/value_cursor.h"

#include <span>
#include <string>
#include <string_view>

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

/// A word that stands for a number in a calculation.
struct NamedNumber
{
	std::string_view name;
	double value;
};

/// Takes a math function at the cursor; what follows is left alone. False when there is none, when it is not valid, or
/// when it comes to no single quantity: one that mixes percentages and lengths, or lengths of different relative units.
/// The cursor then stands anywhere.
bool TakeCalculation(ValueCursor& cursor, Quantity& quantity, std::span<const NamedNumber> names = {}) noexcept;

/// What relative lengths are of, in pixels; zero where it is not known.
struct LengthUnits
{
	double whole = 0; ///< Of percentages.
	double fontSize = 0;
	double rootFontSize = 0;
};

/// Whether there may be a math function in a value.
bool MayHaveCalculations(std::string_view text) noexcept;

/// Writes a value again with every math function over lengths as the pixels that it comes to, also where it mixes
/// units. False when there is none, or one that cannot be calculated. Throws std::bad_alloc.
bool ResolveCalculations(std::string_view text, const LengthUnits& units, std::string& resolved);
} // namespace orvan::grammar::complete
