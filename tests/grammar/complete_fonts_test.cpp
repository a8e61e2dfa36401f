// SPDX-License-Identifier: MIT
// What the complete import takes of fonts and what decorates texts, held against what Chromium makes of the same texts.
#include "complete_outcomes.h"

namespace orvan::grammar::complete
{
namespace
{

TEST(CompleteFonts, LonghandsOfFont)
{
	const auto size = [](std::string_view text, Source source = Source::style)
	{
		return Outcome<FontSize>(ParseFontSize, text, source);
	};
	EXPECT_EQ(size("Medium"), "16px");
	EXPECT_EQ(size("xxx-large"), "48px");
	EXPECT_EQ(size("smaller"), "smaller");
	EXPECT_EQ(size("larger"), "larger");
	EXPECT_EQ(size("120%"), "120%");
	EXPECT_EQ(size("12"), "12");
	EXPECT_EQ(size("12", Source::sheet), kRefused);
	EXPECT_EQ(size("-1px"), kRefused);
	const auto weight = [](std::string_view text)
	{
		return Outcome<FontWeight>(ParseFontWeight, text);
	};
	EXPECT_EQ(weight("NORMAL"), "400");
	EXPECT_EQ(weight("bold"), "700");
	EXPECT_EQ(weight("bolder"), "bolder");
	EXPECT_EQ(weight("lighter"), "lighter");
	EXPECT_EQ(weight(" 950.5/**/"), "950.5");
	EXPECT_EQ(weight("1") + weight("1000"), "11000");
	for (const char* text : {"0", "1001", "100px", "bold x", "-100"})
		EXPECT_EQ(weight(text), kRefused) << text;
	const auto style = [](std::string_view text)
	{
		return Outcome<FontStyle>(ParseFontStyle, text);
	};
	EXPECT_EQ(style("Italic"), "italic");
	EXPECT_EQ(style("oblique -20deg"), "oblique");
	EXPECT_EQ(style("oblique -90deg"), "oblique");
	EXPECT_EQ(style("oblique 90deg"), "oblique");
	for (const char* text : {"oblique 91deg", "oblique -91deg", "oblique 0", "italic 10deg", "slanted"})
		EXPECT_EQ(style(text), kRefused) << text;
	EXPECT_EQ(Outcome<double>(ParseFontStretch, "semi-condensed"), "0.875");
	EXPECT_EQ(Outcome<double>(ParseFontStretch, "75.5%"), "0.755");
	EXPECT_EQ(Outcome<double>(ParseFontStretch, "75"), kRefused);
	EXPECT_EQ(Outcome<double>(ParseFontStretch, "-5%"), kRefused);
	const auto family = [](std::string_view text)
	{
		return Outcome<FontFamily>(ParseFontFamily, text);
	};
	EXPECT_EQ(family(" /**/ 'A, B' , Foo/**/Bar,serif "), "'A, B' , Foo Bar,serif");
	EXPECT_EQ(family("-foo, _b, \xc3\xa9, default x"), "-foo, _b, \xc3\xa9, default x");
	for (const char* text : {"", "a,", ",a", "a,,b", "1a", "Foo 1", "a.b", "'a'b", "inherit, serif", "default", "a!"})
		EXPECT_EQ(family(text), kRefused) << text;
}

TEST(CompleteFonts, TheShorthandResetsWhatItLeavesOut)
{
	const auto font = [](std::string_view text)
	{
		return Outcome<Font>(ParseFont, text, Source::sheet);
	};
	EXPECT_EQ(font("12px Arial"), "normal - 400 1 12px/normal Arial");
	EXPECT_EQ(font("italic small-caps bold condensed 16px / 2 'A B', c"), "italic caps 700 0.75 16px/2 'A B', c");
	EXPECT_EQ(font("normal 300 50%/normal a"), "normal - 300 1 50%/normal a");
	EXPECT_EQ(font("bolder/**/large a"), "normal - bolder 1 18px/normal a");
	EXPECT_EQ(font("oblique 10deg smaller/120% a"), "oblique - 400 1 smaller/120% a");
	EXPECT_EQ(font("0 a"), "normal - 400 1 0/normal a");
	EXPECT_EQ(font("Menu"), "nothing");
	for (const char* text : {"12px", "a", "12 a", "-1px a", "12px/ a", "12px a,", "bold bold 12px a", "300 300 12px a",
							 "italic oblique 12px a", "normal normal normal normal normal 12px a", "menu x",
							 "12px 12px a", "12px inherit", "12px/-1 a"})
		EXPECT_EQ(font(text), kRefused) << text;
}

TEST(CompleteText, DecorationsInAnyOrder)
{
	const auto decoration = [](std::string_view text) -> std::string
	{
		TextDecoration value;
		if (ParseTextDecoration(text, Source::style, value) != Parsed::value)
			return kRefused;
		return std::to_string(value.lines) + " " + std::to_string(static_cast<int>(value.style)) +
			   (value.hasThickness ? " " + Text(value.thickness) : "") +
			   (value.hasColor ? " " + Text(value.color) : "");
	};
	EXPECT_EQ(decoration("None"), "0 0");
	EXPECT_EQ(decoration("underline LINE-THROUGH"), "5 0");
	EXPECT_EQ(decoration("red wavy overline 2px"), "2 4 2px 255 0 0 / 1");
	EXPECT_EQ(decoration("dotted blink auto currentColor"), "8 2 currentColor");
	for (const char* text : {"", "underline underline", "none underline", "underline none", "underline dotted overline",
							 "red blue", "dotted dashed", "underline 2", "x"})
		EXPECT_EQ(decoration(text), kRefused) << text;

	Orient orient;
	EXPECT_EQ(ParseOrient("auto", orient), Parsed::value);
	EXPECT_EQ(orient.kind, OrientKind::automatic);
	EXPECT_EQ(ParseOrient("auto-start-reverse", orient), Parsed::value);
	EXPECT_EQ(orient.kind, OrientKind::automaticStartReverse);
	EXPECT_EQ(ParseOrient("-.5turn", orient), Parsed::value);
	EXPECT_EQ(orient.degrees, -180);
	EXPECT_EQ(ParseOrient("45px", orient), Parsed::refused);
	EXPECT_EQ(ParseOrient("Auto", orient), Parsed::refused);
}

} // namespace
} // namespace orvan::grammar::complete
