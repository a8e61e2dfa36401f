// SPDX-License-Identifier: MIT
// What the complete import takes, held against what Chromium makes of the same texts.
#include "complete/values.h"
#include "recording_sinks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <string>
#include <vector>

namespace orvan::grammar::complete
{
namespace
{
const std::string kRefused = "refused";

std::string Text(double number)
{
	std::array<char, 32> buffer;
	return {buffer.data(),
			std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::general, 6).ptr};
}

std::string Text(const Length& length)
{
	static constexpr std::array kUnits{"em", "ex", "px",  "in", "cm", "mm", "pt",   "pc",  "%",
									   "",   "q",  "rem", "ch", "vw", "vh", "vmin", "vmax"};
	const double shown = length.unit == LengthUnit::percent ? length.value * 100 : length.value;
	return Text(shown) + kUnits[static_cast<std::size_t>(length.unit)];
}

/// Channels in 0 … 255.
std::string Text(const Color& color)
{
	if (color.kind == ColorKind::currentColor)
		return "currentColor";
	std::string text;
	for (double channel : {color.red, color.green, color.blue})
		text += Text(std::round(channel * 25500) / 100) + " ";
	return text + "/ " + Text(color.alpha);
}

std::string Text(const Reference& reference)
{
	return (reference.isLocal ? "#" : "") +
		   (reference.hasEscapes ? ResolveEscapes(reference.text) : std::string(reference.text));
}

std::string Text(const Matrix& m)
{
	std::string text;
	for (double number : {m.a, m.b, m.c, m.d, m.e, m.f})
		text += (text.empty() ? "" : " ") + Text(std::fabs(number) < 1e-12 ? 0 : number);
	return text;
}

std::string Text(const FontSize& size)
{
	return size.kind == FontSizeKind::larger    ? "larger"
		   : size.kind == FontSizeKind::smaller ? "smaller"
												: Text(size.size);
}

std::string Text(const FontWeight& weight)
{
	return weight.kind == FontWeightKind::bolder    ? "bolder"
		   : weight.kind == FontWeightKind::lighter ? "lighter"
													: Text(weight.weight);
}

std::string Text(FontStyle style)
{
	return std::array{"normal", "italic", "oblique"}[static_cast<std::size_t>(style)];
}

std::string Text(const FontFamily& family)
{
	return family.hasComments ? RemoveComments(family.list) : std::string(family.list);
}

std::string Text(const Font& font)
{
	return Text(font.style) + (font.isSmallCaps ? " caps " : " - ") + Text(font.weight) + " " + Text(font.stretch) +
		   " " + Text(font.size) + "/" + (font.hasLineHeight ? Text(font.lineHeight) : "normal") + " " +
		   Text(font.family);
}

/// What a function makes of a text: "refused", "nothing", or the value as `Text` has it.
template <typename Value, typename Function, typename... Arguments>
std::string Outcome(Function parse, std::string_view text, Arguments... arguments)
{
	Value value{};
	switch (parse(text, arguments..., value))
	{
	case Parsed::refused:
		return kRefused;
	case Parsed::nothing:
		return "nothing";
	case Parsed::value:
		break;
	}
	return Text(value);
}

struct Sink final : LengthSink, NumberSink, FilterSink
{
	void Append(const Length& length) override
	{
		text += Text(length) + ";";
	}

	void Append(double number) override
	{
		text += Text(number) + ";";
	}

	void Append(const FilterFunction& function) override
	{
		text += std::to_string(static_cast<int>(function.kind)) + " " + Text(function.amount) + " " +
				Text(function.deviation) + " " + Text(function.offsetX) + " " + Text(function.offsetY) + " " +
				(function.hasColor ? Text(function.color) : "-") + " " + Text(function.reference) + ";";
	}

	std::string text;
};

std::string Outcome(const Sink& sink, const Progress& progress)
{
	return progress.isWhole ? sink.text : sink.text + "!" + std::to_string(progress.offset);
}

std::string ColorOf(std::string_view text)
{
	return Outcome<Color>(ParseColor, text);
}

std::string PaintOf(std::string_view text)
{
	static constexpr std::array kKinds{"none", "color", "currentColor", "contextFill", "contextStroke", "url"};
	static constexpr std::array kFallbacks{"", " or none", " or color", " or currentColor"};
	Paint paint;
	if (ParsePaint(text, paint) != Parsed::value)
		return kRefused;
	std::string result = kKinds[static_cast<std::size_t>(paint.kind)];
	if (paint.kind == PaintKind::reference)
		result += " " + Text(paint.reference) + kFallbacks[static_cast<std::size_t>(paint.fallback)];
	if (paint.kind == PaintKind::color || paint.fallback == PaintFallback::color)
		result += " " + Text(paint.color);
	return result;
}

std::string LengthOf(std::string_view text, Source source = Source::attribute, Range range = Range::any)
{
	return Outcome<Length>(ParseLength, text, source, range);
}

std::string AttributeTransform(std::string_view text)
{
	return Outcome<Matrix>(ParseTransformAttribute, text);
}

/// In a box of 200 by 100.
std::string PropertyTransform(std::string_view text)
{
	Transform transform;
	if (ParseTransformProperty(text, RelativeUnits{.viewportWidth = 800, .viewportHeight = 600}, transform) !=
		Parsed::value)
		return kRefused;
	return Text(transform.For(200, 100));
}

void ExpectAll(std::string (*function)(std::string_view), std::initializer_list<std::string_view> texts,
			   std::string_view expected)
{
	for (std::string_view text : texts)
		EXPECT_EQ(function(text), expected) << text;
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

TEST(CompleteNumbers, ListsKeepWhatStandsBeforeAFault)
{
	const auto list = [](std::string_view text)
	{
		Sink sink;
		const Progress progress = ParseNumberList(text, sink);
		return Outcome(sink, progress);
	};
	EXPECT_EQ(list(" 1-2.5.5 , 1e1 "), "1;-2.5;0.5;10;");
	EXPECT_EQ(list("1,,2"), "1;!2");
	EXPECT_EQ(list("1 2,"), "1;2;!4");
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
	EXPECT_EQ(lengths("1,"), "1;!2");

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
	for (const char* text : {"0 0 1", "0 0 1 2 3", "0 0 -1 2", "0 0 1 -2", "0 0 1 2,", "0 0 1 2;"})
		EXPECT_EQ(complete::ParseViewBox(text, box), Parsed::refused) << text;
}

TEST(CompleteLengths, TakeTheUnitsOfCssInAnyCase)
{
	for (const char* text : {"1em", "1ex", "1px", "1in", "1cm", "1mm", "1pt", "1pc", "1%", "1", "1q", "1rem", "1ch",
							 "1vw", "1vh", "1vmin", "1vmax"})
		EXPECT_EQ(LengthOf(text, Source::sheet), text);
	EXPECT_EQ(LengthOf(" 1E1PX/**/"), "10px");
	EXPECT_EQ(LengthOf("1e2em"), "100em");
	EXPECT_EQ(LengthOf("1.px"), "1px");
	EXPECT_EQ(LengthOf("2dvh"), "2vh");
	for (const char* text :
		 {"1 px", "1lh", "1deg", "1px2", "1%%", "auto", "1,", "", "1px 2px", "1e", "1e+", "1-", "1/**/px"})
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
	// What is calculated is brought into the range.
	EXPECT_EQ(LengthOf("calc(-1px)", Source::style, Range::notNegative), "0px");
	EXPECT_EQ(Outcome<double>(ParseAlpha, "calc(1 / 4)", Source::style), "0.25");
	EXPECT_EQ(Outcome<double>(ParseAlpha, "max(20%, 50%)", Source::style), "0.5");
	EXPECT_EQ(Outcome<double>(ParseAlpha, "calc(1px)", Source::style), kRefused);
	EXPECT_EQ(ColorOf("rgb(calc(1 + 2), 4, 5)"), "3 4 5 / 1");
	EXPECT_EQ(PropertyTransform("rotate(calc(45deg * 2)) scale(min(2, 3))"),
			  PropertyTransform("rotate(90deg) scale(2)"));
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

TEST(CompleteColors, InAllNotations)
{
	ExpectAll(ColorOf,
			  {"red", " RED/**/", "#f00", "#F00F", "#ff0000", "#ff0000FF", "rgb(255,0,0)", "RGB( 255 0 0 )",
			   "rgb(100%,0%,0%)", "rgba(300,-1,0)", "hsl(0,100%,50%)", "hsl(360 100 50)", "hsl(1turn 100% 50%)",
			   "hsla(400grad,100%,50%,1)", "hwb(0 0% 0%)", "color(srgb 1 0 none)", "rgb(255,0,0",
			   "red icc-color(a, 1)"},
			  "255 0 0 / 1");
	EXPECT_EQ(ColorOf("rebeccapurple"), "102 51 153 / 1");
	EXPECT_EQ(ColorOf("transparent"), "0 0 0 / 0");
	EXPECT_EQ(ColorOf("CURRENTCOLOR"), "currentColor");
	EXPECT_EQ(ColorOf("CanvasText"), "0 0 0 / 1");
	EXPECT_EQ(ColorOf("#1234"), "17 34 51 / 0.266667");
	EXPECT_EQ(ColorOf("#12345678"), "18 52 86 / 0.470588");
	EXPECT_EQ(ColorOf("rgb(50%,49.9%,10%)"), "128 127 26 / 1");
	EXPECT_EQ(ColorOf("rgb(1.5 2.5 3.4/50%)"), "2 3 3 / 0.5");
	EXPECT_EQ(ColorOf("rgb(1 2 50% / none)"), "1 2 128 / 0");
	EXPECT_EQ(ColorOf("rgba(1,2,3,120%)"), "1 2 3 / 1");
	EXPECT_EQ(ColorOf("hsl(-50,120%,25.3%)"), "129 0 108 / 1");
	EXPECT_EQ(ColorOf("hsla(1rad,50%,50%,.3)"), "191 186 64 / 0.3");
	EXPECT_EQ(ColorOf("hwb(120 30 40)"), "77 153 77 / 1");
	EXPECT_EQ(ColorOf("hwb(120 80% 40%)"), "170 170 170 / 1");
	ExpectAll(ColorOf,
			  {"",
			   "#12",
			   "#12345",
			   "#ggg",
			   "reddish",
			   "red blue",
			   "re/**/d",
			   "rgb()",
			   "rgb(1,2)",
			   "rgb(1 2 3 4)",
			   "rgb(1,2 3)",
			   "rgb(1,2,3,)",
			   "rgb(1,2,50%)",
			   "rgb(none,2,3)",
			   "rgb(1,2,3,none)",
			   "rgb(1px,2,3)",
			   "rgb (1,2,3)",
			   "rgb(1,2,3)x",
			   "hsl(120,100,50)",
			   "hwb(1,2%,3%)",
			   "lab(1,2,3)",
			   "color(srgb 1 2)",
			   "color(foo 1 2 3)",
			   "none",
			   "url(#a)",
			   "rgb(1e400 2 3)"},
			  kRefused);
}

TEST(CompleteColors, OtherSpacesComeToSrgb)
{
	EXPECT_EQ(ColorOf("lab(50% 40 -20)"), ColorOf("lab(50 32% -16%)"));
	EXPECT_EQ(ColorOf("lab(100 0 0)"), "255 255 255 / 1");
	EXPECT_EQ(ColorOf("lab(46.277 -47.562 48.583)"), "0 128 0.01 / 1");
	EXPECT_EQ(ColorOf("lch(46.277 67.989 134.391)"), ColorOf("lab(46.277 -47.562 48.583)"));
	EXPECT_EQ(ColorOf("oklab(.51975 -.1403 .10768)"), "0.02 128 0 / 1");
	EXPECT_EQ(ColorOf("oklch(51.975% .17686 142.495)"), "0 128 0 / 1");
	EXPECT_EQ(ColorOf("color(display-p3 1 0 0 / .5)"), "255 0 0 / 0.5");
	EXPECT_EQ(ColorOf("color(display-p3 .21604 .49418 .13151)"), "0 128 0 / 1");
	EXPECT_EQ(ColorOf("color(rec2020 .33033 .44055 .15537)"), ColorOf("color(rec2020 33.033% 44.055% 15.537%)"));
	EXPECT_EQ(ColorOf("color(xyz-d50 .9643 1 .8251)"), "255 255 255 / 1");
	EXPECT_EQ(ColorOf("color(xyz .07719 .15438 .02573)"), "0 128 0 / 1");
	EXPECT_EQ(ColorOf("color(a98-rgb 1 1 1)"), "255 255 255 / 1");
	EXPECT_EQ(ColorOf("color(prophoto-rgb .5 .5 .5)"), "145.94 145.94 145.94 / 1");
	EXPECT_EQ(ColorOf("color(srgb-linear .5 .5 .5)"), "187.52 187.52 187.52 / 1");
}

TEST(CompletePaints, WithReferencesAndFallbacks)
{
	EXPECT_EQ(PaintOf(" None "), "none");
	EXPECT_EQ(PaintOf("#00f"), "color 0 0 255 / 1");
	EXPECT_EQ(PaintOf("currentcolor"), "currentColor");
	EXPECT_EQ(PaintOf("Context-Fill"), "contextFill");
	EXPECT_EQ(PaintOf("context-stroke"), "contextStroke");
	ExpectAll(PaintOf,
			  {"url(#a)", "URL( #a )", "url('#a')", "url( \"#a\" )", "url(#a", "url(\"#\\61\")", "/**/url(#\\61 )"},
			  "url #a");
	EXPECT_EQ(PaintOf("url(a.svg#b) none"), "url a.svg#b or none");
	EXPECT_EQ(PaintOf("url(#a)red"), "url #a or color 255 0 0 / 1");
	EXPECT_EQ(PaintOf("url(#a) currentColor"), "url #a or currentColor");
	EXPECT_EQ(PaintOf("url(#\xc3\xa9)"), "url #\xc3\xa9");
	EXPECT_EQ(PaintOf("url()"), "url ");
	ExpectAll(PaintOf,
			  {"url(#a b)", "url(a\"b)", "url (#a)", "url(#a) url(#b)", "url(#a) inherit", "url(#a) context-fill",
			   "url('#a' x)", "none none", "freeze", "", "url(#a) red x", "inherit"},
			  kRefused);

	const auto reference = [](std::string_view text)
	{
		return Outcome<Reference>(ParseReference, text);
	};
	EXPECT_EQ(reference("None"), "nothing");
	EXPECT_EQ(reference("url('#m')"), "#m");
	EXPECT_EQ(reference("url(#a) none"), kRefused);
	EXPECT_EQ(reference("#a"), kRefused);
	EXPECT_EQ(Outcome<Reference>(ParseIri, "\n#a b "), "#a b");
	EXPECT_EQ(Outcome<Reference>(ParseIri, " a.png"), "a.png");
	EXPECT_EQ(Outcome<Reference>(ParseIri, " "), "nothing");

	PaintOrder order;
	EXPECT_EQ(ParsePaintOrder("MARKERS stroke", order), Parsed::value);
	EXPECT_EQ(order, (PaintOrder{PaintLayer::markers, PaintLayer::stroke, PaintLayer::fill}));
	EXPECT_EQ(ParsePaintOrder("normal", order), Parsed::value);
	EXPECT_EQ(order, (PaintOrder{PaintLayer::fill, PaintLayer::stroke, PaintLayer::markers}));
	for (const char* text : {"fill fill", "normal fill", "", "fill x", "fill,stroke"})
		EXPECT_EQ(ParsePaintOrder(text, order), Parsed::refused) << text;
}

TEST(CompleteTransforms, AttributesNeedNoSeparators)
{
	EXPECT_EQ(AttributeTransform("translate(-1-1)"), "1 0 0 1 -1 -1");
	EXPECT_EQ(AttributeTransform("scale(2)Translate (1.5.5)"), "2 0 0 2 3 1");
	EXPECT_EQ(AttributeTransform(" translate( 1 , 2 ) , scale(2 3) "), "2 0 0 3 1 2");
	EXPECT_EQ(AttributeTransform("rotate(90)"), "0 1 -1 0 0 0");
	EXPECT_EQ(AttributeTransform("rotate(90 10 0)"), "0 1 -1 0 10 -10");
	EXPECT_EQ(AttributeTransform("skewX(45)skewY(0)"), "1 0 1 1 0 0");
	EXPECT_EQ(AttributeTransform("skewy(45)"), "1 1 0 1 0 0");
	EXPECT_EQ(AttributeTransform("matrix(1.-2 3,4 5 6)"), "1 -2 3 4 5 6");
	ExpectAll(AttributeTransform, {"", " ", "none", "translate(0)"}, "1 0 0 1 0 0");
	ExpectAll(AttributeTransform,
			  {"translate(1),,scale(2)", ",scale(2)", "scale(2),", "translate(1 2", "translate(1)x", "rotate(30deg)",
			   "translate(1px)", "rotate(1 2)", "rotate(1 2 3 4)", "scale(1,)", "translate(1,,2)", "matrix(1 0 0 1 5)",
			   "scale()", "foo(1)", "scale(1e400)", "scale(1)/**/", "none scale(1)", "scale(1e200)scale(1e200)"},
			  kRefused);
}

TEST(CompleteTransforms, PropertiesHaveUnitsAndPercentages)
{
	EXPECT_EQ(PropertyTransform("translate(5px, 1in)"), "1 0 0 1 5 96");
	EXPECT_EQ(PropertyTransform("translate(50%,10%)"), "1 0 0 1 100 10");
	EXPECT_EQ(PropertyTransform("translateX(1em) TRANSLATEY(10vh)"), "1 0 0 1 16 60");
	EXPECT_EQ(PropertyTransform("rotate(.25turn) translate(50%, 50%)"), "0 1 -1 0 -50 100");
	EXPECT_EQ(PropertyTransform("scale(2, 50%)translate(10%,10%)"), "2 0 0 0.5 40 5");
	EXPECT_EQ(PropertyTransform("skew(45deg)"), "1 0 1 1 0 0");
	EXPECT_EQ(PropertyTransform("skew(0,45deg)"), "1 1 0 1 0 0");
	EXPECT_EQ(PropertyTransform("rotateX(60deg)"), "1 0 0 0.5 0 0");
	EXPECT_EQ(PropertyTransform("rotateX(60deg) rotateX(60deg)"), "1 0 0 -0.5 0 0");
	EXPECT_EQ(PropertyTransform("rotateY(60deg)"), "0.5 0 0 1 0 0");
	EXPECT_EQ(PropertyTransform("rotate3d(0,0,2,-90deg)"), "0 -1 1 0 0 0");
	EXPECT_EQ(PropertyTransform("rotateX(90deg) translateZ(10px)"), "1 0 0 0 0 -10");
	EXPECT_EQ(PropertyTransform("translate3d(10%,20%,3px) scale3d(2,3,4) rotateZ(0)"), "2 0 0 3 20 20");
	EXPECT_EQ(PropertyTransform("matrix(1,2,3,4,5,6)"), "1 2 3 4 5 6");
	EXPECT_EQ(PropertyTransform("matrix3d(1,2,0,0,3,4,0,0,0,0,1,0,5,6,7,1)"), "1 2 3 4 5 6");
	EXPECT_EQ(PropertyTransform("perspective(5px) translate( 1px , /**/ 2px"), "1 0 0 1 1 2");
	EXPECT_EQ(PropertyTransform("None"), "1 0 0 1 0 0");
	ExpectAll(PropertyTransform,
			  {"", "translate(5)", "translate(5px 6px)", "rotate(30)", "scale(2 3)", "matrix(1 0 0 1 5 6)",
			   "matrix(1,2)", "translate3d(1px)", "matrix(1,0,0,1,5px,6px)", "translate(1px),scale(2)",
			   "translate3d(1px,2px,3%)", "translateX(1px,2px)", "rotate(30deg,1,2)", "none none", "foo(1)",
			   "translate (1px)", "scale()", "translate(1px,)"},
			  kRefused);
}

TEST(CompleteTransforms, OriginsAreLengthsOrKeywords)
{
	const auto origin = [](std::string_view text, Source source = Source::style) -> std::string
	{
		TransformOrigin value;
		if (ParseTransformOrigin(text, source, value) != Parsed::value)
			return kRefused;
		return Text(value.x) + " " + Text(value.y);
	};
	EXPECT_EQ(origin("left"), "0% 50%");
	EXPECT_EQ(origin("top"), "50% 0%");
	EXPECT_EQ(origin("bottom RIGHT"), "100% 100%");
	EXPECT_EQ(origin("center left"), "0% 50%");
	EXPECT_EQ(origin("top center 5px"), "50% 0%");
	EXPECT_EQ(origin("10px"), "10px 50%");
	EXPECT_EQ(origin("10px top"), "10px 0%");
	EXPECT_EQ(origin("1 2", Source::attribute), "1 2");
	for (const char* text : {"top 10px", "10px left", "left left", "top bottom", "1 2", "1px,2px", "1px 2px 5%",
							 "1px 2px 3px 4px", "", "foo"})
		EXPECT_EQ(origin(text), kRefused) << text;
}

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
	for (const char* text : {"0", "1001", "100px", "bold x", "-100"})
		EXPECT_EQ(weight(text), kRefused) << text;
	const auto style = [](std::string_view text)
	{
		return Outcome<FontStyle>(ParseFontStyle, text);
	};
	EXPECT_EQ(style("Italic"), "italic");
	EXPECT_EQ(style("oblique -20deg"), "oblique");
	for (const char* text : {"oblique 91deg", "oblique 0", "italic 10deg", "slanted"})
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
							 "12px 12px a", "12px inherit"})
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
			   (value.hasColor ? " " + Text(value.color) : "");
	};
	EXPECT_EQ(decoration("None"), "0 0");
	EXPECT_EQ(decoration("underline LINE-THROUGH"), "5 0");
	EXPECT_EQ(decoration("red wavy overline 2px"), "2 4 255 0 0 / 1");
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
}

TEST(CompleteShapes, OfClipPathWithTheirBoxes)
{
	const auto shape = [](std::string_view text, Source source = Source::style)
	{
		class Lengths final : public LengthSink
		{
		public:
			void Append(const Length& length) override
			{
				text += ' ' + Text(length);
			}

			std::string text;
		};
		Lengths lengths;
		ClipShape value;
		if (ParseClipShape(text, source, value, lengths) != Parsed::value)
			return kRefused;
		return std::to_string(static_cast<int>(value.kind)) + ' ' + std::to_string(static_cast<int>(value.box)) +
			   (value.isEvenOdd ? " evenodd" : "") + lengths.text + std::string(value.path.data);
	};
	EXPECT_EQ(shape("fill-box"), "0 1");
	EXPECT_EQ(shape(" INSET(1px 2%) View-Box"), "1 2 1px 2% 1px 2%");
	EXPECT_EQ(shape("inset(1px 2px 3px round 4px 5px 6px / 7px)"),
			  "1 0 1px 2px 3px 2px 4px 5px 6px 5px 7px 7px 7px 7px");
	EXPECT_EQ(shape("margin-box circle()"), "2 0 -1 50% 0px 50% 0px");
	EXPECT_EQ(shape("circle(5px at top)"), "2 0 5px 50% 0px 0% 0px");
	EXPECT_EQ(shape("circle(farthest-side at bottom 10px right 20%)"), "2 0 -2 100% -20% 100% -10px");
	EXPECT_EQ(shape("ellipse(5px closest-side at bottom left)"), "3 0 5px -1 0% 0px 100% 0px");
	EXPECT_EQ(shape("ellipse(at 10px 20px)"), "3 0 -1 -1 10px 0px 20px 0px");
	EXPECT_EQ(shape("polygon(evenodd, 0 0, 10% 5px)"), "4 0 evenodd 0 0 10% 5px");
	EXPECT_EQ(shape("path(nonzero, 'M0 0')"), "5 0M0 0");
	EXPECT_EQ(shape("rect(auto auto 5px 1px)"), "6 0 0px 100% 5px 1px");
	EXPECT_EQ(shape("xywh(1px 2px 3px 4px round 5px)"), "7 0 1px 2px 3px 4px 5px 5px 5px 5px 5px 5px 5px 5px");
	EXPECT_EQ(shape("circle(5 at 1 2)", Source::attribute), "2 0 5 1 0px 2 0px");
	for (const char* text : {"",
							 "none",
							 "url(#a)",
							 "circle(5)",
							 "circle(-5px)",
							 "circle(5px 5px)",
							 "circle(at)",
							 "circle(at left left)",
							 "circle(at 1px left)",
							 "circle(at top 1px bottom 2px)",
							 "circle(at left 1px top)",
							 "ellipse(5px)",
							 "inset()",
							 "inset(1px 1px 1px 1px 1px)",
							 "inset(1px round)",
							 "inset(1px round -1px)",
							 "polygon()",
							 "polygon(1px)",
							 "polygon(evenodd 1px 1px)",
							 "path(M0 0)",
							 "rect(1px 1px 1px)",
							 "xywh(1px 1px -1px 1px)",
							 "xywh(auto 1px 1px 1px)",
							 "circle() circle()",
							 "fill-box view-box",
							 "fill-box circle() view-box"})
		EXPECT_EQ(shape(text), kRefused) << text;
}

TEST(CompleteTransforms, PropertiesOfSingleOnes)
{
	const auto single = [](std::string_view text, SingleTransform property)
	{
		Transform transform;
		return ParseSingleTransform(text, property, {}, transform) == Parsed::value ? Text(transform.For(200, 100))
																					: kRefused;
	};
	const auto translate = SingleTransform::translate;
	const auto rotate = SingleTransform::rotate;
	const auto scale = SingleTransform::scale;
	EXPECT_EQ(single("10px", translate), single("10px 0", translate));
	EXPECT_EQ(single("5% 10% 3px", translate), PropertyTransform("translate(10px, 10px)"));
	EXPECT_EQ(single("2", scale), PropertyTransform("scale(2)"));
	EXPECT_EQ(single("50% 3 4", scale), PropertyTransform("scale(.5, 3)"));
	EXPECT_EQ(single("90deg", rotate), PropertyTransform("rotate(90deg)"));
	EXPECT_EQ(single("x 60deg", rotate), PropertyTransform("rotateX(60deg)"));
	EXPECT_EQ(single("60deg y", rotate), PropertyTransform("rotateY(60deg)"));
	EXPECT_EQ(single("0 0 -1 90deg", rotate), PropertyTransform("rotate(-90deg)"));
	EXPECT_EQ(single("0", rotate), PropertyTransform("none"));
	for (const auto property : {translate, rotate, scale})
	{
		EXPECT_EQ(single("none", property), PropertyTransform("none"));
		for (const char* text : {"", "none 1", "1px,1px", "x", "1px 1px 1%", "1 2 3 4", "60deg 1 1", "x y 60deg"})
			EXPECT_EQ(single(text, property), kRefused) << text;
	}
}

TEST(CompleteFilters, FunctionsAndReferences)
{
	const auto filter = [](std::string_view text)
	{
		Sink sink;
		return ParseFilter(text, Source::style, sink) == Parsed::value ? sink.text : kRefused;
	};
	EXPECT_EQ(filter("None"), "");
	EXPECT_EQ(filter("url(#f) BLUR(5PX)blur()"), "0 1 0px 0px 0px - #f;1 1 5px 0px 0px - ;1 1 0px 0px 0px - ;");
	EXPECT_EQ(filter("brightness(150%) contrast(.5) saturate()"),
			  "2 1.5 0px 0px 0px - ;3 0.5 0px 0px 0px - ;9 1 0px 0px 0px - ;");
	EXPECT_EQ(filter("grayscale(2) invert(.5) opacity(30%) sepia(3)"),
			  "5 1 0px 0px 0px - ;7 0.5 0px 0px 0px - ;8 0.3 0px 0px 0px - ;10 1 0px 0px 0px - ;");
	EXPECT_EQ(filter("hue-rotate(.5turn) hue-rotate()"), "6 180 0px 0px 0px - ;6 0 0px 0px 0px - ;");
	EXPECT_EQ(filter("drop-shadow(red 1px 2em 3px)"), "4 1 3px 1px 2em 255 0 0 / 1 ;");
	EXPECT_EQ(filter("drop-shadow(-1px 2px red)"), "4 1 0px -1px 2px 255 0 0 / 1 ;");
	for (const char* text :
		 {"", "blur(5)", "blur(-5px)", "blur(5%)", "brightness(-1)", "hue-rotate(90)", "drop-shadow(1px)",
		  "drop-shadow(1px 2px -3px)", "drop-shadow(red 1px 2px red)", "drop-shadow(1px 2px 3px 4px)",
		  "drop-shadow(1px, 2px)", "drop-shadow(1 2)", "none blur(5px)", "blur(5px),sepia(1)", "blur (5px)", "foo(1)"})
		EXPECT_EQ(filter(text), kRefused) << text;
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
