// SPDX-License-Identifier: MIT
/// What strokes, dashes and markers cover.
#include "support/drawn_picture.h"

namespace orvan
{
namespace
{

using Strokes = RendererTest;

TEST_F(Strokes, DashesFollowTheLineAndItsCorners)
{
	const PixelCase cases[] = {
		{"stroke-dasharray='10 5'",
		 "10,20 000000~; 19,20 000000~; 20,20 none; 24,20 none; 25,20 000000~; 34,20 000000~; 35,20 none"},
		// An odd number of lengths counts twice.
		{"stroke-dasharray='10'", "19,20 000000; 20,20 none; 29,20 none; 30,20 000000"},
		{"stroke-dasharray='5 10 15'", "14,20 000000; 15,20 none; 25,20 000000; 39,20 000000; 40,20 none; 45,20 "
									   "000000; 54,20 000000; 55,20 none; 69,20 none; 70,20 000000"},
		{"stroke-dasharray='10 5' stroke-dashoffset='3'", "16,20 000000~; 17,20 none; 21,20 none; 22,20 000000~"},
		{"stroke-dasharray='10 5' stroke-dashoffset='-3'",
		 "10,20 none; 12,20 none; 13,20 000000~; 22,20 000000~; 23,20 none"},
		{"stroke-dasharray='10 5' stroke-dashoffset='18'", "16,20 000000~; 17,20 none; 22,20 000000~"},
		{"stroke-dasharray='10%'", "19,20 000000; 20,20 none; 30,20 000000"},
		{"stroke-dasharray='1em' font-size='8'", "17,20 000000; 18,20 none; 26,20 000000"},
		{"stroke-dasharray='1' pathLength='8'", "19,20 000000; 20,20 none; 29,20 none; 30,20 000000"},
		{"stroke-dasharray='1' stroke-dashoffset='.5' pathLength='8'",
		 "14,20 000000; 15,20 none; 24,20 none; 25,20 000000"},
		{"stroke-dasharray='10 10' stroke-linecap='square'",
		 "8,20 000000~; 7,20 none; 21,20 000000~; 22,20 none; 28,20 000000~; 27,20 none"},
		{"stroke-dasharray='0 20' stroke-linecap='round'",
		 "9,19 000000; 13,20 none; 29,20 000000; 30,20 000000; 33,20 none"},
		{"stroke-dasharray='10 -5'", "20,20 000000; 22,20 000000"},
		{"stroke-dasharray='0'", "20,20 000000; 22,20 000000"},
		{"stroke-dasharray='none'", "20,20 000000"},
	};
	for (const PixelCase& sample : cases)
		ExpectPixels("<path d='M10 20h80' stroke='#000' stroke-width='4' " + std::string(sample.elements) + "/>",
					 sample.pixels);
	// Along corners, and from where a rectangle begins: 10 more of the second side, then nothing.
	ExpectPixels("<path d='M10 20h20v40' fill='none' stroke='#000' stroke-width='4' stroke-dasharray='30 100'/>",
				 "29,20 000000; 31,18 000000; 30,29 000000~; 30,30 none");
	ExpectPixels("<rect x='10' y='20' width='40' height='20' fill='none' stroke='#000' stroke-width='4' "
				 "stroke-dasharray='50 1000'/>",
				 "49,20 000000; 50,29 000000~; 50,30 none; 10,30 none");
	// Lengths in letters are of the font where the dashes are said.
	ExpectPixels("<g stroke='#000' stroke-width='4' stroke-dasharray='1em' font-size='8'><path d='M10 20h80' "
				 "font-size='20'/></g>",
				 "17,20 000000; 18,20 none; 26,20 000000");
	// The way back to the start is a part of the length.
	ExpectPixels("<path d='M10 20h40v40h-40z' fill='none' stroke='#000' stroke-width='4' pathLength='16' "
				 "stroke-dasharray='1'/>",
				 "19,20 000000; 20,20 none; 29,20 none; 30,20 000000");
	// Each subpath begins anew.
	ExpectPixels("<path d='M10 20h15M10 40h15' stroke='#000' stroke-width='4' stroke-dasharray='10 5'/>",
				 "19,20 000000~; 20,20 none; 19,40 000000~; 20,40 none");
	ExpectPixels("<path d='M10 20h40' stroke='#000' stroke-width='4' stroke-dasharray='10' transform='scale(2 1)'/>",
				 "20,20 000000; 39,20 000000; 40,20 none; 59,20 none; 60,20 000000");
	ExpectPixels("<path d='M10 20h40' stroke='#000' stroke-width='4' stroke-dasharray='10' transform='scale(2 1)' "
				 "vector-effect='non-scaling-stroke'/>",
				 "20,20 000000; 29,20 000000; 30,20 none; 39,20 none; 40,20 000000; 50,22 none");
}

TEST_F(Strokes, StrokesHaveEndsCornersAndWidths)
{
	const PixelCase cases[] = {
		{"<path d='M20 20h40'/>",
		 "20,16 000000; 20,15 none; 20,23 000000; 20,24 none; 19,20 none; 59,20 000000; 60,20 none"},
		{"<path d='M20 20h40' stroke-linecap='square'/>", "16,16 000000; 15,20 none; 63,23 000000; 64,20 none"},
		{"<path d='M20 20h40' stroke-linecap='round'/>",
		 "16,19 000000~; 17,20 000000; 16,16 none; 63,23 none; 62,20 000000"},
		// A miter of a right angle is 1.41 times as long as the stroke is wide.
		{"<path d='M20 20h40v40'/>", "63,16 000000; 64,16 none; 63,15 none"},
		{"<path d='M20 20h40v40' stroke-miterlimit='1.4'/>", "63,16 none; 61,18 000000; 60,17 000000"},
		{"<path d='M20 20h40v40' stroke-miterlimit='1.5'/>", "63,16 000000"},
		{"<path d='M20 20h40v40' stroke-linejoin='bevel'/>", "63,16 none; 62,17 none; 61,18 000000; 60,17 000000"},
		{"<path d='M20 20h40v40' stroke-linejoin='round'/>", "63,16 none; 62,18 000000; 61,17 000000"},
		// One that is cut off reaches as far as the limit says, here 4, also where the line turns right back.
		{"<path d='M20 20h40v40' stroke-linejoin='miter-clip' stroke-miterlimit='1'/>", "62,18 000000; 63,16 none"},
		{"<path d='M60 60v-40h-40' stroke-linejoin='miter-clip' stroke-miterlimit='1'/>", "62,18 000000; 63,16 none"},
		{"<path d='M20 20h40v40' stroke-linejoin='miter-clip'/>", "63,16 000000; 64,16 none"},
		{"<path d='M20 20h40h-30' stroke-linejoin='miter-clip' stroke-miterlimit='2'/>",
		 "67,16 000000; 67,23 000000; 68,20 none; 67,15 none"},
		{"<path d='M20 60v-40h40'/>", "16,16 000000; 15,16 none"},
		{"<path d='M60 60v-40h-40'/>", "63,16 000000"},
		// Where it is closed there is a corner, and ends where it is not.
		{"<path d='M20 20h40v40h-40z'/>", "16,16 000000; 16,63 000000; 63,63 000000; 24,24 none"},
		{"<path d='M20 20h40v40h-40v-40'/>", "16,16 none; 16,63 000000"},
		{"<path d='M20 20h0'/>", "20,20 none"},
		{"<path d='M20 20h0' stroke-linecap='square'/>", "16,16 000000; 23,23 000000; 24,20 none"},
		{"<path d='M20 20z' stroke-linecap='round'/>", "17,20 000000; 22,20 000000; 16,16 none"},
		{"<path d='M20 20' stroke-linecap='round'/>", "20,20 none"},
		{"<path d='M20 20h20M60 60h20'/>", "30,20 000000; 70,60 000000; 50,40 none; 80,60 none"},
		{"<path d='M20 20h20' stroke-width='0'/>", "30,20 none"},
		{"<path d='M20 20h20' stroke-width='-1'/>", "30,16 000000; 30,15 none"},
		{"<path d='M20 20h20' stroke-width='10%'/>", "30,15 000000; 30,14 none; 30,24 000000; 30,25 none"},
		{"<path d='M10 10h20' transform='scale(2)'/>", "30,12 000000; 30,11 none; 30,27 000000; 30,28 none"},
		{"<path d='M10 10h20' transform='scale(2)' vector-effect='non-scaling-stroke'/>",
		 "30,16 000000; 30,15 none; 30,23 000000; 30,24 none; 19,20 none"},
		{"<path d='M10 20h20' transform='scale(1 2)'/>", "20,32 000000; 20,31 none; 20,47 000000; 20,48 none"},
		{"<path d='M20 10v20' transform='scale(1 2)'/>", "16,30 000000; 15,30 none; 23,30 000000; 24,30 none"},
		// A bevel, and another line across it.
		{"<path d='M20 20h40v40M40 17h40' stroke-linejoin='bevel'/>", "60,18 000000; 61,18 000000; 61,14 000000"},
		{"<path d='M60 60v-40h-40M40 17h40' stroke-linejoin='bevel'/>", "60,18 000000; 61,18 000000; 61,14 000000"},
		{"<path d='M0 0h0' stroke-dasharray='5' stroke-linecap='square' transform='translate(20 20) rotate(90)'/>",
		 "16,17 000000; 23,22 000000; 20,26 none; 15,20 none"},
		// Right back, in all four directions.
		{"<path d='M20 20h40h-40' stroke-linejoin='round'/>", "62,20 000000; 61,17 000000; 63,16 none"},
		{"<path d='M60 20h-40h40' stroke-linejoin='round'/>", "17,20 000000; 18,22 000000; 16,16 none"},
		{"<path d='M20 20v40v-40' stroke-linejoin='round'/>", "20,62 000000; 17,61 000000; 16,63 none"},
		{"<path d='M20 60v-40v40' stroke-linejoin='round'/>", "20,17 000000; 22,18 000000; 16,16 none"},
		{"<line x1='20' y1='20' x2='60' y2='20'/>", "20,16 000000; 59,23 000000; 60,20 none"},
		{"<polyline points='20,20 60,20 60,60'/>", "63,16 000000; 40,40 none"},
		{"<polygon points='20,20 60,20 60,60'/>", "63,16 000000; 30,30 000000"},
		{"<circle cx='50' cy='50' r='20'/>",
		 "26,50 000000~; 25,50 none; 33,50 000000; 34,50 none~; 50,73 000000~; 50,74 none"},
		{"<ellipse cx='50' cy='50' rx='30' ry='20'/>",
		 "16,50 000000~; 15,50 none; 50,26 000000~; 50,25 none; 50,34 none~"},
		{"<rect x='20' y='20' width='40' height='30' rx='10'/>",
		 "17,17 none; 20,20 000000~; 30,16 000000; 16,30 000000; 63,40 000000~; 40,53 000000"},
	};
	for (const PixelCase& sample : cases)
		ExpectPixels("<g fill='none' stroke='#000' stroke-width='8'>" + std::string(sample.elements) + "</g>",
					 sample.pixels);
	// An arch of three quarters of its control points' height, with its stroke around its top.
	ExpectPixels(
		"<path d='M10 90C10 10 90 10 90 90' fill='none' stroke='#000' stroke-width='10'/>",
		"50,26 000000; 50,24 none; 50,33 000000; 50,36 none; 6,88 000000; 14,88 000000; 4,88 none; 94,88 000000~");
	// A loop back on itself is turned around with the pen: round where it turns, whatever the joins are.
	ExpectPixels(
		"<path d='M10 50C90 50 90 50 10 50' fill='none' stroke='#000' stroke-width='20'/>",
		"40,41 000000; 40,58 000000; 40,39 none; 40,60 none; 68,50 000000; 78,50 000000; 82,50 none; 79,42 none");
}

TEST_F(Strokes, WidthsThatDoNotScaleGrowWithThePicture)
{
	const DrawnPicture picture(
		LoadCompletely(Document("<path d='M10 20h20v20' transform='scale(2 1)' fill='none' stroke='#000' "
								"stroke-width='4' vector-effect='non-scaling-stroke'/>")),
		{.scale = 2.0});
	for (const auto& [x, y] : {std::pair(80, 36), std::pair(80, 43), std::pair(116, 70), std::pair(123, 70)})
		EXPECT_EQ("000000", picture.At(x, y)) << x << ' ' << y;
	for (const auto& [x, y] : {std::pair(80, 35), std::pair(80, 44), std::pair(115, 70), std::pair(124, 70)})
		EXPECT_EQ("none", picture.At(x, y)) << x << ' ' << y;
	EXPECT_EQ("000000", picture.At(120, 79));
	EXPECT_EQ("none", picture.At(120, 80));
}

TEST_F(Strokes, LinesThatAreLongInPiecesAreDrawnAsInOne)
{
	// To the library, which draws hard edges, they go piece by piece; lines with dashes do not.
	std::string data = "M5 50";
	for (int i = 0; i < 6000; i++)
	{
		data += i % 600 == 599 ? "zm90 0" : i % 5 == 4 ? "q9 9 2-9" : i % 2 == 0 ? "l.2 900" : "l.1-900";
	}
	const auto draw = [&](const std::string& attributes)
	{
		return DrawnPicture(
			LoadCompletely(Document(
				"<path transform='scale(.1)' fill='none' stroke='#000' stroke-width='4' shape-rendering='crispEdges' "
				"d='" +
				data + "' " + attributes + "/>")),
			{.scale = 4.0, .deadline = 600.0});
	};
	const DrawnPicture inPieces = draw("");
	const DrawnPicture inOne = draw("stroke-dasharray='1e9'");
	int different = 0;
	int painted = 0;
	for (int y = 0; y < 400; y++)
	{
		for (int x = 0; x < 400; x++)
		{
			different += inPieces.At(x, y) != inOne.At(x, y) ? 1 : 0;
			painted += inOne.At(x, y) != "none" ? 1 : 0;
		}
	}
	EXPECT_LT(10000, painted);
	EXPECT_GT(150000, painted);
	EXPECT_GT(20, different); // Right where two pieces meet.
}

TEST_F(Strokes, ThinLinesThatLieOnEachOtherAreNoDarkerThanOne)
{
	for (const int count : {2, 20, 400})
	{
		std::string path;
		for (int i = 0; i < count; i++)
			path += "M20.5 20.5l60 .1 -.1 60 -60 -.1z"; // Not quite level, which is drawn otherwise.
		ExpectPixels("<path d='" + path + "' fill='none' stroke='#000' stroke-width='.4'/>",
					 "50,20 ~00000066; 20,50 ~00000066; 80,50 ~00000066; 50,21 none; 21,50 none");
	}
}

TEST_F(Strokes, MarkersStandOnTheVerticesAndTurnWithTheLine)
{
	// The marker is 8 by 4, red on the left and blue on the right, and its middle is put onto the vertex.
	const auto marker =
		[](const std::string& attributes, const char* size = "markerWidth='8' markerHeight='4' refX='4' refY='2' ")
	{
		return std::string("<marker id='m' markerUnits='userSpaceOnUse' ") + size + attributes +
			   "><rect width='4' height='4' fill='#f00'/><rect x='4' width='4' height='4' fill='#00f'/></marker>";
	};
	const std::string line =
		"<path d='M20 20h40v40' fill='none' marker-start='url(#m)' marker-mid='url(#m)' marker-end='url(#m)'/>";
	const PixelCase cases[] = {
		{"", "16,18 ff0000; 15,20 none; 16,17 none; 23,21 0000ff; 24,20 none; 56,20 ff0000; 63,20 0000ff; 56,60 "
			 "ff0000; 63,60 0000ff"},
		// Down at the end, and between right and down in the middle.
		{"orient='auto'", "16,20 ff0000; 23,20 0000ff; 58,57 ff0000; 61,57 ff0000; 61,62 0000ff; 63,60 none; 61,21 "
						  "0000ff; 58,18 ff0000; 56,16 none; 63,23 none; 62,17 none"},
		{"orient='auto-start-reverse'", "17,20 0000ff; 23,20 ff0000; 59,57 ff0000; 59,62 0000ff"},
		{"orient='90'", "19,17 ff0000; 19,22 0000ff; 16,20 none; 59,57 ff0000; 59,17 ff0000"},
		{"orient='.25turn'", "19,17 ff0000; 19,22 0000ff; 16,20 none"},
		{"orient='180'", "16,20 0000ff; 23,20 ff0000"},
	};
	for (const PixelCase& sample : cases)
		ExpectPixels(marker(sample.elements) + line, sample.pixels);
	const PixelCase sized[] = {
		// Twice as large, and cut off at its size all the same.
		{"viewBox='0 0 4 2' markerWidth='8' markerHeight='4' refX='2' refY='1'",
		 "16,18 ff0000; 23,21 ff0000; 24,20 none; 20,22 none"},
		{"viewBox='0 0 4 2' markerWidth='8' markerHeight='4' refX='2' refY='1' overflow='visible'",
		 "16,18 ff0000; 23,21 ff0000; 24,20 0000ff; 31,25 0000ff; 32,20 none; 20,26 none"},
		{"viewBox='4 0 4 4' markerWidth='8' markerHeight='4' refX='4' refY='2' preserveAspectRatio='xMinYMin'",
		 "19,20 none; 20,20 0000ff; 23,20 0000ff; 24,20 none"},
		{"markerWidth='0' markerHeight='4' refX='4' refY='2'", "18,20 none; 21,20 none"},
		{"markerWidth='2' markerHeight='4' refX='4' refY='2' style='overflow:visible'", "23,20 0000ff"},
		{"markerWidth='6' markerHeight='4' refX='4' refY='2'", "21,20 0000ff; 22,20 none"},
	};
	for (const PixelCase& sample : sized)
		ExpectPixels(marker("", sample.elements) + line, sample.pixels);
	ExpectPixels("<marker id='m' markerWidth='2' markerHeight='2' refX='1' refY='1'><rect width='2' height='2' "
				 "fill='#f00'/></marker><path d='M20 20h40' stroke='#00f' stroke-width='6' marker-start='url(#m)'/>",
				 "14,14 ff0000; 13,20 none; 25,25 ff0000; 26,20 0000ff; 26,25 none");
	ExpectPixels(
		"<marker id='m' markerWidth='6' markerHeight='6' viewBox='0 0 2 2' refX='right' refY='center'><rect width='2' "
		"height='2' fill='#f00'/></marker><path d='M40 40h20' stroke='#00f' stroke-width='2' marker-start='url(#m)' />",
		"28,34 ff0000; 27,40 none; 39,45 ff0000; 40,40 0000ff; 40,45 none; 30,33 none; 30,46 none");
	ExpectPixels("<marker id='m' markerWidth='2' markerHeight='2' orient='auto'><rect width='2' height='2' "
				 "fill='#f00'/></marker><g "
				 "transform='translate(40 40) rotate(90)'><path d='M0 0h20' stroke='#00f' stroke-width='4' "
				 "marker-start='url(#m)'/></g>",
				 "39,40 ff0000; 32,47 ff0000; 31,40 none; 33,48 none; 41,40 0000ff");
	// Closed: the last vertex is the first one, between up and right there.
	ExpectPixels(marker("orient='auto'") + "<path d='M20 60v-40h40v40z' fill='none' marker-end='url(#m)'/>",
				 "18,58 0000ff; 19,57 0000ff~; 21,61 ff0000; 16,60 none; 17,62 none; 22,57 none");
	// Only paths and lines have them.
	ExpectPixels(marker("") + "<rect x='20' y='20' width='40' height='40' fill='none' marker-start='url(#m)'/>",
				 "20,20 none");
	ExpectPixels(marker("") + "<polygon points='20,20 60,20 60,60' fill='none' marker-mid='url(#m)'/>",
				 "20,20 none; 57,20 ff0000; 57,60 ff0000");
	ExpectPixels(marker("") + "<line x1='20' y1='20' x2='60' y2='20' marker-end='url(#m)'/>",
				 "20,20 none; 57,20 ff0000; 62,20 0000ff");
	ExpectPixels(marker("") + "<path d='M20 20h40' fill='none' visibility='hidden' marker-end='url(#m)'/>",
				 "57,20 none");
	ExpectPixels(marker("") + "<path d='M50 20A30 30 0 0 1 50 80' fill='none' marker-mid='url(#m)'/>",
				 "77,50 none; 82,50 none");
	// Parts of one arc have no vertex between them.
	ExpectPixels(marker("") + "<path d='M20 50A30 30 0 0 1 80 50' fill='none' marker-mid='url(#m)'/>",
				 "50,20 none; 47,20 none; 52,20 none");
	ExpectPixels(marker("") + "<path d='M20 50A30 30 0 0 1 50 20A20 20 0 0 1 70 40' fill='none' marker-mid='url(#m)'/>",
				 "47,20 ff0000; 52,20 0000ff");
	// Two arcs that make a circle meet at a vertex, and a path that goes nowhere has its ends.
	ExpectPixels(marker("") + "<path d='M20 50A30 30 0 0 1 80 50A30 30 0 0 1 20 50' fill='none' marker-mid='url(#m)'/>",
				 "77,50 ff0000; 82,50 0000ff; 20,50 none; 50,20 none; 50,80 none");
	ExpectPixels(marker("") + "<path d='M50 50' marker-start='url(#m)'/>", "47,50 ff0000; 52,50 0000ff; 55,50 none");
}

} // namespace
} // namespace orvan
