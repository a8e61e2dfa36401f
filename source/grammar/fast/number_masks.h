// SPDX-License-Identifier: MIT
#pragma once

#include "fast/character_masks.h"

#include <cstdint>

namespace orvan::grammar
{
/// What may separate the numbers of a text from each other.
enum class Separation
{
	loose, ///< Path data: blanks, a comma, a minus, a second decimal point, or nothing.
	strict ///< "points": blanks or a comma.
};

/// Where numbers stand among sixty-four characters, one bit for each, the first character's lowest.
///
///     text     L1.5-20,.5.5z
///     starts   .1...1..1.1..    the first character of each number behind its sign
///     points   ..1.....1.1..    decimal points
///     ends     ....1..1..1.1    the character behind each number
///     signs    .....1.......    what a minus stands in front of
///     others   1...........1    what is no part of a number and separates none
///
/// Only usual numbers are in `ends`, those with digits behind their decimal point and without an exponent, and only as
/// long as every minus stands in front of a number and every comma between two of them. From the first place on where
/// that does not hold, `ends` and `others` tell of nothing.
struct NumberMasks
{
	static constexpr std::size_t kCount = CharacterMasks::kCount;

	std::uint64_t starts = 0;
	std::uint64_t points = 0;
	std::uint64_t ends = 0;
	std::uint64_t signs = 0;
	std::uint64_t others = 0;
	bool isWhole = true; ///< Whether there is no such place.

	/// Of no characters.
	NumberMasks() = default;

	/// `isBehindNumber` tells whether a number stands right in front of the first character; anything else that may
	/// stand there is followed by no comma.
	NumberMasks(const CharacterMasks& is, Separation separation, bool isBehindNumber)
	{
		const std::uint64_t behindPoint = is.points << 1;
		const std::uint64_t inside = is.digits | is.points;
		// A decimal point starts another number when digits behind a point lead up to it, or a point does. Such digits
		// are found by a carry that runs through them.
		const std::uint64_t laterPoints = is.points & (((behindPoint & is.digits) + is.digits) | behindPoint);
		starts = (inside & ~(inside << 1)) | laterPoints;
		ends = (~inside & (inside << 1)) | laterPoints;
		points = is.points;
		signs = is.minuses << 1;
		others = ~(inside | is.blanks | is.commas | is.minuses);

		// What follows commas, and what follows the others, blanks aside, which a carry runs through as well.
		const std::uint64_t behindHere = isBehindNumber ? 1 : 0;
		const std::uint64_t afterCommas = ((is.commas << 1) + is.blanks) & ~is.blanks;
		const std::uint64_t afterOthers = ((others << 1 | (behindHere ^ 1)) + is.blanks) & ~is.blanks;
		std::uint64_t unusual = (afterCommas & ~(starts | is.minuses)) | (afterOthers & is.commas) | (signs & ~starts) |
								(ends & (is.exponents | behindPoint));
		// Where each number must be separated from the one before, a minus alone may do, or may not.
		if (separation == Separation::strict)
			unusual |= laterPoints | ((ends | behindHere) & is.minuses) << 1 | (starts & behindHere);
		const std::uint64_t usual = (unusual & (0 - unusual)) - 1;
		ends &= usual;
		others &= usual;
		isWhole = unusual == 0;
	}
};
} // namespace orvan::grammar
