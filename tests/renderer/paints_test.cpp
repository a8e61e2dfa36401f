// SPDX-License-Identifier: MIT
/// Which colours gradients and patterns have where, and what strokes and markers cover.
#include "support/drawn_picture.h"

namespace orvan
{
namespace
{

struct Case
{
	const char* elements;
	const char* pixels;
};

using Paints = RendererTest;

TEST_F(Paints, LinearGradientsRunFromTheirStartToTheirEnd)
{
	// Half red and half blue, so that the border shows where half of the way is.
	const std::string halves =
		"<stop offset='.5' stop-color='#f00'/><stop offset='.5' stop-color='#00f'/></linearGradient>";
	const std::string square = "<rect x='20' y='20' width='40' height='40' fill='url(#g)'/>";
	const Case cases[] = {
		{"<linearGradient id='g'>", "39,30 ff0000; 40,30 0000ff"},
		{"<linearGradient id='g' x2='0' y2='1'>", "30,39 ff0000; 30,40 0000ff"},
		{"<linearGradient id='g' x1='1' x2='0'>", "39,30 0000ff; 40,30 ff0000"},
		{"<linearGradient id='g' x1='.25' x2='50%'>", "34,30 ff0000; 35,30 0000ff"},
		{"<linearGradient id='g' y2='100%'>", "38,40 ff0000; 41,40 0000ff; 40,38 ff0000; 40,41 0000ff"},
		{"<linearGradient id='g' gradientUnits='userSpaceOnUse' x1='20' x2='40'>", "29,30 ff0000; 30,30 0000ff"},
		{"<linearGradient id='g' gradientUnits='userSpaceOnUse' x2='100%'>", "49,30 ff0000; 50,30 0000ff"},
		{"<linearGradient id='g' gradientUnits='userSpaceOnUse' x1='20' x2='20' y2='100%'>",
		 "30,49 ff0000; 30,50 0000ff"},
		{"<linearGradient id='g' gradientUnits='userSpaceOnUse' x1='1em' x2='3em' font-size='15'>",
		 "29,30 ff0000; 30,30 0000ff"},
		{"<linearGradient id='g' gradientTransform='translate(.25)'>", "49,30 ff0000; 50,30 0000ff"},
		{"<linearGradient id='g' gradientTransform='rotate(90)'>", "30,39 ff0000; 30,40 0000ff"},
		{"<linearGradient id='g' gradientTransform='rotate(180)' style='transform-origin:.5px .5px'>",
		 "39,30 0000ff; 40,30 ff0000"},
		{"<linearGradient id='g' gradientTransform='scale(0)'>", "30,30 none"},
		// Behind its end it begins anew, or comes back.
		{"<linearGradient id='g' x2='.5' spreadMethod='repeat'>",
		 "29,30 ff0000; 30,30 0000ff; 39,30 0000ff; 40,30 ff0000; 49,30 ff0000; 50,30 0000ff"},
		{"<linearGradient id='g' x2='.5' spreadMethod='reflect'>",
		 "29,30 ff0000; 30,30 0000ff; 49,30 0000ff; 50,30 ff0000; 59,30 ff0000"},
		{"<linearGradient id='g' x1='.5' spreadMethod='reflect'>",
		 "49,30 ff0000; 50,30 0000ff; 31,30 ff0000; 29,30 0000ff"},
		{"<linearGradient id='g' x1='.5' spreadMethod='repeat'>",
		 "49,30 ff0000; 50,30 0000ff; 39,30 0000ff; 30,30 0000ff; 29,30 ff0000"},
	};
	for (const Case& sample : cases)
		ExpectPixels(sample.elements + halves + square, sample.pixels);
	// What a gradient does not say itself comes from the one that it refers to, and that from the next.
	ExpectPixels("<linearGradient id='a' x2='0' y2='1' gradientUnits='userSpaceOnUse' spreadMethod='repeat'>" + halves +
					 "<linearGradient id='b' href='#a' y2='40'/><linearGradient id='g' href='#b'/>" + square,
				 "30,20 0000ff; 30,39 0000ff; 30,40 ff0000; 30,59 ff0000");
	ExpectPixels("<linearGradient id='a'>" + halves +
					 "<linearGradient id='g' href='#a'><stop stop-color='#0f0'/></linearGradient>" + square,
				 "30,30 00ff00");
	ExpectPixels("<radialGradient id='a' gradientTransform='translate(.25)'><stop offset='.5' stop-color='#f00'/><stop "
				 "offset='.5' stop-color='#00f'/></radialGradient><linearGradient id='g' href='#a'/>" +
					 square,
				 "49,30 ff0000; 50,30 0000ff");
	// Boxes without a height have no gradient, and the fallback counts.
	ExpectPixels("<linearGradient id='g'>" + halves +
					 "<path d='M10 20h50' stroke='url(#g)' stroke-width='10'/><path d='M10 "
					 "50h50' stroke='url(#g) #0f0' stroke-width='10'/><path d='M10 80h50' stroke='url(#none) #0f0' "
					 "stroke-width='10'/>",
				 "30,20 none; 30,50 00ff00; 30,80 00ff00");
}

TEST_F(Paints, StopsAreMixedInProportionAndKeepTheirOrder)
{
	const std::string square = "<rect width='100' height='50' fill='url(#g)'/>";
	const Case cases[] = {
		{"<stop stop-color='#000'/><stop offset='1' stop-color='#fff'/>",
		 "0,5 ~010101; 25,5 ~414141; 50,5 ~818181; 99,5 ~fefefe"},
		{"<stop offset='.25' stop-color='#f00'/><stop offset='75%' stop-color='#00f'/>",
		 "10,5 ff0000; 24,5 ff0000; 50,5 ~7d0082; 76,5 0000ff"},
		// One that is before the last one is moved up to it.
		{"<stop offset='.5' stop-color='#f00'/><stop offset='.2' stop-color='#00f'/>", "49,5 ff0000; 50,5 0000ff"},
		{"<stop offset='-1' stop-color='#f00'/><stop offset='2' stop-color='#00f'/>",
		 "0,5 ~fe0001; 50,5 ~7e0081; 99,5 ~0100fe"},
		{"<stop stop-color='#f00' stop-opacity='.5'/><stop offset='1' stop-color='#f00' stop-opacity='.5'/>",
		 "50,5 ff000080"},
		{"<stop stop-color='#f00' stop-opacity='0'/><stop offset='1' stop-color='#f00'/>",
		 "50,5 ~ff000081; 75,5 ~ff0000c1"},
		{"<stop color='#0f0' stop-color='currentColor' stop-opacity='.5'/>", "50,5 00ff0080"},
		{"<stop stop-color='rgba(0,255,0,.5)'/>", "50,5 00ff0080"},
		{"", "50,5 none"},
		{"<stop offset='.3' stop-color='#f00'/><stop offset='.3' stop-color='#0f0'/><stop offset='.6' "
		 "stop-color='#0f0'/><stop "
		 "offset='.6' stop-color='#00f'/>",
		 "29,5 ff0000; 30,5 00ff00; 59,5 00ff00; 60,5 0000ff"},
	};
	for (const Case& sample : cases)
		ExpectPixels("<linearGradient id='g'>" + std::string(sample.elements) + "</linearGradient>" + square,
					 sample.pixels);
	ExpectPixels(
		"<linearGradient id='g'><stop stop-color='#f00'/></linearGradient><rect width='100' height='50' fill='url(#g)' "
		"fill-opacity='.5' opacity='.5'/>",
		"50,5 ff000040");
	// As light, the middle of black and white is lighter: half of the light is 188.
	ExpectPixels("<linearGradient id='g' color-interpolation='linearRGB'><stop stop-color='#000'/><stop offset='1' "
				 "stop-color='#fff'/></linearGradient>" +
					 square,
				 "50,5 ~bcbcbc; 12,5 ~636363");
	ExpectPixels("<linearGradient id='g' color-interpolation='linearRGB'><stop stop-color='#808080'/><stop offset='1' "
				 "stop-color='#fff'/></linearGradient>" +
					 square,
				 "50,5 ~cdcdcd; 0,5 ~818181");
}

TEST_F(Paints, RadialGradientsGrowFromTheirFocusToTheirCircle)
{
	const std::string halves =
		"<stop offset='.5' stop-color='#f00'/><stop offset='.5' stop-color='#00f'/></radialGradient>";
	const std::string square = "<rect x='10' y='10' width='80' height='80' fill='url(#g)'/>";
	const Case cases[] = {
		// Half of the radius of half of the box: 20 around the middle.
		{"<radialGradient id='g'>", "30,50 ff0000; 29,50 0000ff; 69,50 ff0000; 70,50 0000ff; 50,30 ff0000; 50,29 "
									"0000ff; 63,63 ff0000; 65,65 0000ff"},
		{"<radialGradient id='g' cx='.25' cy='.75' r='.25'>",
		 "20,70 ff0000; 19,70 0000ff; 39,70 ff0000; 40,70 0000ff; 30,60 ff0000; 30,59 0000ff"},
		{"<radialGradient id='g' gradientUnits='userSpaceOnUse' cx='50' cy='50' r='20'>",
		 "40,50 ff0000; 39,50 0000ff; 59,50 ff0000; 60,50 0000ff"},
		{"<radialGradient id='g' gradientUnits='userSpaceOnUse' r='20%'>",
		 "40,50 ff0000; 39,50 0000ff; 50,40 ff0000; 50,39 0000ff"},
		// Halfway between a focus on the left of the circle and its edges.
		{"<radialGradient id='g' gradientUnits='userSpaceOnUse' cx='50' cy='50' r='40' fx='30'>",
		 "20,50 ff0000; 19,50 0000ff; 59,50 ff0000; 60,50 0000ff; 40,31 ff0000; 40,29 0000ff"},
		{"<radialGradient id='g' gradientUnits='userSpaceOnUse' cx='50' cy='50' r='40' fy='70'>",
		 "50,79 ff0000; 50,80 0000ff; 50,40 ff0000; 50,39 0000ff"},
		// A focus with a circle: the colours begin at its edge.
		{"<radialGradient id='g' gradientUnits='userSpaceOnUse' cx='50' cy='50' r='40' fr='20'>",
		 "20,50 ff0000; 19,50 0000ff; 79,50 ff0000; 80,50 0000ff"},
		{"<radialGradient id='g' gradientUnits='userSpaceOnUse' cx='50' cy='50' r='20' spreadMethod='repeat'>",
		 "50,50 ff0000; 65,50 0000ff; 71,50 ff0000; 79,50 ff0000; 80,50 0000ff; 85,50 0000ff"},
		{"<radialGradient id='g' gradientUnits='userSpaceOnUse' cx='50' cy='50' r='20' spreadMethod='reflect'>",
		 "65,50 0000ff; 71,50 0000ff; 79,50 0000ff; 80,50 ff0000; 88,50 ff0000"},
		{"<radialGradient id='g' gradientTransform='scale(.5 1)'>",
		 "20,50 ff0000; 19,50 0000ff; 39,50 ff0000; 40,50 0000ff; 30,31 ff0000; 30,28 0000ff"},
		// Two circles beside each other: a cone that widens to the right. Its colours are those of the larger place.
		{"<radialGradient id='g' gradientUnits='userSpaceOnUse' cx='70' cy='50' r='20' fx='30' fr='20'>",
		 "29,50 ff0000; 30,50 0000ff; 41,31 ff0000; 43,31 0000ff; 60,25 none; 20,50 ff0000; 80,75 none"},
		{"<radialGradient id='g' gradientUnits='userSpaceOnUse' cx='50' cy='50' r='20' fr='30'>",
		 "50,50 0000ff; 62,50 0000ff; 74,50 0000ff; 76,50 ff0000; 85,50 ff0000"},
		{"<radialGradient id='g' gradientUnits='userSpaceOnUse' cx='50' cy='50' r='20' fr='20'>",
		 "50,50 ff0000; 68,50 ff0000; 71,50 0000ff"},
		{"<radialGradient id='g' gradientUnits='userSpaceOnUse' cx='50' cy='50' r='-5'>", "50,50 0000ff"},
	};
	for (const Case& sample : cases)
		ExpectPixels(sample.elements + halves + square, sample.pixels);
}

TEST_F(Paints, PatternsRepeatTheirTile)
{
	const std::string content = "<rect width='5' height='5' fill='#f00'/></pattern>";
	const std::string square = "<rect x='20' y='20' width='40' height='40' fill='url(#p)'/>";
	const Case cases[] = {
		{"<pattern id='p' patternUnits='userSpaceOnUse' width='10' height='10'>",
		 "20,20 ff0000; 24,24 ff0000; 25,20 none; 20,25 none; 30,30 ff0000; 29,30 none; 19,20 none; 54,54 ff0000"},
		{"<pattern id='p' patternUnits='userSpaceOnUse' x='3' y='2' width='10' height='10'>",
		 "23,22 ff0000; 22,22 none; 23,21 none; 27,26 ff0000; 28,22 none; 33,32 ff0000"},
		{"<pattern id='p' width='.5' height='.25'>",
		 "20,20 ff0000; 25,20 none; 40,30 ff0000; 39,30 none; 40,29 none; 44,34 ff0000; 45,34 none"},
		{"<pattern id='p' x='.25' y='25%' width='.5' height='.5'>",
		 "30,30 ff0000; 29,30 none; 34,34 ff0000; 35,30 none; 50,50 ff0000"},
		{"<pattern id='p' patternUnits='userSpaceOnUse' width='10%' height='20%'>",
		 "20,20 ff0000; 30,20 ff0000; 20,30 none; 20,40 ff0000"},
		// Contents in fractions of the box are as large as many boxes here, and fill the tile.
		{"<pattern id='p' width='.5' height='.5' patternContentUnits='objectBoundingBox'>",
		 "20,20 ff0000; 39,39 ff0000; 59,59 ff0000"},
		{"<pattern id='p' patternUnits='userSpaceOnUse' width='20' height='20' viewBox='0 0 10 10'>",
		 "20,20 ff0000; 29,29 ff0000; 30,20 none; 20,30 none; 40,40 ff0000; 49,49 ff0000; 50,40 none"},
		{"<pattern id='p' patternUnits='userSpaceOnUse' width='20' height='40' viewBox='0 0 10 10' "
		 "preserveAspectRatio='xMidYMax'>",
		 "20,40 none; 20,60 none; 20,20 ff0000; 29,29 ff0000; 20,30 none"},
		{"<pattern id='p' patternUnits='userSpaceOnUse' width='10' height='10' patternTransform='scale(2)'>",
		 "20,20 ff0000; 29,29 ff0000; 30,20 none; 40,20 ff0000; 39,20 none"},
		{"<pattern id='p' patternUnits='userSpaceOnUse' width='10' height='10' patternTransform='translate(3 4)'>",
		 "23,24 ff0000; 22,24 none; 23,23 none; 27,28 ff0000; 28,28 none"},
		{"<pattern id='p' patternUnits='userSpaceOnUse' width='10' height='10' patternTransform='rotate(90)'>",
		 "27,22 ff0000; 22,22 none; 27,27 none; 26,24 ff0000"},
		{"<pattern id='p' patternUnits='userSpaceOnUse' width='0' height='10'>", "20,20 none"},
		{"<pattern id='p' patternUnits='userSpaceOnUse' width='10' height='-1'>", "20,20 none"},
		{"<pattern id='p' patternUnits='userSpaceOnUse' width='10' height='10' patternTransform='scale(0 1)'>",
		 "20,20 none"},
		{"<pattern id='p' patternUnits='userSpaceOnUse' width='10' height='10' viewBox='0 0 0 5'>", "20,20 none"},
	};
	for (const Case& sample : cases)
		ExpectPixels(sample.elements + content + square, sample.pixels);
	ExpectPixels("<pattern id='a' patternUnits='userSpaceOnUse' width='10' height='10'>" + content +
					 "<pattern id='p' href='#a' width='20'/>" + square,
				 "20,20 ff0000; 30,20 none; 40,30 ff0000");
	// The opacity is that of the fill; a stroke has its tiles as well.
	ExpectPixels("<pattern id='p' patternUnits='userSpaceOnUse' width='10' height='10'>" + content +
					 "<rect x='20' y='20' width='40' height='40' fill='url(#p)' fill-opacity='.5'/><path d='M20 80h60' "
					 "stroke='url(#p)' stroke-width='10' stroke-opacity='.25'/>",
				 "20,20 ff000080; 25,20 none; 20,80 ff000040; 25,80 none; 20,76 none");
	// Nothing is left of a pattern without content, a fallback counts where there is no box.
	ExpectPixels("<pattern id='p' width='.5' height='.5'/>" + square, "30,30 none");
	ExpectPixels("<pattern id='p' width='.5' height='.5'>" + content +
					 "<path d='M10 20h50' stroke='url(#p) #0f0' stroke-width='10'/>",
				 "30,20 00ff00");
}

TEST_F(Paints, DashesFollowTheLineAndItsCorners)
{
	const Case cases[] = {
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
	for (const Case& sample : cases)
		ExpectPixels("<path d='M10 20h80' stroke='#000' stroke-width='4' " + std::string(sample.elements) + "/>",
					 sample.pixels);
	// Along corners, and from where a rectangle begins: 10 more of the second side, then nothing.
	ExpectPixels("<path d='M10 20h20v40' fill='none' stroke='#000' stroke-width='4' stroke-dasharray='30 100'/>",
				 "29,20 000000; 31,18 000000; 30,29 000000~; 30,30 none");
	ExpectPixels("<rect x='10' y='20' width='40' height='20' fill='none' stroke='#000' stroke-width='4' "
				 "stroke-dasharray='50 1000'/>",
				 "49,20 000000; 50,29 000000~; 50,30 none; 10,30 none");
	// Each subpath begins anew.
	ExpectPixels("<path d='M10 20h15M10 40h15' stroke='#000' stroke-width='4' stroke-dasharray='10 5'/>",
				 "19,20 000000~; 20,20 none; 19,40 000000~; 20,40 none");
	ExpectPixels("<path d='M10 20h40' stroke='#000' stroke-width='4' stroke-dasharray='10' transform='scale(2 1)'/>",
				 "20,20 000000; 39,20 000000; 40,20 none; 59,20 none; 60,20 000000");
	ExpectPixels("<path d='M10 20h40' stroke='#000' stroke-width='4' stroke-dasharray='10' transform='scale(2 1)' "
				 "vector-effect='non-scaling-stroke'/>",
				 "20,20 000000; 29,20 000000; 30,20 none; 39,20 none; 40,20 000000; 50,22 none");
}

TEST_F(Paints, StrokesHaveEndsCornersAndWidths)
{
	const Case cases[] = {
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
	for (const Case& sample : cases)
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

TEST_F(Paints, ComeInTheirOrderAndWithTheirOpacities)
{
	const Case cases[] = {
		{"<rect x='20' y='20' width='40' height='40' fill='#f00' stroke='#00f' stroke-width='8'/>",
		 "23,40 0000ff; 24,40 ff0000; 16,40 0000ff"},
		{"<rect x='20' y='20' width='40' height='40' fill='#f00' stroke='#00f' stroke-width='8' paint-order='stroke'/>",
		 "20,40 ff0000; 19,40 0000ff"},
		{"<rect x='20' y='20' width='40' height='40' fill='#f00' stroke='#00f' stroke-width='8' fill-opacity='.5' "
		 "stroke-opacity='.25'/>",
		 "40,40 ff000080; 18,40 0000ff40"},
		{"<rect x='20' y='20' width='40' height='40' fill='#f00' stroke='#00f' stroke-width='8' opacity='.5'/>",
		 "40,40 ff000080; 18,40 0000ff80; 22,40 0000ff80"},
		{"<g opacity='.5'><rect width='40' height='40' fill='#f00'/><rect x='20' width='40' height='40' "
		 "fill='#00f'/></g>",
		 "10,5 ff000080; 30,5 0000ff80; 50,5 0000ff80"},
		{"<g opacity='.5'><rect width='40' height='40' fill='#f00' opacity='.5'/></g>", "10,5 ff000040"},
		{"<rect width='40' height='40' fill='#f00' opacity='0'/>", "10,5 none"},
		{"<rect width='40' height='40' fill='#f00' fill-opacity='50%'/>", "10,5 ff000080"},
		{"<rect width='40' height='40' fill='#f00' opacity='2'/>", "10,5 ff0000"},
		{"<rect width='40' height='40' fill='#f00'/><rect width='40' height='40' fill='#00f' "
		 "style='mix-blend-mode:multiply'/>",
		 "10,5 000000"},
		{"<rect width='40' height='40' fill='#f00'/><rect width='40' height='40' fill='#00f' "
		 "style='mix-blend-mode:screen'/>",
		 "10,5 ff00ff"},
		{"<rect width='40' height='40' fill='#f00'/><g style='isolation:isolate'><rect width='40' height='40' "
		 "fill='#00f' style='mix-blend-mode:screen'/></g>",
		 "10,5 0000ff"},
		{"<rect width='40' height='40' fill='#f00' shape-rendering='crispEdges'/>", "39,39 ff0000; 40,5 none"},
		{"<g fill='#0f0'><rect width='40' height='40' fill='inherit'/></g>", "10,5 00ff00"},
		{"<path d='M10 10h40v40h-40zM20 20h20v20h-20z' fill-rule='evenodd'/>", "15,15 000000; 30,30 none"},
		{"<path d='M10 10h40v40h-40zM20 20h20v20h-20z'/>", "15,15 000000; 30,30 000000"},
		{"<path d='M10 10h40v40h-40zM20 20v20h20v-20z'/>", "15,15 000000; 30,30 none"},
		{"<rect x='10' y='10' width='40' height='40' rx='20'/>",
		 "10,30 000000f8~; 15,15 none~; 18,18 000000; 30,10 000000f8~"},
		{"<rect x='10' y='10' width='40' height='20' rx='99' ry='99'/>",
		 "11,11 none; 30,10 000000fe~; 30,29 000000fe~; 10,20 000000f0~"},
		// Light has none.
		{"<filter id='f' color-interpolation-filters='sRGB'><feDiffuseLighting lighting-color='rgba(0,255,0,.5)'>"
		 "<feDistantLight elevation='90'/></feDiffuseLighting></filter><rect x='10' y='10' width='20' height='20' "
		 "filter='url(#f)'/>",
		 "20,20 00ff00"},
	};
	for (const Case& sample : cases)
		ExpectPixels(sample.elements, sample.pixels);
}

TEST_F(Paints, MarkersStandOnTheVerticesAndTurnWithTheLine)
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
	const Case cases[] = {
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
	for (const Case& sample : cases)
		ExpectPixels(marker(sample.elements) + line, sample.pixels);
	const Case sized[] = {
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
	for (const Case& sample : sized)
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

TEST_F(Paints, ImagesAreFittedAsTheyAreTold)
{
	// Four pixels by two: red on the left, blue on the right.
	const std::string image = "<image x='20' y='20' style='image-rendering:pixelated' "
							  "href='data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAAAQAAAACCAIAAADwyuo0AAAAE0lEQVR42mP4"
							  "z8AARGDiPwMyBwBnsgf595JWggAAAABJRU5ErkJggg==' ";
	const Case cases[] = {
		{"width='40' height='40'",
		 "20,30 ff0000; 39,49 ff0000; 40,30 0000ff; 59,49 0000ff; 19,40 none; 60,40 none; 30,29 none; 30,50 none"},
		{"width='40' height='40' preserveAspectRatio='xMinYMin'",
		 "20,20 ff0000; 39,39 ff0000; 40,20 0000ff; 30,40 none"},
		{"width='40' height='40' preserveAspectRatio='xMidYMax'",
		 "20,40 ff0000; 39,59 ff0000; 40,40 0000ff; 30,39 none; 30,60 none"},
		{"width='60' height='20' preserveAspectRatio='xMaxYMid'",
		 "39,30 none; 40,20 ff0000; 59,30 ff0000; 60,30 0000ff; 79,39 0000ff; 80,30 none"},
		{"width='40' height='40' preserveAspectRatio='none'",
		 "20,20 ff0000; 39,59 ff0000; 40,20 0000ff; 59,59 0000ff; 60,30 none; 30,60 none"},
		{"width='40' height='40' preserveAspectRatio='xMidYMid slice'",
		 "20,20 ff0000; 39,59 ff0000; 40,20 0000ff; 59,59 0000ff; 19,30 none; 60,30 none"},
		{"width='40' height='40' preserveAspectRatio='xMinYMid slice'",
		 "20,20 ff0000; 59,59 ff0000; 60,30 none; 19,30 none"},
		{"width='40' height='40' preserveAspectRatio='xMaxYMid slice'",
		 "20,20 0000ff; 59,59 0000ff; 60,30 none; 19,30 none"},
		// Its own size, and the other side in proportion.
		{"", "20,20 ff0000; 21,21 ff0000; 22,20 0000ff; 23,21 0000ff; 24,20 none; 20,22 none; 19,20 none"},
		{"width='40'", "20,20 ff0000; 39,39 ff0000; 59,39 0000ff; 60,30 none; 30,40 none"},
		{"height='10'", "20,20 ff0000; 29,29 ff0000; 39,29 0000ff; 40,25 none; 30,30 none"},
		{"width='0' height='9'", "20,20 none"},
		{"width='40' height='-1'", "20,20 ff0000; 59,39 0000ff; 30,40 none"},
		{"width='40' height='20' opacity='.6'", "20,20 ff000099; 59,39 0000ff99"},
		{"width='40' height='20' visibility='hidden'", "20,20 none"},
		{"width='40' height='20' transform='translate(80) scale(-1 1)'",
		 "59,20 ff0000; 40,39 ff0000; 39,30 0000ff; 20,30 0000ff; 60,30 none"},
		{"width='40' height='20' transform='rotate(90 20 20)'",
		 "19,20 ff0000; 0,39 ff0000; 10,40 0000ff; 10,59 0000ff; 10,60 none; 20,30 none"},
		{"width='40' height='20' clip-path='circle(5px)'",
		 "36,30 ff0000; 43,30 0000ff; 34,30 none; 45,30 none; 40,24 none"},
	};
	for (const Case& sample : cases)
		ExpectPixels(image + sample.elements + "/>", sample.pixels);
}

TEST_F(Paints, MarkersAndUsesTakeThePaintsOfTheirContext)
{
	const std::string marker =
		"<linearGradient id='g'><stop offset='.5' stop-color='#f00'/><stop offset='.5' "
		"stop-color='#0f0'/></linearGradient>"
		"<marker id='m' markerUnits='userSpaceOnUse' markerWidth='8' markerHeight='8' refX='4' refY='4'><rect "
		"width='4' "
		"height='8' fill='context-fill'/><rect x='4' width='4' height='8' fill='context-stroke'/></marker>";
	const Case cases[] = {
		{"<path d='M20 20h40v40' fill='#0f0' stroke='#00f' marker-start='url(#m)' marker-end='url(#m)'/>",
		 "17,17 00ff00; 22,17 0000ff; 57,63 00ff00; 62,63 0000ff"},
		// Gradients have the box of the path, not that of the marker.
		{"<path d='M20 20h40v40' fill='url(#g)' stroke='none' marker-start='url(#m)' marker-end='url(#m)'/>",
		 "17,17 ff0000; 19,17 ff0000; 57,63 00ff00; 22,17 none"},
		{"<path d='M20 20h40v40' fill='none' stroke='url(#g) #00f' marker-start='url(#m)' marker-end='url(#m)'/>",
		 "17,17 none; 22,17 ff0000; 62,63 00ff00"},
		{"<path d='M20 20h40' fill='currentColor' color='#00f' stroke='#f00' stroke-width='2' marker-start='url(#m)'/>",
		 "17,17 0000ff; 22,17 ff0000"},
		{"<defs><rect id='r' x='10' y='10' width='20' height='20' fill='context-fill' stroke='context-stroke' "
		 "stroke-width='4'/></defs><use href='#r' fill='#0f0' stroke='#00f'/>",
		 "20,20 00ff00; 9,20 0000ff; 7,20 none"},
		{"<rect x='10' y='10' width='20' height='20' fill='context-fill'/>", "20,20 none"},
	};
	for (const Case& sample : cases)
		ExpectPixels(marker + sample.elements, sample.pixels);
}

TEST_F(Paints, UsesInheritFromWhereTheyStand)
{
	const Case cases[] = {
		{"<defs fill='#f00'><rect id='r' width='9' height='9'/></defs><use href='#r' fill='#00f'/><use href='#r' "
		 "x='20'/>",
		 "5,5 0000ff; 25,5 000000"},
		{"<rect id='r' width='9' height='9' fill='#0f0'/><use href='#r' x='20' fill='#00f'/>",
		 "5,5 00ff00; 25,5 00ff00"},
		{"<g id='r'><rect width='9' height='9'/></g><use href='#r' x='20' y='10' transform='scale(2)'/>",
		 "40,20 000000; 57,37 000000; 39,30 none; 58,30 none; 45,19 none"},
		{"<defs><g id='a'><rect width='9' height='9'/></g><g id='b'><use href='#a' x='10'/></g></defs><use href='#b' "
		 "y='10'/>",
		 "10,10 000000; 18,18 000000; 9,15 none; 19,15 none; 15,9 none"},
		{"<defs><svg id='s' width='10' height='10'><rect width='99' height='99'/></svg></defs><use href='#s' x='5' "
		 "y='5' "
		 "width='20'/>",
		 "5,5 000000; 24,14 000000; 25,10 none; 10,15 none"},
		{"<defs><symbol id='s'><rect width='100%' height='50%'/></symbol></defs><use href='#s' width='40' "
		 "height='40'/>",
		 "39,19 000000; 40,10 none; 10,20 none"},
		{"<defs><symbol id='s'><rect width='100%' height='50%'/></symbol></defs><use href='#s'/>",
		 "99,49 000000; 50,50 none"},
		{"<symbol id='s'><rect width='9' height='9'/></symbol>", "5,5 none"},
		// Bytes of an address, and what only looks like them.
		{"<defs><rect id='a b' width='9' height='9'/></defs><use href='#a%20%62'/>", "5,5 000000"},
		{"<defs><rect id='a%b' width='9' height='9'/></defs><use href='#a%b'/>", "5,5 000000"},
		{"<defs><rect id='a%20b' width='9' height='9'/></defs><use href='#a%20b'/>", "5,5 000000"},
		{"<defs><rect id='ab' width='9' height='9'/></defs><use href='#a%zz'/><use href='#ab%'/>", "5,5 none"},
		{"<use href='#none'/><use/><use href='#c' id='c'/>", "5,5 none"},
		{"<defs><rect id='r' width='9' height='9' style='display:none'/></defs><use href='#r'/>", "5,5 none"},
		{"<style>.x rect{fill:#f00}</style><g class='x'><rect id='r' width='9' height='9'/></g><use href='#r' x='20'/>",
		 "5,5 ff0000; 25,5 ff0000"},
		{"<a href='x' fill='#00f'><rect width='9' height='9'/></a>", "5,5 0000ff"},
		{"<g opacity='.6'><use href='#r' opacity='.5'/></g><defs><rect id='r' width='9' height='9'/></defs>",
		 "5,5 0000004d"},
	};
	for (const Case& sample : cases)
		ExpectPixels(sample.elements, sample.pixels);
}

TEST_F(Paints, LengthsHaveAllUnits)
{
	for (const char* width : {"48", "48px", ".5in", "1.27cm", "12.7mm", "36pt", "3pc", "50.8Q", "4em", "8ex", "8ch",
							  "3rem", "48%", "48vw", "48vh", "48vmin", "48vmax"})
	{
		ExpectPixels("<g font-size='12'><rect style='width:" + std::string(width) + "' height='9'/></g>",
					 "47,5 000000; 48,5 none");
	}
	// Of the inner viewport, and of the outermost one.
	ExpectPixels(
		"<svg width='50' height='20' viewBox='0 0 10 4'><rect width='50%' height='50%'/><rect y='3' width='.05vw' "
		"height='1'/></svg>",
		"24,9 000000; 25,5 none; 5,10 none; 0,15 00000040");
	ExpectPixels("<svg width='80' height='20'><circle cx='50%' cy='50%' r='10%'/></svg>",
				 "40,5 000000; 40,3 none; 46,10 none; 44,10 000000");
}

TEST_F(Paints, TransformsTurnAroundTheirOrigins)
{
	const Case cases[] = {
		{"transform:scale(.5)", "5,5 ff0000; 4,10 none; 24,24 ff0000; 25,10 none"},
		{"transform:scale(.5);transform-origin:40px 40px", "25,25 ff0000; 24,30 none; 44,44 ff0000; 45,30 none"},
		{"transform:scale(.5);transform-box:fill-box", "15,15 ff0000; 14,20 none; 34,34 ff0000; 35,20 none"},
		{"transform:scale(.5);transform-box:fill-box;transform-origin:center",
		 "20,20 ff0000; 19,30 none; 39,39 ff0000; 40,30 none"},
		{"transform:scale(.5);transform-box:fill-box;transform-origin:100% 0",
		 "25,15 ff0000; 24,20 none; 44,34 ff0000; 45,20 none"},
		{"transform:scale(.5);transform-box:stroke-box", "10,10 ff0000; 9,20 none; 29,29 ff0000; 30,20 none"},
		{"transform:scale(.5);transform-box:stroke-box;transform-origin:right bottom",
		 "30,30 ff0000; 29,40 none; 49,49 ff0000; 50,40 none"},
		{"transform:scale(.5);transform-origin:right bottom", "55,55 ff0000; 54,60 none; 74,74 ff0000; 75,60 none"},
		{"transform:translate(10px,20%)", "20,30 ff0000; 19,40 none; 30,29 none; 59,69 ff0000; 60,40 none"},
		{"transform:rotate(90deg);transform-origin:50px 50px", "50,10 ff0000; 89,49 ff0000; 49,30 none; 90,30 none"},
		{"transform:translateX(10px) scale(2);transform-origin:30px 30px",
		 "0,0 ff0000; 79,69 ff0000; 80,40 none; 40,70 none"},
		{"transform:skewX(45deg);transform-origin:0 30px", "9,20 ff0000; 50,49 ff0000; 49,20 none; 10,48 none"},
	};
	for (const Case& sample : cases)
	{
		ExpectPixels("<rect x='20' y='20' width='20' height='20' fill='#f00' stroke='#f00' stroke-width='20' style='" +
						 std::string(sample.elements) + "'/>",
					 sample.pixels);
	}
	ExpectPixels("<g transform='translate(20 20)'><rect width='20' height='10' transform='rotate(90)' "
				 "transform-origin='10 10'/></g>",
				 "30,20 000000; 39,39 000000; 29,30 none; 40,30 none; 35,40 none");
}

TEST_F(Paints, EdgesAreSharpWhereThatIsAskedFor)
{
	const Case cases[] = {
		{"x='10.3' y='10' width='10' height='9.7' shape-rendering='crispEdges'",
		 "10,10 000000; 19,10 000000; 20,10 none; 10,19 000000; 10,20 none"},
		{"x='10.7' y='10' width='10' height='9.3' shape-rendering='optimizeSpeed'",
		 "10,10 none; 11,10 000000; 20,10 000000; 11,19 none"},
		{"x='10.7' y='10' width='10' height='9.3' shape-rendering='geometricPrecision'",
		 "10,10 ~0000004d; 20,10 ~000000b3; 11,19 ~0000004d"},
		{"x='10.7' y='10' width='10' height='9.3'",
		 "10,10 ~0000004d; 11,10 000000; 20,10 ~000000b3; 11,19 ~0000004d; 10,19 ~00000017"},
	};
	for (const Case& sample : cases)
		ExpectPixels("<rect " + std::string(sample.elements) + "/>", sample.pixels);
}

TEST_F(Paints, ImagesThatAreDocumentsHaveTheSizesOfDocuments)
{
	// Their attributes, and those of the image.
	const struct
	{
		const char* document;
		const char* image;
		const char* pixels;
	} cases[] = {
		{"width='30' height='10'", "", "29,9 ff0000; 30,5 none; 10,10 none"},
		{"width='30' height='10'", "width='60'", "59,19 ff0000; 60,5 none; 10,20 none"},
		{"viewBox='0 0 2 1'", "width='40'", "39,19 ff0000; 40,5 none; 10,20 none"},
		{"viewBox='0 0 2 1'", "height='40'", "79,39 ff0000; 80,5 none; 10,40 none"},
		{"viewBox='0 0 2 1'", "transform='scale(.25)'", "74,36 ff0000; 75,5 none; 10,38 none"},
		{"viewBox='0 0 4 1'", "transform='scale(.25)'", "74,17 ff0000; 75,5 none; 10,19 none"},
		{"viewBox='0 0 1 2'", "transform='scale(.25)'", "17,36 ff0000; 19,5 none; 10,38 none"},
		{"width='30' viewBox='0 0 3 1'", "", "29,9 ff0000; 30,5 none; 10,10 none"},
		{"height='10' viewBox='0 0 3 1'", "", "29,9 ff0000; 30,5 none; 10,10 none"},
		{"", "transform='scale(.25)'", "74,36 ff0000; 75,5 none; 10,38 none"},
		{"", "width='40' transform='scale(.5)'", "19,74 ff0000; 20,5 none; 10,75 none"},
		{"width='30'", "transform='scale(.5)'", "14,74 ff0000; 15,5 none; 10,75 none"},
		{"height='30'", "transform='scale(.25)'", "74,6 ff0000; 75,5 none; 10,8 none"},
	};
	for (const auto& [document, image, pixels] : cases)
	{
		ExpectPixels("<image " + std::string(image) +
						 " href=\"data:image/svg+xml,&lt;svg xmlns='http://www.w3.org/2000/svg' " + document +
						 ">&lt;rect width='100%25' height='100%25' fill='red'/>&lt;/svg>\"/>",
					 pixels);
	}
}

TEST_F(Paints, ContentIsFittedByTheNineAlignments)
{
	// A content of 10 by 20 in an area of 40 by 40 from (10, 10) on, and one of 20 by 10.
	const struct
	{
		const char* align;
		int x;
		int y;
	} cases[] = {{"Min", 0, 0}, {"Mid", 1, 1}, {"Max", 2, 2}};
	for (const auto& horizontal : cases)
	{
		for (const auto& vertical : cases)
		{
			const auto draw = [&](const std::string& box, const std::string& rule, const std::string& pixels)
			{
				ExpectPixels(
					"<svg x='10' y='10' width='40' height='40' viewBox='5 5 " + box + "' preserveAspectRatio='x" +
						horizontal.align + 'Y' + vertical.align + rule +
						"'><rect x='5' y='5' width='10' height='10' "
						"fill='#f00'/><rect x='5' y='15' width='10' height='10' fill='#00f'/><rect x='15' y='5' "
						"width='10' height='10' fill='#0f0'/></svg>",
					pixels);
			};
			const auto at = [](int x, int y, const char* colour)
			{
				return std::to_string(x) + ',' + std::to_string(y) + ' ' + colour + ';';
			};
			const int left = 10 + horizontal.x * 10;
			const int top = 10 + vertical.y * 10;
			// The whole of it, 20 by 40 or 40 by 20.
			draw("10 20", "",
				 at(left, 10, "ff0000") + at(left + 19, 29, "ff0000") + at(left, 30, "0000ff") +
					 (horizontal.x > 0 ? at(left - 1, 15, "none") : at(left + 40, 15, "none")));
			draw("20 10", "",
				 at(10, top, "ff0000") + at(29, top + 19, "ff0000") + at(30, top, "00ff00") +
					 (vertical.y > 0 ? at(15, top - 1, "none") : at(15, top + 40, "none")));
			// As much of it as fills the area: 40 by 80, of which the blue half begins at 40, 20 or not at all.
			const char* const above[] = {"ff0000", "ff0000", "0000ff"};
			const char* const below[] = {"ff0000", "0000ff", "0000ff"};
			draw("10 20", " slice",
				 at(10, 29, above[vertical.y]) + at(49, 30, below[vertical.y]) + at(10, 10, above[vertical.y]) +
					 at(9, 30, "none") + at(50, 30, "none"));
			const char* const before[] = {"ff0000", "ff0000", "00ff00"};
			const char* const behind[] = {"ff0000", "00ff00", "00ff00"};
			draw("20 10", " slice",
				 at(29, 10, before[horizontal.x]) + at(30, 49, behind[horizontal.x]) + at(30, 9, "none"));
		}
	}
}

TEST_F(Paints, LayersReachAsFarAsWhatIsInThem)
{
	const Case cases[] = {
		// The tip of a corner of 14 degrees, 32 away.
		{"<path d='M20 40 60 45 20 50' fill='none' stroke='#000' stroke-width='8' stroke-miterlimit='20'/>",
		 "80,45 00000099; 95,45 none"},
		{"<path d='M20 40 60 45 20 50' fill='none' stroke='#000' stroke-width='8'/>", "59,45 00000099; 65,45 none"},
		{"<path d='M4 10h8' stroke='#000' stroke-width='6' stroke-linecap='square' transform='scale(4)'/>",
		 "4,28 00000099; 59,51 00000099; 3,40 none; 60,40 none; 30,52 none"},
		{"<path d='M4 10h8' stroke='#000' stroke-width='20' transform='scale(4)' vector-effect='non-scaling-stroke'/>",
		 "16,30 00000099; 47,49 00000099; 30,29 none; 30,50 none"},
		{"<marker id='m' markerUnits='userSpaceOnUse' markerWidth='30' markerHeight='30' refX='15' refY='15'><rect "
		 "width='30' "
		 "height='30'/></marker><path d='M20 50h20' fill='none' marker-end='url(#m)'/>",
		 "25,35 00000099; 54,64 00000099; 24,50 none"},
		{"<rect width='20' height='20' style='filter:drop-shadow(50px 60px 0 #f00)'/>",
		 "5,5 00000099; 50,60 ff000099; 69,79 ff000099"},
		{"<g style='filter:drop-shadow(50px 60px 0 #f00)'><rect width='20' height='20'/></g>",
		 "69,79 ff000099; 70,70 none"},
		{"<svg x='10' y='10' width='20' height='20' overflow='visible'><rect width='80' height='5'/></svg>",
		 "89,14 00000099"},
		{"<svg x='10' y='10' width='20' height='20'><rect width='80' height='5'/></svg>", "29,14 00000099; 30,12 none"},
		{"<g transform='rotate(45 50 50)'><rect x='30' y='30' width='40' height='40'/></g>",
		 "50,23 00000099; 76,50 00000099; 30,30 none"},
		{"<rect width='9' height='9'/><g visibility='hidden'><rect x='80' y='80' width='9' height='9' "
		 "visibility='visible'/></g>",
		 "5,5 00000099; 85,85 00000099; 50,50 none"},
	};
	for (const Case& sample : cases)
		ExpectPixels("<g opacity='.6'>" + std::string(sample.elements) + "</g>", sample.pixels);
}

TEST_F(Paints, ConditionsChooseWhatIsDrawn)
{
	const Case cases[] = {
		{"<rect width='9' height='9' systemLanguage='en'/>", "5,5 000000"},
		{"<rect width='9' height='9' systemLanguage='de'/>", "5,5 none"},
		{"<rect width='9' height='9' systemLanguage='de,en-GB'/>", "5,5 000000"},
		{"<rect width='9' height='9' systemLanguage='de , EN '/>", "5,5 000000"},
		{"<rect width='9' height='9' systemLanguage='eng'/>", "5,5 none"},
		{"<rect width='9' height='9' systemLanguage='e'/>", "5,5 none"},
		{"<rect width='9' height='9' systemLanguage=''/>", "5,5 none"},
		{"<rect width='9' height='9' systemLanguage=','/>", "5,5 none"},
		{"<rect width='9' height='9' requiredExtensions=''/>", "5,5 none"},
		{"<rect width='9' height='9' requiredExtensions='http://example.org/x'/>", "5,5 none"},
		{"<rect width='9' height='9' requiredFeatures='http://www.w3.org/TR/SVG11/feature#Shape'/>", "5,5 000000"},
		{"<rect width='9' height='9' requiredFeatures=' org.w3c.svg.static  "
		 "http://www.w3.org/TR/SVG11/feature#BasicFilter '/>",
		 "5,5 000000"},
		{"<rect width='9' height='9' requiredFeatures='http://www.w3.org/TR/SVG11/feature#Shape "
		 "http://www.w3.org/TR/SVG11/feature#Animation'/>",
		 "5,5 none"},
		{"<rect width='9' height='9' requiredFeatures='Shape'/>", "5,5 none"},
		{"<rect width='9' height='9' requiredFeatures=''/>", "5,5 none"},
		{"<switch><rect width='9' height='9' fill='#f00' systemLanguage='de'/><rect width='9' height='9' "
		 "fill='#0f0'/><rect width='9' height='9' fill='#00f'/></switch>",
		 "5,5 00ff00"},
		{"<switch><g><rect width='9' height='9' fill='#f00'/><rect x='20' width='9' height='9' fill='#0f0'/></g><rect "
		 "x='40' width='9' height='9'/></switch>",
		 "5,5 ff0000; 25,5 00ff00; 45,5 none"},
		{"<switch><rect width='9' height='9' requiredExtensions='x'/></switch>", "5,5 none"},
		{"<switch style='display:none'><rect width='9' height='9'/></switch>", "5,5 none"},
	};
	for (const Case& sample : cases)
		ExpectPixels(sample.elements, sample.pixels);
}

} // namespace
} // namespace orvan
