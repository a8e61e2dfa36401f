// SPDX-License-Identifier: MIT
#include "geometry_module.h"

namespace orvan
{
namespace
{

using Hits = GeometryTest;

TEST_F(Hits, ComeTopmostFirstByFillAndStroke)
{
	const AskedPicture picture(
		"<rect id='a' width='50' height='50'/><path id='b' fill-rule='evenodd' d='M0 0h40v40h-40zM10 10h20v20h-20z'/>"
		"<path id='c' fill='none' stroke='red' stroke-width='4' d='M0 45C20 45 20 45 50 45'/>"
		"<circle id='d' cx='80' cy='20' r='10' fill='none' stroke='red' stroke-width='2' stroke-dasharray='5 1000'/>"
		"<path id='e' d='M60 80h30' fill='none' stroke='red' stroke-dasharray='1 20' pathLength='0'/>"
		"<path id='f' d='M60 90h30' fill='none' stroke='red' stroke-dasharray='1' pathLength='2'/>"
		"<g fill='none' stroke='red' stroke-dasharray='1em' font-size='8'><path id='h' d='M60 96h30' "
		"font-size='20'/></g>");
	EXPECT_EQ("h", picture.At(67, 96));
	EXPECT_EQ("", picture.At(70, 96));
	EXPECT_EQ("b a", picture.At(5, 5));
	EXPECT_EQ("e", picture.At(70, 80)); // Dashes of a length that is counted as none are none.
	EXPECT_EQ("f", picture.At(74, 90));
	EXPECT_EQ("", picture.At(76, 90));
	EXPECT_EQ("a", picture.At(20, 20));
	EXPECT_EQ("b", picture.At(5, 5, {}));
	EXPECT_EQ("c a", picture.At(30, 46.9));
	EXPECT_EQ("a", picture.At(30, 47.1));
	EXPECT_EQ("", picture.At(80, 20));
	EXPECT_EQ("d", picture.At(89.8, 21.5));
	EXPECT_EQ("", picture.At(70, 20)); // In a gap.
	EXPECT_EQ("", picture.At(60, 60));
	EXPECT_EQ("b a", picture.At(0, 20)); // An edge belongs to the area.
	// A tolerance finds what is near.
	EXPECT_EQ("", picture.At(52, 20));
	EXPECT_EQ("a", picture.At(52, 20, {.tolerance = 2.5, .findsAll = true}));
	EXPECT_EQ("d", picture.At(92, 21, {.tolerance = 1.5, .findsAll = true}));
	EXPECT_FALSE(picture.geometry->FindAt({0, 0}, {.tolerance = -1.0}).IsOk());
}

TEST_F(Hits, OnStrokesMeetJoinsCapsAndTurnedPens)
{
	const AskedPicture picture(
		"<g fill='none' stroke='red' stroke-width='10'><path id='m' d='M10 10h20v20'/>"
		"<path id='b' d='M50 10h20v20' stroke-linejoin='bevel'/><path id='r' d='M10 50h20v20' "
		"stroke-linejoin='round' stroke-linecap='round'/><path id='s' d='M50 50h20' "
		"stroke-linecap='square'/><path id='z' d='M90 90z' stroke-linecap='round'/>"
		"<path id='v' d='M40 45h5' transform='scale(2)' vector-effect='non-scaling-stroke'/></g>");
	EXPECT_EQ("m", picture.At(34, 6));
	EXPECT_EQ("", picture.At(9, 10));
	EXPECT_EQ("", picture.At(73.9, 6.1));
	EXPECT_EQ("b", picture.At(72, 8));
	EXPECT_EQ("", picture.At(34, 46));
	EXPECT_EQ("r", picture.At(33, 47));
	EXPECT_EQ("r", picture.At(7, 53));
	EXPECT_EQ("", picture.At(5.5, 54.5));
	EXPECT_EQ("s", picture.At(45.5, 54.5));
	EXPECT_EQ("z", picture.At(94, 90));
	EXPECT_EQ("v", picture.At(85, 94.9));
	EXPECT_EQ("", picture.At(85, 95.1));
}

TEST_F(Hits, GoByPointerEventsAndVisibility)
{
	const auto hit = [](const std::string& attributes, double x)
	{
		return AskedPicture(
				   "<linearGradient id='empty'/><rect id='r' x='10' y='10' width='20' height='20' stroke-width='4' " +
				   attributes + "/>")
			.At(x, 20);
	};
	struct Case
	{
		const char* attributes;
		const char* inside;
		const char* onStroke;
	};
	for (const Case& sample : {
			 Case{"fill='none'", "", ""},
			 Case{"stroke='red'", "r", "r"},
			 Case{"fill='url(#gone)'", "", ""},
			 Case{"fill='url(#gone) red'", "r", ""},
			 Case{"fill='url(#empty)' stroke='url(#gone)'", "r", ""},
			 Case{"visibility='hidden'", "", ""},
			 Case{"fill='none' pointer-events='visible'", "r", "r"},
			 Case{"fill='none' pointer-events='visibleFill'", "r", ""},
			 Case{"pointer-events='visibleStroke'", "", "r"},
			 Case{"visibility='hidden' pointer-events='painted'", "r", ""},
			 Case{"visibility='hidden' fill='none' pointer-events='fill'", "r", ""},
			 Case{"visibility='hidden' pointer-events='stroke'", "", "r"},
			 Case{"visibility='hidden' fill='none' pointer-events='all'", "r", "r"},
			 Case{"pointer-events='none' stroke='red'", "", ""},
			 Case{"fill='none' pointer-events='bounding-box'", "r", ""},
			 Case{"opacity='0'", "r", ""},
			 Case{"style='display:none'", "", ""},
		 })
	{
		EXPECT_EQ(sample.inside, hit(sample.attributes, 20)) << sample.attributes;
		EXPECT_EQ(sample.onStroke, hit(sample.attributes, 8.5)) << sample.attributes;
	}
	const AskedPicture inherited("<g pointer-events='none'><rect id='r' width='9' height='9'/></g>");
	EXPECT_EQ("", inherited.At(5, 5));
	EXPECT_EQ("r", inherited.At(5, 5, {.findsAll = true, .ignoresPointerEvents = true}));
}

TEST_F(Hits, TellTheUsesAndEndAtClips)
{
	const AskedPicture picture(
		"<defs><rect id='r' width='10' height='10'/><g id='g'><use id='i' href='#r' x='5'/></g>"
		"<clipPath id='c'><circle cx='50' cy='50' r='10'/><use href='#k'/></clipPath><rect id='k' x='80' width='5' "
		"height='5'/>"
		"<clipPath id='n' clip-path='url(#c)'><rect width='50' height='100'/></clipPath>"
		"<clipPath id='e' clip-rule='evenodd'><path d='M0 0h100v100h-100zM10 60h20v20h-20z'/></clipPath></defs>"
		"<use id='u' href='#g' y='20'/><g clip-path='url(#c)'><rect id='w' x='40' y='0' width='60' height='60'/></g>"
		"<rect id='h' width='100' height='100' clip-path='url(#n)' fill='none' pointer-events='fill'/>"
		"<g clip-path='url(#e)'><rect id='o' y='60' width='30' height='30'/></g>"
		"<svg x='60' y='80' width='10' height='10'><rect id='s' width='50' height='5'/></svg>"
		"<mask id='m'/><rect id='q' x='90' y='90' width='5' height='5' mask='url(#m)'/>");
	EXPECT_EQ("u>i>r", picture.At(12, 25));
	EXPECT_EQ("", picture.At(12, 5));
	EXPECT_EQ("h w", picture.At(45, 50));
	EXPECT_EQ("w", picture.At(55, 50));
	EXPECT_EQ("w", picture.At(82, 2));
	EXPECT_EQ("", picture.At(42, 42)); // In the box of the clip path, and not in the circle.
	EXPECT_EQ("o", picture.At(5, 70));
	EXPECT_EQ("", picture.At(20, 70));
	EXPECT_EQ("s", picture.At(69, 82));
	EXPECT_EQ("", picture.At(71, 82));
	EXPECT_EQ("q", picture.At(92, 92));
	// What is cut off by edges that are turned is not so by their box.
	const AskedPicture turned(
		"<g transform='rotate(45 50 50)'><svg x='40' y='40' width='20' height='20'><rect id='v' x='-50' y='-50' "
		"width='200' height='200'/></svg></g><clipPath id='x'><rect y='80' width='50' height='20' "
		"clip-path='url(#y)'/></clipPath><clipPath id='y'><circle cx='10' cy='90' r='10'/></clipPath><rect id='r' "
		"y='80' width='50' height='20' clip-path='url(#x)'/>");
	EXPECT_EQ("v", turned.At(50, 37));
	EXPECT_EQ("", turned.At(40, 40));
	EXPECT_EQ("r", turned.At(10, 81));
	EXPECT_EQ("", turned.At(2, 81));
}

TEST_F(Hits, OfARectangleAreWhatItMeetsOrHolds)
{
	const AskedPicture picture(
		"<rect id='a' x='10' y='10' width='20' height='20'/><rect id='b' x='40' y='10' width='5' "
		"height='5' stroke='red' stroke-width='4'/><rect id='c' x='12' y='12' width='2' height='2' "
		"visibility='hidden'/>");
	const auto find = [&](const SVGBox& box, bool isInside)
	{
		return AskedPicture::Describe(Must(picture.geometry->FindIn(box, isInside)));
	};
	EXPECT_EQ("b a", find({25, 5, 14, 30, false}, false));
	EXPECT_EQ("a", find({25, 5, 12, 30, false}, false));
	EXPECT_EQ("", find({25, 5, 21, 30, false}, true));
	EXPECT_EQ("b", find({38, 8, 9, 9, false}, true));
	EXPECT_EQ("", find({39, 8, 9, 9, false}, true));
	EXPECT_EQ("", find({}, false));
}

TEST_F(Hits, AmongManyAreThoseThatAreThere)
{
	std::string elements;
	for (int y = 0; y < 60; y++)
	{
		for (int x = 0; x < 60; x++)
		{
			elements += "<rect id='r" + std::to_string(x) + '-' + std::to_string(y) + "' x='" +
						std::to_string(x * 1.5) + "' y='" + std::to_string(y * 1.5) + "' width='1' height='1'/>";
		}
	}
	const AskedPicture picture(elements);
	for (int i = 0; i < 60; i++)
	{
		const int other = i * 7 % 60;
		EXPECT_EQ('r' + std::to_string(i) + '-' + std::to_string(other), picture.At(i * 1.5 + 0.3, other * 1.5 + 0.9));
		EXPECT_EQ("", picture.At(i * 1.5 + 1.2, other * 1.5 + 0.9));
	}
	const SVGHits row = Must(picture.geometry->FindIn({0, 0, 100, 0.5, false}, false));
	EXPECT_EQ(60u, row.hits.GetCount());
}

TEST_F(Hits, OnDashesFollowTheirLengthsAndOffsets)
{
	struct Case
	{
		const char* attributes;
		std::initializer_list<double> on;
		std::initializer_list<double> off;
	};
	// Along a line from 10 to 90.
	for (const Case& sample : {
			 Case{"stroke-dasharray='10 5'", {10.1, 19.9, 25.1, 34.9, 85.1, 89.9}, {20.1, 24.9, 35.1, 84.9}},
			 Case{"stroke-dasharray='10'", {19.9, 30.1}, {20.1, 29.9}},
			 // An odd number of lengths counts twice.
			 Case{"stroke-dasharray='5 10 15'",
				  {14.9, 25.1, 39.9, 45.1, 54.9, 70.1},
				  {15.1, 24.9, 40.1, 44.9, 55.1, 69.9}},
			 Case{"stroke-dasharray='10 5' stroke-dashoffset='3'", {16.9, 22.1}, {17.1, 21.9}},
			 Case{"stroke-dasharray='10 5' stroke-dashoffset='-3'", {13.1, 22.9, 28.1}, {10.1, 12.9, 23.1, 27.9}},
			 Case{"stroke-dasharray='10 5' stroke-dashoffset='18'", {16.9, 22.1}, {17.1, 21.9}},
			 Case{"stroke-dasharray='10 5' stroke-dashoffset='12'", {13.1, 22.9}, {10.1, 12.9, 23.1}},
			 Case{"stroke-dasharray='5 10 15' stroke-dashoffset='-5'", {15.1, 19.9, 30.1}, {14.9, 20.1, 29.9}},
			 Case{"stroke-dasharray='10%'", {19.9, 30.1}, {20.1, 29.9}},
			 Case{"stroke-dasharray='1' pathLength='8' stroke-dashoffset='.5'", {14.9, 25.1}, {15.1, 24.9}},
			 Case{"stroke-dasharray='10 10' stroke-linecap='square'", {8.1, 21.9, 28.1}, {7.9, 22.1, 27.9}},
			 Case{"stroke-dasharray='0 20' stroke-linecap='round'", {8.1, 11.9, 28.1, 31.9}, {7.9, 12.1, 27.9, 32.1}},
			 Case{"stroke-dasharray='100' stroke-linecap='square'", {8.1, 91.9}, {7.9, 92.1}},
			 Case{"stroke-dasharray='0 20'", {}, {9.9, 10.1, 29.9, 30.1}},
			 Case{"stroke-dasharray='10 -5'", {20.1, 24.9}, {}},
			 Case{"stroke-dasharray='0 0'", {20.1, 24.9}, {}},
		 })
	{
		const AskedPicture picture("<path id='p' d='M10 20h80' stroke='red' stroke-width='4' fill='none' " +
								   std::string(sample.attributes) + "/>");
		for (const double x : sample.on)
			EXPECT_EQ("p", picture.At(x, 20.5)) << sample.attributes << " at " << x;
		for (const double x : sample.off)
			EXPECT_EQ("", picture.At(x, 20.5)) << sample.attributes << " at " << x;
	}
	// Around a corner it is joined, and so is one that goes on where the path is closed. Each subpath begins anew.
	const AskedPicture around(
		"<g fill='none' stroke='red' stroke-width='4'><path id='c' d='M10 20h20v40' "
		"stroke-dasharray='30 100'/><path id='z' d='M60 20h20v20h-20z' stroke-dasharray='70 5'/><path "
		"id='o' d='M60 60h20v20h-20v-20' stroke-dasharray='70 5'/><path id='s' d='M10 80h15M10 90h15' "
		"stroke-dasharray='10 50'/><path id='e' d='M60 90h10v-6' stroke-dasharray='10 3'/></g>");
	EXPECT_EQ("c", around.At(31.9, 18.1));
	// One that ends there ends before it, and one that begins there begins behind it.
	EXPECT_EQ("e", around.At(69.9, 91.9));
	EXPECT_EQ("", around.At(70.1, 91.9));
	EXPECT_EQ("e", around.At(68.1, 86.9));
	EXPECT_EQ("", around.At(68.1, 87.1));
	EXPECT_EQ("c", around.At(30, 29.9));
	EXPECT_EQ("", around.At(30, 30.1));
	EXPECT_EQ("z", around.At(58.1, 18.1));
	EXPECT_EQ("", around.At(60, 27.5));
	EXPECT_EQ("z", around.At(60, 24.9));
	EXPECT_EQ("", around.At(58.1, 58.1));
	EXPECT_EQ("s", around.At(19.9, 80));
	EXPECT_EQ("", around.At(20.1, 80));
	EXPECT_EQ("s", around.At(19.9, 90));
	EXPECT_EQ("", around.At(20.1, 90));
}

TEST_F(Hits, TellThePartAndAllowForATolerance)
{
	const AskedPicture picture(
		"<g transform='scale(4)'><path id='p' d='M5 5h10' stroke='red' fill='none'/></g><path id='v' d='M5 15h10' "
		"transform='scale(4)' stroke='red' fill='none' vector-effect='non-scaling-stroke'/><rect id='r' x='1' y='80' "
		"width='10' height='10' transform='scale(4 1)' stroke='red' stroke-width='.5'/><rect id='b' x='80' y='80' "
		"width='10' height='10' pointer-events='bounding-box' stroke='red' stroke-width='4'/><text id='t' x='70' "
		"y='40' "
		"font-size='20' font-family='DejaVu Sans'>n</text>");
	struct Case
	{
		double x, y, tolerance;
		const char* id;
		SVGHitPart part;
	};
	for (const auto& [x, y, tolerance, id, part] : {
			 Case{40, 21.9, 0.0, "p", SVGHitPart::stroke},
			 Case{40, 25, 3.1, "p", SVGHitPart::stroke},
			 Case{40, 25, 2.9, "", SVGHitPart::stroke},
			 Case{40, 60.4, 0.0, "v", SVGHitPart::stroke},
			 Case{40, 62, 1.6, "v", SVGHitPart::stroke},
			 Case{40, 62, 1.4, "", SVGHitPart::stroke},
			 Case{10, 85, 0.0, "r", SVGHitPart::fill},
			 Case{5.1, 85, 0.0, "r", SVGHitPart::fill},
			 Case{4.9, 85, 0.0, "r", SVGHitPart::stroke},
			 Case{3.1, 85, 0.0, "r", SVGHitPart::stroke},
			 Case{2.9, 85, 0.0, "", SVGHitPart::stroke},
			 Case{2, 85, 1.1, "r", SVGHitPart::stroke}, // As far to the side as upwards, though it is scaled.
			 Case{2, 85, 0.9, "", SVGHitPart::stroke},
			 Case{20, 78.75, 1.1, "r", SVGHitPart::stroke},
			 Case{20, 78.75, 0.9, "", SVGHitPart::stroke},
			 Case{85, 85, 0.0, "b", SVGHitPart::box},
			 Case{79.5, 85, 0.0, "", SVGHitPart::box},
			 Case{71, 39.5, 0.0, "t", SVGHitPart::text},
			 Case{77, 39.5, 0.0, "t", SVGHitPart::text},
			 Case{77, 26, 0.0, "t", SVGHitPart::text},
		 })
	{
		const SVGHits found = Must(picture.geometry->FindAt({x, y}, {.tolerance = tolerance}));
		EXPECT_EQ(id, AskedPicture::Describe(found)) << x << ' ' << y;
		if (!found.hits.IsEmpty())
		{
			EXPECT_EQ(part, found.hits[0].part) << x << ' ' << y;
		}
	}
	const AskedPicture slope("<path id='p' d='M0 0L20 20' stroke='red' fill='none' transform='scale(4)'/>");
	EXPECT_EQ("p", slope.At(50, 40, {.tolerance = 5.2})); // 7.07 away from the middle of the line.
	EXPECT_EQ("", slope.At(50, 40, {.tolerance = 5.0}));
	// Without a stroke what is near the edge is the fill still.
	const AskedPicture plain("<rect id='r' width='10' height='10' transform='translate(10) scale(4 1)'/>");
	EXPECT_EQ("r", plain.At(52, 5, {.tolerance = 2.1}));
	EXPECT_EQ("", plain.At(52, 5, {.tolerance = 1.9}));
	EXPECT_EQ("r", plain.At(30, 12, {.tolerance = 2.1}));
	EXPECT_EQ("", plain.At(30, 12, {.tolerance = 1.9}));
}

TEST_F(Hits, PassMarkersAndEndAtViewportsOfSymbols)
{
	const AskedPicture picture(
		"<marker id='m' markerUnits='userSpaceOnUse' markerWidth='20' markerHeight='20' refX='10' refY='10'><g><rect "
		"id='k' "
		"width='20' height='20'/><rect id='l' width='5' height='5'/></g></marker><clipPath id='c'><rect width='15' "
		"height='99'/></clipPath><path id='p' d='M10 10h80' fill='none' stroke='red' stroke-width='2' "
		"marker-start='url(#m)' "
		"marker-end='url(#m)'/><g clip-path='url(#c)'><rect id='z' y='2' width='30' height='5'/></g><symbol id='s' "
		"viewBox='0 0 10 10'>"
		"<rect id='q' width='20' height='10'/></symbol><use id='u' href='#s' x='10' y='40' width='20' "
		"height='20'/><symbol "
		"id='o' viewBox='0 0 10 10' overflow='visible'><rect id='w' width='20' height='10'/></symbol><use id='v' "
		"href='#o' "
		"x='50' y='40' width='20' height='20'/><image id='i' x='10' y='70' width='20' height='20' href='none.png'/>");
	EXPECT_EQ("", picture.At(90, 15));
	EXPECT_EQ("p", picture.At(50, 10.9));
	EXPECT_EQ("z", picture.At(14.9, 5));
	EXPECT_EQ("", picture.At(15.1, 5));
	EXPECT_EQ("u>q", picture.At(29.9, 50));
	EXPECT_EQ("", picture.At(30.1, 50));
	EXPECT_EQ("v>w", picture.At(89.9, 50));
	EXPECT_EQ("i", picture.At(15, 75));
	EXPECT_EQ("", picture.At(31, 75));
	// What is cut off is in no area either.
	const auto find = [&](const SVGBox& box, bool isInside)
	{
		return AskedPicture::Describe(Must(picture.geometry->FindIn(box, isInside)));
	};
	EXPECT_EQ("", find({16, 2, 10, 5, false}, false));
	EXPECT_EQ("z", find({14, 2, 10, 5, false}, false));
	EXPECT_EQ("z", find({0, 2, 15, 5, false}, true));
	EXPECT_EQ("", find({0, 2.1, 15, 5, false}, true));
	EXPECT_EQ("", find({31, 45, 10, 5, false}, false));
	EXPECT_EQ("u>q", find({10, 40, 20, 20, false}, true));
	EXPECT_EQ("v>w", find({80, 45, 5, 5, false}, false));
}

TEST_F(Hits, OfTextsAreTheirCells)
{
	const AskedPicture picture(
		"<text id='t' x='10' y='50' font-size='20' font-family='DejaVu Sans'>l<tspan id='s' y='90' fill='none' "
		"stroke='red'>l</tspan></text><text id='b' x='60' y='50' font-size='20' font-family='DejaVu Sans' "
		"pointer-events='bounding-box'>n</text>");
	EXPECT_EQ("b", picture.At(65, 33)); // Above what is painted.
	EXPECT_EQ("t", picture.At(10.5, 40));
	EXPECT_EQ("s", picture.At(16.5, 85));
	EXPECT_EQ("", picture.At(10.5, 65)); // Between them, in the box of the text.
	const AskedPicture moved("<g transform='translate(30 10) scale(2)'><text id='t' x='10' y='20' font-size='10' "
							 "font-family='DejaVu Sans'>n</text></g>");
	EXPECT_EQ("t", moved.At(50.5, 45));
	EXPECT_EQ("", moved.At(49.5, 45));
	EXPECT_EQ("", moved.At(10.5, 18));
}

} // namespace
} // namespace orvan
