// SPDX-License-Identifier: MIT
#pragma once

#include "fast/character_masks.h"

#include <cstdint>

namespace orvan::grammar
{
/// What separates the numbers of a text from each other.
enum class Separation
{
	loose,      ///< Path data: blanks, a comma, a minus, a second decimal point, or nothing.
	strict,     ///< "points", behind a number: blanks or a comma.
	strictStart ///< "points", at the start of a number.
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
/// Only usual numbers are in `ends`: those with at most two characters between them and whatever stands before, the
/// sign included, with digits behind their decimal point, and without an exponent. The first one that is not, and all
/// behind it, are left out there; a number is known when its end is.
struct NumberMasks
{
	static constexpr std::size_t kCount = CharacterMasks::kCount;

	std::uint64_t starts = 0;
	std::uint64_t points = 0;
	std::uint64_t ends = 0;
	std::uint64_t signs = 0;
	std::uint64_t others = 0;

	/// Of no characters.
	NumberMasks() = default;

	/// Looks at the characters at `at`, all of which must be readable.
	NumberMasks(const char* at, Separation separation)
	{
		const CharacterMasks is(at);
		const std::uint64_t behindPoint = is.points << 1;
		const std::uint64_t inside = is.digits | is.points;
		// A decimal point starts another number when digits behind a point lead up to it, or a point does. Such digits
		// are found by a carry that runs through them.
		const std::uint64_t laterPoints = is.points & (((behindPoint & is.digits) + is.digits) | behindPoint);
		starts = (inside & ~(inside << 1)) | laterPoints;
		ends = (~inside & (inside << 1)) | laterPoints;
		points = is.points;
		signs = is.minuses << 1;
		others = ~(inside | is.separators | is.minuses);

		// What usually stands before a number: nothing, a minus, or a blank or comma and perhaps a minus or a blank.
		const std::uint64_t here = 1;
		const std::uint64_t behindAny = ends | others << 1 | here;
		const std::uint64_t separator = behindAny & is.separators;
		const std::uint64_t minusOnly = behindAny & is.minuses;
		std::uint64_t second = separator << 1 & is.minuses;
		if (const std::uint64_t pairs = separator << 1 & is.separators; pairs != 0) [[unlikely]]
			second |= WithoutCommas(at, pairs);
		const std::uint64_t usual = behindAny | (minusOnly | separator | second) << 1;
		std::uint64_t unusual = (starts & ~usual) | (ends & (is.exponents | behindPoint));
		// Where each number must be separated from the one before, a minus alone may do, or may not.
		if (separation != Separation::loose)
			unusual |= laterPoints | minusOnly << 1 | (separation == Separation::strict ? starts & here : 0);
		ends &= (unusual & (0 - unusual)) - 1;
	}

private:
	/// Those of some places where no comma stands.
	static std::uint64_t WithoutCommas(const char* at, std::uint64_t places)
	{
		for (std::uint64_t left = places; left != 0; left &= left - 1)
		{
			const int place = __builtin_ctzll(left);
			if (at[place] == ',')
				places ^= std::uint64_t{1} << place;
		}
		return places;
	}
};
} // namespace orvan::grammar
