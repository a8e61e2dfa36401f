// SPDX-License-Identifier: MIT
/// Which colours gradients, patterns and paints of a context have where.
#include "support/drawn_picture.h"

namespace orvan
{
namespace
{

using Paints = RendererTest;

TEST_F(Paints, LinearGradientsRunFromTheirStartToTheirEnd)
{
	// Half red and half blue, so that the border shows where half of the way is.
	const std::string halves =
		"<stop offset='.5' stop-color='#f00'/><stop offset='.5' stop-color='#00f'/></linearGradient>";
	const std::string square = "<rect x='20' y='20' width='40' height='40' fill='url(#g)'/>";
	const PixelCase cases[] = {
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
	for (const PixelCase& sample : cases)
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
	const PixelCase cases[] = {
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
	for (const PixelCase& sample : cases)
		ExpectPixels("<linearGradient id='g'>" + std::string(sample.elements) + "</linearGradient>" + square,
					 sample.pixels);
	// Of more stops than are drawn, those that are stand evenly among all.
	std::string many;
	for (int i = 0; i <= 3000; i++)
		many += "<stop offset='" + std::to_string(i / 3000.0) + "' stop-color='#" + (i < 1500 ? "f00" : "00f") + "'/>";
	ExpectPixels("<linearGradient id='g'>" + many + "</linearGradient>" + square,
				 "0,5 ff0000; 49,5 ff0000; 50,5 0000ff; 99,5 0000ff");
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
	const PixelCase cases[] = {
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
		// On the circle, but for the last bit: circles that all touch there, and nothing beyond.
		{"<radialGradient id='g' cx='.5' cy='.5' r='.3' fx='.8'>",
		 "73,50 ff0000; 51,50 ff0000; 49,50 0000ff; 30,50 0000ff; 60,75 0000ff; 75,50 none"},
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
	for (const PixelCase& sample : cases)
		ExpectPixels(sample.elements + halves + square, sample.pixels);
}

TEST_F(Paints, PatternsRepeatTheirTile)
{
	const std::string content = "<rect width='5' height='5' fill='#f00'/></pattern>";
	const std::string square = "<rect x='20' y='20' width='40' height='40' fill='url(#p)'/>";
	const PixelCase cases[] = {
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
	for (const PixelCase& sample : cases)
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

TEST_F(Paints, ColorsThatAreFarSmallerThanAPixelSpoilNothing)
{
	const std::string user = "gradientUnits='userSpaceOnUse' x2='1'";
	const std::string stops = "><stop stop-color='#0f0'/><stop offset='1' stop-color='#00f'/></linearGradient>";
	const std::string shapes = "<rect width='40' height='40' fill='url(#p)' clip-path='circle(45%)'/>"
							   "<rect x='50' width='50' height='50' fill='#f00'/>";
	const std::pair<std::string, const char*> cases[] = {
		{"<pattern id='p' width='1e-9' height='1e-9'><rect width='9' height='9'/></pattern>", "none"},
		{"<pattern id='p' width='.5' height='.5' patternTransform='matrix(1 1 1 1.0000000001 0 0)'>"
		 "<rect width='9' height='9'/></pattern>",
		 "none"},
		{"<linearGradient id='p' gradientTransform='scale(1e-9)' " + user + stops, "0000ff"},
		{"<linearGradient id='p' gradientTransform='matrix(1 1 1 1.0000000001 0 0)' " + user + stops, "0000ff"},
	};
	for (const auto& [paint, color] : cases)
		ExpectPixels(paint + shapes, std::string("20,20 ") + color + "; 75,25 ff0000");
	// Those that are far larger paint as well as any.
	ExpectPixels("<linearGradient id='p' gradientUnits='userSpaceOnUse' x2='4e13'><stop offset='.5' stop-color='#0f0'/>"
				 "<stop offset='.5'/></linearGradient><g transform='scale(1e-12)'><rect width='4e13' height='4e13' "
				 "fill='url(#p)' clip-path='circle(45%)'/></g>",
				 "18,20 00ff00; 21,20 000000");
}

TEST_F(Paints, ComeInTheirOrderAndWithTheirOpacities)
{
	const PixelCase cases[] = {
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
		{"<rect width='40' height='40' fill='#f00' fill-opacity='.6' opacity='2'/>", "10,5 ff000099"},
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
		{"<path d='M10 10h40v40h-40zM20 20h20v20h-20z' fill-rule='evenodd' shape-rendering='crispEdges'/>",
		 "15,15 000000; 30,30 none"},
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
	for (const PixelCase& sample : cases)
		ExpectPixels(sample.elements, sample.pixels);
}

TEST_F(Paints, MarkersAndUsesTakeThePaintsOfTheirContext)
{
	const std::string marker =
		"<linearGradient id='g'><stop offset='.5' stop-color='#f00'/><stop offset='.5' "
		"stop-color='#0f0'/></linearGradient>"
		"<marker id='m' markerUnits='userSpaceOnUse' markerWidth='8' markerHeight='8' refX='4' refY='4'><rect "
		"width='4' "
		"height='8' fill='context-fill'/><rect x='4' width='4' height='8' fill='context-stroke'/></marker>";
	const PixelCase cases[] = {
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
		{"<defs><g id='r' fill='context-fill'><rect width='40' height='9'/><rect x='40' width='20' height='5'/></g>"
		 "</defs><use href='#r' fill='url(#g)'/>",
		 "29,7 ff0000; 31,7 00ff00; 45,2 00ff00"},
	};
	for (const PixelCase& sample : cases)
		ExpectPixels(marker + sample.elements, sample.pixels);
}

TEST_F(Paints, EdgesAreSharpWhereThatIsAskedFor)
{
	const PixelCase cases[] = {
		{"x='10.3' y='10' width='10' height='9.7' shape-rendering='crispEdges'",
		 "10,10 000000; 19,10 000000; 20,10 none; 10,19 000000; 10,20 none"},
		{"x='10.7' y='10' width='10' height='9.3' shape-rendering='optimizeSpeed'",
		 "10,10 none; 11,10 000000; 20,10 000000; 11,19 none"},
		{"x='10.7' y='10' width='10' height='9.3' shape-rendering='geometricPrecision'",
		 "10,10 ~0000004d; 20,10 ~000000b3; 11,19 ~0000004d"},
		{"x='10.7' y='10' width='10' height='9.3'",
		 "10,10 ~0000004d; 11,10 000000; 20,10 ~000000b3; 11,19 ~0000004d; 10,19 ~00000017"},
	};
	for (const PixelCase& sample : cases)
		ExpectPixels("<rect " + std::string(sample.elements) + "/>", sample.pixels);
}

} // namespace
} // namespace orvan
