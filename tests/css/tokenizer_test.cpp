// SPDX-License-Identifier: MIT
#include "css/tokenizer.h"

#include "css/text.h"

#include <gtest/gtest.h>
#include <string>

namespace orvan::css
{
namespace
{
/// Every token as a letter of its kind and what it says: "i:fill" is an ident, "_" a blank.
std::string Describe(std::string_view text)
{
	constexpr std::string_view kKinds = "$_ifahsSuUnpdD<>:;,[]()";
	std::string tokens;
	Arena arena;
	std::size_t end = 0;
	for (Tokenizer tokenizer(text); tokenizer.Current().type != TokenType::end; tokenizer.Advance())
	{
		const Token& token = tokenizer.Current();
		EXPECT_GE(tokenizer.Offset(), end);
		EXPECT_EQ(text.substr(tokenizer.Offset(), token.text.size()).data(), token.text.data());
		end = tokenizer.Offset() + token.text.size();
		const auto index = static_cast<std::size_t>(token.type);
		const char kind = token.type == TokenType::openCurly    ? '{'
						  : token.type == TokenType::closeCurly ? '}'
																: kKinds[index];
		tokens += tokens.empty() ? "" : " ";
		tokens += kind;
		if (kind == 'n' || kind == 'p' || kind == 'd')
			tokens += token.isInteger ? "i" : "r";
		if (token.isId)
			tokens += '!';
		if (std::string_view("ifahsSuUnpd").find(kind) != std::string_view::npos)
			tokens += ':' + std::string(kind == 'd' ? token.text.substr(0, token.split) : "") +
					  std::string(kind == 'd' ? "/" : "") + std::string(Unescape(token.Name(), arena));
		if (kind == 'D')
			tokens += token.text;
	}
	return tokens;
}

TEST(CssTokenizer, TellsNamesNumbersAndPunctuationApart)
{
	EXPECT_EQ(Describe("a{fill:#232629;}"), "i:a { i:fill : h:232629 ; }");
	EXPECT_EQ(Describe("-a --b -- -1 - a_\xc3\xa4"), "i:-a _ i:--b _ i:-- _ ni:-1 _ D- _ i:a_\xc3\xa4");
	EXPECT_EQ(Describe("1.5 .5 +3 1. 1e3 1e 2e+x 1%"),
			  "nr:1.5 _ nr:.5 _ ni:+3 _ ni:1 D. _ nr:1e3 _ di:1/e _ di:2/e D+ i:x _ pi:1%");
	EXPECT_EQ(Describe("10px 1e3em 5-n 1--x -.5e-2q"), "di:10/px _ dr:1e3/em _ di:5/-n _ di:1/--x _ dr:-.5e-2/q");
	EXPECT_EQ(Describe("#a #1 # @media @ @1 <!-- --> <!- f("),
			  "h!:a _ h:1 _ D# _ a:media _ D@ _ D@ ni:1 _ < _ > _ D< D! D- _ f:f");
	EXPECT_EQ(Describe("a/**/b/*c*//*d*/ /*e"), "i:a i:b _");
	EXPECT_EQ(Describe("[(,)]>~|"), "[ ( , ) ] D> D~ D|");
}

TEST(CssTokenizer, ResolvesEscapes)
{
	EXPECT_EQ(Describe("\\66 ill f\\69ll \\.a \\0 x"), "i:fill _ i:fill _ i:.a _ i:\xef\xbf\xbdx");
	EXPECT_EQ(Describe("\\1F600\\110000 \\d800 \\dfff z"), "i:\xf0\x9f\x98\x80\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbdz");
	EXPECT_EQ(Describe("\\7ff \\800 \\ffff \\10000 z"), "i:\u07ff\u0800\uffff\U00010000z");
	EXPECT_EQ(Describe("\\66\r\nx \\\n \\e4\f#\\31 a"), "i:fx _ D\\ _ i:\xc3\xa4 h!:1a");
	EXPECT_EQ(Describe("@\\6d edia x\\"), "a:media _ i:x\xef\xbf\xbd");
	EXPECT_EQ(Describe(std::string_view("a\0b", 3)), "i:a\xef\xbf\xbd"
													 "b");
}

TEST(CssTokenizer, RecoversFromBrokenStringsAndUrls)
{
	EXPECT_EQ(Describe("'a\"b' \"\\22\" 'a\\\nb' 'a\\\r\nb' 'open\\"), "s:a\"b _ s:\" _ s:ab _ s:ab _ s:open");
	EXPECT_EQ(Describe("'a\\\rb' 'a\\\fb' 'a\\\n\nb"), "s:ab _ s:ab _ S:'a _ i:b");
	EXPECT_EQ(Describe("'a\nb'c"), "S:'a _ i:b s:c");
	EXPECT_EQ(Describe("url(a) URL( a\\)b ) u\\72l(x) url( 'q' ) url()"), "u:a _ u:a)b _ u:x _ f:url _ s:q _ ) _ u:");
	EXPECT_EQ(Describe("url(a b) c url(a\"b) url(a(b) url(a\\\nb) d"),
			  "U:url(a b) _ i:c _ U:url(a\"b) _ U:url(a(b) _ U:url(ab) _ i:d");
	EXPECT_EQ(Describe("url(a\\ ) x"), "u:a  _ i:x");
	EXPECT_EQ(Describe("url(a\x01)url(a\x7f)"), "U:url(a\x01) U:url(a\x7f)");
	EXPECT_EQ(Describe("\\000075\r\n\\000072\r\n\\00006c\r\n(a)"), "u:a");
	EXPECT_EQ(Describe("url( open "), "u:open");
	EXPECT_EQ(Describe(std::string_view("url(a\0)", 7)), "u:a\xef\xbf\xbd");
}

TEST(CssText, ReadsStringsAndUrlsOnly)
{
	Arena arena;
	const auto read = [&arena](std::string_view value)
	{
		std::string_view content;
		return ReadStringOrUrl(value, arena, content) ? "<" + std::string(content) + ">" : std::string("no");
	};
	EXPECT_EQ(read(" url( '#a' ) "), "<#a>");
	EXPECT_EQ(read("URL(#a\\20 b"), "<#a b>");
	EXPECT_EQ(read("\"\\41 b\""), "<Ab>");
	for (const char* other : {"", "a", "url(a) b", "'a' 'b'", "src('a')", "url('a' b)", "url(a b)", "('a')"})
		EXPECT_EQ(read(other), "no") << other;
}

TEST(CssText, LeavesABlankInThePlaceOfAComment)
{
	Arena arena;
	EXPECT_EQ(StripComments("1/**/2 '/*'/* */url(/*)", arena), "1 2 '/*' url(/*)");
	EXPECT_EQ(StripComments("/* a */red", arena), "red");
	EXPECT_EQ(FoldCase("Fill-\xc3\x84", arena), "fill-\xc3\x84");
}
} // namespace
} // namespace orvan::css
