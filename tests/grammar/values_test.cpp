// SPDX-License-Identifier: MIT
#include "grammar.h"
#include "recording_sinks.h"

#include <gtest/gtest.h>

#include <clocale>
#include <exception>
#include <locale>
#include <vector>

namespace orvan::grammar
{
namespace
{
constexpr std::string_view kRefused = "refused";
constexpr std::string_view kNothing = "nothing";

/// What a function makes of a text, as a text: "refused", "nothing", or what `show` makes of the value.
template <typename Value, typename Function, typename Show>
std::string Outcome(Function parse, Show show)
{
	Value value{};
	switch (parse(value))
	{
	case Parsed::refused:
		return std::string(kRefused);
	case Parsed::nothing:
		return std::string(kNothing);
	case Parsed::value:
		break;
	}
	std::string text;
	show(text, value);
	return text;
}

void Show(std::string& text, const Length& length)
{
	RecordingLengthSink sink;
	sink.Append(length);
	text = sink.text;
}

std::string Number(std::string_view text, Source source = Source::attribute)
{
	return Outcome<double>([&](double& value) { return ParseNumber(text, source, value); }, AppendNumber);
}

std::string LengthOf(std::string_view text, Source source = Source::attribute)
{
	return Outcome<Length>([&](Length& value) { return ParseLength(text, source, value); },
						   [](std::string& out, const Length& value) { Show(out, value); });
}

std::string FontSize(std::string_view text, Source source = Source::attribute)
{
	return Outcome<Length>([&](Length& value) { return ParseFontSize(text, source, value); },
						   [](std::string& out, const Length& value) { Show(out, value); });
}

std::string Dashes(std::string_view text, Source source = Source::attribute)
{
	RecordingLengthSink sink;
	return Outcome<int>([&](int&) { return ParseDashArray(text, source, sink); },
						[&](std::string& out, int) { out = sink.text; });
}

std::string Offset(std::string_view text)
{
	return Outcome<double>([&](double& value) { return ParseOffset(text, value); }, AppendNumber);
}

std::string Hex(PackedColor color)
{
	static constexpr char kDigits[] = "0123456789abcdef";
	std::string text = "#";
	for (int shift = 20; shift >= 0; shift -= 4)
		text += kDigits[color >> shift & 15];
	return text;
}

std::string Color(std::string_view text)
{
	return Outcome<PackedColor>([&](PackedColor& value) { return ParseColor(text, value); },
								[](std::string& out, PackedColor value) { out = Hex(value); });
}

std::string PaintOf(std::string_view text)
{
	const auto show = [](std::string& out, const Paint& paint)
	{
		static constexpr std::array kKinds{"none", "currentColor", "inherit", "color", "reference"};
		static constexpr std::array kFallbacks{"", " or none", " or currentColor", " or color"};
		out = kKinds[static_cast<std::size_t>(paint.kind)];
		if (paint.kind == PaintKind::reference)
			out += (paint.reference.isLocal ? " local [" : " external [") + std::string(paint.reference.text) + "]";
		out += kFallbacks[static_cast<std::size_t>(paint.fallback)];
		if (paint.kind == PaintKind::color || paint.fallback == PaintFallback::color)
			out.append(" ").append(Hex(paint.color));
	};
	return Outcome<Paint>([&](Paint& value) { return ParsePaint(text, value); }, show);
}

std::string Iri(std::string_view text)
{
	return Outcome<Reference>([&](Reference& value) { return ParseIri(text, value); },
							  [](std::string& out, const Reference& value)
							  { out = (value.isLocal ? "local [" : "external [") + std::string(value.text) + "]"; });
}

std::string Mask(std::string_view text)
{
	return Outcome<std::string_view>([&](std::string_view& value) { return ParseMaskReference(text, value); },
									 [](std::string& out, std::string_view value) { out = value; });
}

template <typename Enum>
std::string Keyword(Parsed (*parse)(std::string_view, Enum&), std::string_view text)
{
	return Outcome<Enum>([&](Enum& value) { return parse(text, value); },
						 [](std::string& out, Enum value) { out = std::to_string(static_cast<int>(value)); });
}

std::string Box(std::string_view text)
{
	return Outcome<ViewBox>([&](ViewBox& value) { return ParseViewBox(text, value); },
							[](std::string& out, const ViewBox& value)
							{
								for (double number : {value.x, value.y, value.width, value.height})
								{
									AppendNumber(out, number);
									out += ' ';
								}
							});
}

std::string Aspect(std::string_view text)
{
	return Outcome<AspectRatio>([&](AspectRatio& value) { return ParsePreserveAspectRatio(text, value); },
								[](std::string& out, const AspectRatio& value)
								{
									out = std::to_string(static_cast<int>(value.align)) +
										  (value.meetOrSlice == MeetOrSlice::slice ? " slice" : " meet");
								});
}

std::string Transform(std::string_view text)
{
	return Outcome<Matrix>([&](Matrix& value) { return ParseTransform(text, value); },
						   [](std::string& out, const Matrix& m)
						   {
							   for (double number : {m.a, m.b, m.c, m.d, m.e, m.f})
							   {
								   AppendNumber(out, number);
								   out += ' ';
							   }
						   });
}

template <typename Function>
void ExpectRefused(Function outcome, std::initializer_list<std::string_view> texts)
{
	for (std::string_view text : texts)
		EXPECT_EQ(outcome(text), kRefused) << text;
}

constexpr auto kNumber = [](std::string_view text)
{
	return Number(text);
};
constexpr auto kLength = [](std::string_view text)
{
	return LengthOf(text);
};
constexpr auto kDashes = [](std::string_view text)
{
	return Dashes(text);
};

TEST(Numbers, AreWholeValues)
{
	EXPECT_EQ(Number("0.5"), "0.5");
	EXPECT_EQ(Number("+.5"), "0.5");
	EXPECT_EQ(Number("-0"), "-0");
	EXPECT_EQ(Number("1.5E-3"), "0.0015");
	EXPECT_EQ(Number("3.14159265358979323846"), "3.141592653589793");
	EXPECT_EQ(Number("inherit"), kNothing);
	ExpectRefused(kNumber, {"", " ", " 1", "1 ", "5.", "--5", "+-5", "1e", "1e+", "0.5px", "50%", "inf", "nan", "1,5",
							"Inherit", "0x10", "1.e3"});
	EXPECT_EQ(Number(std::string_view("1\0", 2)), kRefused);
}

TEST(Numbers, ThatOverflowAreRefused)
{
	EXPECT_EQ(Number("1.7976931348623157e308"), "1.7976931348623157e+308");
	EXPECT_EQ(Number("1e-400"), "0");
	ExpectRefused(kNumber, {"1.8e308", "9e308", "1e999", "1e-999", "1e2147483648", "1e99999999999",
							"12345678901234567890123e2147483647"});
	EXPECT_EQ(Number(std::string(400, '9')), kRefused);
	EXPECT_EQ(LengthOf("1.8e308px"), kRefused);
	EXPECT_EQ(Dashes("1 1.8e308"), kRefused);
	EXPECT_EQ(Offset("1.8e308%"), kRefused);
	EXPECT_EQ(Box("0 0 1.8e308 1"), kRefused);
	EXPECT_EQ(Transform("scale(1e200)scale(1e200)"), kRefused);
}

TEST(Numbers, HaveNoExponentsInDeclarations)
{
	EXPECT_EQ(Number(".25", Source::style), "0.25");
	EXPECT_EQ(Number("1e-3", Source::style), kRefused);
	EXPECT_EQ(LengthOf("1e2px", Source::style), kRefused);
	EXPECT_EQ(Number("INHERIT", Source::style), kRefused);
	EXPECT_EQ(Dashes("1e2", Source::style), kRefused);
}

TEST(Lengths, KeepTheirUnits)
{
	for (const char* unit : {"", "em", "ex", "px", "in", "cm", "mm", "pt", "pc"})
	{
		EXPECT_EQ(LengthOf(std::string("-1.5") + unit), std::string("-1.5") + unit);
		EXPECT_EQ(LengthOf(std::string("1.5") + unit, Source::style), std::string("1.5") + unit);
	}
	EXPECT_EQ(LengthOf("1e2em"), "100em");
	EXPECT_EQ(LengthOf("1em"), "1em");
	EXPECT_EQ(LengthOf("inherit"), kNothing);
	ExpectRefused(kLength, {"", "1 px", "5.px", "1q", "1rem", "1pxx", "1PX", "none", "medium", " 1", "1e", "1ex2"});
}

TEST(Lengths, HaveUnitsInAnyCaseInDeclarations)
{
	EXPECT_EQ(LengthOf("1PX", Source::style), "1px");
	EXPECT_EQ(Dashes("1In 2", Source::style), "1in 2");
}

TEST(Lengths, HoldPercentagesAsFractions)
{
	EXPECT_EQ(LengthOf("50%"), "0.5%");
	EXPECT_EQ(LengthOf("-5%", Source::style), "-0.05%");
	EXPECT_EQ(Dashes("50%,25%"), "0.5% 0.25%");
	EXPECT_EQ(Dashes("50% 1", Source::style), "0.5% 1");
	EXPECT_EQ(Offset("50%"), "0.5");
	EXPECT_EQ(Offset("150%"), "1.5");
	EXPECT_EQ(Offset("-.1"), "-0.1");
	ExpectRefused(Offset, {"", "50 %", "1px", " 0.5", "50%%", "inherit"});
}

TEST(FontSizes, AreLengthsOrKeywords)
{
	EXPECT_EQ(FontSize("12pt"), "12pt");
	for (const char* keyword :
		 {"xx-small", "x-small", "small", "medium", "large", "x-large", "xx-large", "larger", "smaller", "inherit"})
		EXPECT_EQ(FontSize(keyword), kNothing) << keyword;
	EXPECT_EQ(FontSize("MEDIUM"), kRefused);
	EXPECT_EQ(FontSize("normal"), kRefused);
}

TEST(DashArrays, AreListsOfLengths)
{
	EXPECT_EQ(Dashes("5,3 2"), "5 3 2");
	EXPECT_EQ(Dashes("5px , 3em"), "5px 3em");
	EXPECT_EQ(Dashes("5 -3"), "5 -3");
	EXPECT_EQ(Dashes("none"), "");
	EXPECT_EQ(Dashes(""), "");
	EXPECT_EQ(Dashes("inherit"), kNothing);
	EXPECT_EQ(Dashes("1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 25 26 27 28 29 30 31 32 33"),
			  "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 25 26 27 28 29 30 31 32 33");
	ExpectRefused(kDashes, {" ", "5,", "5,,3", " 5", "5 ", "5-3", "5px3em", "5,none", "5 3,"});
}

TEST(Colors, AreKeywordsHexDigitsAndComponents)
{
	EXPECT_EQ(Color("red"), "#ff0000");
	EXPECT_EQ(Color("DarkSlateGrey"), "#2f4f4f");
	EXPECT_EQ(Color("#f80"), "#ff8800");
	EXPECT_EQ(Color("#FF8000"), "#ff8000");
	EXPECT_EQ(Color("rgb( 1 , 2,3 )"), "#010203");
	EXPECT_EQ(Color("rgb(10%,20%,30%)"), "#19334c");
	EXPECT_EQ(Color("rgb(120%,-5%,50.5%)"), "#ff0080");
	EXPECT_EQ(Color("currentColor"), kNothing);
	EXPECT_EQ(Color("inherit"), kNothing);
	ExpectRefused(Color, {"", " red", "red ", "redx", "none", "#ff", "#ff80001", "#ggg", "RGB(1,2,3)", "rgb(1 2 3)",
						  "rgb(256,0,0)", "rgb(1,2)", "rgb(+1,0,0)", "rgb(10%,20,30)", "transparent", "url(#a)",
						  "rgba(1,2,3,0.5)"});
}

TEST(Colors, DropTheirIccColor)
{
	EXPECT_EQ(Color("red icc-color(foo, 1, 2)"), "#ff0000");
	EXPECT_EQ(PaintOf("#f80  icc-color(#foo,0.11 ,.48)"), "color #ff8800");
	ExpectRefused(Color, {"red icc-color(foo)", "redicc-color(foo,1)", "icc-color(foo,1)", "red ICC-COLOR(foo,1)"});
}

TEST(Paints, TellTheirFormsApart)
{
	EXPECT_EQ(PaintOf("none"), "none");
	EXPECT_EQ(PaintOf("currentColor"), "currentColor");
	EXPECT_EQ(PaintOf("inherit"), "inherit");
	EXPECT_EQ(PaintOf("Blue"), "color #0000ff");
	EXPECT_EQ(PaintOf("url(#grad1)"), "reference local [grad1]");
	EXPECT_EQ(PaintOf("url(#)"), "reference local []");
	EXPECT_EQ(PaintOf("url( #a )"), "reference external [ #a ]");
	EXPECT_EQ(PaintOf("url(#a)\t red"), "reference local [a] or color #ff0000");
	EXPECT_EQ(PaintOf("url(o.svg#g) none"), "reference external [o.svg#g] or none");
	EXPECT_EQ(PaintOf("url(o.svg#g) currentColor"), "reference external [o.svg#g] or currentColor");
	EXPECT_EQ(PaintOf("url(#a) red icc-color(foo,1)"), "reference local [a] or color #ff0000");
	ExpectRefused(PaintOf, {"", "None", "none ", "nonered", "currentcolor", "url()", "url(#a", "url(#a)red", "url(#a) ",
							"url(#a) inherit", "url(#a) url(#b)", "URL(#a)", "url(#\xc3\xa9)", "context-fill"});
}

TEST(References, AreLocalOrExternal)
{
	EXPECT_EQ(Iri("#a"), "local [a]");
	EXPECT_EQ(Iri("#"), "local []");
	EXPECT_EQ(Iri("a b.svg#c"), "external [a b.svg#c]");
	ExpectRefused(Iri, {"", "#a)b", "#\xc3\xa9"});
	EXPECT_EQ(Mask("url(#m)"), "m");
	EXPECT_EQ(Mask("none"), "");
	EXPECT_EQ(Mask("inherit"), kNothing);
	EXPECT_EQ(Mask("url(x.svg#m)"), kNothing);
	ExpectRefused(Mask, {"", "#m", "url()", "url(#m) ", "url(#m) none", "NONE"});
}

TEST(Keywords, HaveTheirNumbers)
{
	EXPECT_EQ(Keyword(ParseVisibility, "collapse"), "3");
	EXPECT_EQ(Keyword(ParseVisibility, "inherit"), kNothing);
	EXPECT_EQ(Keyword(ParseFillRule, "evenodd"), "2");
	EXPECT_EQ(Keyword(ParseLineCap, "square"), "3");
	EXPECT_EQ(Keyword(ParseLineJoin, "miter"), "1");
	EXPECT_EQ(Keyword(ParseLineJoin, "arcs"), kRefused);
	EXPECT_EQ(Keyword(ParseGradientUnits, "objectBoundingBox"), "1");
	EXPECT_EQ(Keyword(ParseGradientUnits, "inherit"), kRefused);
	EXPECT_EQ(Keyword(ParseSpreadMethod, "repeat"), "2");
	EXPECT_EQ(Keyword(ParseFontStyle, "oblique"), "2");
	EXPECT_EQ(Keyword(ParseFontStyle, "Italic"), kRefused);
}

TEST(Keywords, OfDisplayMostlySetNothing)
{
	EXPECT_EQ(Keyword(ParseDisplay, "none"), "2");
	EXPECT_EQ(Keyword(ParseDisplay, "inherit"), "0");
	for (const char* keyword : {"inline", "block", "list-item", "run-in", "compact", "marker", "table", "inline-table",
								"table-row-group", "table-header-group", "table-footer-group", "table-row",
								"table-column-group", "table-column", "table-cell", "table-caption"})
		EXPECT_EQ(Keyword(ParseDisplay, keyword), kNothing) << keyword;
	for (const char* keyword : {"", "flex", "inline-block", "none ", "NONE"})
		EXPECT_EQ(Keyword(ParseDisplay, keyword), kRefused) << keyword;
}

TEST(Keywords, OfFontWeightIncludeTheHundreds)
{
	EXPECT_EQ(Keyword(ParseFontWeight, "bold"), "1");
	EXPECT_EQ(Keyword(ParseFontWeight, "normal"), "0");
	EXPECT_EQ(Keyword(ParseFontWeight, "500"), "0");
	EXPECT_EQ(Keyword(ParseFontWeight, "600"), "1");
	EXPECT_EQ(Keyword(ParseFontWeight, "bolder"), kNothing);
	for (const char* keyword : {"550", "1000", "000", "0", "heavy", "Bold"})
		EXPECT_EQ(Keyword(ParseFontWeight, keyword), kRefused) << keyword;
}

TEST(ViewBoxes, AreFourNumbers)
{
	EXPECT_EQ(Box("0 0 10 10"), "0 0 10 10 ");
	EXPECT_EQ(Box("-1 , .5,\t1e1 -1"), "-1 0.5 10 -1 ");
	ExpectRefused(Box, {"", "0 0 10", "0 0 10 10 5", " 0 0 10 10", "0 0 10 10 ", "0 0 10px 10px", "0,,0 10 10",
						"0-0-1 1", "0 0 5. 5"});
}

TEST(AspectRatios, AreNumbered)
{
	const std::vector<std::string> alignments{"xMidYMid", "none",     "xMinYMin", "xMidYMin", "xMaxYMin",
											  "xMinYMid", "xMaxYMid", "xMinYMax", "xMidYMax", "xMaxYMax"};
	for (std::size_t i = 0; i != alignments.size(); ++i)
		EXPECT_EQ(Aspect(alignments[i] + " meet"), std::to_string(i) + " meet");
	EXPECT_EQ(Aspect("xMaxYMid \t slice"), "6 slice");
	EXPECT_EQ(Aspect("none slice"), "1 meet");
	EXPECT_EQ(Aspect("defer xMidYMid slice"), "0 slice");
	ExpectRefused(Aspect, {"", "defer", "meet", "xmidymid", "xMidYMid ", "xMidYMidslice", "xMidYMid meet slice"});
}

TEST(Transforms, ComposeIntoOneMatrix)
{
	EXPECT_EQ(Transform(""), "1 0 0 1 0 0 ");
	EXPECT_EQ(Transform(" translate( 1 , 2 )\n"), "1 0 0 1 1 2 ");
	EXPECT_EQ(Transform("matrix(2 3 4 5 6 7)"), "2 3 4 5 6 7 ");
	EXPECT_EQ(Transform("translate(1,1),,scale(2)"), "2 0 0 2 1 1 ");
	EXPECT_EQ(Transform("scale(2)translate (1,1)"), "2 0 0 2 2 2 ");
	EXPECT_EQ(Transform("rotate(90 10 0)"), "6.123233995736766e-17 1 -1 6.123233995736766e-17 10 -10 ");
	EXPECT_EQ(Transform("skewX(30)"), "1 0 0.5773502691896257 1 0 0 ");
	EXPECT_EQ(Transform("skewY(30) scale(2 3)"), "2 1.1547005383792515 0 3 0 0 ");
	ExpectRefused(Transform, {"none", "matrix(1 0 0 1 5)", "rotate(90,10)", "rotate(90deg)", "skewx(30)", "translate()",
							  "translate(1-2)", "translate(1,,2)", "translate(1px)", "translate(1,1),", ",scale(1)",
							  "scale(2) 3", "translate(5.,1)", "scale(nan)", "scale(1", "Scale(1)"});
}

TEST(Errors, NameTheAttributeAndHoldTheValue)
{
	try
	{
		RaiseInvalidValue("fill", "red%s");
	}
	catch (const std::exception& error)
	{
		EXPECT_STREQ(error.what(), "Invalid value of SVG attribute (or property) \"fill\": \"red%s\"");
	}
}

/// Every function over one text, as one text.
std::string Everything(std::string_view text)
{
	std::string all;
	for (const std::string& one :
		 {Number(text), Number(text, Source::style), LengthOf(text), LengthOf(text, Source::style), FontSize(text),
		  FontSize(text, Source::style), Dashes(text), Dashes(text, Source::style), Offset(text), Color(text),
		  PaintOf(text), Iri(text), Mask(text), Keyword(ParseDisplay, text), Keyword(ParseFontWeight, text), Box(text),
		  Aspect(text), Transform(text)})
		all += one + "|";
	RecordingPathSink path;
	all += ParsePath(text, path) == Parsed::value ? path.text : kRefused;
	RecordingPathSink points;
	all += ParsePoints(text, points) != Parsed::refused ? points.text : kRefused;
	return all;
}

TEST(Bytes, OutsideAsciiAreRefusedByEverything)
{
	const std::string allRefused = Everything("\xff");
	EXPECT_EQ(allRefused.find(kNothing), std::string::npos);
	for (const char* start : {"", "re", "5", "5p", "M0 0", "1,2", "#f8", "#", "url(#a", "scale(1)", "0 0 1 1",
							  "rgb(1,2,3", "none", "xMidYMid", "red icc-color(a", "url(#a) re"})
	{
		for (const char* byte : {"\x80", "\xe5", "\xff"})
			EXPECT_EQ(Everything(std::string(start) + byte), allRefused) << start;
	}
}

/// Restores the C and C++ locales at its end.
class LocaleGuard
{
public:
	LocaleGuard() : _c(std::setlocale(LC_ALL, nullptr))
	{
	}

	~LocaleGuard()
	{
		std::setlocale(LC_ALL, _c.c_str());
		std::locale::global(_cpp);
	}

private:
	std::string _c;
	std::locale _cpp;
};

struct CommaPunctuation : std::numpunct<char>
{
	char do_decimal_point() const override
	{
		return ',';
	}
};

TEST(Locales, ChangeNothing)
{
	const std::vector<std::string> texts{"1.5",      "INDIGO",          "1,5", "0.5 1.5",
										 "M0.5 1.5", "rgb(1.5%,2%,3%)", "1IN", "1.5in"};
	std::vector<std::string> before;
	for (const std::string& text : texts)
		before.push_back(Everything(text));

	const LocaleGuard guard;
	std::locale::global(std::locale(std::locale::classic(), new CommaPunctuation));
	for (const char* name : {"tr_TR.ISO-8859-9", "tr_TR.iso88599", "tr_TR.utf8", "de_DE.utf8"})
	{
		if (std::setlocale(LC_ALL, name) != nullptr)
			break;
	}
	for (std::size_t i = 0; i != texts.size(); ++i)
		EXPECT_EQ(Everything(texts[i]), before[i]) << texts[i];
}
} // namespace
} // namespace orvan::grammar
