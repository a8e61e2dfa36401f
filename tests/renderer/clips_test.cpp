// SPDX-License-Identifier: MIT
/// What clip paths, basic shapes, masks and viewports leave of a picture.
#include "support/drawn_picture.h"

namespace orvan
{
namespace
{

class Clips : public RendererTest
{
protected:
	struct Case
	{
		const char* value;
		const char* pixels;
	};

	/// Draws a blue rectangle from (20, 10) to (80, 90) with a clip.
	static void ExpectClipped(const Case& sample, const std::string& attributes = "")
	{
		ExpectPixels("<rect x='20' y='10' width='60' height='80' fill='#00f' " + attributes +
						 " style='clip-path:" + sample.value + "'/>",
					 sample.pixels);
	}
};

TEST_F(Clips, InsetsAndRectanglesAreMeasuredFromTheSidesOfTheBox)
{
	const Case cases[] = {
		// From above, from the right, from below, from the left.
		{"inset(10px 20px 30px 5px) fill-box",
		 "25,20 0000ff; 24,20 none; 25,19 none; 59,59 0000ff; 60,59 none; 59,60 none"},
		{"inset(25% 50% 0 10%) fill-box", "26,30 0000ff; 25,30 none; 26,29 none; 49,89 0000ff; 50,89 none"},
		{"inset(10px) fill-box", "30,20 0000ff; 29,20 none; 69,79 0000ff; 70,79 none; 69,80 none"},
		{"inset(0 30px 0 30px) fill-box", "49,50 none; 50,50 none"},
		{"inset(0 29px 0 30px) fill-box", "49,50 none; 50,50 0000ff; 51,50 none"},
		// Sides of a rectangle, all from the left and from above.
		{"rect(10px 40px 30px 5px) fill-box",
		 "25,20 0000ff; 24,20 none; 25,19 none; 59,39 0000ff; 60,39 none; 59,40 none"},
		{"rect(auto auto 50% 25%) fill-box", "35,10 0000ff; 34,10 none; 79,49 0000ff; 79,50 none"},
		{"xywh(5px 10px 20px 30px) fill-box",
		 "25,20 0000ff; 24,20 none; 25,19 none; 44,49 0000ff; 45,49 none; 44,50 none"},
		{"xywh(50% 25% 25% 50%) fill-box",
		 "50,30 0000ff; 49,30 none; 50,29 none; 64,69 0000ff; 65,69 none; 64,70 none"},
		{"inset(10px) view-box", "20,10 0000ff; 19,50 none; 79,89 0000ff"},
		{"inset(30px) view-box", "30,30 0000ff; 29,30 none; 30,29 none; 69,69 0000ff; 70,69 none"},
		{"fill-box", "20,10 0000ff; 79,89 0000ff"},
	};
	for (const Case& sample : cases)
		ExpectClipped(sample);
	// The box of the stroke is half of its width larger on each side.
	const std::string stroke = "stroke='#f00' stroke-width='8'";
	ExpectClipped({"inset(2px) stroke-box", "18,8 ff0000; 17,50 none; 50,7 none; 81,91 ff0000; 82,50 none; 50,92 none"},
				  stroke);
	ExpectClipped({"inset(0) fill-box", "20,10 ff0000; 19,50 none; 79,89 ff0000; 80,50 none"}, stroke);
	ExpectClipped({"stroke-box", "16,6 ff0000; 83,93 ff0000; 15,50 none"}, stroke);
	// A group's is around those of its shapes, and reaches as far as their strokes where it stands.
	ExpectPixels(
		"<g stroke='#f00' stroke-width='80' style='clip-path:inset(2px) stroke-box'><rect x='10' y='5' width='30' "
		"height='40' stroke-width='4' fill='#00f' transform='scale(2)'/></g>",
		"18,8 ff0000; 17,50 none; 50,7 none; 81,91 ff0000; 82,50 none; 50,92 none");
}

TEST_F(Clips, CornersAreRoundedOneByOneAndMadeToFit)
{
	const Case cases[] = {
		// A quarter of a circle of 20 around (40, 30) leaves out what is farther from there.
		{"inset(0 round 20px) fill-box",
		 "24,14 none; 27,17 0000ff; 75,14 none; 72,17 0000ff; 75,85 none; 72,82 0000ff; "
		 "24,85 none; 27,82 0000ff; 40,10 0000ff; 20,30 0000ff"},
		// All four are twice as large as fits into the width, so they become half as large.
		{"inset(0 round 60px) fill-box",
		 "27,17 none; 30,20 0000ff; 72,17 none; 69,20 0000ff; 27,82 none; 69,79 0000ff; "
		 "20,41 0000ff; 79,58 0000ff"},
		// The height decides where both of a side are too long for it.
		{"inset(0 round 10px 10px 80px 80px / 10px 10px 100px 100px) fill-box",
		 "21,12 0000ff; 22,70 none; 50,89 0000ff~"},
		{"inset(0 round 20px 0 0 0) fill-box", "24,14 none; 79,10 0000ff; 79,89 0000ff; 20,89 0000ff"},
		{"inset(0 round 0 20px 0 0) fill-box", "20,10 0000ff; 75,14 none; 79,89 0000ff; 20,89 0000ff"},
		{"inset(0 round 0 0 20px 0) fill-box", "20,10 0000ff; 79,10 0000ff; 75,85 none; 20,89 0000ff"},
		{"inset(0 round 0 0 0 20px) fill-box", "20,10 0000ff; 79,10 0000ff; 79,89 0000ff; 24,85 none"},
		// Half of the width and a quarter of the height: ellipses whose middle row is as wide as the box.
		{"inset(0 round 50% / 25%) fill-box", "20,30 0000ff; 20,69 0000ff; 27,14 none; 33,14 0000ff; 49,10 0000ff"},
		{"xywh(10px 10px 40px 40px round 20px) fill-box", "33,23 none; 37,27 0000ff; 66,56 none; 62,52 0000ff"},
		{"rect(10px 50px 50px 10px round 20px) fill-box", "33,23 none; 37,27 0000ff; 66,56 none; 62,52 0000ff"},
	};
	for (const Case& sample : cases)
		ExpectClipped(sample);
}

TEST_F(Clips, CirclesAndEllipsesReachTheSidesThatTheyAreToldTo)
{
	const Case cases[] = {
		{"circle(20px at 30px 40px) fill-box",
		 "30,50 0000ff~; 29,50 none; 69,50 0000ff~; 70,50 none; 50,30 0000ff~; 50,29 none; 65,65 none"},
		{"circle(closest-side at 10px 40px) fill-box",
		 "20,50 0000ff~; 39,50 0000ff~; 40,50 none; 30,40 0000ff~; 30,39 none"},
		{"circle(farthest-side at 10px 40px) fill-box", "79,50 0000ff~; 78,20 none; 64,11 none; 60,11 0000ff"},
		// Without a radius it is that of the nearest side, and without a place in the middle.
		{"circle() fill-box", "20,50 0000ff~; 79,50 0000ff~; 50,20 0000ff~; 50,19 none; 50,79 0000ff~; 50,80 none"},
		// Per cent of a circle's radius are of the diagonal by the root of two: 70.71 here.
		{"circle(50% at 30px 40px) fill-box", "50,15 0000ff; 50,13 none; 50,84 0000ff; 50,86 none"},
		{"ellipse(closest-side farthest-side at 10px 20px) fill-box",
		 "20,30 0000ff~; 39,30 0000ff~; 40,30 none; 30,88 0000ff; 22,80 none"},
		{"ellipse(farthest-side closest-side at 10px 20px) fill-box",
		 "79,30 0000ff~; 30,10 0000ff; 30,48 0000ff; 30,50 none; 75,42 none"},
		{"ellipse(50% 25%) fill-box",
		 "20,50 0000ff~; 79,50 0000ff~; 50,30 0000ff; 50,29 none; 50,69 0000ff; 50,70 none"},
		{"ellipse(10px 20px at right 10px bottom 20px) fill-box",
		 "60,70 0000ff~; 59,70 none; 79,70 0000ff~; 70,51 0000ff; 70,49 none; 70,89 0000ff~"},
		{"circle(10px at 100% 0) fill-box", "79,10 0000ff; 71,10 0000ff; 69,10 none; 79,19 0000ff~; 79,20 none"},
		{"circle(0) fill-box", "50,50 none"},
		{"circle(40px) view-box", "50,11 0000ff; 50,9 none; 22,35 0000ff; 21,15 none"},
	};
	for (const Case& sample : cases)
		ExpectClipped(sample);
}

TEST_F(Clips, PolygonsAndPathsBeginAtTheCornerOfTheBox)
{
	const Case cases[] = {
		{"polygon(0 0, 100% 0, 50% 100%) fill-box",
		 "21,10 0000ff; 78,10 0000ff; 49,85 0000ff; 25,50 none; 75,50 none; 40,50 0000ff"},
		{"polygon(10px 20px, 40px 20px, 40px 50px, 10px 50px) fill-box",
		 "30,30 0000ff; 29,30 none; 30,29 none; 59,59 0000ff; 60,59 none"},
		{"polygon(0 0, 100% 0, 100% 100%, 0 100%, 0 0, 10px 10px, 50px 10px, 50px 70px, 10px 70px, 10px 10px) fill-box",
		 "50,50 0000ff"},
		{"polygon(evenodd, 0 0, 100% 0, 100% 100%, 0 100%, 0 0, 10px 10px, 50px 10px, 50px 70px, 10px 70px, 10px 10px) "
		 "fill-box",
		 "50,50 none; 25,50 0000ff; 75,50 0000ff; 50,15 0000ff"},
		{"path(\"M5 5h30v30h-30z\") fill-box",
		 "25,15 0000ff; 24,15 none; 25,14 none; 54,44 0000ff; 55,44 none; 54,45 none"},
		{"path(evenodd, \"M0 0h60v80h-60zM10 10h40v60h-40z\") fill-box", "50,50 none; 25,50 0000ff"},
		{"path(nonzero, \"M0 0h60v80h-60zM10 10h40v60h-40z\") fill-box", "50,50 0000ff; 25,50 0000ff"},
	};
	for (const Case& sample : cases)
		ExpectClipped(sample);
	// A shape is in the coordinates of its element, and moves and turns with it.
	ExpectPixels(
		"<g transform='translate(50) scale(2)'><rect width='20' height='20' fill='#00f' style='clip-path:inset(0 "
		"50% 0 0)'/></g>",
		"50,0 0000ff; 69,39 0000ff; 70,20 none; 49,20 none");
}

TEST_F(Clips, ClipPathsHaveUnitsTransformsAndRules)
{
	const std::string square = "<rect x='20' y='20' width='40' height='40' fill='#00f' clip-path='url(#c)'/>";
	const Case cases[] = {
		{"<clipPath id='c' clipPathUnits='objectBoundingBox'><rect x='.25' y='.5' width='.5' height='.25'/></clipPath>",
		 "30,40 0000ff; 29,40 none; 30,39 none; 49,49 0000ff; 50,49 none; 49,50 none"},
		{"<clipPath id='c' transform='translate(10 5)'><rect x='20' y='20' width='10' height='10'/></clipPath>",
		 "30,25 0000ff; 29,25 none; 30,24 none; 39,34 0000ff; 40,34 none; 39,35 none"},
		{"<clipPath id='c' clipPathUnits='objectBoundingBox' transform='scale(.5)'><rect width='1' "
		 "height='1'/></clipPath>",
		 "20,20 0000ff; 29,29 0000ff; 30,25 none; 25,30 none"},
		{"<clipPath id='c'><path d='M20 20h40v40h-40zM30 30h20v20h-20z' clip-rule='evenodd'/></clipPath>",
		 "25,40 0000ff; 40,40 none"},
		{"<clipPath id='c'><path d='M20 20h40v40h-40zM30 30h20v20h-20z' fill-rule='evenodd'/></clipPath>",
		 "25,40 0000ff; 40,40 0000ff"},
		// Neither paint nor opacity count, but whether a shape is visible does.
		{"<clipPath id='c'><rect width='40' height='40' fill='none' opacity='0'/></clipPath>",
		 "30,30 0000ff; 45,30 none"},
		{"<clipPath id='c'><rect width='40' height='40' visibility='hidden'/></clipPath>", "30,30 none"},
		{"<clipPath id='c'><rect width='30' height='30' visibility='hidden'/><rect x='40' y='40' width='9' "
		 "height='9'/></clipPath>",
		 "25,25 none; 45,45 0000ff"},
		{"<clipPath id='c'><rect width='40' height='40' style='display:none'/></clipPath>", "30,30 none"},
		{"<clipPath id='c'/>", "30,30 none"},
		{"<clipPath id='d'/>", "30,30 0000ff"},
		// Strokes do not count.
		{"<clipPath id='c'><path d='M20 40h40' stroke='#000' stroke-width='20'/></clipPath>", "40,40 none"},
		// Uses and texts do, and what cuts a use off as well.
		{"<defs><rect id='r' width='20' height='20'/></defs><clipPath id='c'><use href='#r' x='25' y='25'/></clipPath>",
		 "25,25 0000ff; 24,30 none; 44,44 0000ff; 45,40 none"},
		{"<defs><rect id='r' width='20' height='20'/><clipPath id='h'><rect width='10' height='99'/></clipPath></defs>"
		 "<clipPath id='c'><use href='#r' x='25' y='25' clip-path='url(#h)'/></clipPath>",
		 "34,30 0000ff; 35,30 none"},
		// Several shapes, together and cut off together.
		{"<clipPath id='h'><rect width='99' height='40'/></clipPath><clipPath id='c' clip-path='url(#h)'><rect x='20' "
		 "y='20' width='10' height='40'/><rect x='50' y='20' width='10' height='40'/></clipPath>",
		 "25,39 0000ff; 25,40 none; 55,39 0000ff; 55,40 none; 40,30 none"},
		{"<clipPath id='c' style='clip-path:inset(10px) fill-box'><rect width='99' height='99'/></clipPath>",
		 "30,30 0000ff; 29,40 none; 49,49 0000ff; 50,40 none"},
		{"<clipPath id='c' clipPathUnits='objectBoundingBox'><rect width='.5' height='.5'/><circle cx='1' cy='1' "
		 "r='.25'/></clipPath>",
		 "39,39 0000ff; 40,30 none; 51,59 0000ff; 49,59 none"},
		{"<clipPath id='c'><rect width='80' height='80' style='clip-path:circle(10px at 40px 40px)'/></clipPath>",
		 "31,40 0000ff; 29,40 none; 40,31 0000ff; 47,47 none~"},
	};
	for (const Case& sample : cases)
		ExpectPixels(sample.value + square, sample.pixels);
}

TEST_F(Clips, OutlinesOfManyPointsClipLikeThoseOfFew)
{
	for (const int count : {1, 1000})
	{
		// From (30, 20) to (70, 80), without what lies between (40, 40) and (60, 60).
		std::string points;
		std::string lines;
		for (int i = 0; i < count; i++)
		{
			points += "30px 20px,";
			lines += "H50";
		}
		const std::string shape = "style='clip-path:polygon(evenodd," + points +
								  "70px 20px,70px 80px,30px 80px,30px 20px,40px 40px,40px 60px,60px 60px,60px 40px,"
								  "40px 40px) view-box'";
		const std::string clip = "<clipPath id='n'><path d='M0 0H60V99H0'/></clipPath><clipPath id='c' "
								 "clip-path='url(#n)'><path clip-rule='evenodd' d='M30 20" +
								 lines + "H70V80H30zM40 40h20v20h-20z'/></clipPath>";
		const std::string square = "<rect width='100' height='100' fill='#00f'/>";
		const std::string clipped = "clip-path='url(#c)'";
		ExpectPixels(
			"<g " + shape + ">" + square + "</g>",
			"30,20 0000ff; 29,50 none; 69,79 0000ff; 70,50 none; 39,50 0000ff; 40,50 none; 60,59 0000ff; 50,80 none");
		ExpectPixels("<g opacity='.2' " + shape + ">" + square + "</g>",
					 "30,20 0000ff33; 29,50 none; 69,79 0000ff33; 50,50 none");
		ExpectPixels(clip + "<g " + clipped + ">" + square + "</g>",
					 "30,20 0000ff; 29,50 none; 59,79 0000ff; 60,50 none; 39,50 0000ff; 40,50 none; 50,80 none");
		ExpectPixels(clip + "<clipPath id='d'><path d='M0 0H99V70H0' " + clipped + "/></clipPath>" +
						 "<g clip-path='url(#d)'>" + square + "</g>",
					 "30,20 0000ff; 29,50 none; 59,69 0000ff; 50,70 none; 60,30 none; 50,50 none");
	}
}

TEST_F(Clips, MasksCoverByTheirLightOrTheirAlpha)
{
	const std::string square = "<rect width='99' height='99' fill='#00f' mask='url(#m)'/>";
	const Case cases[] = {
		// Red, green and blue weigh 0.2125, 0.7154 and 0.0721.
		{"<mask id='m'><rect width='9' height='9' fill='#f00'/><rect x='20' width='9' height='9' fill='#0f0'/><rect "
		 "x='40' width='9' height='9' fill='#00f'/><rect x='60' width='9' height='9' fill='#fff'/></mask>",
		 "5,5 0000ff36; 25,5 0000ffb6; 45,5 0000ff12; 65,5 0000ff; 80,5 none"},
		{"<mask id='m'><rect width='99' height='99' fill='#808080' fill-opacity='.5'/></mask>", "5,5 0000ff40"},
		// As light, a grey of a half counts as 0.2158.
		{"<mask id='m' color-interpolation='linearRGB'><rect width='99' height='99' fill='#808080'/></mask>",
		 "5,5 0000ff37"},
		{"<mask id='m' color-interpolation='linearRGB'><rect width='99' height='99' fill='#0f0'/></mask>",
		 "5,5 0000ffb6"},
		{"<mask id='m' color-interpolation='linearRGB'><rect width='99' height='99' fill='#808080' "
		 "fill-opacity='.5'/></mask>",
		 "5,5 ~0000ff1c"},
		{"<mask id='m' mask-type='alpha'><rect width='99' height='99' fill-opacity='.25'/></mask>", "5,5 0000ff40"},
		{"<mask id='m' maskContentUnits='objectBoundingBox'><rect x='.25' y='.5' width='.5' height='.25' "
		 "fill='#fff'/></mask>",
		 "25,55 0000ff; 23,55 none; 73,73 0000ff; 75,60 none; 60,48 none; 60,75 none"},
		{"<mask id='m' maskUnits='userSpaceOnUse' x='10' y='20' width='30' height='40'><rect width='99' height='99' "
		 "fill='#fff'/></mask>",
		 "10,20 0000ff; 9,30 none; 20,19 none; 39,59 0000ff; 40,30 none; 20,60 none"},
		{"<mask id='m' maskUnits='userSpaceOnUse' x='10' y='20' width='0' height='40'><rect width='99' height='99' "
		 "fill='#fff'/></mask>",
		 "20,30 none"},
		// Clips and masks of a mask cut it off in turn.
		{"<clipPath id='c'><rect width='30' height='99'/></clipPath><mask id='m' clip-path='url(#c)'><rect width='99' "
		 "height='99' fill='#fff'/></mask>",
		 "29,5 0000ff; 30,5 none"},
		{"<mask id='n'><rect width='99' height='30' fill='#fff'/></mask><mask id='m' mask='url(#n)'><rect width='99' "
		 "height='99' fill='#fff'/></mask>",
		 "5,29 0000ff; 5,30 none"},
		{"<mask id='m'/>", "5,5 none"},
		{"<mask id='n'/>", "5,5 0000ff"},
	};
	for (const Case& sample : cases)
		ExpectPixels(sample.value + square, sample.pixels);
	// By default a mask reaches a tenth farther than the box.
	ExpectPixels(
		"<mask id='m'><rect width='99' height='99' fill='#fff'/></mask><rect x='20' y='20' width='40' height='40' "
		"stroke='#00f' stroke-width='20' mask='url(#m)'/>",
		"16,40 0000ff; 15,40 none; 40,16 0000ff; 40,15 none; 63,40 0000ff; 64,40 none; 40,63 0000ff; 40,64 none");
	ExpectPixels("<mask id='m' color-interpolation='linearRGB'><rect width='99' height='99' fill='#fff'/></mask><g "
				 "mask='url(#m)' opacity='.4'><rect width='99' height='99' fill='#00f'/></g>",
				 "5,5 0000ff66");
	// Clips with opacities and masks at the same time.
	const std::string clip =
		"<clipPath id='c'><circle cx='30' cy='30' r='20'/><circle cx='50' cy='30' r='20'/></clipPath><mask "
		"id='m'><rect width='99' height='30' fill='#fff'/></mask>";
	ExpectPixels(clip + "<rect width='99' height='99' fill='#00f' clip-path='url(#c)' opacity='.6'/>",
				 "12,30 0000ff99; 40,30 0000ff99; 8,30 none; 40,8 none");
	ExpectPixels(clip + "<g clip-path='url(#c)' opacity='.6'><rect width='99' height='99' fill='#00f'/><rect "
						"width='99' height='20' fill='#f00'/></g>",
				 "40,25 0000ff99; 30,15 ff000099; 68,25 0000ff99; 72,25 none");
	ExpectPixels(clip + "<g clip-path='url(#c)' mask='url(#m)'><rect width='99' height='99' fill='#00f'/></g>",
				 "40,29 0000ff; 40,30 none; 8,29 none");
	ExpectPixels(clip + "<rect width='99' height='99' fill='#f00'/><g clip-path='url(#c)' "
						"style='mix-blend-mode:multiply'><rect width='99' "
						"height='99' fill='#00f'/></g>",
				 "40,30 000000; 8,30 ff0000");
	// The names that these properties once had.
	ExpectPixels(
		"<mask id='m'><rect width='50' height='99' fill='#fff'/></mask><mask id='n'><rect width='20' "
		"height='99' fill='#fff'/></mask><g fill='#00f'><rect width='99' height='9' "
		"style='-webkit-mask:url(#m)'/><rect y='10' width='99' height='9' style='mask-mode:alpha;"
		"-webkit-mask-image:url(#m),url(#n);-webkit-mask-composite:source-out'/><rect y='20' width='99' "
		"height='9' style='-webkit-clip-path:inset(0 30px 0 0);-webkit-opacity:.4'/><rect y='30' width='30' "
		"height='9' style='-webkit-transform:translate(20px);-webkit-filter:opacity(.4)'/><rect y='40' width='9' "
		"height='9' style='-webkit-transform:scale(2);-webkit-transform-origin:0 49px'/></g>",
		"49,5 0000ff; 50,5 none; 19,15 none; 20,15 0000ff; 49,15 0000ff; 50,15 none; 68,25 0000ff66; 69,25 none; "
		"19,35 none; 20,35 0000ff66; 17,31 0000ff; 9,48 0000ff");
	ExpectPixels("<rect width='9' height='9' -webkit-opacity='0' -webkit-clip-path='inset(9px)'/>", "5,5 000000");
	// The opacity of what is masked multiplies.
	ExpectPixels("<mask id='m'><rect width='99' height='99' fill='#808080'/></mask><rect width='99' height='99' "
				 "fill='#00f' mask='url(#m)' opacity='.5'/>",
				 "5,5 ~0000ff40");
	ExpectPixels("<mask id='m'><rect width='50' height='99' fill='#fff'/></mask><clipPath id='c'><rect width='99' "
				 "height='50'/></clipPath><g mask='url(#m)' clip-path='url(#c)' opacity='.5'><rect width='99' "
				 "height='99' fill='#00f'/><rect width='99' height='20' fill='#f00'/></g>",
				 "25,25 0000ff80; 25,10 ff000080; 75,25 none; 25,75 none");
}

TEST_F(Clips, ViewportsCutOffUnlessTheyOverflow)
{
	const Case cases[] = {
		{"<svg x='20' y='30' width='40' height='20'><rect x='-10' y='-10' width='99' height='99'/></svg>",
		 "20,30 000000; 19,40 none; 40,29 none; 59,49 000000; 60,40 none; 40,50 none"},
		{"<svg x='20' y='30' width='40' height='20' overflow='scroll'><rect width='99' height='99'/></svg>",
		 "59,49 000000; 60,40 none; 40,50 none"},
		{"<svg x='20' y='30' width='40' height='20' overflow='visible'><rect x='-10' y='-10' width='99' "
		 "height='99'/></svg>",
		 "10,20 000000; 9,30 none; 99,99 000000"},
		{"<svg x='20' y='30' width='40' height='20' viewBox='0 0 10 10'><rect width='10' height='10'/></svg>",
		 "30,30 000000; 29,40 none; 49,49 000000; 50,40 none"},
		{"<svg x='20' y='30' width='40' height='20' viewBox='0 0 10 10' preserveAspectRatio='xMinYMin'><rect "
		 "width='10' height='10'/></svg>",
		 "20,30 000000; 39,49 000000; 40,40 none"},
		{"<svg x='20' y='30' width='40' height='20' viewBox='0 0 10 10' preserveAspectRatio='xMaxYMid'><rect "
		 "width='10' height='10'/></svg>",
		 "39,40 none; 40,30 000000; 59,49 000000; 60,40 none"},
		{"<svg x='20' y='30' width='20' height='40' viewBox='0 0 10 10' preserveAspectRatio='xMidYMax'><rect "
		 "width='10' height='10'/></svg>",
		 "30,49 none; 20,50 000000; 39,69 000000; 30,70 none"},
		{"<svg x='20' y='30' width='40' height='20' viewBox='0 0 10 10' preserveAspectRatio='none'><rect width='5' "
		 "height='5'/></svg>",
		 "39,39 000000; 40,35 none; 30,40 none"},
		// The middle of a slice shows: of a content of 40 by 40, the rows from 10 to 30.
		{"<svg x='20' y='30' width='40' height='20' viewBox='0 0 10 10' preserveAspectRatio='xMidYMid slice'><rect "
		 "width='10' height='5' fill='#f00'/><rect y='5' width='10' height='5'/></svg>",
		 "20,30 ff0000; 59,39 ff0000; 20,40 000000; 59,49 000000; 60,40 none; 40,29 none; 40,50 none"},
		{"<svg x='20' y='30' width='40' height='20' viewBox='0 0 10 10' preserveAspectRatio='xMidYMax slice'><rect "
		 "width='10' height='5' fill='#f00'/><rect y='5' width='10' height='5'/></svg>",
		 "20,30 000000; 40,49 000000"},
		{"<svg x='20' y='30' width='40' height='20' viewBox='0 0 0 10'><rect width='9' height='9'/></svg>",
		 "25,35 none"},
		{"<svg x='10%' y='20%' width='50%' height='25%'><rect width='100%' height='100%'/></svg>",
		 "10,20 000000; 9,30 none; 59,44 000000; 60,30 none; 30,45 none"},
		{"<symbol id='s' viewBox='0 0 10 10'><rect width='10' height='10'/></symbol><use href='#s' x='10' y='20' "
		 "width='30' height='40' />",
		 "10,25 000000; 9,40 none; 39,54 000000; 40,40 none; 20,24 none; 20,55 none"},
		{"<symbol id='s' viewBox='0 0 10 10' overflow='visible'><rect width='20' height='10'/></symbol><use href='#s' "
		 "x='10' y='20' width='30' height='30'/>",
		 "69,49 000000; 70,40 none"},
	};
	for (const Case& sample : cases)
		ExpectPixels(sample.value, sample.pixels);
}

} // namespace
} // namespace orvan
