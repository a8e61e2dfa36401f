// SPDX-License-Identifier: MIT
/// The guard in front of the XML parser, held against the parser itself.
#include "importer/xml/xml_guard.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

// With pools this small, nearly every element that the parser begins shows up in the allocator below.
#define RAPIDXML_STATIC_POOL_SIZE 256
#define RAPIDXML_DYNAMIC_POOL_SIZE 256
#include <rapidxml_ns/rapidxml_ns.hpp>

namespace orvan::svg
{
namespace
{

constexpr int kFlags = rapidxml_ns::parse_validate_closing_tags | rapidxml_ns::parse_no_element_values |
					   rapidxml_ns::parse_non_destructive;

std::uintptr_t g_lowestFrame;

void* AllocateAndLook(std::size_t bytes)
{
	g_lowestFrame = std::min(g_lowestFrame, reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)));
	return operator new(bytes);
}

void Free(void* memory)
{
	operator delete(memory);
}

struct ParserRun
{
	std::uintptr_t stack; ///< Bytes between the caller's frame and the deepest one that was seen.
	bool hasSucceeded;
};

ParserRun Parse(std::string text)
{
	rapidxml_ns::xml_document<char> document;
	document.set_allocator(&AllocateAndLook, &Free);
	g_lowestFrame = UINTPTR_MAX;
	bool hasSucceeded = true;
	try
	{
		document.parse<kFlags>(text.data());
	}
	catch (const rapidxml_ns::parse_error&)
	{
		hasSucceeded = false;
	}
	const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
	return {g_lowestFrame < here ? here - g_lowestFrame : 0, hasSucceeded};
}

/// "ok", or what the guard says.
std::string Judge(const std::string& text)
{
	try
	{
		GuardXml(text);
		return "ok";
	}
	catch (const XmlError& error)
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

/// How deep the parser went, told by its use of the stack.
class XmlGuard : public testing::Test
{
protected:
	int DepthOf(const ParserRun& run) const
	{
		return 1000 + static_cast<int>((static_cast<Signed>(run.stack) - _at1000) / _perLevel);
	}

	/// What the guard passes must not take the parser below the bound, and what the parser can read within the bound
	/// must not be refused for its depth.
	void Compare(const std::string& text)
	{
		const std::string verdict = Judge(text);
		const ParserRun run = Parse(text);
		if (verdict == "ok")
		{
			passed++;
			EXPECT_LE(DepthOf(run), 1024 + 4) << text.substr(0, 60);
		}
		else
		{
			refused++;
			EXPECT_TRUE(!run.hasSucceeded || DepthOf(run) > 1024 - 4) << text.substr(0, 60);
		}
	}

	int passed = 0;
	int refused = 0;

private:
	using Signed = std::intptr_t;

	const Signed _at1000 = static_cast<Signed>(Parse(Nest(1000)).stack);
	const Signed _perLevel = (_at1000 - static_cast<Signed>(Parse(Nest(500)).stack)) / 500;
};

TEST_F(XmlGuard, MeasuresTheParsersDepthCloselyEnough)
{
	for (const int depth : {300, 900, 1024, 1500})
		EXPECT_NEAR(depth, DepthOf(Parse(Nest(depth))), 4);
}

TEST_F(XmlGuard, AgreesWithTheParserWhateverStandsAroundATag)
{
	const std::string pieces[] = {"",   "<?",   "?>", "<!--", "-->", "<![CDATA[", "]]>",   ">",
								  "<g", " a='", "'",  "\"",   "/>",  "/",         "<a\">", "<!DOCTYPE ["};
	for (const std::string& first : pieces)
	{
		for (const std::string& second : pieces)
		{
			Compare("<g>" + Repeat(first + second + "<g>", 1100));
			for (const std::string& third : pieces)
				Compare("<g>" + Repeat("<g>" + first + second + "</g>" + third, 1100));
		}
	}
	// Otherwise the texts are not what they should be.
	EXPECT_GT(passed, 1000);
	EXPECT_GT(refused, 300);
}

TEST_F(XmlGuard, AgreesWithTheParserAboutDamagedNests)
{
	const std::string pieces[] = {"<g>", "</g>", "<g/>", "<g a='", "'>",   "<!--", "-->",      "<?p", "?>",
								  "<",   ">",    "/",    "\"",     "<g b", "='x'", "!",        "=",   " ",
								  "\n",  "a",    "&lt;", ":",      "'",    "]",    "<![CDATA["};
	std::mt19937 random(7);
	for (int round = 0; round < 1000; round++)
	{
		std::string text = Nest(1018 + static_cast<int>(random() % 10));
		for (auto i = random() % 4 + 1; i > 0; i--)
		{
			const auto place = random() % 2 == 0 ? text.size() / 7 * 3 : random() % text.size();
			text.insert(place, pieces[random() % std::size(pieces)]);
		}
		Compare(text);
	}
	EXPECT_GT(passed, 300);
	EXPECT_GT(refused, 100);
}

TEST_F(XmlGuard, RefusesNothingThatTheParserReads)
{
	// No nesting here, but everything else that the guard looks at.
	const std::string pieces[] = {"<g>",
								  "</g>",
								  "<g/>",
								  " a='b'",
								  "<g",
								  ">",
								  "/>",
								  "&amp;",
								  "&#65;",
								  "&#",
								  ";",
								  "x",
								  "é",
								  "<!-- -->",
								  "<!DOCTYPE g [",
								  "<!ENTITY a '>'>",
								  "]>",
								  "<?pi?>",
								  "<![CDATA[&#;]]>"};
	std::mt19937 random(8);
	int read = 0;
	for (int round = 0; round < 20000; round++)
	{
		std::string text;
		for (auto i = random() % 8 + 1; i > 0; i--)
			text += pieces[random() % std::size(pieces)];
		rapidxml_ns::xml_document<char> document;
		std::string copy = text;
		bool isRead = true;
		try
		{
			// Without the non-destructive flag the parser looks into references as well.
			document.parse<rapidxml_ns::parse_validate_closing_tags>(copy.data());
		}
		catch (const rapidxml_ns::parse_error&)
		{
			isRead = false;
		}
		read += isRead ? 1 : 0;
		if (isRead)
		{
			EXPECT_EQ("ok", Judge(text)) << text;
		}
	}
	EXPECT_GT(read, 500);
}

} // namespace
} // namespace orvan::svg
