// SPDX-License-Identifier: MIT
#include "path_reader.h"

#include "complete/value_cursor.h"

#include <cstring>

namespace orvan::grammar
{
/// Reads two numbers of which the first was seen ahead and may stand where it does.
template <PathDialect dialect>
bool PathReader<dialect>::ReadOneByOne(After after, After between, double& x, double& y)
{
	if (!TakeNumber(x) && !ReadUnusual(after, x))
		return false;
	if (_ends == 0 || !MayStandHere(between))
		return ReadSlowly(between, y);
	return TakeNumber(y) || ReadUnusual(between, y);
}

template <PathDialect dialect>
bool PathReader<dialect>::ReadSlowly(After after, double& number)
{
	LookAhead(after);
	return (_ends != 0 && MayStandHere(after) && TakeNumber(number)) || ReadUnusual(after, number);
}

template <PathDialect dialect>
std::uint64_t PathReader<dialect>::WithoutCommas(std::uint64_t places) const
{
	for (std::uint64_t left = places; left != 0; left &= left - 1)
	{
		const std::uint64_t place = CountTrailingZeros(left);
		if (_at[place] == ',')
			places ^= std::uint64_t{1} << place;
	}
	return places;
}

template <PathDialect dialect>
void PathReader<dialect>::LookAhead(After after)
{
	if (!_isInTail && static_cast<std::size_t>(_end - _at) < kLookAhead)
		MoveToTail();
	const CharacterMasks is(_at);
	const std::uint64_t behindPoint = is.points << 1;
	const std::uint64_t inside = is.digits | is.points;
	// A point starts another number when digits behind a point lead up to it, or a point does. Such digits are found by
	// a carry that runs through them.
	const std::uint64_t laterPoints = is.points & (((behindPoint & is.digits) + is.digits) | behindPoint);
	const std::uint64_t starts = (inside & ~(inside << 1)) | laterPoints;
	const std::uint64_t ends = (~inside & (inside << 1)) | laterPoints;
	const std::uint64_t others = ~(inside | is.parts | is.minuses);

	// What usually stands before a number: nothing, a minus, or a blank or comma and perhaps a minus or a blank.
	const std::uint64_t here = 1;
	const std::uint64_t behindAny = ends | others << 1 | here;
	const std::uint64_t part = behindAny & is.parts;
	const std::uint64_t minusOnly = behindAny & is.minuses;
	std::uint64_t second = part << 1 & is.minuses;
	if (const std::uint64_t twoParts = part << 1 & is.parts; twoParts != 0) [[unlikely]]
		second |= WithoutCommas(twoParts);
	const std::uint64_t usual = behindAny | (minusOnly | part | second) << 1;
	std::uint64_t unusual = (starts & ~usual) | (ends & (is.exponents | behindPoint));
	// In "points", where each number is parted from the one before, a minus alone may do, or may not.
	if (after == After::start || after == After::abscissa || after == After::pair)
		unusual |= laterPoints | minusOnly << 1 | (after != After::start ? starts & here : 0);
	const std::uint64_t beforeUnusual = (unusual & (0 - unusual)) - 1;
	_seen = _at;
	_starts = starts;
	_points = is.points;
	_ends = ends & beforeUnusual;
	_signs = is.minuses << 1;
	_others = others;
}

template <PathDialect dialect>
void PathReader<dialect>::MoveToTail()
{
	// Zeros are neither digits nor blanks, and so end whatever runs up to them.
	const std::size_t rest = static_cast<std::size_t>(_end - _at);
	std::memcpy(_tail.data(), _at, rest);
	std::memset(_tail.data() + rest, 0, kLookAhead);
	_at = _tail.data();
	_end = _at + rest;
	_isInTail = true;
}

template <PathDialect dialect>
void PathReader<dialect>::SkipSeparator(bool mayBeComma)
{
	SkipSpaces();
	if (mayBeComma && Peek() == ',')
	{
		Take();
		SkipSpaces();
	}
}

template <PathDialect dialect>
bool PathReader<dialect>::ReadUnusual(After after, double& number)
{
	_ends = 0; // What was seen ahead may be no number of its own.
	const bool needsPart = after == After::abscissa || after == After::pair;
	const char* const before = _at;
	SkipSeparator(needsPart || after == After::number);
	const bool isParted = _at != before || (after == After::abscissa && Peek() == '-');
	if (needsPart && !isParted)
		return false;

	// Both of what reads long numbers read signs themselves, so that it must be given the number from its sign on.
	const bool isNegative = Peek() == '-';
	const char* first = _at;
	if (isNegative || Peek() == '+')
		++first;
	double magnitude;
	if (ReadDecimal(first, _end, true, magnitude))
	{
		number = isNegative ? -magnitude : magnitude;
		_at = first;
		return true;
	}
	if constexpr (dialect == PathDialect::complete)
		return complete::ReadLongNumber(_at, _end, true, number);
	const bool isPathData = after == After::command || after == After::number;
	return isPathData ? library::ReadPathNumber(_at, _end, number) : library::ReadPointsNumber(_at, _end, number);
}

template class PathReader<PathDialect::plain>;
template class PathReader<PathDialect::complete>;
} // namespace orvan::grammar
