// SPDX-License-Identifier: MIT
#include "complete/text.h"
#include "complete/value_cursor.h"

#include <array>

namespace orvan::grammar::complete
{
namespace
{
constexpr double kNormalWeight = 400;
constexpr double kBoldWeight = 700;

struct SizeRow
{
	std::string_view name;
	FontSize value;
};

constexpr FontSize Pixels(double size)
{
	return {FontSizeKind::length, {size, LengthUnit::px}};
}

constexpr SizeRow kSizes[]{
	{"medium", Pixels(16)},
	{"xx-small", Pixels(9)},
	{"x-small", Pixels(10)},
	{"small", Pixels(13)},
	{"large", Pixels(18)},
	{"x-large", Pixels(24)},
	{"xx-large", Pixels(32)},
	{"xxx-large", Pixels(48)},
	{"larger", {FontSizeKind::larger, {1, LengthUnit::em}}},
	{"smaller", {FontSizeKind::smaller, {1, LengthUnit::em}}},
};

struct WeightRow
{
	std::string_view name;
	FontWeight value;
};

constexpr WeightRow kWeights[]{
	{"normal", {FontWeightKind::weight, kNormalWeight}},
	{"bold", {FontWeightKind::weight, kBoldWeight}},
	{"bolder", {FontWeightKind::bolder, kBoldWeight}},
	{"lighter", {FontWeightKind::lighter, kNormalWeight}},
};

struct StyleRow
{
	std::string_view name;
	FontStyle value;
};

constexpr StyleRow kStyles[]{
	{"normal", FontStyle::normal}, {"italic", FontStyle::italic}, {"oblique", FontStyle::oblique}};

struct StretchRow
{
	std::string_view name;
	double value;
};

constexpr StretchRow kStretches[]{
	{"normal", 1},       {"ultra-condensed", 0.5},  {"extra-condensed", 0.625},
	{"condensed", 0.75}, {"semi-condensed", 0.875}, {"semi-expanded", 1.125},
	{"expanded", 1.25},  {"extra-expanded", 1.5},   {"ultra-expanded", 2},
};

constexpr std::array<std::string_view, 6> kSystemFonts{"caption",     "icon",          "menu",
													   "message-box", "small-caption", "status-bar"};

bool TakeSize(ValueCursor& cursor, bool mayBePlain, FontSize& size) noexcept
{
	if (cursor.TakeKeyword(kSizes, size))
		return true;
	size.kind = FontSizeKind::length;
	const bool isTaken = cursor.TakeLength(Range::notNegative, mayBePlain, size.size);
	cursor.SkipSpaces();
	return isTaken;
}

bool TakeWeight(ValueCursor& cursor, FontWeight& weight) noexcept
{
	constexpr double kMost = 1000;
	if (cursor.TakeKeyword(kWeights, weight))
		return true;
	const char* const before = cursor.At();
	weight.kind = FontWeightKind::weight;
	if (cursor.TakePlainNumber(weight.weight) && weight.weight >= 1 && weight.weight <= kMost)
	{
		cursor.SkipSpaces();
		return true;
	}
	cursor.MoveTo(before);
	return false;
}

bool TakeStyle(ValueCursor& cursor, FontStyle& style) noexcept
{
	constexpr double kMostDegrees = 90;
	if (!cursor.TakeKeyword(kStyles, style))
		return false;
	const char* const before = cursor.At();
	double degrees;
	// Not even zero does without a unit.
	if (style == FontStyle::oblique && cursor.TakeAngle(false, degrees) && IsLetter(cursor.At()[-1]) &&
		degrees >= -kMostDegrees && degrees <= kMostDegrees)
		cursor.SkipSpaces();
	else
		cursor.MoveTo(before);
	return true;
}

/// Takes one name of a list: a text in quotes, or words. One word alone must not be a keyword of all properties.
bool TakeFamilyName(ValueCursor& cursor) noexcept
{
	std::string_view name;
	bool hasEscapes;
	if (cursor.TakeString(name, hasEscapes))
		return true;
	std::size_t count = 0;
	for (; !cursor.IsAtEnd() && cursor.Peek() != ','; ++count)
	{
		const std::string_view word = cursor.PeekWord();
		const std::string_view name_ = word.substr(word.starts_with('-') ? 1 : 0);
		if (name_.empty() || IsDigit(name_.front()) || name_ == "\\")
			return false;
		name = word;
		cursor.MoveTo(word.data() + word.size());
		cursor.SkipSpaces();
	}
	const bool isReserved = ParseCssWide(name) != CssWideKeyword::none || EqualsIgnoreCase(name, "default");
	return count > 1 || (count == 1 && !isReserved);
}

bool TakeFamilies(ValueCursor& cursor, std::string_view text, FontFamily& family) noexcept
{
	const char* const begin = cursor.At();
	do
	{
		if (!TakeFamilyName(cursor))
			return false;
	} while (cursor.TakeComma());
	if (!cursor.IsAtEnd())
		return false;
	const std::string_view rest = text.substr(static_cast<std::size_t>(begin - text.data()));
	family.list = TrimCss(rest);
	// A comment inside a quoted name is none, which removing comments knows.
	family.hasComments = family.list.find("/*") != family.list.npos;
	return true;
}

/// Takes what may stand before the size, in any order, each at most once; false when there is more.
bool TakeFontOptions(ValueCursor& cursor, Font& font) noexcept
{
	bool hasStyle = false;
	bool hasVariant = false;
	bool hasWeight = false;
	bool hasStretch = false;
	constexpr int kMostOptions = 4;
	int count = -1;
	for (bool isTaken = true; isTaken; ++count)
	{
		isTaken = cursor.TakeWord("normal");
		const auto take = [&isTaken](bool& has, auto read)
		{
			if (!isTaken && !has)
				isTaken = has = read();
		};
		take(hasStyle, [&] { return TakeStyle(cursor, font.style); });
		take(hasVariant, [&] { return font.isSmallCaps = cursor.TakeWord("small-caps"); });
		take(hasWeight,
			 [&]
			 {
				 FontWeight weight;
				 // A number with a unit is the size and no weight.
				 if (!TakeWeight(cursor, weight))
					 return false;
				 font.weight = weight;
				 return true;
			 });
		take(hasStretch, [&] { return cursor.TakeKeyword(kStretches, font.stretch); });
	}
	return count <= kMostOptions;
}

bool TakeLineHeight(ValueCursor& cursor, Font& font) noexcept
{
	if (cursor.TakeWord("normal"))
		return true;
	font.hasLineHeight = true;
	const bool isTaken = cursor.TakeLength(Range::notNegative, true, font.lineHeight);
	cursor.SkipSpaces();
	return isTaken;
}
} // namespace

Parsed ParseFontSize(std::string_view text, Source source, FontSize& size) noexcept
{
	ValueCursor cursor(text, source);
	FontSize result;
	if (!TakeSize(cursor, source != Source::sheet, result) || !cursor.IsAtEnd())
		return Parsed::refused;
	size = result;
	return Parsed::value;
}

Parsed ParseFontWeight(std::string_view text, FontWeight& weight) noexcept
{
	ValueCursor cursor(text);
	FontWeight result;
	if (!TakeWeight(cursor, result) || !cursor.IsAtEnd())
		return Parsed::refused;
	weight = result;
	return Parsed::value;
}

Parsed ParseFontStyle(std::string_view text, FontStyle& style) noexcept
{
	ValueCursor cursor(text);
	FontStyle result;
	if (!TakeStyle(cursor, result) || !cursor.IsAtEnd())
		return Parsed::refused;
	style = result;
	return Parsed::value;
}

Parsed ParseFontStretch(std::string_view text, double& stretch) noexcept
{
	ValueCursor cursor(text);
	double result = 1;
	bool isPercentage = true;
	if (!cursor.TakeKeyword(kStretches, result) &&
		(!cursor.TakeNumberOrPercentage(result, isPercentage) || !isPercentage || result < 0))
		return Parsed::refused;
	if (Finish(cursor) != Parsed::value)
		return Parsed::refused;
	stretch = result;
	return Parsed::value;
}

Parsed ParseFontFamily(std::string_view text, FontFamily& family) noexcept
{
	ValueCursor cursor(text);
	FontFamily result;
	if (!TakeFamilies(cursor, text, result))
		return Parsed::refused;
	family = result;
	return Parsed::value;
}

Parsed ParseFont(std::string_view text, Source source, Font& font) noexcept
{
	ValueCursor cursor(text, source);
	for (std::string_view name : kSystemFonts)
	{
		if (cursor.TakeWord(name))
			return cursor.IsAtEnd() ? Parsed::nothing : Parsed::refused;
	}
	Font result;
	if (!TakeFontOptions(cursor, result) || !TakeSize(cursor, source == Source::attribute, result.size) ||
		(cursor.TakeMark('/') && !TakeLineHeight(cursor, result)) || !TakeFamilies(cursor, text, result.family))
		return Parsed::refused;
	font = result;
	return Parsed::value;
}
} // namespace orvan::grammar::complete
