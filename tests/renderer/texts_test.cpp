// SPDX-License-Identifier: MIT
/// Where the characters of texts stand, and what they are painted with. The character is a block that fills its cell:
/// at a size of 20 it is 15 wide and reaches from 19 above the baseline to 5 below.
#include "support/drawn_picture.h"

#include <functional>

namespace orvan
{
namespace
{

class Texts : public RendererTest
{
protected:
	static DrawnPicture DrawCompletely(const std::string& elements)
	{
		return DrawnPicture(
			LoadCompletely(Document("<g font-family='DejaVu Sans' font-size='20'>" + elements + "</g>")));
	}

	/// The stretches of opaque pixels of one colour in a row, or a column: "000000 11-24, ff0000 61-74".
	static std::string Row(const DrawnPicture& picture, int y)
	{
		return Runs([&](int x) { return picture.At(x, y); });
	}

	static std::string Column(const DrawnPicture& picture, int x)
	{
		return Runs([&](int y) { return picture.At(x, y); });
	}

	/// The same of a picture with this content.
	static std::string RowOf(const std::string& content, int y)
	{
		return Row(DrawCompletely(content), y);
	}

	static std::string ColumnOf(const std::string& content, int x)
	{
		return Column(DrawCompletely(content), x);
	}

private:
	static std::string Runs(const std::function<std::string(int)>& at)
	{
		std::string runs;
		for (int i = 0, end = 0; i < 100; i = end)
		{
			for (end = i + 1; end < 100 && at(end) == at(i);)
				end++;
			if (at(i).size() == 6)
				runs += (runs.empty() ? "" : ", ") + at(i) + ' ' + std::to_string(i) + '-' + std::to_string(end - 1);
		}
		return runs;
	}
};

TEST_F(Texts, ListsGoOnInTheElementsWithinAndShiftsAddUp)
{
	const auto picture = DrawCompletely(
		"<text x='10 30 80' y='20' fill='#00f'>█<tspan fill='#f00' transform='translate(9)'>█</tspan>█</text>"
		"<text x='10' dx='0 5' y='50'>█<tspan x='40' dx='10'>█</tspan><tspan>█</tspan></text>"
		"<text x='10' y='80'>█<tspan dy='10'/>█<tspan dy='5' fill='#f00'>█</tspan></text>");
	EXPECT_EQ("0000ff 10-24, ff0000 30-44, 0000ff 80-94", Row(picture, 10));
	EXPECT_EQ("000000 10-24, 000000 50-64, 000000 66-79", Row(picture, 40));
	EXPECT_EQ("000000 10-39", Row(picture, 65));
	EXPECT_EQ("ff0000 41-55", Row(picture, 87));
}

TEST_F(Texts, RotationsHoldForAllThatFollowsAndMarksStayWithTheirLetters)
{
	EXPECT_EQ("000000 10-39", RowOf("<text x='10' y='50' rotate='0 180'>███</text>", 60));
	EXPECT_EQ("000000 10-24, 000000 80-94", RowOf("<text x='10 50 80' y='50'>█&#x301;█</text>", 34));
	// Letters that are spaced do not join.
	EXPECT_EQ("000000 15-16, 000000 48-50",
			  RowOf("<text x='10' y='50' font-size='40' letter-spacing='20'>fi</text>", 40));
}

TEST_F(Texts, SpacingsSizesAndBlanksAddUp)
{
	// A blank is 6.36 wide at this size. Blocks are 15.38 wide, and reach a fifth of a pixel farther.
	const struct
	{
		const char* text;
		const char* row;
	} cases[] = {
		{"<text x='10' y='50' letter-spacing='10'>██</text>", "000000 10-24, 000000 36-49"},
		{"<text x='10' y='50' letter-spacing='.5em'>██</text>", "000000 10-24, 000000 36-49"},
		{"<text x='10' y='50' letter-spacing='50%'>██</text>", "000000 10-24, 000000 36-49"},
		{"<path shape-rendering='crispEdges' fill-rule='evenodd' d='M0 0h1v1'/><text x='10' y='50' "
		 "letter-spacing='-5'>██</text>",
		 "000000 10-34"},
		{"<text x='10' y='50' word-spacing='10'>█ █</text>", "000000 10-24, 000000 42-56"},
		{"<text x='10' y='50' word-spacing='10'>█<tspan letter-spacing='3'> </tspan>█</text>",
		 "000000 10-24, 000000 45-59"},
		{"<text x='10' y='50'>█<tspan font-size='40'>█</tspan></text>", "000000 10-55"},
		{"<text x='10' y='50'>█<tspan dx='1' font-size='50%'>█</tspan>█</text>", "000000 10-24, 000000 27-48"},
		{"<text x='10' y='50'>█<tspan dx='.5em' dy='1ex'>█</tspan></text>", "000000 10-24, 000000 36-49"},
		{"<text x='10' y='50'> █  █ </text>", "000000 10-24, 000000 32-46"},
		{"<text x='10' y='50' xml:space='preserve'> █  █ </text>", "000000 17-30, 000000 45-59"},
		{"<text x='10' y='50' style='white-space:pre'> █  █ </text>", "000000 17-30, 000000 45-59"},
		{"<text x='10' y='50'>█\n\t█</text>", "000000 10-24, 000000 32-46"},
		{"<text x='10%' y='50%' dx='10%'>█</text>", "000000 20-34"},
		{"<text x='10' y='50' transform='translate(10) scale(2 1)'>█</text>", "000000 30-60"},
		{"<text x='10' y='50' display='none'>█</text>", ""},
		{"<text x='10' y='50'><tspan display='none'>█<tspan>█</tspan></tspan><a systemLanguage='de'>█</a></text>", ""},
		{"<text x='10' y='50'><tspan display='none'>█</tspan> █ <tspan display='none'>█</tspan><tspan> "
		 "█</tspan></text>",
		 "000000 10-24, 000000 32-46"},
		{"<text x='10' y='50' xml:space='preserve'><tspan display='none'>█</tspan> █</text>", "000000 17-30"},
		{"<text x='10' y='50' font-size='0'>█</text>", ""},
	};
	for (const auto& [text, row] : cases)
		EXPECT_EQ(row, RowOf(text, 44)) << text;
}

TEST_F(Texts, GoBackwardsWhereTheyAreToldTo)
{
	const std::string backwards = "<text x='90' y='50' direction='rtl' unicode-bidi='bidi-override' ";
	EXPECT_EQ("ff0000 42-72, 000000 75-89",
			  RowOf(backwards + ">█<tspan dx='-2' font-size='40' fill='#f00'>█</tspan></text>", 40));
	// Space between letters stands right of them.
	EXPECT_EQ("000000 40-53, 000000 65-79", RowOf(backwards + "letter-spacing='10'>██</text>", 40));
	// A chunk is ordered by itself.
	EXPECT_EQ("000000 58-79", RowOf("<text x='10 40' y='50' font-size='30'>אב█</text>", 55));
}

TEST_F(Texts, BlanksBetweenElementsCountAndThoseAtTheEndDoNot)
{
	EXPECT_EQ("000000 10-24, ff0000 32-46",
			  RowOf("<text x='10' y='50'> <tspan>█</tspan> <tspan fill='#f00'>█</tspan> <tspan/></text>", 40));
}

TEST_F(Texts, AnchorsCountForEachChunkAndBothDirections)
{
	EXPECT_EQ("000000 34-48, ff0000 51-65",
			  RowOf("<text x='50' y='50' text-anchor='middle'>█<tspan dx='1' fill='#f00'>█</tspan></text>", 40));
	EXPECT_EQ("000000 12-26, 000000 50-64", RowOf("<text x='50' y='50' word-spacing='-60'>█ █</text>", 40));
	EXPECT_EQ("000000 35-49, 000000 75-89", RowOf("<text x='50 90' y='50' text-anchor='end'>██</text>", 40));
	EXPECT_EQ("000000 35-49", RowOf("<text x='50' y='50' direction='rtl'>█א</text>", 40));
	EXPECT_EQ("000000 25-39, 000000 50-64",
			  RowOf("<text x='50' y='50' text-anchor='middle' letter-spacing='10'>██</text>", 40));
}

TEST_F(Texts, LengthsThatAreAskedForSpaceOrStretchAndMoveWhatFollows)
{
	EXPECT_EQ("000000 10-24, 000000 45-59, ff0000 80-93",
			  RowOf("<text x='10' y='50'><tspan textLength='50'>██</tspan><tspan fill='#f00'>█</tspan></text>", 40));
	EXPECT_EQ("000000 10-69",
			  RowOf("<text x='10' y='50' textLength='60' lengthAdjust='spacingAndGlyphs'>██</text>", 40));
	EXPECT_EQ("000000 10-24, ff0000 50-69",
			  RowOf("<text x='10' y='50' textLength='60'>█<tspan textLength='20' fill='#f00'>██</tspan></text>", 40));
}

TEST_F(Texts, CharactersBesideTheirPathAreHiddenAndTheTextGoesOnAtItsEnd)
{
	const std::string path = "<path id='p' d='M20 10v50' fill='none'/>";
	const auto along = DrawCompletely(path + "<text><textPath xlink:href='#p' startOffset='10'>████</textPath></text>");
	EXPECT_EQ("000000 20-65", Column(along, 30));
	EXPECT_EQ("000000 16-60",
			  ColumnOf(path + "<text><textPath xlink:href='#p' startOffset='-10'>████</textPath></text>", 30));
	// A path begins a chunk of its own, and what follows it does not. Halves are so however the path counts its length.
	EXPECT_EQ("000000 20-49",
			  ColumnOf("<path id='p' pathLength='9' d='M20 10v50' fill='none'/><text text-anchor='middle'>"
					   "█<textPath xlink:href='#p' startOffset='50%'>██</textPath></text>",
					   30));
	EXPECT_EQ("ff0000 20-34",
			  RowOf(path + "<text x='60' y='90' text-anchor='end'>█<textPath xlink:href='#p'>█</textPath>"
						   "<tspan fill='#f00'>█</tspan></text>",
					50));
	// What lies right of a vertical line is above one that runs to the right.
	const auto across = [](const std::string& y, const std::string& dx)
	{
		return ColumnOf("<path id='p' d='M10 " + y + "h80' fill='none'/><text style='writing-mode:vertical-rl' dx='" +
							dx + "'><textPath xlink:href='#p'>█</textPath></text>",
						15);
	};
	EXPECT_EQ(across("45", "0"), across("50", "5"));
	const auto behind = DrawCompletely(
		path + "<text x='60' y='90'>█<textPath xlink:href='#p'>█</textPath><tspan fill='#f00'>█</tspan></text>");
	EXPECT_EQ("ff0000 20-34", Row(behind, 50));
	EXPECT_EQ("000000 60-74", Row(behind, 80));
	EXPECT_EQ("000000 10-24, ff0000 42-64", Column(behind, 30));
	const auto turned =
		DrawCompletely("<path id='p' d='M20 60h60' fill='none'/><text x='5' y='30'>"
					   "<textPath xlink:href='#p' rotate='180'>█<tspan rotate='180'>█</tspan></textPath></text>");
	EXPECT_EQ("000000 25-39", Row(turned, 50));
	EXPECT_EQ("000000 41-54", Row(turned, 70));
	// Other shapes are paths as well, up to where they close.
	EXPECT_EQ("000000 17-39", RowOf("<rect id='r' x='35' y='50' width='40' height='40' fill='none'/><text><textPath "
									"xlink:href='#r' startOffset='130'>█</textPath></text>",
									72));
	EXPECT_EQ("000000 35-49, 000000 60-74",
			  RowOf("<rect id='r' x='35' y='50' width='40' height='40' fill='none'/><text><textPath "
					"xlink:href='#r'>█<tspan x='25'>█</tspan></textPath></text>",
					40));
	// The other side of a path runs back; a path that is given in place comes first.
	EXPECT_EQ("000000 40-54", ColumnOf(path + "<text><textPath side='right' path='M10 70v-60' startOffset='50%' "
											  "xlink:href='#p'>█</textPath></text>",
									   20));
	// Paths stand in texts, and in links in them.
	EXPECT_EQ("000000 30-44", ColumnOf(path + "<text><tspan><textPath xlink:href='#p'>█</textPath></tspan><a><textPath "
											  "xlink:href='#p' startOffset='20'>█</textPath></a></text>",
									   30));
	// What leads nowhere is left out with its characters.
	EXPECT_EQ("000000 10-24", RowOf("<text x='10' y='50'><textPath xlink:href='#q'>█</textPath>█</text>", 40));
}

TEST_F(Texts, TakeTheCharactersOfOthersByReference)
{
	const auto picture = DrawCompletely(
		"<defs><text id='t'> ██ </text><g id='g'><text>█<tspan>█</tspan></text></g></defs>"
		"<text x='10' y='20'>█ <tref xlink:href='#t' fill='#f00' dx='5'>x<tspan>█</tspan></tref></text>"
		"<text y='50'><tref href='#g' x='10 40'/>█</text><text x='10' y='80'>█<tref href='#none'/>█</text>");
	EXPECT_EQ("000000 10-24, ff0000 37-66", Row(picture, 10));
	EXPECT_EQ("000000 10-24, 000000 40-54, 000000 56-69", Row(picture, 40));
	EXPECT_EQ("000000 10-39", Row(picture, 70));
}

TEST_F(Texts, EachElementHasItsPaintsAndTheBoxIsThatOfTheWholeText)
{
	const std::string gradient = "<linearGradient id='g'><stop offset='.5' stop-color='#f00'/><stop offset='.5' "
								 "stop-color='#00f'/></linearGradient>";
	EXPECT_EQ(
		"000000 10-24, ff0000 26-40, 0000ff 41-55, 000000 57-71",
		RowOf(gradient + "<text x='10' y='50'>█<tspan fill='url(#g)'>██</tspan><tspan dx='1'>█</tspan></text>", 40));
	EXPECT_EQ("000000 26-39, ff0000 56-70",
			  RowOf("<text x='10' y='50' visibility='hidden'>█<tspan visibility='visible'>█</tspan><tspan "
					"display='none'>█</tspan>█<a fill='#f00' visibility='visible'>█</a></text>",
					40));
	// Effects on a part of a text leave the others alone.
	const std::string part =
		"<clipPath id='c'><rect width='33' height='99'/></clipPath><mask id='m' maskUnits='userSpaceOnUse' "
		"width='99' height='99'><rect width='33' height='99' fill='#fff'/></mask><text x='10' y='50'>█<tspan "
		"fill='#f00' ";
	EXPECT_EQ("000000 10-24, 00ffff 26-39",
			  Row(DrawCompletely(part + "style='filter:invert(1)'>█</tspan></text>"), 40));
	for (const char* cut : {"clip-path='url(#c)'", "mask='url(#m)'", "style='clip-path:inset(0 67px 0 0) view-box'"})
		EXPECT_EQ("000000 10-24, ff0000 26-32", RowOf(part + cut + ">█</tspan></text>", 40)) << cut;
	const auto transparent = DrawCompletely("<text x='10' y='50' opacity='.5'>█<tspan opacity='.5'>█</tspan></text>");
	EXPECT_EQ("00000080", transparent.At(15, 40));
	EXPECT_EQ("00000040", transparent.At(30, 40));
	// A stroke that comes first is covered by the fill up to the edge, at 10.
	const std::string stroked = "<text x='10' y='50' fill='#f00' stroke='#00f' stroke-width='8' ";
	EXPECT_EQ("0000ff", DrawCompletely(stroked + ">█</text>").At(11, 40));
	for (const char* order : {"stroke", "stroke markers", "markers stroke"})
	{
		const auto picture = DrawCompletely(stroked + "paint-order='" + order + "'>█</text>");
		EXPECT_EQ("ff0000", picture.At(11, 40)) << order;
		EXPECT_EQ("0000ff", picture.At(7, 40)) << order;
	}
	// Decorations have the paints of those who ask for them.
	const auto decorated = DrawCompletely(
		"<g text-decoration='underline' fill='#00f'><text x='10' y='50' font-size='40' fill='#f00'>nn</text></g>");
	EXPECT_EQ("0000ff 52-55", Column(decorated, 36));
}

TEST_F(Texts, LettersChangeAsStylesWant)
{
	const auto draw = [](const std::string& text)
	{
		const DrawnPicture picture = DrawCompletely("<text x='5' y='50' " + text + "</text>");
		std::string rows;
		for (int y = 0; y < 100; y++)
			rows += Row(picture, y) + '\n';
		return rows;
	};
	// Small capitals that the font lacks have seven tenths of its size, and an x of this font is 0.546875 high.
	const struct
	{
		const char* changed;
		const char* plain;
	} cases[] = {
		{"style='text-transform:uppercase'>aßé<tspan>ab</tspan>", ">ASSÉ<tspan>AB</tspan>"},
		{"style='text-transform:lowercase'>AÉ<tspan style='text-transform:none'>A</tspan>", ">aé<tspan>A</tspan>"},
		{"style='text-transform:capitalize'>it's éa-b <tspan>c</tspan>d", ">It's Éa-B <tspan>C</tspan>d"},
		{"font-weight='100'><tspan font-weight='bolder'>n</tspan>", "font-weight='400'>n"},
		{"font-weight='800'><tspan font-weight='lighter'>n</tspan>", "font-weight='700'>n"},
		{"style='font-variant:all-small-caps'>Ab1", "><tspan font-size='70%'>AB1</tspan>"},
		{"style='font-variant-caps:petite-caps'>Ab", ">A<tspan font-size='70%'>B</tspan>"},
		{"style='font-variant-caps:unicase'>Ab", "><tspan font-size='70%'>A</tspan>b"},
		{"style='font-variant-caps:titling-caps'>Ab", ">Ab"},
		{"style='font-size-adjust:1.09375'>xA<tspan style='font-size-adjust:none'>b</tspan>",
		 "font-size='40'>xA<tspan font-size='20'>b</tspan>"},
	};
	for (const auto& [changed, plain] : cases)
		EXPECT_EQ(draw(plain), draw(changed)) << changed;
}

TEST_F(Texts, LinesLookAsTheElementWantsThatAsksForThem)
{
	const auto draw = [](const std::string& line)
	{
		return DrawCompletely("<g style='text-underline-offset:6px;text-decoration:underline 20% " + line +
							  "'><text x='10' y='50'>███</text></g>");
	};
	EXPECT_EQ("000000 32-54, 000000 56-59", Column(draw("solid"), 20));
	EXPECT_EQ("000000 32-54, 000000 56-59, 000000 61-64", Column(draw("double"), 20));
	EXPECT_EQ("000000 10-17, 000000 23-29, 000000 36-42, 000000 49-55", Row(draw("dashed"), 57));
	// Dots are as far apart as they are wide, as nearly as the line allows.
	const auto dotted = draw("dotted");
	EXPECT_EQ("000000 11-12, 000000 19-21, 000000 28-29, 000000 36-38, 000000 44-46, 000000 53-54", Row(dotted, 57));
	EXPECT_EQ("00000049", dotted.At(10, 56));
	// Waves swing by a quarter of what they are drawn with, at first downwards.
	const auto wavy = draw("wavy");
	EXPECT_EQ("000000 32-54, 000000 63-65", Column(wavy, 14));
	EXPECT_EQ("000000 32-54, 000000 56-58", Column(wavy, 23));
	// The shorthand says all of it.
	const std::string text = "<text x='10' y='50' style='text-decoration-thickness:9px;text-decoration-style:wavy;";
	EXPECT_EQ(Column(DrawCompletely("<text x='10' y='50' text-decoration='underline'>nn</text>"), 16),
			  Column(DrawCompletely(text + "text-decoration:underline'>nn</text>"), 16));
}

TEST_F(Texts, BaselinesMoveLettersUpAndDown)
{
	for (const auto& [shift, column] :
		 {std::pair{"10", "000000 22-44"}, {"super", "000000 22-44"}, {"sub", "000000 35-56"}})
		EXPECT_EQ(
			column,
			ColumnOf("<text x='10' y='50'><tspan baseline-shift='" + std::string(shift) + "'>█</tspan></text>", 15))
			<< shift;
	// Neither is a whole text moved, nor does a part of it run elsewhere.
	EXPECT_EQ("000000 32-54",
			  ColumnOf("<text x='10' y='50' baseline-shift='10'><tspan writing-mode='tb'>█</tspan></text>", 15));
	EXPECT_EQ("000000 50-72", ColumnOf("<text x='10' y='50' dominant-baseline='text-before-edge'>█</text>", 15));
	for (const char* kept : {"auto", "no-change", "reset-size"})
		EXPECT_EQ("000000 50-72",
				  ColumnOf(std::string("<text x='10' y='50' dominant-baseline='text-before-edge'><tspan "
									   "dominant-baseline='") +
							   kept + "'>█</tspan></text>",
						   15))
			<< kept;
	EXPECT_EQ("000000 19-40", ColumnOf("<text x='10' y='50'><tspan baseline-shift='10'><tspan baseline-shift='50%' "
									   "alignment-baseline='central'>█</tspan></tspan></text>",
									   15));
	EXPECT_EQ("000000 10-24", ColumnOf("<text x='50' y='10' writing-mode='tb'>█</text>", 50));
	EXPECT_EQ("000000 39-60", RowOf("<text x='50' y='10' writing-mode='tb'>█</text>", 20));
	// Lines along it stand at the edges of the font's letters, which are higher than these.
	for (const auto& [line, x] : {std::pair{"overline", 61}, std::pair{"underline", 38}})
	{
		const auto picture = DrawCompletely("<text x='50' y='10' writing-mode='tb' text-decoration='" +
											std::string(line) + "'>nnn</text>");
		EXPECT_NE("none", picture.At(x, 20)) << line;
		EXPECT_EQ("none", picture.At(99 - x, 20)) << line;
	}
	// Upright they are as high as their line, and lie around the middle of it.
	const auto upright = DrawCompletely("<text x='50' y='10' style='writing-mode:vertical-rl;text-orientation:upright'>"
										"█<tspan dx='20'>█</tspan></text>");
	EXPECT_EQ("000000 43-56", Row(upright, 20));
	EXPECT_EQ("000000 63-76", Row(upright, 40));
	EXPECT_EQ("000000 10-32", Column(upright, 50));
	EXPECT_EQ("000000 34-55", Column(upright, 70));
}

TEST_F(Texts, ClipMaskAndMeasureAsTheyAreDrawn)
{
	EXPECT_EQ("000000 10-24, 000000 46-59",
			  RowOf("<clipPath id='c'><text x='10' y='50'>█<tspan dx='20'>█</tspan></text></clipPath><rect "
					"width='100' height='100' clip-path='url(#c)'/>",
					40));
	EXPECT_EQ("0000ff 52-55",
			  ColumnOf("<clipPath id='c'><text x='10' y='50' font-size='40' text-decoration='underline'>nn</text>"
					   "</clipPath><rect width='100' height='100' fill='#00f' clip-path='url(#c)'/>",
					   36));
	EXPECT_EQ("000000 10-24",
			  RowOf("<clipPath id='c' clipPathUnits='objectBoundingBox'><rect width='.5' height='1'/></clipPath><g "
					"clip-path='url(#c)'><text x='10' y='50'>█<tspan x='50'>█</tspan></text></g>",
					40));
	EXPECT_EQ("000000 10-24, 000000 36-69",
			  RowOf("<g opacity='.999' style='isolation:isolate'><text x='10' y='50'>█<tspan dx='20' "
					"stroke='#000' stroke-width='20'>█</tspan></text></g>",
					40));
}

TEST_F(Texts, OfAPlainTreeAreOneLine)
{
	EXPECT_EQ("000000 10-24, 000000 32-46",
			  Row(Draw("<text x='10' y='50' font-family='DejaVu Sans' font-size='20'>\n █ \t █\n</text>"), 40));
	const std::string bold = "<text x='10' y='50' font-family='DejaVu Sans' font-size='20' font-weight='bold'>n</text>";
	EXPECT_EQ(RowOf(bold, 45), Row(Draw(bold), 45));
}

TEST_F(Texts, StayInThePictureWhateverTheirNumbersSay)
{
	for (const char* attributes : {"x='1e308 -1e308' dx='1e308 1e308'", "rotate='1e300' letter-spacing='1e308'",
								   "textLength='1e308' lengthAdjust='spacingAndGlyphs'", "font-size='1e-300'",
								   "dx='1e400' baseline-shift='1e308'", "word-spacing='-1e308' textLength='1e-300'"})
	{
		SCOPED_TRACE(attributes);
		const auto picture =
			DrawCompletely("<text y='50' " + std::string(attributes) + ">█ ██</text><path d='M0 0h10v10h-10z'/>");
		EXPECT_EQ("000000", picture.At(5, 5));
	}
}

} // namespace
} // namespace orvan
