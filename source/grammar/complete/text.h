// SPDX-License-Identifier: MIT
#pragma once

/// Fonts and what belongs to text, as browsers read them. See values.h for what holds for all.

#include "complete/colors.h"

namespace orvan::grammar::complete
{
enum class FontSizeKind
{
	length,
	larger, ///< Than the parent's.
	smaller
};

/// A value of "font-size".
struct FontSize
{
	FontSizeKind kind = FontSizeKind::length;
	Length size{16, LengthUnit::px}; ///< The keywords from xx-small to xxx-large are 9 to 48 px.
};

/// "font-size": not negative; a plain number other than 0 is a size but in sheets.
Parsed ParseFontSize(std::string_view text, Source source, FontSize& size) noexcept;

enum class FontWeightKind
{
	weight,
	bolder, ///< Than the parent's.
	lighter
};

/// A value of "font-weight".
struct FontWeight
{
	FontWeightKind kind = FontWeightKind::weight;
	double weight = 400; ///< 1 to 1000; normal is 400, bold 700.
};

/// "font-weight".
Parsed ParseFontWeight(std::string_view text, FontWeight& weight) noexcept;

using grammar::FontStyle;

/// "font-style": an angle behind "oblique" is checked and dropped.
Parsed ParseFontStyle(std::string_view text, FontStyle& style) noexcept;

/// "font-stretch": the keywords from ultra-condensed to ultra-expanded and percentages, as a fraction of the normal
/// width (0.5 to 2 for the keywords).
Parsed ParseFontStretch(std::string_view text, double& stretch) noexcept;

/// "font-family": a list of names, quoted or not. The result is the list as written, without the blanks and comments
/// around it; when `hasComments`, there are some inside, and `RemoveComments` takes them out.
struct FontFamily
{
	std::string_view list;
	bool hasComments = false;
};

/// "font-family". What is no list of names is refused.
Parsed ParseFontFamily(std::string_view text, FontFamily& family) noexcept;

/// The longhands that "font" sets; what the shorthand leaves out is reset to its initial value.
struct Font
{
	FontStyle style = FontStyle::normal;
	bool isSmallCaps = false;
	FontWeight weight;
	double stretch = 1;
	FontSize size;
	bool hasLineHeight = false; ///< Whether a line height other than "normal" was written.
	Length lineHeight;          ///< A plain number is a multiple of the font's size.
	FontFamily family;
};

/// "font": the shorthand. The system fonts ("caption", "menu" …) are accepted as `nothing`.
Parsed ParseFont(std::string_view text, Source source, Font& font) noexcept;

/// The lines of "text-decoration", one bit each.
enum TextDecorationLine : std::uint32_t
{
	kUnderline = 1,
	kOverline = 2,
	kLineThrough = 4,
	kBlink = 8
};

enum class TextDecorationStyle
{
	solid,
	doubled,
	dotted,
	dashed,
	wavy
};

/// A value of "text-decoration".
struct TextDecoration
{
	std::uint32_t lines = 0; ///< Of TextDecorationLine; 0 is "none".
	TextDecorationStyle style = TextDecorationStyle::solid;
	bool hasThickness = false; ///< Whether another one than the font's was written.
	Length thickness;
	bool hasColor = false;
	Color color; ///< When it has one.
};

/// "text-decoration", the shorthand with line, style, colour and thickness, and "text-decoration-line".
Parsed ParseTextDecoration(std::string_view text, Source source, TextDecoration& decoration) noexcept;

enum class BaselineShiftKind
{
	baseline,
	sub,
	super,
	length
};

/// A value of "baseline-shift".
struct BaselineShift
{
	BaselineShiftKind kind = BaselineShiftKind::baseline;
	Length length; ///< Percentages are of the line height.
};

/// "baseline-shift".
Parsed ParseBaselineShift(std::string_view text, Source source, BaselineShift& shift) noexcept;
} // namespace orvan::grammar::complete
