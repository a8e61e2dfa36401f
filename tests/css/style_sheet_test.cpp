// SPDX-License-Identifier: MIT
#include "css/style_sheet.h"

#include "css/bounds.h"
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
	expect("b{a:hover{x:1}c{}z:1;a{x:1}}", "2 14 21");
	expect("{x:1}b{z:1}", "0");
	expect("@media all{<!-- a{x:1}}b{z:1}", "11");
}

TEST(CssStyleSheet, SkipsAtRulesButMedia)
{
	for (const char* rule : {"@import url(x);", "@import 'a;b'", "@namespace svg url(x);", "@font-face{src:url(x)}",
							 "@supports(a:b){a{x:1}}", "@keyframes k{from{x:1}to{x:2}}", "@layer a,b;",
							 "@foo (;) [{;}] {x:1;{}}", "@media{{}x:1}"})
	{
		const Reading reading =
			Read(std::string(rule) + (std::string_view(rule).ends_with('\'') ? ";b{z:1}" : "b{z:1}"));
		EXPECT_EQ(reading.declarations, "z") << rule;
		EXPECT_FALSE(reading.problems.empty()) << rule;
	}
}

TEST(CssStyleSheet, AppliesMediaOfScreens)
{
	for (const char* condition : {"", "all", "SCREEN", "only screen", "not print", "print, screen", "foo(,), screen",
								  "(prefers-color-scheme:light)", "screen and (prefers-color-scheme: light)", "not x"})
		EXPECT_EQ(Read(std::string("@media ") + condition + "{a{x:1}}b{z:1}").declarations, "xz") << condition;
	for (const char* condition :
		 {"print", "not screen", "not all", "only print", "screen and (color)", "(min-width:1px)", "not (color)",
		  "screen screen", "only (prefers-color-scheme: light)", "and", "not and", "(prefers-color-scheme: dark)",
		  "screen or (prefers-color-scheme: light)", ","})
		EXPECT_EQ(Read(std::string("@media ") + condition + "{a{x:1}}b{z:1}").declarations, "z") << condition;
	EXPECT_EQ(Read("@media screen{a{x:1}@media print{b{y:1}}@media all{c{w:1}}d;e}f{z:1}").declarations, "xwz");
	EXPECT_EQ(Read("@media screen;a{z:1}").declarations, "z");
	EXPECT_EQ(Read("@media screen{a{z:1").declarations, "z");
}

TEST(CssStyleSheet, IsBounded)
{
	std::string media;
	for (int i = 0; i <= kMaxMediaNesting; i++)
		media += "@media all{";
	EXPECT_EQ(Read(media.substr(11) + "a{z:1}").declarations, "z");
	EXPECT_EQ(Read(media + "a{z:1}").declarations, "");

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
