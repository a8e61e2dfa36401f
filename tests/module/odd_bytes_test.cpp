// SPDX-License-Identifier: MIT
/// Files that are broken in every place: each ends in an error, a placeholder or a tree.
#include "support/everything.h"
#include "support/svg_module.h"

namespace orvan
{
namespace
{

class OddBytes : public SvgModuleTest
{
protected:
	enum class Outcome
	{
		tree,
		placeholder,
		refusal
	};

	Outcome LoadAnything(std::string_view text) const
	{
		const CollectedFindings findings;
		const Result<void> result = document->Init(TextFile(text).GetUrl());
		EXPECT_EQ("no error", MessageOf(result)) << text;
		const SVGElementRef& root = document->GetRootElement();
		EXPECT_TRUE(root);
		EXPECT_EQ(Kind::svg, root->GetElementType()) << text;
		const bool isPlaceholder = Outline(root) == "svg(rect)";
		EXPECT_LE(findings.lines.size(), 1u);
		EXPECT_TRUE(findings.lines.empty() || isPlaceholder) << text;
		return !findings.lines.empty() ? Outcome::refusal : isPlaceholder ? Outcome::placeholder : Outcome::tree;
	}

	const SVGDocumentRef document = MakeDocument();
};

TEST_F(OddBytes, TruncationAnywhereIsRefused)
{
	const std::string_view text = std::string_view(kEverything);
	// Up to the end of the closing tag, something is always missing; before the root begins, there is no root.
	const std::size_t end = text.rfind('>');
	for (std::size_t size = 0; size <= end; size++)
		EXPECT_NE(Outcome::tree, LoadAnything(text.substr(0, size))) << size;
	EXPECT_EQ(Outcome::tree, LoadAnything(text.substr(0, end + 1)));
}

TEST_F(OddBytes, AnyByteMayBeAnother)
{
	int count[3] = {};
	const std::string text = kEverything;
	for (std::size_t at = 0; at < text.size(); at++)
	{
		for (const char other : {'\0', '<', '>', '&', '\'', '/', ' ', '9', '\xff'})
		{
			std::string changed = text;
			changed[at] = other;
			count[static_cast<int>(LoadAnything(changed))]++;
		}
	}
	EXPECT_GT(count[static_cast<int>(Outcome::tree)], 1000);
	EXPECT_GT(count[static_cast<int>(Outcome::refusal)], 1000);
}

TEST_F(OddBytes, SingleBytesHoldNoTree)
{
	for (int byte = 0; byte < 256; byte++)
		EXPECT_NE(Outcome::tree, LoadAnything(std::string(1, static_cast<char>(byte)))) << byte;
}

TEST_F(OddBytes, AByteOrderMarkIsPassedOverAndOtherEncodingsAreRefused)
{
	EXPECT_EQ(Outcome::tree, LoadAnything("\xef\xbb\xbf<svg/>"));
	EXPECT_NE(Outcome::tree, LoadAnything("\xef\xbb<svg/>"));
	for (const bool isBigEndian : {false, true})
	{
		std::string wide = isBigEndian ? "\xfe\xff" : "\xff\xfe";
		for (const char c : std::string("<svg/>"))
			wide += isBigEndian ? std::string{'\0', c} : std::string{c, '\0'};
		EXPECT_EQ(Outcome::refusal, LoadAnything(wide));
	}
}

TEST_F(OddBytes, LongThingsTakeTheirTimeAndNoMore)
{
	const std::string million(1 << 20, 'a');
	const std::string digits(1 << 20, '1');
	EXPECT_EQ(Outcome::tree, LoadAnything("<svg id='" + million + "'/>"));
	EXPECT_EQ(Outcome::tree, LoadAnything("<svg><" + million + "/></svg>"));
	EXPECT_EQ(Outcome::tree, LoadAnything("<svg " + million + "='1'/>"));
	EXPECT_EQ(Outcome::tree, LoadAnything("<svg><text>" + million + "</text></svg>"));
	EXPECT_EQ(Outcome::tree, LoadAnything("<svg x='0." + digits + "'/>"));
	EXPECT_EQ(Outcome::refusal, LoadAnything("<svg x='" + digits + "'/>"));
	EXPECT_EQ(Outcome::refusal, LoadAnything("<svg><path d='M0 " + digits + "'/></svg>"));
	EXPECT_EQ(Outcome::refusal, LoadAnything("<svg fill='" + million + "'/>"));
}

TEST_F(OddBytes, HighBytesInValuesAreNoCharactersOfAnyGrammar)
{
	for (const char* attribute : {"fill", "opacity", "d", "points", "transform", "viewBox", "href", "stroke-width",
								  "stroke-dasharray", "display", "font-weight", "mask", "offset", "stop-color"})
	{
		for (const std::string value : {"\xff", "re\xe9", "5\xe5", "\x80", "1 \xc3\xa9"})
		{
			EXPECT_EQ(Outcome::refusal, LoadAnything("<svg " + std::string(attribute) + "='" + value + "'/>"))
				<< attribute;
			EXPECT_EQ(Outcome::refusal, LoadAnything("<svg style='" + std::string(attribute) + ":" + value + "'/>"))
				<< attribute;
		}
	}
}

} // namespace
} // namespace orvan
