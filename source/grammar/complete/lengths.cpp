// SPDX-License-Identifier: MIT
#include "complete/text.h"
#include "complete/value_cursor.h"

namespace orvan::grammar::complete
{
namespace
{
/// Whether a text is nothing but a number, or one of pixels, as most lengths are.
bool IsUsualLength(std::string_view text, Length& length) noexcept
{
	const char* at = text.data();
	const char* const end = at + text.size();
	if (!ReadUsualNumber(at, end, length.value))
		return false;
	const bool hasUnit = end - at == 2 && at[0] == 'p' && at[1] == 'x';
	length.unit = hasUnit ? LengthUnit::px : LengthUnit::number;
	return hasUnit || at == end;
}

/// Reads such a length; `length` stays as it is when it is none, or out of range.
bool TakeUsual(std::string_view text, Range range, Length& length) noexcept
{
	Length usual;
	if (!IsUsualLength(text, usual) || (range != Range::any && usual.value < 0))
		return false;
	length = usual;
	return true;
}
} // namespace

Parsed ParseLength(std::string_view text, Source source, Range range, Length& length) noexcept
{
	if (TakeUsual(text, range, length))
		return Parsed::value;
	ValueCursor cursor(text, source);
	Length result;
	if (!cursor.TakeLength(range, true, result) || Finish(cursor) != Parsed::value)
		return Parsed::refused;
	length = result;
	return Parsed::value;
}

Parsed ParseLengthOrAuto(std::string_view text, Source source, Range range, Length& length) noexcept
{
	if (TakeUsual(text, range, length))
		return Parsed::value;
	ValueCursor cursor(text, source);
	if (IsLetter(cursor.Peek()) && cursor.TakeWord("auto"))
		return cursor.IsAtEnd() ? Parsed::nothing : Parsed::refused;
	return ParseLength(text, source, range, length);
}

Parsed ParseSpacing(std::string_view text, Source source, Length& length) noexcept
{
	ValueCursor cursor(text, source);
	Length result;
	if (!cursor.TakeWord("normal") && !cursor.TakeLength(Range::any, source != Source::sheet, result))
		return Parsed::refused;
	if (Finish(cursor) != Parsed::value)
		return Parsed::refused;
	length = result;
	return Parsed::value;
}

Parsed ParseBaselineShift(std::string_view text, Source source, BaselineShift& shift) noexcept
{
	constexpr struct
	{
		std::string_view name;
		BaselineShiftKind value;
	} kKeywords[]{{"baseline", BaselineShiftKind::baseline},
				  {"sub", BaselineShiftKind::sub},
				  {"super", BaselineShiftKind::super}};
	ValueCursor cursor(text, source);
	BaselineShift result;
	if (!cursor.TakeKeyword(kKeywords, result.kind))
	{
		result.kind = BaselineShiftKind::length;
		if (!cursor.TakeLength(Range::any, true, result.length))
			return Parsed::refused;
	}
	if (Finish(cursor) != Parsed::value)
		return Parsed::refused;
	shift = result;
	return Parsed::value;
}

Parsed ParseDashArray(std::string_view text, Source source, LengthSink& sink)
{
	ValueCursor cursor(text, source);
	if (cursor.TakeWord("none"))
		return cursor.IsAtEnd() ? Parsed::value : Parsed::refused;
	// A comma must be followed by another length.
	do
	{
		Length length;
		if (!cursor.TakeLength(Range::notNegative, true, length))
			return Parsed::refused;
		sink.Append(length);
	} while (cursor.TakeComma() || !cursor.IsAtEnd());
	return Parsed::value;
}

Progress ParseLengthList(std::string_view text, LengthSink& sink)
{
	ValueCursor cursor(text, Source::attribute, Comments::refused);
	while (!cursor.IsAtEnd())
	{
		Length length;
		const std::size_t offset = cursor.Offset();
		if (!cursor.TakeLength(length))
			return {false, offset};
		sink.Append(length);
		if (cursor.IsAtEnd())
			break;
		const bool hasSpaces = cursor.SkipSpaces();
		const bool hasComma = cursor.TakeMark(',');
		if (!hasComma && !hasSpaces)
			return {false, cursor.Offset()};
	}
	return {true, text.size()};
}
} // namespace orvan::grammar::complete
