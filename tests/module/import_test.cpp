// SPDX-License-Identifier: MIT
/// The importer: what makes an element, references, the scanner of lengths, and the bounds in front of the XML parser.
/// Attributes, styles, texts and the places of refusals are in the corpus.
#include "support/svg_module.h"

namespace orvan
{
namespace
{

class Import : public SvgModuleTest
{
protected:
	/// The only child of an svg element with this content.
	static SVGElementRef Only(const std::string& content)
	{
		const auto first =
			Cast<HierarchyObjectInterface>(Load("<svg>" + content + "</svg>")->GetRootElement())->GetFirstChild();
		return Cast<SVGElementInterface>(first);
	}

	static SVGLength LengthOf(const std::string& text)
	{
		return Only("<rect x='" + text + "'/>")->GetAttributeDictionary().GetOr(10, SVGLength{-999.0});
	}

	/// `depth` nested elements with `leaf` in the innermost.
	static std::string Nest(int depth, const std::string& leaf = "")
	{
		std::string text = "<svg>";
		for (int i = 1; i < depth; i++)
			text += "<g>";
		text += leaf;
		for (int i = 1; i < depth; i++)
			text += "</g>";
		return text + "</svg>";
	}
};

TEST_F(Import, BuildsElementsOnly)
{
	EXPECT_EQ("svg(g g rect)", OutlineOf("<?xml version='1.0'?><!DOCTYPE svg [<!ENTITY a '>'>]><!-- <g/> -->"
										 "<svg>text<g/><![CDATA[<g/>]]><!-- <g/> --><?pi <g/>?>"
										 "<style>a{}</style>&amp;<rect/></svg>"));
}

TEST_F(Import, TakesTheFirstSvgElementOfSeveralAtTheTop)
{
	EXPECT_EQ("svg#b", OutlineOf("<g id='a'/><svg id='b'/><svg id='c'/>"));
}

TEST_F(Import, KnowsSvgElementsUnderAnyPrefixOfTheirNamespaceAndNoOthers)
{
	EXPECT_EQ("svg(rect g(circle) g)", OutlineOf("<s:svg xmlns:s='http://www.w3.org/2000/svg' xmlns:o='urn:other'>"
												 "<s:rect/><o:path><s:circle/></o:path><o:rect/></s:svg>"));
	EXPECT_EQ("svg(rect)", OutlineOf("<svg xmlns='&ns_svg;'><rect/></svg>"));
	EXPECT_EQ("svg(g)", OutlineOf("<svg xmlns:svg='urn:other'><svg:rect/></svg>"));
}

TEST_F(Import, ElementsWithTheSameLongStyleShareItUntilOneIsChanged)
{
	std::string content;
	for (const std::string style : {"fill-opacity:0.5;stroke:none", "opacity:1"})
	{
		for (int i = 0; i < 3; i++)
			content += "<rect style='" + style + "'/>";
	}
	const auto root = Cast<HierarchyObjectInterface>(Load("<svg>" + content + "</svg>")->GetRootElement());
	std::vector<SVGElementRef> rects;
	for (const auto& child : Must(root->GetChildren()))
		rects.push_back(Cast<SVGElementInterface>(child));
	ASSERT_EQ(6u, rects.size());
	const auto share = [&](std::size_t a, std::size_t b)
	{
		return rects[a]->GetAttributeDictionary().IsSameObject(rects[b]->GetAttributeDictionary());
	};
	EXPECT_TRUE(share(1, 2));
	EXPECT_FALSE(share(4, 5));
	Must(rects[2]->SetFillOpacity(0.25));
	EXPECT_EQ(0.5, rects[1]->GetFillOpacity());
	EXPECT_FALSE(share(1, 2));
}

TEST_F(Import, SharedStylesLeaveTheOtherAttributesAsTheyAre)
{
	// Four of each, so that the style is read first and shared then.
	std::string before;
	std::string after;
	for (int i = 0; i < 4; i++)
	{
		before += "<rect width='" + std::to_string(i) + "' style='fill-opacity:0.5;stroke:none'/>";
		after += "<g style='stroke-width:7;opacity:0.5' opacity='0." + std::to_string(i) + "'/>";
	}
	// The kind counts too: a text keeps its font elsewhere, and an id is no part of what is shared.
	const std::string fonts = "<text style='font-size:7px;id:f'/><g style='font-size:7px;id:f'/>";
	const auto document = Load("<svg>" + before + after + fonts + fonts + fonts + "</svg>");
	int i = 0;
	for (auto at = Cast<HierarchyObjectInterface>(document->GetRootElement())->GetFirstChild(); at;
		 at = at->GetNextSibling(), i++)
	{
		const auto element = Cast<SVGElementInterface>(at);
		const DataDictionary attributes = element->GetAttributeDictionary();
		if (i < 4)
		{
			EXPECT_EQ(static_cast<Float>(i), attributes.GetOr(12, SVGLength()).value);
			EXPECT_EQ(0.5, element->GetFillOpacity());
		}
		else if (i < 8)
		{
			EXPECT_EQ(static_cast<Float>(i - 4) / 10.0, element->GetOpacity());
			EXPECT_EQ(7.0, element->GetStrokeWidth().value);
		}
		else
			EXPECT_EQ(element->GetId(), "f");
	}
	EXPECT_EQ(14, i);
}

TEST_F(Import, TakesAViewBoxThatIsGivenForGiven)
{
	EXPECT_FALSE(Cast<SVGFitToViewboxInterface>(Only("<svg viewBox='0 0 100 100'/>"))->GetViewbox().isDefault);
}

TEST_F(Import, ReplacesPredefinedAndNumericReferences)
{
	const auto idOf = [](const std::string& id)
	{
		return std::string(Only("<g id='" + id + "'/>")->GetId());
	};
	EXPECT_EQ("<>&\"'", idOf("&lt;&gt;&amp;&quot;&apos;"));
	EXPECT_EQ("A\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80", idOf("&#65;&#xe9;&#8364;&#x1F600;"));
	EXPECT_EQ("\x7f\xc2\x80\xdf\xbf\xe0\xa0\x80\xef\xbf\xbf\xf0\x90\x80\x80",
			  idOf("&#x7F;&#x80;&#x7FF;&#x800;&#xFFFF;&#x10000;"));
	EXPECT_EQ("&unknown;&", idOf("&unknown;&"));
	EXPECT_EQ((SVGLength{12.0, SVGLengthUnit::number}), LengthOf("&#49;2"));
	EXPECT_EQ("1:19 Exception parsing svg file. expected ;", RefusalOf("<svg id='a&#65;&#6 5;'/>"));
	EXPECT_EQ("\xf4\x8f\xbf\xbf", idOf("&#x10FFFF;")) << "the last character that there is";
	for (const std::string beyond : {"&#x110000;", "&#1114112;"})
		EXPECT_EQ("1:10 Exception parsing svg file. invalid numeric character entity",
				  RefusalOf("<svg id='" + beyond + "'/>"));
}

TEST_F(Import, ScansLengthsToTheLetter)
{
	using Unit = SVGLengthUnit;
	const std::pair<const char*, SVGLength> cases[] = {
		{"10", {10.0, Unit::number}},   {"10px", {10.0, Unit::px}},   {"-.5em", {-0.5, Unit::em}},
		{"+1.5ex", {1.5, Unit::ex}},    {"2in", {2.0, Unit::in}},     {"2cm", {2.0, Unit::cm}},
		{"2mm", {2.0, Unit::mm}},       {"2pt", {2.0, Unit::pt}},     {"2pc", {2.0, Unit::pc}},
		{"50%", {0.5, Unit::percent}},  {"10pxx", {10.0, Unit::px}},  {"50% of it", {0.5, Unit::percent}},
		{"1e2", {100.0, Unit::number}}, {"1E2mm", {100.0, Unit::mm}}, {"1em", {1.0, Unit::em}},
		{"1e2em", {100.0, Unit::em}},   {"1e", {0.0, Unit::px}},      {"1e-3", {0.0, Unit::px}},
		{"1e+3", {0.0, Unit::px}},      {"5.", {0.0, Unit::px}},      {"5.px", {0.0, Unit::px}},
		{"5.25", {5.25, Unit::number}}, {"abc", {0.0, Unit::px}},     {" 1", {0.0, Unit::px}},
		{"1 ", {0.0, Unit::px}},        {"1 px", {0.0, Unit::px}},    {"1PX", {0.0, Unit::px}},
		{"1rem", {0.0, Unit::px}},      {"", {0.0, Unit::px}},        {"px", {0.0, Unit::px}},
		{"-", {0.0, Unit::px}},         {"--1", {0.0, Unit::px}},     {"-1", {-1.0, Unit::number}},
		{"1p", {0.0, Unit::px}},        {"1e-400", {0.0, Unit::px}},  {"0.1", {0.1, Unit::number}},
		{"1.2.3", {0.0, Unit::px}},     {"inherit", {0.0, Unit::px}}, {"1,5", {0.0, Unit::px}},
	};
	for (const auto& [text, length] : cases)
		EXPECT_EQ(length, LengthOf(text)) << '"' << text << '"';
	// More digits than a double holds.
	for (const char* digits : {"12345678901234567890", "0.12345678901234567"})
		EXPECT_EQ((SVGLength{std::stod(digits), Unit::number}), LengthOf(digits));
	EXPECT_EQ((SVGLength{0.0, Unit::number}), LengthOf("0." + std::string(400, '0') + "1")) << "smaller than any";
	// No length is infinite, whichever handler takes it.
	for (const std::string start : {"<rect x", "<rect r", "<circle r", "<line x2"})
		EXPECT_NE(std::string::npos,
				  RefusalOf("<svg>" + start + "='1e400'/></svg>").find("Invalid value of SVG attribute"))
			<< start;
}

TEST_F(Import, BoundsTheNestingBeforeTheParserRecurses)
{
	EXPECT_EQ("svg(g(g(", OutlineOf(Nest(1024)).substr(0, 8));
	const std::string deep =
		"1:" + std::to_string(6 + 3 * 1023) + " Exception parsing svg file. elements are nested more than 1024 deep";
	EXPECT_EQ(deep, RefusalOf(Nest(1025)));
	EXPECT_EQ(deep, RefusalOf(Nest(1024, "<g/>"))) << "a leaf is an element too";
	EXPECT_EQ(deep, RefusalOf(std::string(Nest(1025)).substr(0, 6 + 3 * 1024))) << "also when nothing is closed";
	EXPECT_NE(std::string::npos, RefusalOf("<!DOCTYPE svg ]>" + Nest(1025)).find("more than 1024 deep"));
}

TEST_F(Import, IsNotFooledAboutTheNesting)
{
	// Each hides one opening tag from a careless count.
	for (const std::string opening :
		 {"<g a='>'>", "<g a='/>'>", "<g a=\"'\" b='/>'>", "<g><!-- </g> -->", "<a\">", "<g><![CDATA[</g>]]>",
		  "<g><?</g>?>", "<g><!-- --><!--></g>-->", "<g a = '/>' >", "<g\n>", "<g><? ?>", "<g><?>/</g>?>"})
	{
		std::string many = "<svg>";
		for (int i = 0; i < 200000; i++)
			many += opening;
		EXPECT_NE(std::string::npos, RefusalOf(many).find("nested more than 1024 deep")) << opening;
	}
}

TEST_F(Import, RefusesZeroBytesWhereverTheyStand)
{
	using namespace std::string_view_literals;
	for (const std::string_view text : {"<svg/>\0"sv, "\0<svg/>"sv, "<svg id='a\0'/>"sv, "<svg>\0</svg>"sv})
	{
		const std::string column = std::to_string(text.find('\0') + 1);
		EXPECT_EQ("1:" + column + " Exception parsing svg file. unexpected zero byte", RefusalOf(text));
	}
}

TEST_F(Import, BoundsTheNumberOfNamespacePrefixes)
{
	const auto declaring = [](int count)
	{
		std::string text = "<svg id='&amp;'"; // So that the whole of the guard runs.
		for (int i = 0; i < count; i++)
			text += " xmlns:p" + std::to_string(i) + "='u'";
		return text + "/>";
	};
	EXPECT_EQ("svg#&", OutlineOf(declaring(256)));
	const std::string refusal = RefusalOf(declaring(257));
	EXPECT_TRUE(refusal.ends_with(" Exception parsing svg file. more than 256 namespace prefixes are declared"));
}

} // namespace
} // namespace orvan
