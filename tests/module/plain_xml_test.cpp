// SPDX-License-Identifier: MIT
/// The reader of plain XML, held against the XML library.
#include "support/tape_readings.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

namespace orvan::svg
{
namespace
{

std::string Repeat(const std::string& text, int count)
{
	std::string all;
	for (int i = 0; i < count; i++)
		all += text;
	return all;
}

const std::string kSpaces = " xmlns:s='http://www.w3.org/2000/svg' xmlns:l='http://www.w3.org/1999/xlink' xmlns:o='u'";

/// An svg element with prefixes declared.
std::string In(const std::string& content)
{
	return "<svg" + kSpaces + ">" + content + "</svg>";
}

TEST(PlainXml, PutsElementsAndKnownAttributesOnTheTape)
{
	EXPECT_EQ("<svg:1@1 10='1'@8 <g:2@12 1='a'@18 >>",
			  ReadPlainly("<svg x='1'><g id=\"a\" version='2'/></svg>").value_or("left"));
}

TEST(PlainXml, ReadsWhatTheLibraryReads)
{
	const std::string longName(40, 'n');
	const std::string longText(200, 't');
	const std::string texts[] = {
		"<svg/>",
		"\xef\xbb\xbf<?xml version='1.0'?>\r\n<!DOCTYPE svg PUBLIC \"a\" \"b\">\n<svg/>\n<!-- > -- -->\t<?p?>\n",
		"<svg\n\twidth=\"1\"\r\n                         height='2' d = \"\"/>",
		"<svg x='1'y=\"2\"></svg  >",
		"<svg fill='\"' style=\"'<>/&amp;\" points='" + longText + "'>" + longText + "<g/>" + longText + "</svg>",
		In("<g stroke-miterlimit='4' preserveAspectRatio='none' " + longName + "='" + longText + "' id=''/>"),
		In("<" + longName +
		   "/><linearGradient><stop offset='1'/></linearGradient><polygon/><o:rect x='1'/><font-face/>"),
		In("<s:rect s:x='1' o:y='2' o:label='' xml:space='preserve' xml:id='a'/><s:text>a</s:text><s:foo/>"),
		In("<use xlink:href='#a' xmlns:xlink='v'/><use l:href='#b' s:href='#c' o:href='#d' l:x='1'/>"),
		In("<o:rect xmlns:o='http://www.w3.org/2000/svg' o:x='1'><o:g/></o:rect><o:rect o:x='2'/>"),
		In("<g o:x='1' xmlns:o='http://www.w3.org/2000/svg'/><g xmlns:o='v' xmlns:o='http://www.w3.org/2000/svg' "
		   "o:x='1'/>"),
		In("<text/><text></text><text> \n </text><text> a <g x='1'/> b</text><text><g>a</g></text><text><!-- > --> "
		   "b</text>"),
		In("<text> <?p a?><![CDATA[<g>&amp;]]>b</text><text><g/><![CDATA[c]]></text><text>a<![CDATA[c]]></text>"),
		In("<text><text>a</text></text><g>a<![CDATA[</g>]]></g><!x><!-- -- --- --><!---->"),
		"<!--><svg>--><svg/>",
		"<svg>" + Repeat("<g>", kMaxDepth - 1) + Repeat("</g>", kMaxDepth - 1) + "</svg>",
		// The tape takes three blocks, and the last entry of one is an attribute, an element or an end.
		"<svg>" + Repeat("<g id='a'/>", 3000) + "</svg>",
		"<svg>" + Repeat("<g/>", 5000) + "</svg>",
		"<svg>" + Repeat("<g x='1' y='2' id='a'/>", 2500) + "<path/></svg>",
	};
	int plain = 0;
	for (const std::string& text : texts)
	{
		const std::optional<std::string> expected = ReadWithLibrary(text);
		ASSERT_TRUE(expected) << text.substr(0, 200);
		if (const std::optional<std::string> read = ReadPlainly(text))
		{
			EXPECT_EQ(*expected, *read) << text.substr(0, 200);
			plain++;
		}
	}
	EXPECT_EQ(static_cast<int>(std::size(texts)) - 1, plain) << "all but the one with blanks around an equals sign";
}

TEST(PlainXml, LeavesTheRestToTheLibrary)
{
	std::string prefixes;
	for (int i = 0; i < 40; i++)
		prefixes += " xmlns:p" + std::to_string(i) + "='u'";
	const std::string texts[] = {
		"",
		" ",
		"a",
		"<",
		"<svg",
		"<svg ",
		"<svg/",
		"<svg>",
		"<svg></svg",
		"<svg></g>",
		"<svg></svgg>",
		"<svg></sv>",
		"<g/>",
		"<g><svg/></g>",
		"<svg/><svg/>",
		"<svg/>a",
		"a<svg/>",
		"<svg></svg></svg>",
		"< svg/>",
		"<svg / >",
		"<svg x/>",
		"<svg x=1/>",
		"<svg x='1/>",
		"<svg x=\"1/>",
		"<svg ='1'/>",
		"<svg 'x'='1'",
		"<svg x<='1'/>",
		"<svg ?x='1'/>",
		"<!DOCTYPE svg [<!ENTITY a 'b'>]><svg/>",
		"<!-- <svg/>",
		"<svg><!-- --</svg>",
		"<svg><![CDATA[]]</svg>",
		"<svg><?p</svg>",
		"<svg><:g/></svg>",
		"<svg><g:/></svg>",
		"<svg><a:b:c/></svg>",
		"<svg><a?b/></svg>",
		"<svg o:a='1'/>",
		"<svg><o:g/></svg>",
		"<svg><g xmlns:o='u'/><o:g/></svg>",
		"<svg><g xmlns:o='u'></g><o:g/></svg>",
		"<svg xmlns:='u'/>",
		"<svg :a='1'/>",
		"<svg \xc3\xa9='1'/>",
		"<svg><\xc3\xa9/></svg>",
		"<svg" + prefixes + "/>",
		"<svg " + std::string(60, 'n') + "='1'/>",
		"<svg><" + std::string(60, 'n') + "/></svg>",
		"<svg>" + Repeat("<g>", kMaxDepth) + Repeat("</g>", kMaxDepth) + "</svg>",
		"<svg>" + Repeat("<g xmlns:p='u'/>", 257) + "</svg>",
	};
	for (const std::string& text : texts)
		EXPECT_EQ("left", ReadPlainly(text).value_or("left")) << text.substr(0, 200);
}

TEST(PlainXml, ReadsDamagedTextsAsTheLibraryOrNotAtAll)
{
	const std::string whole =
		"<?xml version='1.0'?><!-- a --><svg xmlns='u'" + kSpaces +
		"><g id='a' style=\"fill:red\"><path d='M0,0'/><s:use l:href='#a'/></g>\n <text x='1'>b<g/></text></svg>\n";
	const std::string pieces[] = {
		"<",    ">",    "/",    "\"",    "'",     "=",         " ",      "\n",      ":",  "?", "!", "[",
		"]]>",  "-->",  "<!--", "x",     "x:",    "xml:",      "xmlns:", "<g>",     "&",  "-", "é", "</g>",
		"\x01", "<g/>", "='1'", " s:x=", " o:x=", "<![CDATA[", "<text>", "</text>", "<?", "?>"};
	std::mt19937 random(9);
	int plain = 0;
	int left = 0;
	for (int round = 0; round < 30000; round++)
	{
		std::string text = whole;
		for (auto i = random() % 3 + 1; i > 0; i--)
		{
			const auto place = random() % text.size();
			if (random() % 3 == 0)
				text.erase(place, random() % 3 + 1);
			else
				text.insert(place, pieces[random() % std::size(pieces)]);
		}
		const std::optional<std::string> read = ReadPlainly(text);
		(read ? plain : left)++;
		if (read)
		{
			ASSERT_EQ(ReadWithLibrary(text).value_or("refused"), *read) << text;
		}
	}
	EXPECT_GT(plain, 5000);
	EXPECT_GT(left, 5000);
}

} // namespace
} // namespace orvan::svg
