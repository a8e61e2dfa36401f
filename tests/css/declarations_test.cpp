// SPDX-License-Identifier: MIT
#include "css/declarations.h"

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
	std::string declarations; ///< "name=value" with "!" behind important ones, parted by "|".
	std::string problems;
};

Reading Read(std::string_view text)
{
	Arena arena;
	Problems problems;
	std::pmr::vector<Declaration> declarations;
	ReadDeclarations(text, {.arena = arena, .source = 7, .report = &problems}, declarations);
	Reading reading{{}, problems.Offsets()};
	for (const Declaration& declaration : declarations)
	{
		EXPECT_EQ(declaration.source, 7U);
		reading.declarations += (reading.declarations.empty() ? "" : "|") + std::string(declaration.name) + "=" +
								std::string(declaration.value) + (declaration.isImportant ? "!" : "");
	}
	return reading;
}

TEST(CssDeclarations, AreReadInEveryForm)
{
	EXPECT_EQ(Read("fill:red").declarations, "fill=red");
	EXPECT_EQ(Read(" ;; FILL : Red ; f\\69 ll:\\72 ed;").declarations, "fill=Red|fill=\\72 ed");
	EXPECT_EQ(Read("a:b!important;c:d ! /**/ IMPORTANT ;e:f!\\69mportant").declarations, "a=b!|c=d!|e=f!");
	EXPECT_EQ(Read("--A: {x;y} ;--b:;--C:1!important").declarations, "--A={x;y}|--b=|--C=1!");
	EXPECT_EQ(Read("a/**/:/*x*/1/**/2/*;*/ ;b:c").declarations, "a=1 2|b=c");
	EXPECT_EQ(Read("a:f(1;2) [;] ';' url(;);b:c").declarations, "a=f(1;2) [;] ';' url(;)|b=c");
	EXPECT_EQ(Read("").declarations, "");
}

/// A comment in front has the tokens read what is read without them otherwise.
TEST(CssDeclarations, ThatAreSimpleAreReadAlikeWithAndWithoutTokens)
{
	for (const std::string text : {"fill:red",
								   " ; fill : red ;; stroke:none;",
								   "fill:#ff0000;stroke-width:1.5px",
								   "a:url(#g) red",
								   "a:url(#g h);b:c",
								   "a:rgb(1, 2,3) ;b:rgba(1 2 3);",

								   "a:b)",
								   "a:(b)",
								   "a:#url(b c);d:e",
								   "a:xurl(b c)",
								   "a:var(--b)",
								   "a:rgb(1,2",
								   "a:url(b",
								   "a:URL(b c);d:e",
								   "a:rgbx(b;c);d:e",
								   "a: rgb (1);b:c",
								   "a:rgba(1;2);b:c",
								   "a:rgb(1,'2)');b:c",
								   "a:url('b;c');d:e",
								   "a_b:c;d:e",
								   "a1:b;c:d",
								   "-:a;b:c",
								   "-1:a;b:c",
								   "a-:b;c-d:e",
								   "a:b/c;d:e",
								   "a:b/*c;*/;d:e",
								   "a:@b;c:d",
								   "a:b~c;d:e",
								   "a:b\x01;c:d",
								   "a:'b\x01c';d:e",
								   "a:'b\tc';d:e",
								   "a:\xc3\xa4;b:'\xc3\xa4';c:d",
								   "a:'b' 'c;';d:e",
								   "a:'b",
								   "a:b c  ;d:e\t ",
								   "a: ;b:c",
								   "a:b;c",
								   "a:b;c d",
								   "-a:b;--c:d;-:e",
								   "1a:b;c:d",
								   "a:;b:c",
								   "a b:c;d:e",
								   "a",
								   "a:b:c;d:e",
								   "A:B",
								   "a:-1e+5% , 3",
								   "a:-->;b:c",
								   "a:{b:c}",
								   "@a b;c:d",
								   "a:\r\n b\f;\tc\n:d",
								   "a:url();b:url( x )",
								   "font-family:'a;b' , \"c:d\" ;e:f",
								   "a:'b\\'c;';d:e",
								   "a:'b\nc;d:e';f:'g",
								   "a:'url'url(b c);d:e",
								   "a:b;C:d;e:f!important;g:h",
								   "stroke-miterlimit:4;-inkscape-stroke:none;stroke-dasharray : 1.5 , 20% ;fill:_#g",
								   "a-name-of-more-than-sixteen:a/*value;*/of-more-than-sixteen\\;d:e"})
		EXPECT_EQ(Read(text).declarations, Read("/**/" + text).declarations) << text;
}

TEST(CssDeclarations, CloseWhatTheEndOfTheTextCutsOff)
{
	EXPECT_EQ(Read("a:rgb(1,[2").declarations, "a=rgb(1,[2])");
	EXPECT_EQ(Read("a:f('x").declarations, "a=f('x')");
	EXPECT_EQ(Read("a:\"x\\").declarations, "a=\"x\"");
	EXPECT_EQ(Read("a:f(x\\").declarations, "a=f(x\xef\xbf\xbd)");
	EXPECT_EQ(Read("a:url(x").declarations, "a=url(x)");
	EXPECT_EQ(Read("a:b/* c").declarations, "a=b");
}

TEST(CssDeclarations, ThatAreInvalidCostOnlyThemselves)
{
	const auto expect = [](std::string_view text, const char* problems)
	{
		const Reading reading = Read(text);
		EXPECT_EQ(reading.declarations, "z=1") << text;
		EXPECT_EQ(reading.problems, problems) << text;
	};
	expect("a;z:1", "0");
	expect("a b:c;z:1", "0");
	expect("1:2;z:1", "0");
	expect(":x;z:1", "0");
	expect("a:;z:1", "0");
	expect("a:!important;z:1", "0");
	expect("a:b!x;z:1", "0");
	expect("a:b!important c;z:1", "0");
	expect("a:b!c!important;z:1", "0");
	expect("a:b!;z:1", "0");
	expect("a:);z:1", "0");
	expect("a:(]);z:1", "0");
	expect("a:'x\n;z:1", "0");
	expect("a:url(x y);z:1", "0");
	expect("--a:b!c;z:1", "0");
	expect("--a:);z:1", "0");
	expect("{;};z:1", "0");
	expect("a:hover{b:c}y:1;z:1", "0");
	expect("@media x{c:d}z:1;@foo;", "0 17");
	// Brackets shield what is in them, also from a declaration that is given up.
	EXPECT_EQ(Read("a(;z:1);y:2").declarations, "y=2");
	EXPECT_EQ(Read("a:b};c:d").declarations, "c=d");
}

TEST(CssDeclarations, TellWhereTheyAreAndWhatIsInThem)
{
	Arena arena;
	std::pmr::vector<Declaration> declarations;
	ReadDeclarations("a: VAR(--x, 1);b:\\66;--c:env(d)", {.arena = arena}, declarations);
	ASSERT_EQ(declarations.size(), 3U);
	EXPECT_TRUE(declarations[0].hasVariables && !declarations[0].hasEscapes && !declarations[0].isCustom);
	EXPECT_TRUE(!declarations[1].hasVariables && declarations[1].hasEscapes);
	EXPECT_TRUE(declarations[2].hasVariables && declarations[2].isCustom);
	EXPECT_EQ(declarations[1].offset, 15U);
	EXPECT_EQ(declarations[1].valueOffset, 17U);
}

TEST(CssDeclarations, AreBounded)
{
	const auto nest = [](int depth)
	{
		const auto count = static_cast<std::size_t>(depth);
		return "a:" + std::string(count, '(') + std::string(count, ')') + ";z:1";
	};
	EXPECT_EQ(Read(nest(kMaxBrackets)).problems, "");
	EXPECT_EQ(Read(nest(kMaxBrackets + 1)).problems, "0");
	EXPECT_EQ(Read(nest(100'000)).declarations, "z=1");

	std::string many;
	for (std::size_t i = 0; i < kMaxDeclarations + 2; i++)
		many += "a:b;";
	Arena arena;
	Problems problems;
	std::pmr::vector<Declaration> declarations;
	ReadDeclarations(many, {.arena = arena, .report = &problems}, declarations);
	EXPECT_EQ(declarations.size(), kMaxDeclarations);
	EXPECT_EQ(problems.Offsets(), std::to_string(kMaxDeclarations * 4));
}
} // namespace
} // namespace orvan::css
