// SPDX-License-Identifier: MIT
/// Where images, uses, viewports and layers come to lie.
#include "support/drawn_picture.h"

namespace orvan
{
namespace
{

using Placement = RendererTest;

TEST_F(Placement, ImagesAreFittedAsTheyAreTold)
{
	// Four pixels by two: red on the left, blue on the right.
	const std::string image = "<image x='20' y='20' style='image-rendering:pixelated' "
							  "href='data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAAAQAAAACCAIAAADwyuo0AAAAE0lEQVR42mP4"
							  "z8AARGDiPwMyBwBnsgf595JWggAAAABJRU5ErkJggg==' ";
	const PixelCase cases[] = {
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
		{"width='9' height='0'", "20,20 none"},
		{"width='40' height='-1'", "20,20 ff0000; 59,39 0000ff; 30,40 none"},
		{"width='40' height='20' opacity='.6'", "20,20 ff000099; 59,39 0000ff99"},
		{"width='40' height='20' visibility='hidden'", "20,20 none"},
		{"width='40' height='20' visibility='hidden' filter='opacity(.5)'", "20,20 none"},
		{"width='40' height='20' transform='translate(80) scale(-1 1)'",
		 "59,20 ff0000; 40,39 ff0000; 39,30 0000ff; 20,30 0000ff; 60,30 none"},
		{"width='40' height='20' transform='rotate(90 20 20)'",
		 "19,20 ff0000; 0,39 ff0000; 10,40 0000ff; 10,59 0000ff; 10,60 none; 20,30 none"},
		{"width='40' height='20' clip-path='circle(5px)'",
		 "36,30 ff0000; 43,30 0000ff; 34,30 none; 45,30 none; 40,24 none"},
	};
	for (const PixelCase& sample : cases)
		ExpectPixels(image + sample.elements + "/>", sample.pixels);
	for (const std::string sharp : {"crisp-edges", "optimizeSpeed"})
	{
		std::string other = image;
		other.replace(other.find("pixelated"), 9, sharp);
		ExpectPixels(other + "width='40' height='40'/>", "39,39 ff0000; 40,39 0000ff");
	}
}

TEST_F(Placement, UsesInheritFromWhereTheyStand)
{
	const PixelCase cases[] = {
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
	for (const PixelCase& sample : cases)
		ExpectPixels(sample.elements, sample.pixels);
}

TEST_F(Placement, LengthsHaveAllUnits)
{
	for (const char* width : {"48", "48px", ".5in", "1.27cm", "12.7mm", "36pt", "3pc", "50.8Q", "4em", "3rem", "48%",
							  "48vw", "48vh", "48vmin", "48vmax"})
	{
		ExpectPixels("<g font-size='12'><rect style='width:" + std::string(width) + "' height='9'/></g>",
					 "47,5 000000; 48,5 none");
	}
	// Those of fonts are of the font in force where they are given, or of the outermost element's. Lines are as high as
	// whole pixels.
	const auto measure = [](const std::string& width)
	{
		return "<g font-size='40' font-family='DejaVu Sans'><rect style='width:" + width +
			   ";font-size:20px' height='9'/><g stroke-width='" + width +
			   "' font-family='DejaVu Sans Mono'><path d='M0 60h99' stroke='red' font-size='9'/></g></g>";
	};
	ExpectPixels(measure("1ex"), "9,5 000000; 11,5 none; 5,50 ff0000; 5,48 none");
	ExpectPixels(measure("1ch"), "11,5 000000; 13,5 none; 5,49 ff0000; 5,47 ~ff00000a; 5,46 none");
	ExpectPixels(measure("1cap"), "13,5 000000; 15,5 none; 5,46 ff0000; 5,44 none");
	ExpectPixels(measure("1ic"), "19,5 000000; 20,5 none; 5,40 ff0000; 5,39 none");
	ExpectPixels(measure("1lh"), "23,5 000000; 24,5 none; 5,37 ff0000; 5,36 none");
	// Of the inner viewport, and of the outermost one.
	ExpectPixels(
		"<svg width='50' height='20' viewBox='0 0 10 4'><rect width='50%' height='50%'/><rect y='3' width='.05vw' "
		"height='1'/></svg>",
		"24,9 000000; 25,5 none; 5,10 none; 0,15 00000040");
	ExpectPixels("<svg width='80' height='20'><circle cx='50%' cy='50%' r='10%'/></svg>",
				 "40,5 000000; 40,3 none; 46,10 none; 44,10 000000");
}

TEST_F(Placement, TransformsTurnAroundTheirOrigins)
{
	const PixelCase cases[] = {
		{"transform:scale(.5)", "5,5 ff0000; 4,10 none; 24,24 ff0000; 25,10 none"},
		{"transform:scale(.5);transform-origin:40px 40px", "25,25 ff0000; 24,30 none; 44,44 ff0000; 45,30 none"},
		{"transform:scale(.5);transform-box:fill-box", "15,15 ff0000; 14,20 none; 34,34 ff0000; 35,20 none"},
		{"transform:scale(.5);transform-box:fill-box;transform-origin:center",
		 "20,20 ff0000; 19,30 none; 39,39 ff0000; 40,30 none"},
		{"transform:scale(.5);transform-box:fill-box;transform-origin:100% 0",
		 "25,15 ff0000; 24,20 none; 44,34 ff0000; 45,20 none"},
		{"transform:scale(.5);transform-box:stroke-box", "10,10 ff0000; 9,20 none; 29,29 ff0000; 30,20 none"},
		{"transform:scale(.5);transform-box:stroke-box;stroke:none",
		 "20,20 ff0000; 19,25 none; 29,29 ff0000; 30,25 none"},
		{"transform:scale(.5);transform-box:border-box;transform-origin:right bottom",
		 "30,30 ff0000; 29,40 none; 49,49 ff0000; 50,40 none"},
		{"transform:scale(.5);transform-origin:right bottom", "55,55 ff0000; 54,60 none; 74,74 ff0000; 75,60 none"},
		{"transform:translate(10px,20%)", "20,30 ff0000; 19,40 none; 30,29 none; 59,69 ff0000; 60,40 none"},
		{"transform:rotate(90deg);transform-origin:50px 50px", "50,10 ff0000; 89,49 ff0000; 49,30 none; 90,30 none"},
		{"transform:translateX(10px) scale(2);transform-origin:30px 30px",
		 "0,0 ff0000; 79,69 ff0000; 80,40 none; 40,70 none"},
		{"transform:skewX(45deg);transform-origin:0 30px", "9,20 ff0000; 50,49 ff0000; 49,20 none; 10,48 none"},
	};
	for (const PixelCase& sample : cases)
	{
		ExpectPixels("<rect x='20' y='20' width='20' height='20' fill='#f00' stroke='#f00' stroke-width='20' style='" +
						 std::string(sample.elements) + "'/>",
					 sample.pixels);
	}
	ExpectPixels("<g transform='translate(20 20)'><rect width='20' height='10' transform='rotate(90)' "
				 "transform-origin='10 10'/></g>",
				 "30,20 000000; 39,39 000000; 29,30 none; 40,30 none; 35,40 none");
}

TEST_F(Placement, ImagesThatAreDocumentsHaveTheSizesOfDocuments)
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
		// The rule of the image fits the view box, beside which what there is shows as well.
		{"viewBox='0 0 2 1' preserveAspectRatio='none'", "width='40' height='40'",
		 "0,10 ff0000; 39,29 ff0000; 10,9 none"},
		{"width='9' height='1' viewBox='5 0 10 10'", "x='20' width='40' height='20' preserveAspectRatio='xMaxYMin'",
		 "30,19 ff0000; 49,0 ff0000; 50,9 none; 29,9 none"},
		{"viewBox='0 1 4 4'", "width='40' height='20'", "10,14 ff0000; 29,0 ff0000; 10,15 none; 9,9 none; 30,9 none"},
		{"width='9' height='1' viewBox='0 0 1 1'", "width='90' height='30' preserveAspectRatio='none'",
		 "40,29 ff0000; 49,0 ff0000; 39,9 none; 50,9 none"},
		{"width='10' height='10'", "y='30' width='40' height='20' preserveAspectRatio='xMidYMid slice'",
		 "0,30 ff0000; 39,49 ff0000; 20,29 none; 20,50 none; 40,40 none"},
	};
	for (const auto& [document, image, pixels] : cases)
	{
		ExpectPixels("<image " + std::string(image) +
						 " href=\"data:image/svg+xml,&lt;svg xmlns='http://www.w3.org/2000/svg' " + document +
						 ">&lt;rect width='100%25' height='100%25' fill='red'/>&lt;/svg>\"/>",
					 pixels);
	}
}

TEST_F(Placement, ContentIsFittedByTheNineAlignments)
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

TEST_F(Placement, LayersReachAsFarAsWhatIsInThem)
{
	const PixelCase cases[] = {
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
	for (const PixelCase& sample : cases)
		ExpectPixels("<g opacity='.6'>" + std::string(sample.elements) + "</g>", sample.pixels);
}

TEST_F(Placement, ConditionsChooseWhatIsDrawn)
{
	const PixelCase cases[] = {
		{"<rect width='9' height='9' systemLanguage='en'/>", "5,5 000000"},
		{"<rect width='9' height='9' systemLanguage='de'/>", "5,5 none"},
		{"<clipPath id='c'><rect width='9' height='9' systemLanguage='de'/></clipPath><rect width='9' height='9' "
		 "clip-path='url(#c)'/>",
		 "5,5 none"},
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
		{"<switch><title>t</title><desc/><metadata/><x/><rect width='9' height='9'/></switch>", "5,5 000000"},
		{"<switch style='display:none'><rect width='9' height='9'/></switch>", "5,5 none"},
	};
	for (const PixelCase& sample : cases)
		ExpectPixels(sample.elements, sample.pixels);
}

} // namespace
} // namespace orvan
