// SPDX-License-Identifier: MIT
/// What stands between a text and the XML parser, held against the parser as it comes.
#include "importer/xml/xml_namespaces.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

namespace orvan::svg
{
namespace
{

using XmlDocument = xml::xml_document<char>;

/// The importer's, but for a flag that changes nothing here: so the parser looks for quotes by itself.
constexpr int kOwnFlags = kXmlParseFlags | xml::parse_no_utf8;

/// Whether the parser takes a text, with its own namespaces, and without bounds.
template <int flags>
bool Parse(XmlDocument& document, std::string& text)
{
	try
	{
		document.parse<flags>(text.data());
		return true;
	}
	catch (const xml::parse_error&)
	{
		return false;
	}
}

/// "ok", or what a text is refused for.
std::string Judge(XmlDocument& document, std::string& text)
{
	try
	{
		GuardXml(text);
		document.parse_ns<kXmlParseFlags, XmlNamespaces>(text.data());
		return "ok";
	}
	catch (const XmlError& error)
	{
		return error.what();
	}
	catch (const xml::parse_error& error)
	{
		return error.what();
	}
}

std::string Repeat(const std::string& text, int count)
{
	std::string all;
	for (int i = 0; i < count; i++)
		all += text;
	return all;
}

std::string Nest(int depth)
{
	return Repeat("<g>", depth) + Repeat("</g>", depth);
}

int DepthOf(const xml::xml_node<char>& parent)
{
	int depth = 0;
	for (const auto* node = parent.first_node(); node != nullptr; node = node->next_sibling())
	{
		if (node->type() == xml::node_element)
			depth = std::max(depth, 1 + DepthOf(*node));
	}
	return depth;
}

/// Writes names with namespaces, in document order.
void ListNames(const xml::xml_node<char>& parent, std::string& names)
{
	const auto add = [&names](const auto& node)
	{
		names.append(node.name(), node.name_size()).append("{");
		names.append(node.namespace_uri(), node.namespace_uri_size()).append("} ");
	};
	for (const auto* node = parent.first_node(); node != nullptr; node = node->next_sibling())
	{
		add(*node);
		for (const auto* at = node->first_attribute(); at != nullptr; at = at->next_attribute())
			add(*at);
		ListNames(*node, names);
		names += "/ ";
	}
}

std::string NamesIn(const XmlDocument& document)
{
	std::string names;
	ListNames(document, names);
	return names;
}

class XmlGuard : public testing::Test
{
protected:
	/// What the parser reads within the bounds must be taken, with the same namespaces, and nothing else.
	void Compare(const std::string& text)
	{
		std::string ownText = text;
		std::string boundedText = text;
		XmlDocument own;
		XmlDocument bounded;
		const bool isRead = Parse<kOwnFlags>(own, ownText);
		const std::string verdict = Judge(bounded, boundedText);
		const bool isTooDeep = verdict == "elements are nested more than 1024 deep";
		EXPECT_TRUE(!isRead || isTooDeep == (DepthOf(own) > 1024)) << text.substr(0, 60);
		EXPECT_EQ(isRead && !isTooDeep, verdict == "ok") << verdict << text.substr(0, 60);
		EXPECT_TRUE(verdict != "ok" || NamesIn(own) == NamesIn(bounded)) << text.substr(0, 60);
		(verdict == "ok" ? passed : refused)++;
	}

	int passed = 0;
	int refused = 0;
};

TEST_F(XmlGuard, BoundsTheDepthOfDamagedNests)
{
	const std::string pieces[] = {"<g>", "</g>", "<g/>", "<g a='", "'>",   "<!--", "-->",      "<?p", "?>",
								  "<",   ">",    "/",    "\"",     "<g b", "='x'", "!",        "=",   " ",
								  "\n",  "a",    "&lt;", ":",      "'",    "]",    "<![CDATA["};
	std::mt19937 random(7);
	for (int round = 0; round < 200; round++)
	{
		std::string text = Nest(1018 + static_cast<int>(random() % 10));
		for (auto i = random() % 4 + 1; i > 0; i--)
		{
			const auto place = random() % 2 == 0 ? text.size() / 7 * 3 : random() % text.size();
			text.insert(place, pieces[random() % std::size(pieces)]);
		}
		Compare(text);
	}
	EXPECT_GT(passed, 5);
	EXPECT_GT(refused, 20);
}

TEST_F(XmlGuard, GivesTheNamespacesThatTheParserGives)
{
	const std::string attributes[] = {" xmlns='u'",    " xmlns=''",      " xmlns:p='v'", " xmlns:p=''",
									  " xmlns:pq='w'", " p:a='1'",       " pq:b='2'",    " xml:c='3'",
									  " style='4'",    " xmlns:xml='y'", " xmlnt:d='5'"};
	const std::string names[] = {"g", "p:g", "pq:g"};
	std::mt19937 random(8);
	for (int round = 0; round < 5000; round++)
	{
		std::string text = "<g xmlns:xmlnt='t'>";
		for (const char* end : {">", "/>", ">", "/>"})
		{
			const std::string& name = names[end[0] == '/' ? random() % std::size(names) : 0];
			text += '<' + name;
			for (auto i = random() % 5; i > 0; i--)
				text += attributes[random() % std::size(attributes)];
			text += end;
			text += end[0] == '/' ? "</g>" : "";
		}
		Compare(text + "</g>");
	}
	EXPECT_GT(passed, 500);
	EXPECT_GT(refused, 500);
}

TEST_F(XmlGuard, RefusesReferencesOnlyWhereTheParserDoes)
{
	const std::string pieces[] = {"<g>",
								  "</g>",
								  "<g/>",
								  " a='b'",
								  "<g",
								  ">",
								  "/>",
								  "&#;",
								  "&#65;",
								  "&#xa;",
								  "&#xfF;",
								  "&#",
								  ";",
								  "x",
								  "\n",
								  "é",
								  "<!-- -->",
								  "&amp;",
								  "&#xg;",
								  "<!DOCTYPE g [",
								  "<!DOCTYPE [<g>]>",
								  " a='>'",
								  " a = '&#;'",
								  "]>",
								  "<?&#?>",
								  "<![CDATA[&#;]]>"};
	const auto compare = [this](const std::string& text)
	{
		// Without the flag that leaves the text alone the parser looks into references as well.
		std::string copy = text;
		std::string judged = text;
		XmlDocument own;
		XmlDocument bounded;
		const bool isRead = Parse<xml::parse_validate_closing_tags>(own, copy);
		EXPECT_EQ(isRead, Judge(bounded, judged) == "ok") << text;
		(isRead ? passed : refused)++;
	};
	for (const std::string& first : pieces)
	{
		for (const std::string& second : pieces)
		{
			for (const char* const reference : {"&#;", "&#65;"})
			{
				compare(first + second + "<g>" + reference + "</g>");
				compare("<g" + first + ">" + second + reference + "</g>");
			}
		}
	}
	std::mt19937 random(8);
	for (int round = 0; round < 20000; round++)
	{
		std::string text;
		for (auto i = random() % 8 + 1; i > 0; i--)
			text += pieces[random() % std::size(pieces)];
		compare(text);
	}
	EXPECT_GT(passed, 500);
	EXPECT_GT(refused, 500);
}

} // namespace
} // namespace orvan::svg
