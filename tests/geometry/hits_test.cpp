// SPDX-License-Identifier: MIT
#include "geometry_module.h"
#include "orvan/host/allocation_failure.h"
#include "svg_edit.h"
#include "svg_source.h"

#include <random>
#include <vector>

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
		"stroke-dasharray='10 50'/></g>");
	EXPECT_EQ("c", around.At(31.9, 18.1));
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

/// Every answer about the boxes of a picture's elements and what is at points of it.
std::string AskAll(const AskedPicture& picture, const SVGGeometryRef& geometry, const std::vector<const char*>& ids)
{
	std::string answers;
	for (const char* const id : ids)
	{
		answers += id;
		for (const auto kind : {SVGBoxKind::fill, SVGBoxKind::stroke, SVGBoxKind::visual})
		{
			for (const auto in : {SVGCoordinates::element, SVGCoordinates::document, SVGCoordinates::view})
				answers += ' ' + AskedPicture::Describe(Must(geometry->GetBox(picture[id], kind, in)));
		}
		answers += '\n';
	}
	for (int row = 0; row < 20; row++)
	{
		for (int column = 0; column < 20; column++)
		{
			const Vector2d at{column * 5.0 + 0.3, row * 5.0 + 0.7};
			answers += AskedPicture::Describe(Must(geometry->FindAt(at, {.findsAll = true}))) + ';';
		}
	}
	return answers + std::to_string(Must(geometry->Normalize({})).points.GetCount());
}

TEST_F(Hits, AreTrueAfterEachEdit)
{
	const std::vector<const char*> ids{"root", "g", "p",  "r", "c", "t", "s",  "k", "u", "used", "w",
									   "w1",   "b", "b1", "m", "d", "q", "cp", "v", "i", "o",    "o1"};
	const AskedPicture picture(
		"<clipPath id='cp'><circle cx='50' cy='50' r='45'/></clipPath><clipPath id='bb' clipPathUnits="
		"'objectBoundingBox'><rect width='.5' height='1'/></clipPath><linearGradient id='lg'><stop/><stop offset='1'/>"
		"</linearGradient><marker id='mk' markerWidth='4' markerHeight='4'><path d='M0 0h2v2z'/></marker>"
		"<g id='g' transform='rotate(20 50 50)' clip-path='url(#cp)' fill='url(#lg)'><path id='p' d='M10 10C20 0 30 30 "
		"40 10z'/><rect id='r' x='50' y='20' width='10' height='30' stroke='red'/><g id='k' transform='skewX(10)'>"
		"<circle id='c' cx='30' cy='60' r='9'/></g></g><text id='t' x='10' y='90' font-size='12' font-family="
		"'DejaVu Sans'>ab<tspan id='s' dy='2'>cd</tspan></text><rect id='used' x='80' width='9' height='9'/><use id="
		"'u' href='#used' y='60'/><switch id='w'><rect id='w1' x='70' y='70' width='9' height='5'/><rect width='3' "
		"height='3'/></switch><g id='b' clip-path='url(#bb)'><rect id='b1' x='2' y='60' width='8' height='8'/></g>"
		"<path id='m' d='M60 90h10v5h9' fill='none' stroke='red' marker-mid='url(#mk)'/><defs><rect id='d' width='7' "
		"height='3'/></defs><svg id='q' x='40' y='80' width='10' height='10' viewBox='0 0 5 5'><rect id='v' width='9' "
		"height='3'/></svg><image id='i' x='90' y='90' width='8' height='8' href='none.png'/><g id='o' style="
		"'transform-box:fill-box;transform-origin:50% 50%;transform:rotate(45deg)'><rect id='o1' x='20' y='80' "
		"width='6' height='6'/></g>",
		"id='root' width='100' height='100'");
	const auto source = Cast<SVGDocumentSourceInterface>(picture.GetDocument());
	const auto edit = [&](const char* id, const char* name, const char* value)
	{
		Must(source->SetAttributeText(picture[id], Text(name), Text(value)));
	};
	struct Edit
	{
		const char* id;
		const char* name;
		const char* value;
	};
	constexpr Edit kEdits[] = {
		{"p", "transform", "translate(5 40)"},
		{"p", "d", "M0 0h30v20z"},
		{"p", "stroke", "red"},
		{"r", "x", "30"},
		{"r", "fill", "none"},
		{"r", "visibility", "hidden"},
		{"r", "display", "none"},
		{"r", "display", "inline"},
		{"r", "visibility", "visible"},
		{"r", "stroke-dasharray", "3 2"},
		{"c", "r", "15"},
		{"k", "transform", "translate(20 -20)"},
		{"g", "transform", "scale(.5)"},
		{"g", "stroke", "blue"},
		{"g", "clip-path", "none"},
		{"t", "x", "30"},
		{"s", "dy", "-20"},
		{"s", "stroke", "red"},
		{"used", "width", "15"},
		{"u", "y", "40"},
		{"u", "href", "#c"},
		{"w1", "systemLanguage", "xx"},
		{"w1", "width", "20"},
		{"b1", "width", "20"},
		{"m", "d", "M60 90h10v5h9v3"},
		{"m", "stroke-width", "3"},
		{"d", "width", "20"},
		{"q", "viewBox", "0 0 10 10"},
		{"v", "height", "9"},
		{"i", "x", "80"},
		{"o1", "width", "20"},
		{"o", "opacity", ".5"},
		{"cp", "transform", "translate(-20)"},
		{"root", "viewBox", "0 0 200 200"},
	};
	for (const auto& [id, name, value] : kEdits)
	{
		SCOPED_TRACE(std::string(id) + ' ' + name + '=' + value);
		edit(id, name, value);
		const auto fresh = Must(CreateObject<SVGGeometryInterface>(kSVGGeometryClass));
		Must(fresh->SetDocument(picture.GetDocument(), {}));
		EXPECT_EQ(AskAll(picture, fresh, ids), AskAll(picture, picture.geometry, ids));
	}
	// Several at once, one of them inside of another.
	edit("k", "transform", "rotate(5)");
	edit("c", "r", "4");
	edit("p", "d", "M0 0h9v9z");
	const auto fresh = Must(CreateObject<SVGGeometryInterface>(kSVGGeometryClass));
	Must(fresh->SetDocument(picture.GetDocument(), {}));
	EXPECT_EQ(AskAll(picture, fresh, ids), AskAll(picture, picture.geometry, ids));
}

/// Elements that are taken out, put elsewhere, made, and taken back, at random.
TEST_F(Hits, AreTrueWhenElementsComeAndGo)
{
	std::string elements = "<linearGradient id='lg'><stop/>"
						   "</linearGradient><rect id='used' width='9' height='9'/>";
	const char* const groups[] = {
		"<g>",
		"<g style='clip-path:circle(40px at 50px 50px)' stroke='red'>",
		"<svg x='9' width='60' height='50'>",
		"<g transform='rotate(9)' opacity='.5'>",
		"<switch>",
		"<g><use href='#used' x='30' y='30'/><text y='40' font-size='9'>a<tspan>b</tspan></text>"};
	int number = 0;
	for (const char* const group : groups)
	{
		elements += group;
		for (int i = 0; i < 30; i++, number++)
		{
			elements += (i % 10 == 0 ? "<g>" : "") + std::string("<rect fill='url(#lg)' width='9' height='7' x='") +
						std::to_string(number * 37 % 90) + "' y='" + std::to_string(number * 53 % 90) + "'/>" +
						(i % 10 == 9 ? "</g>" : "");
		}
		elements += group[1] == 's' ? (group[2] == 'v' ? "</svg>" : "</switch>") : "</g>";
	}
	const AskedPicture picture(elements);
	const auto edit = Cast<SVGDocumentEditInterface>(picture.GetDocument());
	const auto source = Cast<SVGDocumentSourceInterface>(picture.GetDocument());
	const auto select = [&](const char* selector)
	{
		return Must(source->Select(Text(selector)));
	};
	const auto ask = [&](const SVGGeometryRef& geometry)
	{
		std::string answers;
		for (const SVGElementRef& element : select("g, rect, svg, text, tspan, use"))
		{
			for (const auto kind : {SVGBoxKind::fill, SVGBoxKind::visual})
				answers += AskedPicture::Describe(Must(geometry->GetBox(element, kind, SVGCoordinates::view))) + ' ';
		}
		for (int i = 0; i < 100; i++)
		{
			const int row = i / 10;
			for (const SVGHit& hit : Must(geometry->FindAt({i % 10 * 10.3, row * 10.7}, {.findsAll = true})).hits)
				answers += std::to_string(reinterpret_cast<std::uintptr_t>(hit.element.GetObject())) + ' ';
		}
		return answers + std::to_string(Must(geometry->Normalize({})).points.GetCount());
	};
	std::mt19937 random(5);
	for (int step = 0; step < 200; step++)
	{
		SCOPED_TRACE(step);
		const auto pick = [&](const char* selector)
		{
			const BaseArray<SVGElementRef> found = select(selector);
			return found[random() % found.GetCount()];
		};
		Must(edit->BeginTransaction());
		for (auto count = random() % 3 + 1; count > 0; count--)
		{
			SVGElementRef element = pick(random() % 8 == 0 ? "g, text, tspan, use" : "rect");
			if (random() % 3 == 0)
			{
				const SVGElementRef made = Must(CreateObject<SVGElementInterface>(kSVGRectElementClass));
				Must(Cast<SVGElementEditInterface>(made)->CopyAttributes(pick("rect")));
				element = made;
			}
			const auto parent = Cast<SVGElementEditInterface>(pick("g, svg, switch, text"));
			const SVGElementRef next = parent->GetChildAt(static_cast<std::int64_t>(random() % 5));
			if (random() % 4 == 0)
				IgnoreResult(Cast<SVGElementEditInterface>(element)->Remove());
			else // Some would stand in themselves.
				IgnoreResult(parent->InsertChildBefore(element, next));
		}
		Must(edit->CommitTransaction());
		if (random() % 4 == 0)
			Must(edit->Undo());
		const auto fresh = Must(CreateObject<SVGGeometryInterface>(kSVGGeometryClass));
		Must(fresh->SetDocument(picture.GetDocument(), {}));
		ASSERT_EQ(ask(fresh), ask(picture.geometry));
	}
}

TEST_F(Hits, OfOneEditedElementDoNotCostAWalkOverAll)
{
	std::string elements;
	for (int i = 0; i < 2000; i++)
		elements += "<g><path id='p" + std::to_string(i) + "' d='M0 0h1v1z'/></g>";
	const AskedPicture picture(elements);
	EXPECT_EQ("", picture.At(50, 50));
	const auto source = Cast<SVGDocumentSourceInterface>(picture.GetDocument());
	const auto path = Cast<SVGPathEditInterface>(picture["p1234"]);
	for (int i = 0; i < 3000; i++) // The index is made anew now and then.
	{
		Must(path->SetPathData(Text("M" + std::to_string(i % 80) + " 50h1v1z")));
		EXPECT_EQ("p1234", picture.At(i % 80 + 0.5, 50.2));
	}
	Must(path->SetPathData(Text("M20 20h9v9z")));
	const auto group =
		Cast<SVGElementEditInterface>(Must(Cast<HierarchyObjectInterface>(picture["p1234"])->GetParent()));
	const auto root = Cast<SVGElementEditInterface>(picture.GetDocument()->GetRootElement());
	const auto expectCheap = [&](const char* found)
	{
		// A walk over all allocates for each element; this one must not come to the hundredth.
		const AllocationFailure failure(100, AllocationFailure::Extent::one);
		EXPECT_EQ(found, picture.At(25, 22));
		EXPECT_FALSE(failure.HasFailed());
	};
	expectCheap("p1234");
	const SVGElementRef child = group->GetChildAt(0);
	Must(Cast<SVGElementEditInterface>(child)->Remove());
	expectCheap("");
	Must(root->InsertChildBefore(child, {}));
	expectCheap("p1234");
	Must(root->InsertChildBefore(child, root->GetChildAt(1000)));
	expectCheap("p1234");
	const SVGElementRef made = Must(CreateObject<SVGElementInterface>(kSVGRectElementClass));
	Must(source->SetAttributeText(made, Text("width"), Text("30")));
	Must(source->SetAttributeText(made, Text("height"), Text("30")));
	Must(source->SetAttributeText(made, Text("id"), Text("made")));
	Must(group->InsertChildBefore(made, {}));
	expectCheap("made p1234");
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
