#include "path_reader.h"

namespace orvan::grammar
{
void PathReader::MoveToTail()
{
	// Zeros are neither digits nor blanks, and so end whatever runs up to them.
	const std::size_t rest = static_cast<std::size_t>(_end - _at);
	_tail.fill('\0');
	std::copy_n(_at, rest, _tail.data());
	_at = _tail.data();
	_end = _at + rest;
	_lastSafe = _end;
}

void PathReader::SkipSeparator(bool mayBeComma)
{
	SkipSpaces();
	if (mayBeComma && Peek() == ',')
	{
		Take();
		SkipSpaces();
	}
}

bool PathReader::ReadUnusualNumber(After after, double& number)
{
	const bool needsPart = after == After::abscissa || after == After::pair;
	const char* const before = _at;
	SkipSeparator(needsPart || after == After::number);
	const bool isParted = _at != before || (after == After::abscissa && Peek() == '-');
	if (needsPart && !isParted)
		return false;

	// The library reads signs itself, so that it must be given the number from its sign on.
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
	const bool isPathData = after == After::command || after == After::number;
	return isPathData ? library::ReadPathNumber(_at, _end, number) : library::ReadPointsNumber(_at, _end, number);
}
} // namespace orvan::grammar
