// SPDX-License-Identifier: MIT
/// What the comparison with another library's pictures cannot show, because that library draws it differently.
#include "support/drawn_picture.h"

#include <limits>

namespace orvan
{
namespace
{

using Elements = RendererTest;

TEST_F(Elements, SymbolsAreCutOffAtTheirViewport)
{
	const auto picture = Draw("<symbol id='s'><circle r='30' fill='#f00'/></symbol>"
							  "<use xlink:href='#s' x='50' y='50' width='20' height='20'/>");
	EXPECT_EQ("ff0000", picture.At(55, 55));
	EXPECT_EQ("none", picture.At(45, 45));
	EXPECT_EQ("none", picture.At(72, 55));
}

TEST_F(Elements, TheSizeOfAUseReplacesThatOfTheSvgElementThatItStandsFor)
{
	const auto picture = Draw("<defs><svg id='s' width='90' height='90' viewBox='0 0 10 10'>"
							  "<rect width='10' height='10' fill='#0f0'/></svg></defs>"
							  "<use xlink:href='#s' width='40' height='20'/>");
	// The view box is fitted into the middle of the new viewport.
	EXPECT_EQ("none", picture.At(5, 10));
	EXPECT_EQ("00ff00", picture.At(20, 10));
	EXPECT_EQ("none", picture.At(20, 25));
}

TEST_F(Elements, ClipPathsOfClipPathsAndOfTheirShapesIntersect)
{
	const auto picture = Draw("<clipPath id='left'><rect width='50' height='100'/></clipPath>"
							  "<clipPath id='corner' clip-path='url(#left)'><rect width='100' height='50'/></clipPath>"
							  "<clipPath id='parts'><rect width='100' height='50' clip-path='url(#left)'/>"
							  "<rect x='90' y='90' width='10' height='10'/></clipPath>"
							  "<rect width='100' height='100' fill='#f00' clip-path='url(#corner)'/>"
							  "<rect width='100' height='100' fill='#00f' opacity='.5' clip-path='url(#parts)'/>");
	EXPECT_EQ("7f0080", picture.At(25, 25));
	EXPECT_EQ("none", picture.At(75, 25));
	EXPECT_EQ("none", picture.At(25, 75));
	EXPECT_EQ("0000ff80", picture.At(95, 95));
	// Groups are no part of a clip path, and the only shape of one may be clipped itself.
	const auto single =
		Draw("<clipPath id='left'><rect width='50' height='100'/></clipPath>"
			 "<clipPath id='group'><g><rect width='100' height='100'/></g><rect width='10' height='10'/>"
			 "<rect x='20' width='10' height='90'/></clipPath><clipPath id='one'><rect width='100' height='50' "
			 "clip-path='url(#left)'/>"
			 "</clipPath><rect width='100' height='100' fill='#f00' clip-path='url(#one)'/>"
			 "<rect y='50' width='100' height='50' fill='#00f' clip-path='url(#group)'/>");
	EXPECT_EQ("ff0000", single.At(25, 25));
	EXPECT_EQ("none", single.At(75, 25));
	EXPECT_EQ("0000ff", single.At(25, 75));
	EXPECT_EQ("none", single.At(15, 75));
}

TEST_F(Elements, GradientsWithoutExtentShowTheirLastStop)
{
	const auto picture = Draw(
		"<linearGradient id='l' x1='.5' x2='.5'><stop stop-color='#f00'/>"
		"<stop offset='1' stop-color='#0f0'/></linearGradient>"
		"<radialGradient id='r' r='0'><stop stop-color='#f00'/><stop offset='1' stop-color='#00f'/></radialGradient>"
		"<rect width='50' height='50' fill='url(#l)'/><rect x='50' width='50' height='50' fill='url(#r)'/>");
	EXPECT_EQ("00ff00", picture.At(10, 25));
	EXPECT_EQ("0000ff", picture.At(75, 25));
}

TEST_F(Elements, BoundingBoxesTurnWithTheirElements)
{
	// White in the first tenth of the box: a box around the turned circle would begin further out.
	const std::string gradient = "<linearGradient id='g'><stop offset='.1' stop-color='#fff'/>"
								 "<stop offset='.1' stop-color='#000'/></linearGradient>"
								 "<mask id='m'><circle r='30' fill='url(#g)'/></mask>"
								 "<g transform='translate(50 50) rotate(45)'>";
	const auto filled = Draw(gradient + "<circle r='30' fill='url(#g)'/></g>");
	EXPECT_EQ("ffffff", filled.At(31, 31));
	EXPECT_EQ("000000", filled.At(40, 40));
	const auto masked = Draw(gradient + "<g mask='url(#m)'><rect x='-50' y='-50' width='99' height='99'/></g></g>");
	EXPECT_EQ("000000", masked.At(31, 31));
	EXPECT_EQ("none", masked.At(40, 40));
}

TEST_F(Elements, MasksLimitAnElementToTheirRegion)
{
	const auto picture =
		Draw("<mask id='user' x='10' y='10' width='20' height='20'><rect width='99' height='99' fill='#fff'/></mask>"
			 "<mask id='box' x='.5' y='50%' width='.5' height='50%'><rect width='99' height='99' fill='#fff'/></mask>"
			 "<rect width='40' height='40' fill='#f00' mask='url(#user)'/>"
			 "<rect x='50' y='50' width='40' height='40' fill='#00f' mask='url(#box)'/>");
	EXPECT_EQ("ff0000", picture.At(15, 15));
	EXPECT_EQ("none", picture.At(35, 35));
	EXPECT_EQ("none", picture.At(60, 60));
	EXPECT_EQ("0000ff", picture.At(80, 80));
	// Without a size the region is a tenth larger than the box on each side; a mask's own transform does nothing.
	const auto unsized = Draw("<mask id='m' transform='translate(50)'><rect x='-99' y='-99' width='300' height='300' "
							  "fill='#fff'/></mask><g mask='url(#m)'><path d='M20 50H70' stroke='#f00' "
							  "stroke-width='80'/><path d='M20 40V60'/></g>");
	EXPECT_EQ("ff0000", unsized.At(45, 39));
	EXPECT_EQ("none", unsized.At(45, 37));
	EXPECT_EQ("none", unsized.At(45, 63));
}

TEST_F(Elements, AbsentRadiiAreAsLongAsTheOther)
{
	const auto picture =
		Draw("<svg width='100' height='50' viewBox='0 0 100 50'>"
			 "<rect width='40' height='40' rx='20%' fill='#f00'/><ellipse cx='70' cy='20' ry='20%'/></svg>");
	// A fifth of the width makes the rectangle a circle; a fifth of the height would leave its corners.
	EXPECT_EQ("none", picture.At(4, 4));
	EXPECT_EQ("ff0000", picture.At(7, 7));
	EXPECT_EQ("000000", picture.At(61, 20));
	EXPECT_EQ("none", picture.At(58, 20));
}

TEST_F(Elements, AFocusOutsideOfItsCircleMakesACone)
{
	const auto picture = Draw("<radialGradient id='g' gradientUnits='userSpaceOnUse' cx='60' cy='50' r='20' fx='10' "
							  "fy='50'><stop stop-color='#f00'/><stop offset='1' stop-color='#f00'/></radialGradient>"
							  "<rect width='100' height='100' fill='url(#g)'/>");
	EXPECT_EQ("ff0000", picture.At(40, 50));
	EXPECT_EQ("ff0000", picture.At(95, 60));
	EXPECT_EQ("none", picture.At(40, 80));
	EXPECT_EQ("none", picture.At(5, 50));
}

TEST_F(Elements, EdgesCoverPixelsByTheirShare)
{
	const DrawnPicture picture = Draw(
		// Edges within pixels, out of the picture, across several pixels of a row, and twice around.
		"<rect x='10.25' y='10.5' width='10' height='10'/><rect x='-5' y='30' width='10.5' height='4'/>"
		"<path d='M40 10h8l-4 1h-4z'/><path d='M60 10h10v10h-10zM65 10v10h5v-10z' fill-rule='evenodd'/>"
		"<path d='M80 10h10v10h-10zM85 10h5v10h-5z'/>"
		// Strokes: a corner with its miter, one that is cut, round ends, and a curve that the pen is wider than.
		"<g fill='none' stroke='#00f' stroke-width='4'><path d='M10 44h10v10'/><path d='M30 44h10v10' "
		"stroke-miterlimit='1'/><path d='M52 44h6' stroke-linecap='round'/><path d='M70 44h6v6h-6z'/>"
		"<circle cx='90' cy='50' r='3' stroke-width='10'/></g>"
		"<path d='M10 70h20' stroke='#00f' stroke-width='4' transform='scale(1 -1) translate(0 -140)'/>"
		"<linearGradient id='g'><stop offset='.5' stop-color='#f00'/><stop offset='.5' "
		"stop-color='#00f'/></linearGradient>"
		"<radialGradient id='r'><stop stop-color='#f00'/><stop offset='1' stop-color='#00f' stop-opacity='.5'/>"
		"</radialGradient><rect x='40' y='60' width='20' height='20' fill='url(#g)'/>"
		"<rect x='70' y='60.5' width='20' height='20' fill='url(#r)' opacity='.5'/>");
	const auto expect = [&](const char* color, int x, int y)
	{
		EXPECT_EQ(color, picture.At(x, y)) << x << ", " << y;
	};
	expect("00000060", 10, 10); // Half of three quarters, as 8 bits.
	expect("000000bf", 10, 15);
	expect("00000080", 15, 10);
	expect("000000", 15, 15);
	expect("00000040", 20, 15);
	expect("none", 21, 15);
	expect("000000", 0, 31);
	expect("00000080", 5, 31);
	expect("00000080", 5, 32);
	expect("000000df", 44, 10);
	expect("00000020", 47, 10);
	expect("000000", 62, 15);
	expect("none", 67, 15);
	expect("000000", 87, 15);
	expect("0000ff", 21, 42);
	expect("none", 22, 42);
	expect("none", 41, 42);
	expect("0000ff", 39, 44);
	expect("0000ff4d", 59, 42); // Nearly a third of the pixel lies in the circle.
	expect("0000ffe5", 59, 43);
	expect("none", 60, 43);
	expect("0000ff", 68, 42);
	expect("none", 73, 47);
	expect("none", 90, 50);
	expect("0000ff", 95, 50);
	expect("0000ff", 20, 71);
	expect("none", 20, 72);
	expect("ff0000", 49, 70);
	expect("0000ff", 50, 70);
	expect("f3000c7c", 79, 70);
	expect("0000ff20", 71, 60);
}

TEST_F(Elements, CoordinatesBeyondTheLibrarysReachEndOutsideOfThePicture)
{
	const auto picture = Draw("<rect x='-1e9' y='10' width='2e9' height='20' fill='#f00'/>"
							  "<path d='M60 40h1e9v30h-1e9z' fill='#0f0'/>");
	EXPECT_EQ("ff0000", picture.At(5, 20));
	EXPECT_EQ("00ff00", picture.At(80, 50));
	EXPECT_EQ("none", picture.At(30, 50));
}

TEST_F(Elements, ValuesThatAreNotFiniteDrawNothingAndDisturbNothingElse)
{
	const SVGDocumentRef document =
		Load(Document("<path id='path' d='M0 0'/><rect id='turned' width='50' height='50'/><rect id='wide' width='50' "
					  "height='50' fill='none' stroke='#000'/><circle id='circle' r='9'/><rect x='50' width='50' "
					  "height='50' fill='#f00'/>"));
	constexpr double kInfinity = std::numeric_limits<double>::infinity();
	const double nan = std::numeric_limits<double>::quiet_NaN();
	Must(Cast<SVGPathElementInterface>(Find(document, "path"))->LineTo({kInfinity, 50.0}));
	Must(Cast<SVGPathElementInterface>(Find(document, "path"))->LineTo({0.0, 50.0}));
	Must(Find(document, "turned")->SetRotation(nan));
	Must(Find(document, "wide")->SetStrokeWidth({nan, SVGLengthUnit::number}));
	Must(Cast<SVGRadiusInterface>(Find(document, "circle"))->SetRadius({kInfinity, SVGLengthUnit::number}));
	const DrawnPicture picture(document);
	for (const int at : {1, 10, 25, 49})
		EXPECT_EQ("none", picture.At(at, at));
	EXPECT_EQ("ff0000", picture.At(75, 25));
}

TEST_F(Elements, WhoeverLooksAtThePictureDecidesOnColorsAndLanguages)
{
	const SVGDocumentRef document = LoadCompletely(Document(
		"<rect width='50' height='50' fill='currentColor'/><rect x='50' width='50' height='50' color='#0f0' "
		"fill='currentColor'/><switch><rect systemLanguage='de' y='50' width='50' height='50' fill='#f00'/><rect "
		"systemLanguage='fr, EN-gb' y='50' width='50' height='50' fill='#00f'/></switch><rect systemLanguage='de' "
		"x='50' y='50' width='50' height='50' fill='#f00'/>"));
	const DrawnPicture picture(document, {.currentColor = {1.0, 0.0, 1.0}});
	EXPECT_EQ("ff00ff", picture.At(25, 25));
	EXPECT_EQ("00ff00", picture.At(75, 25));
	EXPECT_EQ("0000ff", picture.At(25, 75));
	EXPECT_EQ("none", picture.At(75, 75));
	// What the outermost element lies on has its colour, and its opacity once.
	const DrawnPicture ground(LoadCompletely("<svg width='9' height='9' opacity='.5' color='rgba(255,0,0,.4)' "
											 "style='background-color:currentColor'/>"));
	EXPECT_EQ("ff000033", ground.At(4, 4));
}

TEST_F(Elements, PropertiesComeFromWhereReferencedContentStands)
{
	const auto picture = Draw("<g fill='#fff'><mask id='m'><rect width='50' height='100'/></mask></g>"
							  "<g fill='#00f' mask='url(#m)'><rect width='100' height='100'/></g>");
	EXPECT_EQ("0000ff", picture.At(25, 50));
	EXPECT_EQ("none", picture.At(75, 50));
}

} // namespace
} // namespace orvan
