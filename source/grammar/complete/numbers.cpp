// SPDX-License-Identifier: MIT
#include "complete/numbers.h"

#include "complete/value_cursor.h"

#include <array>
#include <cmath>

namespace orvan::grammar::complete
{
namespace
{
/// A cursor over an attribute that is no property.
ValueCursor OverAttribute(std::string_view text) noexcept
{
	return ValueCursor(text, Source::attribute, Comments::refused);
}

/// Reads numbers that may be parted by anything or nothing, up to as many as there is room for; how many there were.
/// False when the list does not end where the text does.
template <std::size_t most>
bool ReadNumbers(std::string_view text, std::array<double, most>& numbers, std::size_t& count) noexcept
{
	ValueCursor cursor = OverAttribute(text);
	for (count = 0; count != most && cursor.TakeNumber(numbers[count]);)
	{
		++count;
		cursor.SkipSpaces();
		if (cursor.IsAtEnd())
			return true;
		cursor.TakeMark(',');
	}
	return false;
}

struct AlignRow
{
	std::string_view name;
	Align align;
};

constexpr AlignRow kAligns[]{
	{"xMidYMid", Align::xMidYMid}, {"none", Align::none},         {"xMinYMin", Align::xMinYMin},
	{"xMidYMin", Align::xMidYMin}, {"xMaxYMin", Align::xMaxYMin}, {"xMinYMid", Align::xMinYMid},
	{"xMaxYMid", Align::xMaxYMid}, {"xMinYMax", Align::xMinYMax}, {"xMidYMax", Align::xMidYMax},
	{"xMaxYMax", Align::xMaxYMax},
};
} // namespace

Parsed ParseNumber(std::string_view text, Source source, Range range, double& number) noexcept
{
	if (double usual; IsUsualNumber(text, usual) && (range == Range::any || usual >= 0))
	{
		number = usual;
		return Parsed::value;
	}
	ValueCursor cursor(text, source);
	double result;
	if (!cursor.TakePlainNumber(result) || (range == Range::notNegative && result < 0) ||
		Finish(cursor) != Parsed::value)
		return Parsed::refused;
	number = result;
	return Parsed::value;
}

Parsed ParseAlpha(std::string_view text, Source source, double& alpha) noexcept
{
	if (double usual; IsUsualNumber(text, usual))
	{
		alpha = usual;
		return Parsed::value;
	}
	ValueCursor cursor(text, source);
	double result;
	bool isPercentage;
	if (!cursor.TakeNumberOrPercentage(result, isPercentage) || Finish(cursor) != Parsed::value)
		return Parsed::refused;
	alpha = result;
	return Parsed::value;
}

Parsed ParseOffset(std::string_view text, double& fraction) noexcept
{
	if (double usual; IsUsualNumber(text, usual))
	{
		fraction = usual;
		return Parsed::value;
	}
	ValueCursor cursor = OverAttribute(text);
	double result;
	bool isPercentage;
	if (!cursor.TakeNumberOrPercentage(result, isPercentage) || Finish(cursor) != Parsed::value)
		return Parsed::refused;
	fraction = result;
	return Parsed::value;
}

Parsed ParseInteger(std::string_view text, std::int32_t& number) noexcept
{
	double result;
	if (ParseNumber(text, Source::attribute, Range::any, result) != Parsed::value || std::trunc(result) != result ||
		std::fabs(result) > std::numeric_limits<std::int32_t>::max())
		return Parsed::refused;
	number = static_cast<std::int32_t>(result);
	return Parsed::value;
}

Progress ParseNumberList(std::string_view text, NumberSink& sink)
{
	ValueCursor cursor = OverAttribute(text);
	while (!cursor.IsAtEnd())
	{
		double number;
		if (!cursor.TakeNumber(number))
			return {false, cursor.Offset()};
		sink.Append(number);
		cursor.SkipSpaces();
		cursor.TakeMark(',');
	}
	return {true, text.size()};
}

Parsed ParseNumberPair(std::string_view text, double& first, double& second) noexcept
{
	std::array<double, 2> numbers;
	std::size_t count;
	if (!ReadNumbers(text, numbers, count))
		return Parsed::refused;
	first = numbers[0];
	second = numbers[count - 1];
	return Parsed::value;
}

Parsed ParseViewBox(std::string_view text, ViewBox& box) noexcept
{
	std::array<double, 4> numbers;
	std::size_t count;
	if (!ReadNumbers(text, numbers, count) || count != numbers.size() || numbers[2] < 0 || numbers[3] < 0)
		return Parsed::refused;
	box = {numbers[0], numbers[1], numbers[2], numbers[3]};
	return Parsed::value;
}

Parsed ParsePreserveAspectRatio(std::string_view text, AspectRatio& ratio) noexcept
{
	ValueCursor cursor = OverAttribute(text);
	const auto takeExactly = [&cursor](std::string_view word)
	{
		if (cursor.PeekWord() != word)
			return false;
		cursor.MoveTo(cursor.At() + word.size());
		cursor.SkipSpaces();
		return true;
	};
	takeExactly("defer");
	for (const AlignRow& row : kAligns)
	{
		if (!takeExactly(row.name))
			continue;
		const bool isSlice = takeExactly("slice");
		if ((!isSlice && !takeExactly("meet") && !cursor.IsAtEnd()) || !cursor.IsAtEnd())
			return Parsed::refused;
		ratio = {row.align, isSlice && row.align != Align::none ? MeetOrSlice::slice : MeetOrSlice::meet};
		return Parsed::value;
	}
	return Parsed::refused;
}

Parsed ParseAngle(std::string_view text, double& degrees) noexcept
{
	ValueCursor cursor(text, Source::attribute);
	double result;
	if (!cursor.TakeAngle(true, result) || Finish(cursor) != Parsed::value)
		return Parsed::refused;
	degrees = result;
	return Parsed::value;
}

Parsed ParseOrient(std::string_view text, Orient& orient) noexcept
{
	const std::string_view word = TrimCss(text);
	if (word == "auto")
		orient = {OrientKind::automatic, 0};
	else if (word == "auto-start-reverse")
		orient = {OrientKind::automaticStartReverse, 0};
	else
	{
		double degrees;
		if (ParseAngle(text, degrees) != Parsed::value)
			return Parsed::refused;
		orient = {OrientKind::angle, degrees};
	}
	return Parsed::value;
}
} // namespace orvan::grammar::complete
