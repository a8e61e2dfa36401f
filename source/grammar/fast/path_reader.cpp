// SPDX-License-Identifier: MIT
#include "fast/path_reader.h"

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
	if (_numbers.ends == 0)
		return ReadSlowly(between, y);
	return TakeNumber(y) || ReadUnusual(between, y);
}

template <PathDialect dialect>
bool PathReader<dialect>::ReadSlowly(After after, double& number)
{
	LookAhead(after);
	return (_numbers.ends != 0 && TakeNumber(number)) || ReadUnusual(after, number);
}

template <PathDialect dialect>
void PathReader<dialect>::LookAhead(After after)
{
	if (CountRest() < _restOfStride) [[unlikely]]
		BeginStride();
	_seen = _at;
	_numbers = NumberMasks(CharacterMasks(_at), SeparationAfter(after), IsNumber(after));
}

template <PathDialect dialect>
void PathReader<dialect>::BeginStride()
{
	const std::size_t rest = CountRest();
	if (rest >= kLookAhead)
	{
		if (_sink != nullptr)
			_sink->Reach(_at);
		_restOfStride = std::max(kLookAhead, rest - std::min(rest, kStride));
		return;
	}
	// Zeros are neither digits nor blanks, and so end whatever runs up to them.
	std::memcpy(_tail.data(), _at, rest);
	std::memset(_tail.data() + rest, 0, kLookAhead);
	_at = _tail.data();
	_end = _at + rest;
	_restOfStride = 0;
}

template <PathDialect dialect>
void PathReader<dialect>::SkipSeparator(bool mayBeComma)
{
	SkipSpaces();
	if (mayBeComma && Peek() == ',')
	{
		++_at;
		SkipSpaces();
	}
}

template <PathDialect dialect>
bool PathReader<dialect>::ReadUnusual(After after, double& number)
{
	_numbers.ends = 0; // What was seen ahead may be no number of its own.
	const bool needsSeparator = after == After::abscissa || after == After::pair;
	const char* const before = _at;
	SkipSeparator(needsSeparator || after == After::number);
	const bool isSeparated = _at != before || (after == After::abscissa && Peek() == '-');
	if (needsSeparator && !isSeparated)
		return false;

	// Both of what reads long numbers read signs themselves, so that it must be given the number from its sign on.
	const bool isNegative = Peek() == '-';
	const char* first = _at;
	if (isNegative || Peek() == '+')
		++first;
	// Browsers have the nearest double; the plain import has what the library makes of many digits.
	const char* const digits = first;
	double magnitude;
	if (ReadDecimal(first, _end, true, magnitude) && (dialect == PathDialect::plain || IsNearest(digits, first)))
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
