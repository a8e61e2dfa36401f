// SPDX-License-Identifier: MIT
#include "css/style_sheet.h"

#include "css/bounds.h"
#include "css/media.h"
#include "css_problems.h"

#include <gtest/gtest.h>
#include <string>

namespace orvan::css
{
namespace
{
struct Reading
{
	std::string declarations; ///< Names of the declarations that are in force somewhere.
	std::string problems;
	std::size_t rules;
};

Reading Read(std::string_view text)
{
	Problems problems;
	StyleSheet sheet;
	sheet.Add(text, {.source = 3, .report = &problems});
	Reading reading{{}, problems.Offsets(), sheet.Rules().size()};
	for (const Rule& rule : sheet.Rules())
	{
		for (const Declaration& declaration :
			 sheet.Declarations().subspan(rule.firstDeclaration, rule.declarationCount))
		{
			EXPECT_EQ(declaration.source, 3U);
			EXPECT_EQ(text.substr(declaration.offset, declaration.name.size()), declaration.name);
			reading.declarations += declaration.name;
		}
	}
	return reading;
}

TEST(CssStyleSheet, ReadsRules)
{
	EXPECT_EQ(Read("a,b{x:1;y:2}c{}d{z:3").declarations, "xyxyz");
	EXPECT_EQ(Read("\xef\xbb\xbf"
				   "a{x:1}")
				  .declarations,
			  "x");
	EXPECT_EQ(Read("<!-- a{x:1} --> /* b{y:1} */ c{z:1}").declarations, "xz");
	EXPECT_EQ(Read("@charset \"x\";a{x:1}").problems, "");
	StyleSheet empty;
	empty.Add(" /* */ a{}", {});
	EXPECT_TRUE(empty.IsEmpty());
}

TEST(CssStyleSheet, DropsInvalidRulesAsAWhole)
{
	const auto expect = [](std::string_view text, const char* problems)
	{
		const Reading reading = Read(text);
		EXPECT_EQ(reading.declarations, "z") << text;
		EXPECT_EQ(reading.problems, problems) << text;
	};
	expect("a:foo{x:1}b{z:1}", "2");
	expect("a,,b{x:1}b{z:1}", "2");
	expect("1{x:{;}}b{z:1}", "0");
	expect("a;b{x:1}c{z:1}", "1");
	expect("}a{x:1}b{z:1}", "0");
	expect("a ({}){x:1}b{z:1}", "2");
	expect("\\--x:hover{x:1}b{z:1}", "0");
	expect("b{z:1}a", "7");
	expect("{x:1}b{z:1}", "0");
	expect("@media all{<!-- a{x:1}}b{z:1}", "11");
}

TEST(CssStyleSheet, SkipsOtherAtRules)
{
	for (const char* rule :
		 {"@import url(x);", "@import 'a;b'", "@font-face{src:url(x)}", "@keyframes k{from{x:1}to{x:2}}", "@layer;",
		  "@layer a b{c{x:1}}", "@layer a . b{c{x:1}}", "@layer a,b{c{x:1}}", "@foo (;) [{;}] {x:1;{}}",
		  "@media{{}x:1}", "a{}@namespace x url(y);", "@media all{@namespace x url(y);}", "@scope (a){b{x:1}}"})
	{
		const Reading reading =
			Read(std::string(rule) + (std::string_view(rule).ends_with('\'') ? ";b{z:1}" : "b{z:1}"));
		EXPECT_EQ(reading.declarations, "z") << rule;
		EXPECT_EQ(reading.problems.empty(), std::string_view(rule).starts_with("@layer")) << rule;
	}
}

TEST(CssStyleSheet, NestsRules)
{
	const auto expect = [](std::string_view text, const char* declarations, const char* problems)
	{
		const Reading reading = Read(text);
		EXPECT_EQ(reading.declarations, declarations) << text;
		EXPECT_EQ(reading.problems, problems) << text;
	};
	expect("a{x:1;b{y:1}z:1}", "xyz", "");
	expect("a{b:hover{x:1}c{}y:1;d{z:1}}", "xyz", "");
	expect("a,b{c,d{x:1}}", "xx", "");
	expect("a{&{x:1}>b{y:1}+c &{z:1}}", "xyz", "");
	expect("a{b:foo{x:1}y:1}", "y", "4");
	expect("a{b,{x:1}y:1}", "y", "4");
	expect("a{x y:1;z:1}", "z", "2");
	expect("a{x y{w:1}z:1}", "wz", "");
	expect("a{x:1{y:1}z:1}", "z", "4");
	expect("a{--x:{y:1};z:1}", "--xz", "");
	expect("a{@media all{x:1;b{y:1}}@media print{x:1}@supports(--a:b){z:1}@layer l{w:1}}", "xyzw", "");
	expect("a{@foo;@foo{x:1}z:1}", "z", "2 7");
	expect("a{y:1;@foo}b{z:1}", "yz", "6");
	expect("--x b{z:1}", "z", "");
	expect("a:foo{b{x:1}}c{z:1}", "z", "2");
	expect(">a{x:1}b{z:1}", "z", "0");
}

TEST(CssStyleSheet, AppliesMediaOfScreens)
{
	for (const char* condition : {"",
								  "all",
								  "SCREEN",
								  "only screen",
								  "not print",
								  "print, screen",
								  "foo(,), screen",
								  "not x",
								  "(prefers-color-scheme:light)",
								  "screen and (prefers-color-scheme: light)",
								  "(PREFERS-color-scheme)",
								  "screen and (color)",
								  "(color)and (not (monochrome))",
								  "((color))",
								  "not print and (color)",
								  "not (hover)",
								  "(foo) or (color)",
								  "not (prefers-color-scheme:dark)",
								  "(color:8)",
								  "(min-color:8)",
								  "(max-color:8)",
								  "(7<color<9)",
								  "(color >= 8)",
								  "(8=color)",
								  "(color<=9)",
								  "(color:+8)",
								  "(grid:0)",
								  "(resolution:96dpi)",
								  "(min-resolution:1dppx)",
								  "(-webkit-min-device-pixel-ratio:1)",
								  "(-webkit-max-device-pixel-ratio:1)",
								  "(prefers-contrast:no-preference)",
								  "not (forced-colors)",
								  "(resolution>37dpcm)"})
		EXPECT_EQ(Read(std::string("@media ") + condition + "{a{x:1}}b{z:1}").declarations, "xz") << condition;
	for (const char* condition : {"print",
								  "not screen",
								  "not all",
								  "only print",
								  "not (color)",
								  "(min-width:1px)",
								  "not (min-width:1px)",
								  "screen screen",
								  "only (prefers-color-scheme: light)",
								  "and",
								  "not and",
								  "(prefers-color-scheme: dark)",
								  "screen or (prefers-color-scheme: light)",
								  ",",
								  "(foo) and (color)",
								  "(color) or (foo) and (color)",
								  "(color:7)",
								  "(color<=7)",
								  "(resolution>38dpcm)",
								  "(min-color:9)",
								  "(max-color:7)",
								  "(7<color<8)",
								  "(9<color<7)",
								  "(9<color<10)",
								  "(8</**/=color)",
								  "(scripting:enabled)",
								  "(color<8)",
								  "(color>8)",
								  "(8<color)",
								  "(min-grid:0)",
								  "(grid<1)",
								  "(min-color)",
								  "(color:8 8)",
								  "(color foo)",
								  "(1)",
								  "(8)",
								  "screen and (color) or (color)",
								  "not not (hover)",
								  "(prefers-color-scheme:no)",
								  "not (prefers-color-scheme:no)",
								  "(resolution:1)",
								  "(color:8dpi)",
								  "screen and",
								  "not screen and (foo)",
								  "(-webkit-min-device-pixel-ratio:2)",
								  "(< color)",
								  "(8 < = color)",
								  "not foo(color)"})
		EXPECT_EQ(Read(std::string("@media ") + condition + "{a{x:1}}b{z:1}").declarations, "z") << condition;
	EXPECT_EQ(Read("@media screen{a{x:1}@media print{b{y:1}}@media all{c{w:1}}d;e}f{z:1}").declarations, "xwz");
	EXPECT_EQ(Read("@media screen;a{z:1}").declarations, "z");
	EXPECT_EQ(Read("@media screen{a{z:1").declarations, "z");
	EXPECT_TRUE(HoldsForMedia(" "));
	EXPECT_TRUE(HoldsForMedia("print, screen"));
	EXPECT_FALSE(HoldsForMedia("screen {"));
}

/// Understands whatever is called "fill".
class OnlyFill final : public FeatureTest
{
public:
	bool Understands(const Declaration& declaration) override
	{
		return declaration.name == "fill";
	}
};

TEST(CssStyleSheet, AppliesWhatIsSupported)
{
	OnlyFill features;
	const auto holds = [&features](std::string_view condition)
	{
		const std::string text = "@supports " + std::string(condition) + "{a{x:1}}b{y:1}";
		StyleSheet sheet;
		sheet.Add(text, {.features = &features});
		EXPECT_EQ(sheet.Declarations().back().name, "y") << condition;
		return sheet.Rules().size() == 2;
	};
	for (const char* condition : {"(fill:red)",
								  "( FILL : red )",
								  "(fill:red !important)",
								  "((fill:red))",
								  "not (x:red)",
								  "not (not (fill:red))",
								  "(fill:a) and (fill:b)and (fill:c)",
								  "(x:a) or (fill:b) or (x:c)",
								  "(--x:y)",
								  "(--x:)",
								  "not (fill)",
								  "not (foo)",
								  "not foo(x)",
								  "not (fill:red;)",
								  "selector(a > b)",
								  "selector(a:has(b))",
								  "at-rule(@media)",
								  "not at-rule(@foo)",
								  "(fill:red) and (not (x:y))",
								  "(fill:url(;))"})
		EXPECT_TRUE(holds(condition)) << condition;
	for (const char* condition :
		 {"(x:red)", "not (fill:red)", "fill:red", "", "not(fill:red)", "(fill:a) and (x:b)",
		  "(fill:a) and (fill:b) or (fill:c)", "(fill:red) foo", "not (fill:red) and (fill:red)", "selector(:foo)",
		  "selector(a, b)", "selector()", "(fill:)", "(fill:a) or", "(not (fill:red))", "at-rule(media)", "(at-rule)"})
		EXPECT_FALSE(holds(condition)) << condition;
	EXPECT_EQ(Read("@supports (fill:red){a{x:1}}b{z:1}").declarations, "z");
}

TEST(CssStyleSheet, KnowsDeclaredNamespaces)
{
	const std::string svg = "@namespace s 'http://www.w3.org/2000/svg';@namespace \\78  url(u);";
	EXPECT_EQ(Read(svg + "s|a{z:1}").problems, "");
	EXPECT_EQ(Read(svg + "x|a,*|b,[x|c]{z:1}").problems, "");
	EXPECT_EQ(Read(svg + "y|a{z:1}").declarations, "");
	EXPECT_EQ(Read("@namespace x;x|a{z:1}").declarations, "");
	EXPECT_EQ(Read("@charset 'a';@layer l;@namespace x url(u);x|a{z:1}").declarations, "z");
	EXPECT_EQ(Read("@layer l{}@namespace x url(u);x|a{z:1}").declarations, "");
}

TEST(CssStyleSheet, IsBounded)
{
	std::string media;
	for (int i = 0; i < kMaxRuleNesting; i++)
		media += i % 2 ? "@media all{" : "a{";
	EXPECT_EQ(Read(media.substr(2) + "a{z:1}").declarations, "z");
	EXPECT_EQ(Read(media + "a{z:1}").declarations, "");
	EXPECT_EQ(Read(media + "@media all{a{z:1}}").declarations, "");
	std::string condition = "(--a:b)";
	for (int i = 0; i < kMaxConditionNesting; i++)
		condition = "(" + condition + ")";
	EXPECT_EQ(Read("@supports " + condition + "{a{z:1}}").declarations, "z");
	EXPECT_EQ(Read("@supports (" + condition + "){a{z:1}}").declarations, "");

	std::string list = "a";
	for (std::size_t i = 0; i < kMaxRules + 5; i++)
		list += ",a";
	const Reading many = Read(list + "{x:1}b{y:1}");
	EXPECT_EQ(many.rules, kMaxRules);
	EXPECT_EQ(many.problems, "0");
	EXPECT_EQ(Read("a{x:1}" + std::string(1'000'000, '{')).declarations, "x");

	const auto isValid = [](const std::string& selector)
	{
		return Read(selector + "{x:1}").rules == 1;
	};
	const auto repeat = [](std::string_view text, std::size_t count)
	{
		std::string all;
		for (std::size_t i = 0; i < count; i++)
			all += text;
		return all;
	};
	EXPECT_TRUE(isValid(repeat("a ", kMaxCompounds)));
	EXPECT_FALSE(isValid(repeat("a ", kMaxCompounds + 1)));
	EXPECT_TRUE(isValid(repeat(":not(", kMaxSelectorNesting) + "a" + repeat(")", kMaxSelectorNesting)));
	EXPECT_FALSE(isValid(repeat(":not(", kMaxSelectorNesting + 1) + "a" + repeat(")", kMaxSelectorNesting + 1)));
}
} // namespace
} // namespace orvan::css
