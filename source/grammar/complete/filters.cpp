// SPDX-License-Identifier: MIT
#include "complete/filters.h"

#include "complete/color_reader.h"

#include <algorithm>

namespace orvan::grammar::complete
{
namespace
{
/// How a function is written, and how large its amount may be; zero is without a bound.
struct FilterRow
{
	std::string_view name;
	FilterKind kind;
	double most;
};

constexpr FilterRow kFilters[]{
	{"blur", FilterKind::blur, 0},           {"brightness", FilterKind::brightness, 0},
	{"contrast", FilterKind::contrast, 0},   {"drop-shadow", FilterKind::dropShadow, 0},
	{"grayscale", FilterKind::grayscale, 1}, {"hue-rotate", FilterKind::hueRotate, 0},
	{"invert", FilterKind::invert, 1},       {"opacity", FilterKind::opacity, 1},
	{"saturate", FilterKind::saturate, 0},   {"sepia", FilterKind::sepia, 1},
};

constexpr Length kNoLength{0, LengthUnit::px};

bool HasArgument(const ValueCursor& cursor) noexcept
{
	return !cursor.IsAtEnd() && cursor.Peek() != ')';
}

/// Takes a length without percentages, and the blanks behind it.
bool TakeDistance(ValueCursor& cursor, Range range, bool mayBePlain, Length& length) noexcept
{
	const bool isTaken = cursor.TakeLength(range, mayBePlain, length) && length.unit != LengthUnit::percent;
	cursor.SkipSpaces();
	return isTaken;
}

/// The colour stands before the lengths or behind them.
bool TakeShadow(ValueCursor& cursor, FilterFunction& function) noexcept
{
	const auto isNumber = [](char c)
	{
		return IsDigit(c) || c == '.' || c == '+' || c == '-';
	};
	const bool mayBePlain = cursor.GetSource() == Source::attribute;
	const auto takeColor = [&]
	{
		function.hasColor = !function.hasColor && TakeColor(cursor, function.color);
		return function.hasColor;
	};
	if (!isNumber(cursor.Peek()) && !takeColor())
		return false;
	if (!TakeDistance(cursor, Range::any, mayBePlain, function.offsetX) ||
		!TakeDistance(cursor, Range::any, mayBePlain, function.offsetY))
		return false;
	if (isNumber(cursor.Peek()) && !TakeDistance(cursor, Range::notNegative, mayBePlain, function.deviation))
		return false;
	return !HasArgument(cursor) || takeColor();
}

bool TakeArguments(ValueCursor& cursor, const FilterRow& row, FilterFunction& function) noexcept
{
	bool isPercentage;
	switch (row.kind)
	{
	case FilterKind::dropShadow:
		return TakeShadow(cursor, function);
	case FilterKind::blur:
		return !HasArgument(cursor) || TakeDistance(cursor, Range::notNegative, false, function.deviation);
	case FilterKind::hueRotate:
		function.amount = 0;
		return !HasArgument(cursor) || cursor.TakeAngle(false, function.amount);
	default:
		if (!HasArgument(cursor))
			return true;
		if (!cursor.TakeNumberOrPercentage(function.amount, isPercentage) || function.amount < 0)
			return false;
		if (row.most != 0)
			function.amount = std::min(function.amount, row.most);
		return true;
	}
}

bool TakeFilter(ValueCursor& cursor, FilterFunction& function) noexcept
{
	if (TakeReference(cursor, function.reference))
		return true;
	const std::string_view word = cursor.PeekWord();
	for (const FilterRow& row : kFilters)
	{
		if (row.name.size() == word.size() && cursor.TakeFunction(row.name))
		{
			function.kind = row.kind;
			return TakeArguments(cursor, row, function) && cursor.TakeClose();
		}
	}
	return false;
}
} // namespace

Parsed ParseFilter(std::string_view text, Source source, FilterSink& sink)
{
	ValueCursor cursor(text, source);
	if (cursor.TakeWord("none"))
		return cursor.IsAtEnd() ? Parsed::value : Parsed::refused;
	do
	{
		FilterFunction function;
		function.deviation = function.offsetX = function.offsetY = kNoLength;
		if (!TakeFilter(cursor, function))
			return Parsed::refused;
		sink.Append(function);
	} while (!cursor.IsAtEnd());
	return Parsed::value;
}
} // namespace orvan::grammar::complete
