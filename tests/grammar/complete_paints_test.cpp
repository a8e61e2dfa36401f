// SPDX-License-Identifier: MIT
// What the complete import takes of colours, paints and filter functions, held against what Chromium makes of the same
// texts.
#include "complete_outcomes.h"

namespace orvan::grammar::complete
{
namespace
{

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
			   "#g00",
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
	// Chroma is never below zero, and only what such a function returns is brought into the range of sRGB.
	EXPECT_EQ(ColorOf("lch(50 -10 0)"), ColorOf("lch(50 0 0)"));
	EXPECT_NE(ColorOf("color(display-p3 1.2 .5 .5)"), ColorOf("color(display-p3 1 .5 .5)"));
	EXPECT_EQ(ColorOf("lch(from blue 50 30 max(h, 0))"), ColorOf("lch(from blue 50 30 h)"));
}

/// What a browser makes of colours that others are mixed or made from, in sRGB.
TEST(CompleteColors, AreMixedAndMadeFromOthers)
{
	constexpr struct
	{
		const char* text;
		double red, green, blue, alpha;
	} kCases[]{
		{"color-mix(in srgb, red 30%, blue)", 76.5, 0, 178.5, 1},
		{"color-mix(in srgb, red 20%, blue 30%)", 102, 0, 153, 0.5},
		{"color-mix(in srgb, red, blue 30%)", 178.5, 0, 76.5, 1},
		{"color-mix(in srgb, red 80%, blue 70%)", 136, 0, 119, 1},
		{"color-mix(in srgb, red 0%, blue 0%)", 127.5, 0, 127.5, 0},
		{"color-mix(in srgb, 30% red, blue)", 76.5, 0, 178.5, 1},
		{"color-mix(in srgb, red calc(10% + 20%), blue)", 76.5, 0, 178.5, 1},
		{"color-mix(red, blue)", 140.35, 83.04, 162.31, 1},
		{"color-mix(in lab, red, blue)", 192.99, 0, 136.16, 1},
		{"color-mix(in lch longer hue, red 25%, lime)", 0, 240.81, 255, 1},
		{"color-mix(in oklch, red, blue)", 186.12, 0, 193.83, 1},
		{"color-mix(in oklch, red, gray)", 197.73, 98.87, 85.52, 1},
		{"color-mix(in hsl, red, blue)", 255, 0, 255, 1},
		{"color-mix(in hsl longer hue, red, red)", 0, 255, 255, 1},
		{"color-mix(in hsl longer hue, red, cyan)", 127.5, 255, 0, 1},
		{"color-mix(in hsl, color-mix(in hsl, hsl(none 50% 50%), blue), red)", 239.06, 15.94, 239.06, 1},
		{"color-mix(in hsl increasing hue, red, blue)", 0, 255, 0, 1},
		{"color-mix(in hsl decreasing hue, red, lime)", 0, 0, 255, 1},
		{"color-mix(in hsl decreasing hue, hsl(350 50% 50%), hsl(10 50% 50%))", 63.75, 191.25, 191.25, 1},
		{"color-mix(in hsl, hsl(10 50% 50%), hsl(350 50% 50%))", 191.25, 63.75, 63.75, 1},
		{"color-mix(in hsl, white, blue)", 159.38, 159.38, 223.12, 1},
		{"color-mix(in hsl, hsl(none 50% 50%), blue)", 31.88, 31.88, 223.12, 1},
		{"color-mix(in hwb, red 25%, lime)", 127.5, 255, 0, 1},
		{"color-mix(in hwb, red, blue)", 255, 0, 255, 1},
		{"color-mix(in srgb-linear, red, blue)", 187.53, 0, 187.53, 1},
		{"color-mix(in xyz-d50, red, blue)", 187.52, 0, 187.52, 1},
		{"color-mix(in xyz-d65, red, white)", 255, 187.52, 187.52, 1},
		{"color-mix(in display-p3, red, blue)", 127.91, 9.82, 145.15, 1},
		{"color-mix(in rec2020, red, blue)", 161.83, 18.67, 147.49, 1},
		{"color-mix(in prophoto-rgb, red, blue)", 185.89, 2.99, 157.19, 1},
		{"color-mix(in srgb, red, transparent)", 255, 0, 0, 0.5},
		{"color-mix(in srgb, rgb(255 0 0 / .5), rgb(0 0 255 / .2))", 182.14, 0, 72.86, 0.35},
		{"color-mix(in srgb, rgb(100 none 0), rgb(none 50 200))", 100, 50, 100, 1},
		{"color-mix(in lab, lab(50 none 20), lab(none 30 40))", 174.18, 97.24, 69.5, 1},
		{"color-mix(in lch, lch(50 30 none), lch(20 30 100))", 85.28, 84.11, 32.57, 1},
		{"color-mix(in srgb, color-mix(in srgb, red, blue), lime)", 63.75, 127.5, 63.75, 1},
		{"rgb(from #123456 b g r)", 86, 52, 18, 1},
		{"rgb(from red calc(r - 20) calc(g + 10) 100%)", 235, 10, 255, 1},
		{"rgb(from rgb(1 2 3 / .4) r g b)", 1, 2, 3, 0.4},
		{"rgb(from rgb(1 2 3 / .4) r g b / calc(alpha * 2))", 1, 2, 3, 0.8},
		{"rgb(from teal 50% g none)", 127.5, 128, 0, 1},
		{"hsl(from red calc(h + 120) s l)", 0, 255, 0, 1},
		{"hsl(from red h s calc(l - 20))", 153, 0, 0, 1},
		{"hsl(from red calc(h * .5) s l)", 255, 0, 0, 1},
		{"hwb(from teal h calc(w + 10) b)", 25.5, 128, 128, 1},
		{"lab(from teal calc(l * 1.2) a b)", 48.87, 153.25, 152.88, 1},
		{"lch(from red calc(l + 10) c h)", 255, 62.65, 31.3, 1},
		{"oklch(from teal l calc(c * 2) calc(h + 30))", 0, 128.21, 190.71, 1},
		{"oklab(from red l a b)", 255, 0, 0, 1},
		{"color(from red display-p3 r g b)", 255, 0, 0, 1},
		{"color(from teal xyz-d50 x y z)", 0, 128, 128, 1},
		{"color(from teal srgb-linear r calc(g * 2) b)", 0, 175.57, 128.01, 1},
		{"light-dark(red, blue)", 255, 0, 0, 1},
	};
	for (const auto& each : kCases)
	{
		Color color;
		ASSERT_EQ(ParseColor(each.text, color), Parsed::value) << each.text;
		const double difference =
			std::max({std::fabs(color.red * 255 - each.red), std::fabs(color.green * 255 - each.green),
					  std::fabs(color.blue * 255 - each.blue), std::fabs(color.alpha - each.alpha) * 255});
		EXPECT_LT(difference, 0.1) << each.text << ": " << Text(color);
	}
	std::string nested = "red";
	for (int i = 0; i < 16; i++)
		nested = "rgb(from " + nested + " r g b)";
	EXPECT_EQ(ColorOf(nested), "255 0 0 / 1");
	ExpectAll(ColorOf,
			  {"color-mix(in foo, red, blue)",
			   "color-mix(in srgb red, blue)",
			   "color-mix(in srgb, red)",
			   "color-mix(in srgb, red, blue, lime)",
			   "color-mix(in srgb longer hue, red, blue)",
			   "color-mix(in hsl longer, red, blue)",
			   "color-mix(in srgb, red -10%, blue)",
			   "color-mix(in srgb, red 110%, blue)",
			   "color-mix(in srgb, red 5, blue)",
			   "color-mix(in srgb, 10% red 20%, blue)",
			   "color-mix(in srgb, url(#a), blue)",
			   "rgb(from red r g)",
			   "rgb(from red, r, g, b)",
			   "rgb(from teal r, g, b)",
			   "rgb(from teal x y z)",
			   "rgb(from teal calc(r + 10%) g b)",
			   "rgb(from teal calc(r + 10deg) g b)",
			   "rgb(from teal calc(10deg) g b)",
			   "rgb(from teal calc(r * 1px) g b)",
			   "hsl(from teal calc(h + 10deg) s l)",
			   "color(from teal foo r g b)",
			   "rgb(r g b)",
			   "light-dark(red)",
			   "light-dark(teal, foo)",
			   "color-mix(in srgb, currentColor, red)",
			   "rgb(from currentColor r g b)",
			   "rgb(from " + nested + " r g b)"},
			  kRefused);
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
			  {"url(#a b)", "url(a\"b)", "url(#a\x7f)", "url (#a)", "url(#a) url(#b)", "url(#a) inherit",
			   "url(#a) context-fill", "url('#a' x)", "none none", "freeze", "", "url(#a) red x", "inherit"},
			  kRefused);

	const auto reference = [](std::string_view text)
	{
		return Outcome<Reference>(ParseReference, text);
	};
	EXPECT_EQ(reference("None"), "nothing");
	EXPECT_EQ(reference("url('#m')"), "#m");
	EXPECT_EQ(reference("url(#a) none"), kRefused);
	EXPECT_EQ(reference("#a"), kRefused);

	const auto mask = [](std::string_view text)
	{
		Mask value;
		const Parsed parsed = ParseMask(text, value);
		std::string result = parsed == Parsed::refused ? kRefused : parsed == Parsed::nothing ? "nothing" : "";
		for (std::size_t i = 0; i < value.count; i++)
			result += std::string(value.layers[i].text) + ' ';
		return parsed != Parsed::value ? result
									   : result + std::to_string(static_cast<int>(value.mode)) +
											 std::to_string(static_cast<int>(value.composite));
	};
	EXPECT_EQ(mask("url(#m)"), "m 00");
	EXPECT_EQ(mask("no-repeat 50% 0 / 10px url(#m) Alpha"), "m 20");
	EXPECT_EQ(mask("none, url(#a) luminance exclude , url(#b)"), "a b 13");
	ExpectAll(mask, {"none", "none, none no-repeat"}, "nothing");
	ExpectAll(mask, {"url(#a) url(#b)", "url(#a) x", "url(#a),", ",url(#a)", "", "linear-gradient(red, blue)"},
			  kRefused);
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

} // namespace
} // namespace orvan::grammar::complete
