// SPDX-License-Identifier: MIT
/// What is saved where style sheets and properties of CSS have a say: it must load as the tree is.
#include "saving.h"
#include "support/tree_json.h"
#include "svg_edit.h"

namespace orvan
{
namespace
{

class SavingBesideSheets : public Saving
{
protected:
	/// The elements without the list of ids, which goes by the load and not by the attributes.
	static std::string RootOf(const SVGDocumentRef& document)
	{
		const std::string json = JsonOf(document);
		return json.substr(json.find("\"root\""));
	}

	/// What is saved of a document, after holding what it loads as against the tree that it was made of.
	static std::string SavedAlike(const SVGDocumentRef& document, std::string_view clientSheet = {})
	{
		std::string saved = SavedText(document);
		if (saved.starts_with("error: "))
			return saved;
		EXPECT_EQ(RootOf(document), RootOf(Open(saved, true, clientSheet))) << saved;
		return saved;
	}

	struct Case
	{
		const char* text;
		const char* selector;
		const char* assignment; ///< NAME=VALUE; without a value the attribute goes.
		const char* saved;
		const char* clientSheet = "";
	};

	static void ExpectAll(std::initializer_list<Case> cases)
	{
		for (const auto& [text, selector, assignment, saved, clientSheet] : cases)
		{
			SCOPED_TRACE(std::string(text) + ' ' + selector + ' ' + assignment);
			const SVGDocumentRef document = Open("<svg>" + std::string(text) + "</svg>", true, clientSheet);
			const std::string_view whole = assignment;
			const std::size_t sign = whole.find('=');
			Set(document, selector, whole.substr(0, sign), whole.substr(sign + 1));
			EXPECT_EQ("<svg>" + std::string(saved) + "</svg>", SavedAlike(document, clientSheet));
		}
	}

	static void Remove(const SVGDocumentRef& document, std::string_view selector)
	{
		Must(Cast<SVGElementEditInterface>(First(document, selector))->Remove());
	}

	/// A new element at the end of what a selector finds.
	static SVGElementRef Add(const SVGDocumentRef& document, std::string_view selector,
							 const std::string& name = "svgrectelement")
	{
		const SVGElementRef element = Make(name);
		Insert(element, First(document, selector));
		return element;
	}
};

TEST_F(SavingBesideSheets, ShorthandsAndWhatStandsForAllGiveWayBehindThem)
{
	ExpectAll({
		{"<rect style='fill:red;all:unset'/>", "rect", "fill=blue", "<rect style='fill:red;all:unset;fill:blue'/>"},
		{"<rect style='all:unset'/>", "rect", "fill=blue", "<rect style='all:unset;fill:blue'/>"},
		{"<rect style='all:unset;fill:red'/>", "rect", "fill=blue", "<rect style='all:unset;fill:blue'/>"},
		{"<rect style='all:initial!important'/>", "rect", "fill=blue",
		 "<rect style='all:initial!important;fill:blue!important'/>"},
		{"<g style='all:unset'/>", "g", "unicode-bidi=embed", "<g style='all:unset' unicode-bidi=\"embed\"/>"},
		{"<text style='font:2px a;'/>", "text", "font-family=b", "<text style='font:2px a;font-family:b;'/>"},
		{"<text style='font-size:1px; font: 2px a'/>", "text", "font-size=3px",
		 "<text style='font-size:1px; font: 2px a; font-size: 3px'/>"},
		{"<text style='font: 2px a; font-size: 1px'/>", "text", "font-size=3px",
		 "<text style='font: 2px a; font-size: 3px'/>"},
		{"<text style='font:2px a!important'/>", "text", "font-size=3px",
		 "<text style='font:2px a!important;font-size:3px!important'/>"},
		{"<path style='marker:url(#a)'/>", "path", "marker-mid=url(#b)",
		 "<path style='marker:url(#a);marker-mid:url(#b)'/>"},
		{"<path style='marker:url(#a)'/>", "path", "stroke=red", "<path style='marker:url(#a)' stroke=\"red\"/>"},
		{"<path style='marker:url(#a)!important'/>", "path",
		 "marker-end=", "<path style='marker:url(#a)!important;marker-end:unset!important'/>"},
	});
}

TEST_F(SavingBesideSheets, DeclarationsEndWhereNothingHidesTheirSemicolon)
{
	ExpectAll({
		{"<rect style='fill:url(#a;b);stroke:red'/>", "rect", "fill=blue", "<rect style='fill:blue;stroke:red'/>"},
		{"<rect style='fill:rgb((1;2));stroke:red'/>", "rect", "fill=blue", "<rect style='fill:blue;stroke:red'/>"},
		{"<text style='font-family:\"a;b\";fill:red'/>", "text", "font-family=c",
		 "<text style='font-family:c;fill:red'/>"},
		{"<text style=\"font-family:'a\\';b';fill:red\"/>", "text", "font-family=c",
		 "<text style=\"font-family:c;fill:red\"/>"},
		{"<rect style='fill:red/*;*/;stroke:red'/>", "rect", "fill=blue", "<rect style='fill:blue;stroke:red'/>"},
		{"<rect style='fill:r\\65 d;stroke:red'/>", "rect", "fill=blue", "<rect style='fill:blue;stroke:red'/>"},
		{"<rect style='fill:red ! important ; stroke:red'/>", "rect", "fill=blue",
		 "<rect style='fill:blue ! important ; stroke:red'/>"},
		{"<rect style='stroke:red;fill:url(#a;b)'/>", "rect", "fill=", "<rect style='stroke:red'/>"},
		{"<rect style='fill:red;fill:lime;stroke:red'/>", "rect", "fill=", "<rect style='stroke:red'/>"},
		{"<rect style='fill:red!important;fill:lime'/>", "rect", "fill=blue",
		 "<rect style='fill:blue!important;fill:lime'/>"},
		{"<rect style=' stroke:red ; fill:lime ; '/>", "rect", "fill=", "<rect style=' stroke:red ; '/>"},
		{"<rect style='--fill:red;fill:lime'/>", "rect", "fill=blue", "<rect style='--fill:red;fill:blue'/>"},
		{"<path style='marker:url(a(\"b);fill:lime'/>", "path", "fill=blue",
		 "<path style='marker:url(a(\"b);fill:blue'/>"},
		// What only the end of the attribute closed is closed where something comes behind it.
		{"<path style='marker:url( #m'/>", "path", "marker-mid=none",
		 "<path style='marker:url( #m);marker-mid:none'/>"},
		{"<path style='marker:url(#m\\'/>", "path", "marker-mid=none",
		 "<path style='marker:url(#m\\FFFD );marker-mid:none'/>"},
		{"<text style='font:3px var(--a, \"b'/>", "text", "font-size=4px",
		 "<text style='font:3px var(--a, \"b\");font-size:4px'/>"},
		{"<path style='marker:none/*a'/>", "path", "marker-mid=url(#m)",
		 "<path style='marker:none/*a*/;marker-mid:url(#m)'/>"},
	});
}

TEST_F(SavingBesideSheets, ATransformIsAllThatMovesAnElement)
{
	ExpectAll({
		{"<g style='translate:1px'/>", "g", "transform=scale(2)", "<g transform=\"scale(2)\"/>"},
		{"<g style='fill:red; translate: 1px; rotate: 90deg; stroke:red'/>", "g", "transform=scale(2)",
		 "<g style='fill:red; stroke:red' transform=\"scale(2)\"/>"},
		{"<g style='scale:3;transform:scale(2)'/>", "g", "transform=", "<g/>"},
		{"<g style='scale:3;fill:red'/>", "g", "fill=blue", "<g style='scale:3;fill:blue'/>"},
		{"<style>g{fill:red}</style><g style='scale:3'/>", "g", "transform=scale(2)",
		 "<style>g{fill:red}</style><g transform=\"scale(2)\"/>"},
	});
	// In a declaration it is one of CSS, and so is a path.
	const SVGDocumentRef moved = Open("<svg><path style='transform:scale(2);d:path(\"M0 0\")'/></svg>");
	Must(First(moved, "path")->SetLocalTransform(Matrix2d{{3, 4}}));
	Must(Cast<SVGPathElementInterface>(First(moved, "path"))->LineTo({1, 2}));
	EXPECT_EQ("<svg><path style='transform:matrix(1,0,0,1,3,4);d:path(\"M0 0L1 2\")'/></svg>", SavedAlike(moved));
	// What a sheet says of it has no place in an element.
	const SVGDocumentRef document = Open("<svg><style>g{translate:1px}</style><g/></svg>");
	Set(document, "g", "transform", "scale(2)");
	EXPECT_EQ("error: The saved file would not load as it is: <g> has another value of \"transform\".",
			  SavedText(document));
}

TEST_F(SavingBesideSheets, TheTransformOfAGradientWinsOverTheProperty)
{
	ExpectAll({
		{"<linearGradient style='transform:scale(2);color:red' gradientTransform='scale(3)'/>", "linearGradient",
		 "gradientTransform=", "<linearGradient style='color:red'/>"},
		{"<linearGradient style='transform:scale(2)'/>", "linearGradient", "gradientTransform=translate(1 2)",
		 "<linearGradient style='transform:matrix(1,0,0,1,1,2)'/>"},
		{"<pattern style='all:unset' patternTransform='scale(2)'/>", "pattern", "patternTransform=translate(1 2)",
		 "<pattern style='all:unset;transform:matrix(1,0,0,1,1,2)' patternTransform='scale(2)'/>"},
		{"<style>pattern{transform:scale(3)!important}</style><pattern/>", "pattern", "patternTransform=translate(1 2)",
		 "<style>pattern{transform:scale(3)!important}</style><pattern "
		 "style=\"transform:matrix(1,0,0,1,1,2)!important\"/>"},
		{"<style>pattern{transform:scale(3)}</style><pattern patternTransform='scale(2)'/>", "pattern",
		 "patternTransform=", "<style>pattern{transform:scale(3)}</style><pattern style=\"transform:unset\"/>"},
	});
	// A new one says what the sheet would say otherwise.
	const std::string head = "<svg><style>pattern{transform:scale(3)}</style>";
	const SVGDocumentRef document = Open(head + "<g/></svg>");
	Add(document, "g", "svgpatternelement");
	EXPECT_EQ(head + "<g><pattern style=\"transform:unset\"/></g></svg>", SavedAlike(document));
}

TEST_F(SavingBesideSheets, AShapeGoesWithClipPathAndHasATextOfItsOwn)
{
	const std::string_view text = "<svg><rect clip-path='inset(1px round 2px)'/></svg>";
	const SVGDocumentRef bare = Open(text);
	Must(Cast<SVGElementEditInterface>(First(bare, "rect"))->RemoveAttribute(SVGImportAttribute::clipPath));
	EXPECT_EQ("<svg><rect/></svg>", SavedAlike(bare));
	// As a value by itself it has a text, too.
	const Data shape = Must(SourceOf(bare)->ParseValue(SVGImportElementKind::rect, SVGImportAttribute::clipShape,
													   Text("Circle(closest-side at 1px 20%) view-box")));
	EXPECT_EQ(
		"circle(closest-side at 1px 20%) view-box",
		Must(SourceOf(bare)->FormatValue(SVGImportElementKind::rect, SVGImportAttribute::clipShape, shape)).View());
}

TEST_F(SavingBesideSheets, ThatALayerIsShownIsSaidWhereItWasHidden)
{
	const SVGDocumentRef document = Open("<svg><g/><g display='none'/></svg>");
	Must(First(document, "g")->SetDisplay(SVGDisplay::shown));
	EXPECT_EQ("<svg><g/><g display='none'/></svg>", SavedText(document));
	Must(First(document, "g + g")->SetDisplay(SVGDisplay::shown));
	EXPECT_EQ("<svg><g/><g display='inline'/></svg>", SavedText(document));
}

TEST_F(SavingBesideSheets, EffectsGiveElementsABox)
{
	const SVGDocumentRef document =
		Open("<svg><style>.d{display:contents;opacity:.1}</style><g display='Contents' opacity='.2'/>"
			 "<g style='fill:red;display:contents'/><g class='d'/><g class='d'/></svg>");
	Must(First(document, "g")->SetTranslation({2.0, 0.0}));
	Must(First(document, "g:nth-of-type(2)")->SetOpacity(0.5));
	Must(First(document, "g:nth-of-type(3)")->SetOpacity(0.5));
	Must(First(document, "g:nth-of-type(4)")->SetFillOpacity(0.5));
	EXPECT_EQ("<svg><style>.d{display:contents;opacity:.1}</style><g transform=\"translate(2)\"/>"
			  "<g style='fill:red' opacity=\".5\"/><g class='d' style=\"opacity:.5;display:unset\"/>"
			  "<g class='d' fill-opacity=\".5\"/></svg>",
			  SavedAlike(document));
}

TEST_F(SavingBesideSheets, PercentagesOfTransformsStandWhenTheirViewportIsEdited)
{
	const std::string text = "<svg width='200' height='9'><svg width='50%'><g style='translate: 50% 2px'/></svg></svg>";
	const SVGDocumentRef document = Open(text);
	Must(Cast<SVGElementEditInterface>(First(document, "svg svg"))->RemoveAttribute(SVGImportAttribute::width));
	EXPECT_EQ("<svg width='200' height='9'><svg><g style='translate: 50% 2px'/></svg></svg>", SavedText(document));
	// One that was set since is no percentage any more.
	Must(First(document, "g")->SetTranslation({7.0, 2.0}));
	EXPECT_EQ("<svg width='200' height='9'><svg><g transform=\"translate(7,2)\"/></svg></svg>", SavedText(document));
}

TEST_F(SavingBesideSheets, DecorationsAndMasksKeepWhatElseTheySay)
{
	const auto after = [](const char* text, SVGImportAttribute removed)
	{
		const SVGDocumentRef document = Open(text);
		Must(Cast<SVGElementEditInterface>(First(document, "svg > *"))->RemoveAttribute(removed));
		return SavedAlike(document);
	};
	using Number = SVGImportAttribute;
	EXPECT_EQ("<svg><text style='text-decoration:underline wavy 2px;text-decoration-style:unset'/></svg>",
			  after("<svg><text style='text-decoration:underline wavy 2px'/></svg>", Number::textDecorationStyle));
	EXPECT_EQ("<svg><text style='text-decoration-style:wavy;text-decoration-thickness:2px'/></svg>",
			  after("<svg><text style='text-decoration:underline wavy 2px'/></svg>", Number::textDecoration));
	EXPECT_EQ("<svg><text text-decoration='underline' style=\"text-decoration-thickness:2px\"/></svg>",
			  after("<svg><text text-decoration='underline wavy 2px'/></svg>", Number::textDecorationStyle));
	EXPECT_EQ("<svg><g mask='url(#m)'/></svg>", after("<svg><g mask='url(#m) alpha'/></svg>", Number::maskMode));
	EXPECT_EQ("<svg><g style='mask-mode:alpha'/></svg>",
			  after("<svg><g style='mask:url(#m) alpha'/></svg>", Number::mask));
	EXPECT_EQ("<svg><g/></svg>", after("<svg><g style='mask-mode:alpha;mask:url(#m)'/></svg>", Number::mask));
}

TEST_F(SavingBesideSheets, WhatASheetSaysOfBlanksIsTakenBack)
{
	const auto without = [](const char* text)
	{
		const SVGDocumentRef document = Open(text);
		Must(
			Cast<SVGElementEditInterface>(First(document, "svg > g"))->RemoveAttribute(SVGImportAttribute::whiteSpace));
		return SavedAlike(document);
	};
	EXPECT_EQ("<svg><style>g{all:initial}</style><g style=\"white-space:unset\"/></svg>",
			  without("<svg><style>g{all:initial}</style><g/></svg>"));
	EXPECT_EQ("<svg><style>g{white-space:pre}</style><g style=\"white-space:unset\"><text>a</text></g></svg>",
			  without("<svg><style>g{white-space:pre}</style><g><text>a</text></g></svg>"));
}

TEST_F(SavingBesideSheets, CalculationsKeepWhatTheyCameTo)
{
	const SVGDocumentRef document =
		Open("<svg><g font-size='10'><rect style='stroke-width:calc(1em + 1px)'/></g></svg>");
	Must(Cast<SVGElementEditInterface>(First(document, "g"))->RemoveAttribute(SVGImportAttribute::fontSize));
	EXPECT_EQ("<svg><g><rect style='stroke-width:11px'/></g></svg>", SavedAlike(document));
	const SVGDocumentRef inViewport =
		Open("<svg><svg width='100' height='50'><rect width='calc(50% + 1px)'/></svg></svg>");
	Must(Cast<SVGSizeInterface>(First(inViewport, "svg svg"))->SetWidth({60.0, SVGLengthUnit::number}));
	EXPECT_EQ("<svg><svg width='60' height='50'><rect width='calc(50% + 1px)' style=\"width:51px\"/></svg></svg>",
			  SavedAlike(inViewport));
	const SVGDocumentRef bySheet = Open("<svg><style>rect{x:calc(1px + .5em)}</style><rect x='4'/></svg>");
	Must(Cast<SVGElementEditInterface>(First(bySheet, "rect"))->RemoveAttribute(SVGImportAttribute::x));
	EXPECT_EQ("<svg><style>rect{x:calc(1px + .5em)}</style><rect style=\"x:unset\"/></svg>", SavedAlike(bySheet));
	const SVGDocumentRef mixed =
		Open("<svg><g color='#204060'><rect fill='color-mix(in srgb, currentColor, black)'/></g></svg>");
	Must(Cast<SVGElementEditInterface>(First(mixed, "g"))->RemoveAttribute(SVGImportAttribute::color));
	EXPECT_EQ("<svg><g><rect fill='color-mix(in srgb, currentColor, black)' style=\"fill:#102030\"/></g></svg>",
			  SavedAlike(mixed));
}

TEST_F(SavingBesideSheets, EmptyElementsThatAreFilledKeepTheirLooks)
{
	const SVGDocumentRef document = Open("<svg><style>g:empty{fill:red}</style><g/><g><rect/></g></svg>");
	Add(document, "g");
	EXPECT_EQ("<svg><style>g:empty{fill:red}</style><g style=\"fill:red\"><rect/></g><g><rect/></g></svg>",
			  SavedAlike(document));
	Remove(document, "g + g > rect");
	EXPECT_EQ(
		"<svg><style>g:empty{fill:red}</style><g style=\"fill:red\"><rect/></g><g style=\"fill:unset\"></g></svg>",
		SavedAlike(document));
}

TEST_F(SavingBesideSheets, SelectorsSeeTheSourceAsTheImportSeesIt)
{
	ExpectAll({
		// What a sheet says that only the import reads goes, too.
		{"<style>rect{fill:red}<g/></style><rect/>", "svg > rect",
		 "fill=", "<style>rect{fill:red}<g/></style><rect style=\"fill:unset\"/>"},
		// Of two classes, the last; names and classes with references, prefixes, and sheets with and without characters
		// of their own.
		{"<style>.b{fill:red}</style><rect class='a' class='b'/>", "rect",
		 "fill=", "<style>.b{fill:red}</style><rect class='a' class='b' style=\"fill:unset\"/>"},
		{"<style>.a\\&amp;b{fill:red}</style><rect class='a&amp;b'/>", "rect", "fill=blue",
		 "<style>.a\\&amp;b{fill:red}</style><rect class='a&amp;b' style=\"fill:blue\"/>"},
		{"<style>#a\\&amp;b{fill:red}</style><rect id='a&#38;b'/>", "rect", "fill=blue",
		 "<style>#a\\&amp;b{fill:red}</style><rect id='a&#38;b' style=\"fill:blue\"/>"},
		{"<style>[data-n='&lt;']{fill:red}</style><g/><rect data-n='&lt;'/>", "rect", "fill=blue",
		 "<style>[data-n='&lt;']{fill:red}</style><g/><rect data-n='&lt;' style=\"fill:blue\"/>"},
		{"<style><![CDATA[g>rect{fill:red}]]></style><g><rect/></g>", "rect", "fill=blue",
		 "<style><![CDATA[g>rect{fill:red}]]></style><g><rect style=\"fill:blue\"/></g>"},
		{"<style>a:link{fill:red}</style><a xmlns:x='http://www.w3.org/1999/xlink' x:href='b'/>", "a", "fill=blue",
		 "<style>a:link{fill:red}</style><a xmlns:x='http://www.w3.org/1999/xlink' x:href='b' style=\"fill:blue\"/>"},
		{"<style>[*|href]{fill:red}</style><use xmlns:x='http://www.w3.org/1999/xlink' x:href='#b'/>", "use",
		 "fill=blue",
		 "<style>[*|href]{fill:red}</style><use xmlns:x='http://www.w3.org/1999/xlink' x:href='#b' "
		 "style=\"fill:blue\"/>"},
		{"<style>[*|href^='#c']{fill:red}</style><use xmlns:x='http://www.w3.org/1999/xlink' x:href='#b'/>", "use",
		 "fill=blue",
		 "<style>[*|href^='#c']{fill:red}</style><use xmlns:x='http://www.w3.org/1999/xlink' x:href='#b' "
		 "fill=\"blue\"/>"},
		{"<style>rect:nth-last-child(2){fill:red}</style><g> <rect/> <rect/> </g>", "rect", "fill=blue",
		 "<style>rect:nth-last-child(2){fill:red}</style><g> <rect style=\"fill:blue\"/> <rect/> </g>"},
		{"<style>rect:nth-last-child(2){fill:red}</style><g> <rect/> <rect/> </g>", "rect + rect", "fill=blue",
		 "<style>rect:nth-last-child(2){fill:red}</style><g> <rect/> <rect fill=\"blue\"/> </g>"},
		{"<style>:lang(de) rect{fill:red}</style><g lang='de'><rect/></g>", "rect", "fill=blue",
		 "<style>:lang(de) rect{fill:red}</style><g lang='de'><rect style=\"fill:blue\"/></g>"},
		{"<style>:lang(de) rect{fill:red}</style><g lang='de'><rect/></g>", "g", "lang=en",
		 "<style>:lang(de) rect{fill:red}</style><g lang='en'><rect style=\"fill:red\"/></g>"},
		{"<style>a:link rect{fill:red}</style><a href='b'><rect/></a>", "a",
		 "href=", "<style>a:link rect{fill:red}</style><a><rect style=\"fill:red\"/></a>"},
		{"<style>g:not(.a){fill:red}</style><g class='a'/>", "g",
		 "class=", "<style>g:not(.a){fill:red}</style><g style=\"fill:unset\"/>"},
		{"<style>:is(.a){fill:red}</style><g class='a'/>", "g", "class=b",
		 "<style>:is(.a){fill:red}</style><g class='b' style=\"fill:red\"/>"},
		// Sheets for other media, and of other languages, say nothing.
		{"<style media='print'>g{fill:red}</style><g/>", "g", "fill=blue",
		 "<style media='print'>g{fill:red}</style><g fill=\"blue\"/>"},
		{"<style type='text/x'>g{fill:red}</style><g/>", "g", "fill=blue",
		 "<style type='text/x'>g{fill:red}</style><g fill=\"blue\"/>"},
		{"<style media='SCREEN'>g{fill:red}</style><g/>", "g", "fill=blue",
		 "<style media='SCREEN'>g{fill:red}</style><g style=\"fill:blue\"/>"},
		// The later sheet counts, and what is refused does not; properties that are said of all elements, too.
		{"<style>g{fill:red!important}</style><style>g{fill:7!important}</style><g/>", "g", "fill=blue",
		 "<style>g{fill:red!important}</style><style>g{fill:7!important}</style><g style=\"fill:blue!important\"/>"},
		{"<style>*{all:unset}</style><g/>", "g", "fill=blue", "<style>*{all:unset}</style><g style=\"fill:blue\"/>"},
		{"<style>*{--a:red}g{fill:var(--a)}</style><g/>", "g", "fill=blue",
		 "<style>*{--a:red}g{fill:var(--a)}</style><g style=\"fill:blue\"/>"},
		{"<style>rect{rx:1px}</style><rect/><line/>", "rect", "rx=2px",
		 "<style>rect{rx:1px}</style><rect style=\"rx:2px\"/><line/>"},
		{"<g/>", "g", "fill=blue", "<g style=\"fill:blue!important\"/>", "g{fill:red!important}"},
		{"<g><rect opacity='inherit'/></g>", "g", "opacity=.5",
		 "<g opacity=\".5\"><rect style=\"opacity:unset\"/></g>"},
		{"<g><rect style='opacity:INHERIT'/></g>", "g", "opacity=.5",
		 "<g opacity=\".5\"><rect style='opacity:unset'/></g>"},
		{"<g opacity='.2'><rect/></g>", "g", "opacity=.5", "<g opacity='.5'><rect style=\"opacity:.2\"/></g>",
		 "rect{opacity:inherit}"},
	});
}

TEST_F(SavingBesideSheets, NewElementsSayWhatTheSheetsSayOtherwise)
{
	const auto adding = [](std::string_view sheet, std::string_view name, std::string_view value)
	{
		const std::string head = "<svg><style>" + std::string(sheet) + "</style>";
		const SVGDocumentRef document = Open(head + "<g/></svg>");
		Add(document, "g");
		Set(document, "g > rect", "id", "new");
		Set(document, "#new", "class", "c");
		if (!name.empty())
			Set(document, "#new", name, value);
		const std::string saved = SavedAlike(document);
		return saved.starts_with(head) ? saved.substr(head.size() + 3, saved.size() - head.size() - 13) : saved;
	};
	const std::string start = "<rect id=\"new\" class=\"c\"";
	EXPECT_EQ("<rect id=\"new\" fill=\"red\" class=\"c\"/>", adding(".c{fill:red}", "fill", "red"));
	EXPECT_EQ(start + " style=\"fill:unset\"/>", adding(".c{fill:red}", "", ""));
	EXPECT_EQ(start + " style=\"fill:unset\"/>", adding("#new{fill:red}", "", ""));
	EXPECT_EQ("<rect id=\"new\" fill=\"red\" class=\"c\"/>", adding("path,.d,#old{fill:blue}", "fill", "red"));
	// The last one counts, also when it says what the element says.
	EXPECT_EQ("<rect id=\"new\" fill=\"red\" class=\"c\"/>", adding("rect{fill:blue}.c{fill:red}", "fill", "red"));
	EXPECT_EQ(start + " style=\"fill:red!important\"/>",
			  adding("rect{fill:red}.c{fill:blue!important}", "fill", "red"));
	EXPECT_EQ("<rect id=\"new\" fill=\"red\" class=\"c\" style=\"stroke:unset\"/>",
			  adding("rect{stroke:red;stroke-width:7 7}", "fill", "red"));
	// What looks around, says something of others, or is calculated.
	EXPECT_EQ(start + " style=\"fill:unset\"/>", adding("g>rect{fill:red}", "", ""));
	EXPECT_EQ(start + " style=\"fill:unset\"/>", adding("[class]{fill:red}g{stroke:red}", "", ""));
	EXPECT_EQ(start + " style=\"fill:unset\"/>", adding("rect:not([id=old]){fill:red}", "", ""));
	EXPECT_EQ(start + " style=\"opacity:unset\"/>", adding("rect{opacity:inherit}g{opacity:.5}", "", ""));
	EXPECT_EQ(start + " style=\"opacity:unset\"/>", adding("rect{opacity:INHERIT}g{opacity:.5}", "", ""));
	EXPECT_EQ(start + " style=\"opacity:unset\"/>", adding("rect{opacity:inher\\69t}g{opacity:.5}", "", ""));
	EXPECT_EQ("<rect id=\"new\" class=\"c\" style=\"fill:red\"/>",
			  adding("rect{fill:red}.c{fill:unset}", "fill", "red"));
	EXPECT_EQ(start + "/>", adding("rect{fill:red}.c{fill:Unset}", "", ""));
	EXPECT_EQ(start + " style=\"marker-start:unset;marker-mid:unset;marker-end:unset\"/>",
			  adding("rect{marker:url(#m)}", "", ""));
	EXPECT_EQ(start + " style=\"fill:unset\"/>", adding("svg{--a:red}rect{fill:var(--a)}", "", ""));
	EXPECT_EQ("error: The saved file would not load as it is: <rect id=\"new\"> has another value of \"transform\".",
			  adding("rect{scale:2}", "", ""));
}

} // namespace
} // namespace orvan
