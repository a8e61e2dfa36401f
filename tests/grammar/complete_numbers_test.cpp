// SPDX-License-Identifier: MIT
// What the complete import takes of words, numbers and lengths, held against what Chromium makes of the same texts.
#include "complete_outcomes.h"

namespace orvan::grammar::complete
{
namespace
{

std::string LengthOf(std::string_view text, Source source = Source::attribute, Range range = Range::any)
{
	return Outcome<Length>(ParseLength, text, source, range);
}

TEST(CompleteKeywords, WideOnesAndWhatStandsAroundWords)
{
	EXPECT_EQ(ParseCssWide(" INHERIT/**/"), CssWideKeyword::inherit);
	EXPECT_EQ(ParseCssWide("initial"), CssWideKeyword::initial);
	for (const char* text : {"unset", "revert", "revert-layer"})
		EXPECT_EQ(ParseCssWide(text), CssWideKeyword::unset) << text;
	for (const char* text : {"inherit x", "inherit(", "inherited", "", "unse"})
		EXPECT_EQ(ParseCssWide(text), CssWideKeyword::none) << text;
	EXPECT_EQ(TrimCss(" /* a */ x /*b*/ y '/*' /* c"), "x /*b*/ y '/*'");
	EXPECT_EQ(TrimCss("/**/ "), "");
	EXPECT_EQ(RemoveComments("a/* x */b /*y*/c'/*d*/'\\/*"), "a b c'/*d*/'\\/*");
	EXPECT_EQ(ResolveEscapes("a\\0000621"), "ab1");
	EXPECT_EQ(ResolveEscapes("a\\62 c\\(\\\nd\\1F600 e\\0"), "abc(d\xf0\x9f\x98\x80"
															 "e\xef\xbf\xbd");

	constexpr Keyword kWords[]{{"butt", 1}, {"round", 2}};
	std::int32_t value = 0;
	EXPECT_EQ(ParseKeyword(" /**/ROUND ", kWords, value), Parsed::value);
	EXPECT_EQ(value, 2);
	for (const char* text : {"round round", "rounds", "", "round()"})
		EXPECT_EQ(ParseKeyword(text, kWords, value), Parsed::refused) << text;
	EXPECT_EQ(ParseExactKeyword("Round", kWords, value), Parsed::refused);
	EXPECT_EQ(ParseExactKeyword("butt", kWords, value), Parsed::value);
	EXPECT_EQ(value, 1);
}

TEST(CompleteNumbers, OfAnyLengthAndForm)
{
	const auto number = [](std::string_view text, Source source = Source::attribute)
	{
		return Outcome<double>(ParseNumber, text, source, Range::notNegative);
	};
	EXPECT_EQ(number("13."), "13");
	EXPECT_EQ(number("13.e1"), "130");
	EXPECT_EQ(number("13.", Source::style), kRefused);
	EXPECT_EQ(number("/**/ +.5e1 ", Source::style), "5");
	EXPECT_EQ(number("123456789012345678901234567890e-29"), "1.23457");
	EXPECT_EQ(number("1e-400"), "0");
	EXPECT_EQ(number("0.000000000000000000000000000000000001e30"), "1e-06");
	EXPECT_EQ(number("-0"), "-0");
	for (const char* text :
		 {"-1", "1e400", "100000000000000000000e300", "1e", "1px", "1%", ".", "+", "", "1 2", "1.5.5", "--1", "e1"})
		EXPECT_EQ(number(text), kRefused) << text;

	const auto alpha = [](std::string_view text)
	{
		return Outcome<double>(ParseAlpha, text, Source::style);
	};
	EXPECT_EQ(alpha("150%"), "1.5");
	EXPECT_EQ(alpha("5e-1%/**/"), "0.005");
	EXPECT_EQ(alpha("1 %"), kRefused);
	EXPECT_EQ(Outcome<double>(ParseOffset, " 25.5% "), "0.255");
	EXPECT_EQ(Outcome<double>(ParseOffset, "1/**/"), kRefused);
	std::int32_t whole = 0;
	EXPECT_EQ(ParseInteger(" 1e1 ", whole), Parsed::value);
	EXPECT_EQ(whole, 10);
	for (const char* text : {"1.5", "1e10", "x"})
		EXPECT_EQ(ParseInteger(text, whole), Parsed::refused) << text;
	bool isTrue = false;
	EXPECT_EQ(ParseBoolean("true", isTrue), Parsed::value);
	EXPECT_TRUE(isTrue);
	EXPECT_EQ(ParseBoolean("True", isTrue), Parsed::refused);
}

TEST(CompleteNumbers, ListsAreReadUpToAFault)
{
	const auto list = [](std::string_view text)
	{
		Sink sink;
		const Progress progress = ParseNumberList(text, sink);
		return Outcome(sink, progress);
	};
	EXPECT_EQ(list(" 1-2.5.5 , 1e1 "), "1;-2.5;0.5;10;");
	EXPECT_EQ(list("1,,2"), "1;!2");
	EXPECT_EQ(list("1 2,"), "1;2;");
	EXPECT_EQ(list("1 x"), "1;!2");
	EXPECT_EQ(list(""), "");
	const auto lengths = [](std::string_view text)
	{
		Sink sink;
		const Progress progress = ParseLengthList(text, sink);
		return Outcome(sink, progress);
	};
	EXPECT_EQ(lengths("1px, 2em\t3% 4"), "1px;2em;3%;4;");
	EXPECT_EQ(lengths("1 2x"), "1;!2");
	EXPECT_EQ(lengths("1-2"), "1;!1");
	EXPECT_EQ(lengths("1,"), "1;");
	EXPECT_EQ(lengths("1,,2"), "1;!2");

	double x = 0;
	double y = 0;
	EXPECT_EQ(ParseNumberPair("1-2", x, y), Parsed::value);
	EXPECT_EQ(x, 1);
	EXPECT_EQ(y, -2);
	EXPECT_EQ(ParseNumberPair(" 3 ", x, y), Parsed::value);
	EXPECT_EQ(y, 3);
	for (const char* text : {"", "1 2 3", "1,,2", "1x"})
		EXPECT_EQ(ParseNumberPair(text, x, y), Parsed::refused) << text;

	ViewBox box;
	EXPECT_EQ(complete::ParseViewBox(" 0-1.5.5 , 2 ", box), Parsed::value);
	EXPECT_EQ(box.y, -1.5);
	EXPECT_EQ(box.width, 0.5);
	EXPECT_EQ(box.height, 2);
	EXPECT_EQ(complete::ParseViewBox("0 0 0 0", box), Parsed::value) << "It draws nothing, and is no error.";
	for (const char* text : {"0 0 1", "0 0 1 2 3", "0 0 -1 2", "0 0 1 -2", "0 0 1 2,", "0 0 1 2;"})
		EXPECT_EQ(complete::ParseViewBox(text, box), Parsed::refused) << text;
}

TEST(CompleteLengths, TakeTheUnitsOfCssInAnyCase)
{
	for (const char* text : {"1em",  "1ex", "1px", "1in", "1cm",   "1mm",   "1pt",  "1pc", "1%",  "1",   "1q",
							 "1rem", "1ch", "1vw", "1vh", "1vmin", "1vmax", "1cap", "1ic", "1lh", "1rlh"})
		EXPECT_EQ(LengthOf(text, Source::sheet), text);
	EXPECT_EQ(LengthOf(" 1E1PX/**/"), "10px");
	EXPECT_EQ(LengthOf("1e2em"), "100em");
	EXPECT_EQ(LengthOf("1.px"), "1px");
	EXPECT_EQ(LengthOf("2dvh"), "2vh");
	for (const char* text :
		 {"1 px", "1lhs", "1deg", "1px2", "1%%", "auto", "1,", "", "1px 2px", "1e", "1e+", "1-", "1/**/px"})
		EXPECT_EQ(LengthOf(text), kRefused) << text;
	EXPECT_EQ(LengthOf("-1px", Source::style, Range::notNegative), kRefused);
	EXPECT_EQ(LengthOf("-1px"), "-1px");
	EXPECT_EQ(Outcome<Length>(ParseLengthOrAuto, "AUTO", Source::style, Range::any), "nothing");
	EXPECT_EQ(Outcome<Length>(ParseLengthOrAuto, "auto 1", Source::style, Range::any), kRefused);
	EXPECT_EQ(Outcome<Length>(ParseLengthOrAuto, "3%", Source::style, Range::any), "3%");
	EXPECT_EQ(Outcome<Length>(ParseSpacing, "Normal", Source::sheet), "0");
	EXPECT_EQ(Outcome<Length>(ParseSpacing, "-.1em", Source::sheet), "-0.1em");
	EXPECT_EQ(Outcome<Length>(ParseSpacing, "2", Source::style), "2");
	EXPECT_EQ(Outcome<Length>(ParseSpacing, "2", Source::sheet), kRefused);
	EXPECT_EQ(Outcome<Length>(ParseSpacing, "calc(2)", Source::sheet), kRefused);

	BaselineShift shift;
	EXPECT_EQ(ParseBaselineShift("SUPER", Source::style, shift), Parsed::value);
	EXPECT_EQ(shift.kind, BaselineShiftKind::super);
	EXPECT_EQ(ParseBaselineShift("-20%", Source::style, shift), Parsed::value);
	EXPECT_EQ(Text(shift.length), "-20%");
	EXPECT_EQ(ParseBaselineShift("sub super", Source::style, shift), Parsed::refused);
}

TEST(CompleteLengths, AreCalculated)
{
	const auto expect = [](std::string_view text, std::string_view expected)
	{
		EXPECT_EQ(LengthOf(text, Source::sheet), expected) << text;
	};
	expect("calc(1px + 2px)", "3px");
	expect(" CALC( 1in - 1pc/**/)", "80px");
	expect("calc(1cm + 10mm + 40q + 72pt)", Text(Length{96 * (3 / 2.54 + 1), LengthUnit::px}));
	expect("round(7px, 4px)", "8px");
	expect("round(down, 7.9px, 4px)", "4px");
	expect("calc(1px * round(up, 1.2))", "2px");
	expect("round(to-zero, -7px, 4px)", "-4px");
	expect("round(-2.5px, 1px)", "-2px");
	expect("mod(-7px, 4px)", "1px");
	expect("rem(-7px, 4px)", "-3px");
	expect("hypot(2px, 3px, 6px)", "7px");
	expect("calc(1px * sqrt(16) * pow(2, 3))", "32px");
	expect("calc(1px * log(8, 2))", "3px");
	expect("calc(1px * log(exp(2)))", "2px");
	expect("calc(1px * sin(90deg) * cos(0))", "1px");
	expect("calc(4px * tan(atan(.5)))", "2px");
	expect("calc(1px * atan2(1px, 1px) / 45deg)", kRefused);
	expect("calc(1px * tan(atan2(3px, 1px)))", "3px");
	expect("calc(sign(-3em) * -4px)", "4px");
	for (const char* text :
		 {"round(7px)", "round(up 7px, 4px)", "mod(7px)", "mod(7px, 4)", "sqrt(4px)", "pow(2px, 2)", "pow(2px, 2px)",
		  "sin(1px)", "calc(1px * sign(1, 2))", "calc(1px * asin(1))", "calc(1px * log(8, 2, 3))"})
		expect(text, kRefused);
	expect("calc(2*3em)", "6em");
	expect("calc(3em * 2 / 4)", "1.5em");
	expect("calc(1em - .25em - 0px)", "0.75em");
	expect("calc((1 + 2) * 3)", "9");
	expect("calc(1 + 2*3 - -4)", "11");
	expect("calc(2*pi*1px)", "6.28319px");
	expect("calc(10% + 1%*e)", Text(Length{0.1 + 0.01 * 2.718281828, LengthUnit::percent}));
	expect("min(3px, 1px , 2px)", "1px");
	expect("max(1, 2 + 1)", "3");
	expect("clamp(1px, 5px, 3px)", "3px");
	expect("clamp(4px, 5px, 3px)", "4px");
	expect("clamp(none, calc(min(2px, 9px)), none)", "2px");
	expect("abs(-3px)", "3px");
	expect("abs(2px - 5px)", "3px");
	expect("calc(8px / 2 / 2)", "2px");
	expect("calc(-1 * (2px - 5px))", "3px");
	expect("calc(PI*0px + 1q*4)", Text(Length{96 / 25.4, LengthUnit::px}));
	expect("max(1px, 3px, 2px)", "3px");
	expect("max(-1em)", "-1em");
	expect("clamp(4px, 1px, none)", "4px");
	expect("clamp(none, 5px, 3px)", "3px");
	// Nothing is nothing in every unit, on either side; others have none in common.
	expect("calc(0px + 1em)", "1em");
	expect("min(0em, 1px)", "0px");
	for (const char* text :
		 {"min(1px, 2em)", "clamp(1px, 2em, 3px)", "clamp(1px, 2px, 3em)", "max(1px 2px)", "clamp(1px, 2px, 3px, 4px)",
		  "calc(1px / 2px)", "calc((1px)", "calc(1px))", "abs(1px, 2px)"})
		EXPECT_EQ(LengthOf(text, Source::sheet), text == std::string_view("calc((1px)") ? "1px" : kRefused) << text;
	for (const char* text : {"calc()",          "calc(1px+2px)", "calc(1px +2px)", "calc(1px 2px)",   "calc(1px + 2)",
							 "calc(1px * 2px)", "calc(2 / 1px)", "calc(1px",       "calc(1em + 1px)", "calc(1% + 1px)",
							 "calc(1/0)",       "min()",         "min(1,)",        "clamp(1, 2)",     "calc (1px)",
							 "calc(1px) 2",     "calc(1deg)",    "calc(x)",        "calc(1px + )",    "calc(* 1)"})
		EXPECT_EQ(LengthOf(text, Source::sheet), text == std::string_view("calc(1px") ? "1px" : kRefused) << text;
	for (const auto& [depth, isRead] : {std::pair{30, true}, std::pair{40, false}, std::pair{100'000, false}})
	{
		const auto count = static_cast<std::size_t>(depth);
		EXPECT_EQ(LengthOf("calc(" + std::string(count, '(') + "1" + std::string(count, ')') + ")") == "1", isRead)
			<< depth;
	}
	// Those beside each other are not within each other.
	std::string many = "calc(0px";
	for (int i = 0; i < 40; i++)
		many += " + abs(-1px) + (1px)";
	EXPECT_EQ(LengthOf(many + ")", Source::sheet), "80px");
	// What is calculated is brought into the range.
	EXPECT_EQ(LengthOf("calc(-1px)", Source::style, Range::notNegative), "0px");
	EXPECT_EQ(Outcome<double>(ParseAlpha, "calc(1 / 4)", Source::style), "0.25");
	EXPECT_EQ(Outcome<double>(ParseAlpha, "max(20%, 50%)", Source::style), "0.5");
	EXPECT_EQ(Outcome<double>(ParseAlpha, "calc(1px)", Source::style), kRefused);
	EXPECT_EQ(ColorOf("rgb(calc(1 + 2), 4, 5)"), "3 4 5 / 1");
	EXPECT_EQ(PropertyTransform("rotate(calc(45deg * 2)) scale(min(2, 3))"),
			  PropertyTransform("rotate(90deg) scale(2)"));
	EXPECT_EQ(PropertyTransform("rotate(calc(.25turn + 50grad))"), PropertyTransform("rotate(135deg)"));
	EXPECT_EQ(AttributeTransform("scale(calc(2))"), kRefused);
}

TEST(CompleteLengths, DashesAreNotNegative)
{
	const auto dashes = [](std::string_view text)
	{
		Sink sink;
		return complete::ParseDashArray(text, Source::style, sink) == Parsed::value ? sink.text : kRefused;
	};
	EXPECT_EQ(dashes("None"), "");
	EXPECT_EQ(dashes("1 2px,3% , 0"), "1;2px;3%;0;");
	for (const char* text : {"1 -2", "1,,2", "1,", "", "none 1", "1 x", "1.5.5"})
		EXPECT_EQ(dashes(text) == "1.5;0.5;" ? kRefused : dashes(text), kRefused) << text;
}

TEST(CompleteAspectRatio, KeywordsAsTheyAreWritten)
{
	AspectRatio ratio;
	EXPECT_EQ(complete::ParsePreserveAspectRatio(" defer xMaxYMin  slice ", ratio), Parsed::value);
	EXPECT_EQ(ratio.align, Align::xMaxYMin);
	EXPECT_EQ(ratio.meetOrSlice, MeetOrSlice::slice);
	EXPECT_EQ(complete::ParsePreserveAspectRatio("none slice", ratio), Parsed::value);
	EXPECT_EQ(ratio.align, Align::none);
	EXPECT_EQ(ratio.meetOrSlice, MeetOrSlice::meet);
	for (const char* text : {"", "defer", "slice", "xmidymid", "xMinYMin foo", "xMinYMin slice x"})
		EXPECT_EQ(complete::ParsePreserveAspectRatio(text, ratio), Parsed::refused) << text;
}

} // namespace
} // namespace orvan::grammar::complete
