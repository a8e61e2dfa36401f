// SPDX-License-Identifier: MIT
#include "complete/color_reader.h"
#include "complete/text.h"

namespace orvan::grammar::complete
{
namespace
{
struct LineRow
{
	std::string_view name;
	TextDecorationLine value;
};

constexpr LineRow kLines[]{
	{"underline", kUnderline}, {"overline", kOverline}, {"line-through", kLineThrough}, {"blink", kBlink}};

struct StyleRow
{
	std::string_view name;
	TextDecorationStyle value;
};

constexpr StyleRow kStyles[]{
	{"solid", TextDecorationStyle::solid},   {"double", TextDecorationStyle::doubled},
	{"dotted", TextDecorationStyle::dotted}, {"dashed", TextDecorationStyle::dashed},
	{"wavy", TextDecorationStyle::wavy},
};

bool TakeThickness(ValueCursor& cursor, TextDecoration& decoration) noexcept
{
	const char* const before = cursor.At();
	if (cursor.TakeWord("auto") || cursor.TakeWord("from-font"))
		return true;
	decoration.hasThickness =
		cursor.TakeLength(Range::any, cursor.GetSource() == Source::attribute, decoration.thickness);
	if (!decoration.hasThickness)
		cursor.MoveTo(before);
	cursor.SkipSpaces();
	return decoration.hasThickness;
}

/// Takes "none" or lines, each at most once.
bool TakeLines(ValueCursor& cursor, std::uint32_t& lines) noexcept
{
	if (cursor.TakeWord("none"))
		return true;
	const std::uint32_t before = lines;
	TextDecorationLine line;
	while (cursor.TakeKeyword(kLines, line))
	{
		if ((lines & line) != 0)
			return false;
		lines |= line;
	}
	return lines != before;
}
} // namespace

Parsed ParseTextDecoration(std::string_view text, Source source, TextDecoration& decoration) noexcept
{
	ValueCursor cursor(text, source);
	TextDecoration result;
	bool hasLines = false;
	bool hasStyle = false;
	bool hasThickness = false;
	do
	{
		if (!hasLines && TakeLines(cursor, result.lines))
			hasLines = true;
		else if (!hasStyle && cursor.TakeKeyword(kStyles, result.style))
			hasStyle = true;
		else if (!hasThickness && TakeThickness(cursor, result))
			hasThickness = true;
		else if (!result.hasColor && TakeColor(cursor, result.color))
			result.hasColor = true;
		else
			return Parsed::refused;
	} while (!cursor.IsAtEnd());
	decoration = result;
	return Parsed::value;
}
} // namespace orvan::grammar::complete
