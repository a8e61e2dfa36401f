// SPDX-License-Identifier: MIT
/// Documents that ask for too much.
#include "support/drawn_picture.h"

#include <limits>

namespace orvan
{
namespace
{

class Limits : public RendererTest
{
protected:
	/// Draws elements together with a red square at the lower right, which must be there whatever happens to the rest.
	static std::vector<std::string> WarningsOf(const std::string& elements)
	{
		return WarningsOf(Load(Document(elements + kSquare)));
	}

	static std::vector<std::string> WarningsOf(const SVGDocumentRef& document)
	{
		const CollectedDiagnostics diagnostics;
		EXPECT_EQ("ff0000", DrawnPicture(document, {.deadline = kForever}).At(95, 95));
		return diagnostics.lines;
	}

	/// Bounds other than time are looked at, on however slow a machine.
	static constexpr double kForever = std::numeric_limits<double>::infinity();

	static std::string Repeat(std::string_view text, int count)
	{
		std::string result;
		for (int i = 0; i < count; i++)
			result += text;
		return result;
	}

	static constexpr const char* kSquare = "<rect x='90' y='90' width='10' height='10' fill='#f00'/>";
};

using Lines = std::vector<std::string>;

TEST_F(Limits, ReferencesInCirclesAreReportedOnce)
{
	const Lines circle = {"References that lead in a circle are left out."};
	EXPECT_EQ(circle, WarningsOf("<use id='a' xlink:href='#b'/><g id='b'><use xlink:href='#a'/></g>"));
	EXPECT_EQ(circle, WarningsOf("<g id='a'><use xlink:href='#a'/><g><use xlink:href='#a'/></g></g>"));
	EXPECT_EQ(circle, WarningsOf("<mask id='m'><rect width='9' height='9' mask='url(#m)'/></mask>"
								 "<rect width='9' height='9' mask='url(#m)'/>"));
	EXPECT_EQ(circle, WarningsOf("<clipPath id='a' clip-path='url(#b)'><rect width='9' height='9'/></clipPath>"
								 "<clipPath id='b'><text clip-path='url(#a)'>x</text></clipPath>"
								 "<rect width='9' height='9' clip-path='url(#a)'/>"));
}

TEST_F(Limits, DefinitionsInCirclesAndThoseThatMultiplyEndAsWell)
{
	const auto warningsOf = [](const std::string& elements)
	{
		return WarningsOf(LoadCompletely(Document(elements + kSquare)));
	};
	const Lines circle = {"References that lead in a circle are left out."};
	const std::string tile = " width='9' height='9' patternUnits='userSpaceOnUse'>";
	EXPECT_EQ(circle, warningsOf("<linearGradient id='a' href='#b'/><linearGradient id='b' href='#a'/>"
								 "<rect width='50' height='50' fill='url(#a)'/>"));
	EXPECT_EQ(circle, warningsOf("<pattern id='a'" + tile +
								 "<rect width='5' height='5' fill='url(#b)'/></pattern>"
								 "<pattern id='b' href='#a'/><rect width='50' height='50' fill='url(#b)'/>"));
	EXPECT_EQ(circle, warningsOf("<pattern id='a'" + tile +
								 "<rect width='5' height='5' fill='url(#a)'/></pattern>"
								 "<rect width='50' height='50' fill='url(#a)'/>"));
	EXPECT_EQ(circle, warningsOf("<marker id='a'><path d='M0 0H9' marker-end='url(#a)'/></marker>"
								 "<path d='M0 0H9' marker-end='url(#a)'/>"));
	std::string patterns = "<pattern id='p0'" + tile + "<rect width='9' height='9'/></pattern>";
	std::string markers = "<marker id='m0'><rect width='9' height='9'/></marker>";
	for (int level = 1; level <= 10; level++)
	{
		const std::string below = std::to_string(level - 1);
		const std::string number = std::to_string(level);
		patterns += "<pattern id='p" + number + "'" + tile +
					Repeat("<rect width='9' height='9' fill='url(#p" + below + ")'/>", 10) + "</pattern>";
		markers += "<marker id='m" + number + "'>" +
				   Repeat("<path d='M0 0L9 9L5 5L9 0' marker-mid='url(#m" + below + ")'/>", 5) + "</marker>";
	}
	const Lines work = {
		"Elements drawn by reference and in layers cost more than a picture may; the rest is left out."};
	EXPECT_EQ(work, warningsOf(patterns + "<rect width='50' height='50' fill='url(#p10)'/>"));
	EXPECT_EQ(work, warningsOf(markers + "<path d='M0 0L9 9L5 5L9 0' marker-mid='url(#m10)'/>"));
}

TEST_F(Limits, ReferencesThatMultiplyEnd)
{
	for (const std::string attribute : {"", " opacity='.9'", " mask='url(#m)'", " clip-path='url(#c)'"})
	{
		std::string levels = "<mask id='m'><rect width='99' height='99' fill='#fff'/></mask><clipPath id='c'>"
							 "<circle r='50'/><circle r='20'/></clipPath><defs><rect id='l0' width='99' height='9'/>";
		for (int level = 1; level <= 10; level++)
		{
			const std::string below = std::to_string(level - 1);
			levels += "<g id='l" + std::to_string(level) + "'>" +
					  Repeat("<use xlink:href='#l" + below + "'" + attribute + "/>", 10) + "</g>";
		}
		EXPECT_EQ(
			Lines{"Elements drawn by reference and in layers cost more than a picture may; the rest is left out."},
			WarningsOf(levels + "</defs><use xlink:href='#l10'/>"))
			<< attribute;
	}
}

TEST_F(Limits, NestingIsDrawnAsDeepAsFilesMayHaveIt)
{
	constexpr int kDepth = 1000;
	for (const std::string tag : {"<g>", "<svg>", "<g clip-path='url(#c)'>", "<g opacity='.999'>"})
	{
		const SVGDocumentRef document = Load(Document(
			"<clipPath id='c'><circle r='80'/></clipPath>" + Repeat(tag, kDepth) +
			"<rect width='50' height='50' fill='#00f'/>" + Repeat(tag == "<svg>" ? "</svg>" : "</g>", kDepth)));
		const CollectedDiagnostics diagnostics;
		const DrawnPicture picture(document, {.deadline = kForever});
		EXPECT_EQ(Lines(), diagnostics.lines) << tag;
		EXPECT_EQ("0000ff", picture.At(25, 25).substr(0, 6)) << tag;
	}
}

TEST_F(Limits, NestingBeyondThatIsLeftOut)
{
	// Each of the uses leads into another deep nest.
	std::string nests;
	for (int i = 0; i < 4; i++)
	{
		nests += "<g id='n" + std::to_string(i) + "'>" + Repeat("<g>", 900) + "<use xlink:href='#n" +
				 std::to_string(i + 1) + "'/>" + Repeat("</g>", 900) + "</g>";
	}
	EXPECT_EQ(Lines{"Elements more than 1280 levels deep are left out."},
			  WarningsOf("<defs>" + nests + "</defs><use xlink:href='#n0'/>"));
}

TEST_F(Limits, TextsDashesAndLayersAreBounded)
{
	EXPECT_EQ(Lines{"Texts are drawn up to 32768 bytes; the rest is left out."},
			  WarningsOf("<text y='20'>" + Repeat("word ", 10000) + "</text>"));
	EXPECT_EQ(Lines{"Texts larger than 30000 pixels are left out."},
			  WarningsOf("<text y='20' font-size='1e30'>A</text>"));
	const Lines dashes = {"Lines with too many dashes are drawn solid."};
	EXPECT_EQ(dashes, WarningsOf("<path d='M-1e7 5H1e7' stroke='#000' stroke-dasharray='.1'/>"));
	// It is the length that counts, not how far the line leads.
	EXPECT_EQ(dashes, WarningsOf("<path d='M0 5" + Repeat("H90H0", 200) + "' stroke='#000' stroke-dasharray='.1'/>"));
	EXPECT_EQ(Lines(), WarningsOf("<path d='M0 5H50' stroke='#000' stroke-dasharray='5 -2'/>"));
	const SVGDocumentRef large = Load("<svg width='3000' height='3000'>" + Repeat("<g opacity='.9'>", 50) +
									  "<rect width='3000' height='3000'/>" + Repeat("</g>", 50) + "</svg>");
	const CollectedDiagnostics diagnostics;
	EXPECT_EQ("none", DrawnPicture(large).At(5, 5));
	EXPECT_EQ(Lines{"Elements that need more memory for layers than a picture may use are left out."},
			  diagnostics.lines);
}

TEST_F(Limits, WhatATimeOrAMemoryLimitLeavesNoRoomForIsLeftOut)
{
	const std::string square = "<rect width='100' height='100' fill='#00f'/>";
	const std::string masks =
		"<mask id='m' x='0' y='0' width='1' height='1'><rect width='99' height='99' fill='#fff'/></mask>" +
		Repeat("<rect width='100' height='100' mask='url(#m)'/>", 30);
	const std::string uses =
		"<rect id='r' width='9' height='9' stroke='#00f'/>" + Repeat("<use xlink:href='#r'/>", 1000);
	const std::string tiles = "<pattern id='p' width='1' height='1'><path d='M0 0h9v9'/></pattern>" +
							  Repeat("<rect width='100' height='100' fill='url(#p)'/>", 9);
	const std::string wide = "<path stroke='#00f' stroke-width='1e6' d='M0 0" + Repeat("q5 9 3 2", 2000) + "'/>";
	struct Case
	{
		std::string elements;
		SVGRenderOptions options;
		Lines warnings;
	};
	const std::string late = "Drawing takes longer than a picture may; the rest is left out.";
	const std::string large = "Elements that need more memory for layers than a picture may use are left out.";
	const std::string intricate = "Outlines that would take longer to draw than a picture may are left out.";
	const Case cases[] = {
		{square, {.deadline = 1e-9}, {late}},
		{square, {.memoryLimit = 100 * 100 * 4.0}, {}},
		{"<g opacity='.5'>" + square + "<circle r='9'/></g>", {.memoryLimit = 100 * 100 * 5.0}, {large}},
		// A page keeps the pixels of its masks, so that their number counts, and their writing takes time.
		{masks, {.output = SVGRenderOutput::page, .memoryLimit = 1e6}, {large}},
		{masks, {.output = SVGRenderOutput::page, .memoryLimit = 1e7}, {}},
		{masks, {.output = SVGRenderOutput::page, .deadline = .05}, {late}},
		// Likewise for what is drawn by reference, and for tiles.
		{uses, {.output = SVGRenderOutput::page, .memoryLimit = 1e6}, {large}},
		{uses, {.output = SVGRenderOutput::page, .memoryLimit = 1e7}, {}},
		{tiles, {.output = SVGRenderOutput::page, .memoryLimit = 1e6}, {large}},
		{tiles, {.output = SVGRenderOutput::page, .memoryLimit = 1e8}, {}},
		// There a wide pen is an outline with many points.
		{wide, {.output = SVGRenderOutput::page}, {intricate}},
		{wide, {}, {}},
		// Outlines that clip are outlines, too.
		{"<clipPath id='c'><path d='M0 0" + Repeat("V1e5H1V0H2", 1000) + "'/></clipPath><g clip-path='url(#c)'>" +
			 square + "</g>",
		 {.deadline = 20.0},
		 {intricate}},
		{"<g style='clip-path:polygon(0 0" + Repeat(",0 1e5px,1px 0", 1000) + ")'>" + square + "</g>",
		 {.deadline = 20.0},
		 {intricate}},
		// Many families of fonts, all of which the font library would look for.
		{"<text font-family='" + Repeat("n,", 100000) + "'>a</text>" + square, {.deadline = 60.0}, {}},
		// A million lines over the whole height of a large picture, which the library would not be ready with.
		{"<path d='M0 0" + Repeat("V1e5H1V0H2", 250000) + "'/>", {.scale = 20.0, .deadline = 60.0}, {intricate}},
	};
	for (const Case& limited : cases)
	{
		const SVGDocumentRef document = LoadCompletely(Document(limited.elements));
		const SVGContextRef context = Must(CreateObject<SVGContextInterface>(kSVGCairoContextClass));
		const CollectedDiagnostics diagnostics;
		Must(Cast<SVGRenderTargetInterface>(context)->Begin(document, limited.options));
		Must(DrawSVGElement(context, document->GetRootElement()));
		EXPECT_EQ(limited.warnings, diagnostics.lines) << limited.elements.substr(0, 40);
	}
}

} // namespace
} // namespace orvan
