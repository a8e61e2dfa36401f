// SPDX-License-Identifier: MIT
/// What filters make of an element, pixel by pixel.
#include "support/drawn_picture.h"

namespace orvan
{
namespace
{

struct Case
{
	const char* filter;
	const char* pixels;
};

class FilterElements : public RendererTest
{
protected:
	/// Draws a square from (20, 20) to (60, 60) with a filter. By default filters reach a tenth farther: from 16 to 64.
	static void ExpectFiltered(const Case& sample, const std::string& attributes = "", const char* fill = "#f00")
	{
		ExpectPixels("<filter id='f' " + attributes + ">" + sample.filter +
						 "</filter><rect x='20' y='20' width='40' height='40' filter='url(#f)' fill='" + fill + "'/>",
					 sample.pixels);
	}
};

TEST_F(FilterElements, ReachAsFarAsTheirRegionsSay)
{
	struct Region
	{
		const char* attributes;
		Case sample;
	};
	const char* const flood = "<feFlood flood-color='#00f'/>";
	const Region regions[] = {
		{"", {flood, "16,16 0000ff; 15,30 none; 30,15 none; 63,63 0000ff; 64,30 none; 30,64 none"}},
		{"filterUnits='userSpaceOnUse' x='10' y='30' width='30' height='20'",
		 {flood, "10,30 0000ff; 9,30 none; 39,49 0000ff; 40,40 none; 30,50 none; 30,29 none"}},
		{"filterUnits='userSpaceOnUse' x='50%' width='25%'",
		 {flood, "50,0 0000ff; 49,50 none; 74,99 0000ff; 75,50 none"}},
		{"x='0' y='25%' width='.5' height='50%'",
		 {flood, "20,30 0000ff; 19,40 none; 30,29 none; 39,49 0000ff; 40,40 none; 30,50 none"}},
		{"width='0'", {flood, "30,30 none"}},
		{"height='-1'", {flood, "30,30 none"}},
		{"",
		 {"<feFlood flood-color='#00f' x='30' y='25' width='10' height='5'/>",
		  "30,25 0000ff; 29,27 none; 35,24 none; 39,29 0000ff; 40,27 none; 35,30 none"}},
		{"",
		 {"<feFlood flood-color='#00f' x='50%' y='40%' width='10%' height='20%'/>",
		  "50,40 0000ff; 49,50 none; 55,39 none; 59,59 0000ff; 60,50 none; 55,60 none"}},
		{"primitiveUnits='objectBoundingBox'",
		 {"<feFlood flood-color='#00f' x='.25' y='50%' width='.5' height='.25'/>",
		  "30,40 0000ff; 29,45 none; 35,39 none; 49,49 0000ff; 50,45 none; 35,50 none"}},
		// No primitive is smaller than a pixel.
		{"",
		 {"<feFlood flood-color='#00f' x='30.1' y='40.1' width='.2' height='.2'/>",
		  "30,40 0000ff; 29,40 none; 31,40 none; 30,39 none; 30,41 none"}},
		// What is not said is that of the region, or of what comes in; and what reaches out of either is cut off.
		{"x='0' width='2'",
		 {"<feOffset dx='40' y='20' height='40'/>", "59,40 none; 60,20 ff0000; 99,59 ff0000; 60,60 none"}},
		{"", {"<feFlood flood-color='#00f' x='30' width='10'/>", "30,16 0000ff; 29,30 none; 39,63 0000ff; 40,30 none"}},
		{"",
		 {"<feFlood flood-color='#00f' x='0' y='40' width='99' height='99'/>",
		  "16,40 0000ff; 15,50 none; 63,63 0000ff; 64,50 none"}},
		{"",
		 {"<feFlood flood-color='#00f' x='30' y='30' width='10' height='10'/><feOffset dx='5'/>",
		  "35,35 0000ff; 34,35 none; 39,30 0000ff; 40,35 none"}},
		{"",
		 {"<feFlood flood-color='#00f' x='30' y='30' width='10' height='10'/><feOffset dx='5' width='20'/>",
		  "35,35 0000ff; 34,35 none; 44,39 0000ff; 45,35 none"}},
		{"",
		 {"<feFlood flood-color='#00f' x='20' y='20' width='5' height='5'/><feOffset x='20' y='20' width='10' "
		  "height='10'/><feTile/>",
		  "20,20 0000ff; 25,20 none; 20,25 none; 30,30 0000ff; 50,54 0000ff; 16,16 none; 63,60 0000ff; 64,60 none"}},
		// In the coordinates of the element, which are twice as large and turned around here.
		{"primitiveUnits='objectBoundingBox'",
		 {"<feOffset dx='.1' dy='-.05'/>", "24,18 ff0000; 23,30 none; 30,17 none; 63,57 ff0000; 30,58 none"}},
	};
	for (const Region& region : regions)
		ExpectFiltered(region.sample, region.attributes);
	const std::string offset = "<filter id='f' x='-1' y='-1' width='3' height='3'><feOffset dx='5' dy='2'/></filter>";
	ExpectPixels(offset + "<g transform='scale(2)'><rect x='10' y='10' width='10' height='10' filter='url(#f)'/></g>",
				 "30,24 000000; 29,30 none; 35,23 none; 49,43 000000; 50,30 none; 35,44 none");
	ExpectPixels(offset + "<g transform='matrix(-1 0 0 2 90 0)'><rect x='10' y='10' width='10' height='10' "
						  "filter='url(#f)'/></g>",
				 "74,24 000000; 75,30 none; 70,23 none; 65,43 000000; 64,30 none; 70,44 none");
	ExpectPixels(offset + "<g transform='translate(60 10) rotate(90)'><rect x='10' y='10' width='20' height='20' "
						  "filter='url(#f)'/></g>",
				 "38,35 000000; 46,26 000000; 29,44 000000; 48,35 none~; 38,24 none~; 27,35 none~; 38,45 none~");
}

TEST_F(FilterElements, MeasureInFractionsOfTheBox)
{
	ExpectPixels("<filter id='f' primitiveUnits='objectBoundingBox' x='0' y='0' width='2' height='3'><feOffset dx='.5' "
				 "dy='.5'/></filter><rect x='10' y='10' width='40' height='20' filter='url(#f)'/>",
				 "29,30 none; 30,20 000000; 30,19 none; 69,39 000000; 70,30 none; 40,40 none");
	// A light stands at the same place however that is said.
	const auto draw = [](const std::string& units, const std::string& place)
	{
		const DrawnPicture picture(LoadCompletely(
			Document("<filter id='f' primitiveUnits='" + units + "'><feDiffuseLighting><fePointLight " + place +
					 "/></feDiffuseLighting></filter><rect x='20' y='40' width='40' height='40' filter='url(#f)'/>")));
		return picture.At(30, 50) + ' ' + picture.At(30, 70) + ' ' + picture.At(50, 50);
	};
	EXPECT_EQ(draw("userSpaceOnUse", "x='30' y='60' z='10'"), draw("objectBoundingBox", "x='.25' y='.5' z='.25'"));
}

TEST_F(FilterElements, TakeWhatIsNamedOrWhatCameBefore)
{
	const char* const blue = "<feFlood flood-color='#00f' x='40' y='20' width='20' height='20' result='a'/>";
	const Case cases[] = {
		{"<feOffset in='SourceGraphic' dx='2' dy='1'/>",
		 "22,21 ff0000; 21,30 none; 30,20 none; 61,60 ff0000; 62,30 none; 30,61 none"},
		{"<feOffset in='SourceAlpha'/>", "30,30 000000; 19,30 none"},
		{"<feOffset in='SourceAlpha' dx='1'/><feOffset in='SourceAlpha' dx='2'/>", "22,30 000000; 21,30 none"},
		{"<feFlood flood-color='#00f'/><feOffset in='unknown'/>", "30,30 0000ff; 16,16 0000ff"},
		{"<feFlood flood-color='#00f'/><feOffset in='SourceGraphic'/>", "30,30 ff0000; 16,16 none"},
		{"<feFlood flood-color='#0f0' result='a'/><feFlood flood-color='#00f' result='a'/><feFlood flood-color='#fff'/>"
		 "<feOffset in='a'/>",
		 "30,30 0000ff"},
		{"<feFlood flood-color='#0f0' result='a'/><feFlood flood-color='#00f' result='b'/><feOffset in='a'/>",
		 "30,30 00ff00"},
		{"<feMerge><feMergeNode in='SourceGraphic'/><feMergeNode in='a'/></feMerge>",
		 "50,30 0000ff; 30,30 ff0000; 50,50 ff0000"},
		{"<feMerge><feMergeNode in='a'/><feMergeNode in='SourceGraphic'/></feMerge>", "50,30 ff0000; 30,30 ff0000"},
		{"<feMerge><feMergeNode/></feMerge>", "50,30 0000ff; 30,30 none"},
		{"<feMerge/>", "50,30 none; 30,30 none"},
		{"<title>none of them</title><feOffset in='a'/>", "50,30 0000ff; 30,30 none"},
		// What another one drew is drawn as it is.
		{"<feOffset/><feComposite in='SourceGraphic' in2='a' operator='in'/>", "50,30 ff0000; 30,30 none"},
		{"<feOffset/><feComposite in='a' in2='SourceGraphic' operator='out'/>", "50,30 none; 30,30 none"},
	};
	for (const Case& sample : cases)
		ExpectFiltered({(blue + std::string(sample.filter)).c_str(), sample.pixels});
	ExpectFiltered({"", "30,30 none"});
	ExpectFiltered({"<title/>", "30,30 none"});
	// One that is not there is none.
	ExpectPixels("<rect width='9' height='9' filter='url(#no)'/><rect x='20' width='9' height='9' id='no'/>",
				 "5,5 000000");
	ExpectPixels(
		"<filter id='f'><feOffset dx='2'/></filter><filter id='g' filterUnits='userSpaceOnUse' x='0' y='0' width='99' "
		"height='5'><feOffset dy='2'/></filter><rect width='20' height='20' style='filter:url(#f) url(#no) url(#g)'/>",
		"2,2 000000; 1,3 none; 5,1 none; 21,4 000000; 22,4 none; 5,5 none");
}

TEST_F(FilterElements, ChangeColorsByMatricesAndCurves)
{
	const Case cases[] = {
		{"<feColorMatrix values='0 1 0 0 0 0 0 1 0 0 1 0 0 0 0 0 0 0 1 0'/>", "30,30 669933"},
		{"<feColorMatrix values='1 0 0 0 .2 0 1 0 0 0 0 0 1 0 0 0 0 0 1 0'/>", "30,30 666699"},
		{"<feColorMatrix values='1 0 0 0 0 0 1 0 0 0 0 0 1 0 0 0 0 0 .6 0'/>", "30,30 ~33669999; 17,17 none"},
		{"<feColorMatrix values='0 0 0 0 0 0 0 0 0 1 0 0 0 0 0 0 0 0 0 1'/>", "30,30 00ff00; 17,17 00ff00"},
		{"<feColorMatrix values='1 0 0'/>", "30,30 336699"},
		{"<feColorMatrix type='saturate' values='0'/>", "30,30 5f5f5f"},
		{"<feColorMatrix type='saturate' values='1'/>", "30,30 336699"},
		{"<feColorMatrix type='saturate'/>", "30,30 336699"},
		{"<feColorMatrix type='hueRotate' values='0'/>", "30,30 336699"},
		{"<feColorMatrix type='hueRotate'/>", "30,30 336699"},
		{"<feColorMatrix type='luminanceToAlpha'/>", "30,30 ~0000005f; 17,17 none"},
		{"<feComponentTransfer><feFuncR type='table' tableValues='1 0'/></feComponentTransfer>", "30,30 cc6699"},
		{"<feComponentTransfer><feFuncG type='table' tableValues='0 0 1'/><feFuncB type='table' tableValues='0 0 1'/>"
		 "</feComponentTransfer>",
		 "30,30 330033"},
		{"<feComponentTransfer><feFuncG type='discrete' tableValues='0 1'/><feFuncB type='discrete' tableValues='0 1'/>"
		 "</feComponentTransfer>",
		 "30,30 3300ff"},
		{"<feComponentTransfer><feFuncR type='linear' slope='2'/><feFuncG type='linear' "
		 "intercept='.2'/></feComponentTransfer>",
		 "30,30 669999"},
		{"<feComponentTransfer><feFuncR type='gamma' exponent='2'/><feFuncG type='gamma' amplitude='2'/><feFuncB "
		 "type='gamma' "
		 "exponent='2' amplitude='.5' offset='.2'/></feComponentTransfer>",
		 "30,30 0acc61"},
		{"<feComponentTransfer><feFuncA type='linear' slope='.6'/></feComponentTransfer>", "30,30 ~33669999"},
		{"<feComponentTransfer><feFuncR type='linear' slope='0'/><feFuncR type='identity'/></feComponentTransfer>",
		 "30,30 336699"},
		{"<feComponentTransfer/>", "30,30 336699"},
		// Flat colours: premultiplied by the alpha where they are put together.
		{"<feFlood flood-color='#00f' flood-opacity='.6'/>", "30,30 0000ff99"},
		{"<feFlood flood-color='rgba(0,0,255,.6)'/>", "30,30 0000ff99"},
		{"<feFlood color='#00f' flood-color='currentColor'/>", "30,30 0000ff"},
		{"<feFlood/>", "30,30 000000"},
	};
	for (const Case& sample : cases)
		ExpectFiltered(sample, "color-interpolation-filters='sRGB'", "#369");
	// A quarter and a half of the circle of hues away from red.
	ExpectFiltered({"<feColorMatrix type='hueRotate' values='180'/>", "30,30 006d6d"},
				   "color-interpolation-filters='sRGB'");
	ExpectFiltered({"<feColorMatrix type='hueRotate' values='120'/>", "30,30 007100"},
				   "color-interpolation-filters='sRGB'");
	// By default numbers are amounts of light: half of it is 188.
	const char* const half = "<feComponentTransfer><feFuncR type='linear' slope='.5'/></feComponentTransfer>";
	ExpectFiltered({half, "30,30 bc0000"});
	ExpectFiltered({half, "30,30 800000"}, "color-interpolation-filters='sRGB'");
	ExpectFiltered({"<feComponentTransfer color-interpolation-filters='sRGB'><feFuncR type='linear' slope='.5'/>"
					"</feComponentTransfer><feOffset/>",
					"30,30 800000"});
}

TEST_F(FilterElements, PutTwoPicturesTogether)
{
	// The square, and a blue one on its right half that reaches beyond it.
	const std::string blue = "<feFlood flood-color='#00f' x='40' y='16' width='24' height='44' result='b'/>";
	const Case cases[] = {
		{"<feComposite in='SourceGraphic' in2='b'/>", "30,30 ff0000; 50,30 ff0000; 62,30 0000ff"},
		{"<feComposite in='SourceGraphic' in2='b' operator='over'/>", "50,30 ff0000; 62,30 0000ff"},
		{"<feComposite in='b' in2='SourceGraphic'/>", "30,30 ff0000; 50,30 0000ff; 62,30 0000ff"},
		{"<feComposite in='SourceGraphic' in2='b' operator='in'/>", "30,30 none; 50,30 ff0000; 62,30 none"},
		{"<feComposite in='SourceGraphic' in2='b' operator='out'/>", "30,30 ff0000; 50,30 none; 62,30 none"},
		{"<feComposite in='SourceGraphic' in2='b' operator='atop'/>", "30,30 none; 50,30 ff0000; 62,30 0000ff"},
		{"<feComposite in='SourceGraphic' in2='b' operator='xor'/>", "30,30 ff0000; 50,30 none; 62,30 0000ff"},
		{"<feComposite in='SourceGraphic' in2='b' operator='lighter'/>", "30,30 ff0000; 50,30 ff00ff; 62,30 0000ff"},
		{"<feComposite in='SourceGraphic' in2='b' operator='arithmetic' k1='1'/>",
		 "30,30 none; 50,30 000000; 62,30 none"},
		{"<feComposite in='SourceGraphic' in2='b' operator='arithmetic' k2='1'/>",
		 "30,30 ff0000; 50,30 ff0000; 62,30 none"},
		{"<feComposite in='SourceGraphic' in2='b' operator='arithmetic' k3='1'/>",
		 "30,30 none; 50,30 0000ff; 62,30 0000ff"},
		{"<feComposite in='SourceGraphic' in2='b' operator='arithmetic' k4='.6'/>", "30,30 ffffff99; 17,62 ffffff99"},
		{"<feComposite in='SourceGraphic' in2='b' operator='arithmetic' k2='.6' k3='.4'/>",
		 "30,30 ff000099; 50,30 990066; 62,30 0000ff66"},
		{"<feBlend in='SourceGraphic' in2='b'/>", "30,30 ff0000; 50,30 ff0000; 62,30 0000ff"},
		{"<feBlend in='SourceGraphic' in2='b' mode='multiply'/>", "30,30 ff0000; 50,30 000000; 62,30 0000ff"},
		{"<feBlend in='SourceGraphic' in2='b' mode='screen'/>", "30,30 ff0000; 50,30 ff00ff; 62,30 0000ff"},
		{"<feBlend in='SourceGraphic' in2='b' mode='darken'/>", "50,30 000000"},
		{"<feBlend in='SourceGraphic' in2='b' mode='lighten'/>", "50,30 ff00ff"},
		// Moved by half of the scale: to the left by red, down by the green that is not there.
		{"<feFlood flood-color='#f00' result='m'/><feDisplacementMap in='SourceGraphic' in2='m' scale='20' "
		 "xChannelSelector='R' "
		 "yChannelSelector='G'/>",
		 "16,30 ff0000; 49,63 ff0000; 50,40 none; 30,29 none"},
		{"<feFlood flood-color='#f00' result='m'/><feDisplacementMap in='SourceGraphic' in2='m' scale='20' "
		 "xChannelSelector='B'/>",
		 "30,16 ff0000; 30,49 ff0000; 30,50 none; 29,30 none; 63,40 ff0000"},
		{"<feDisplacementMap in='SourceGraphic' in2='b'/>", "20,20 ff0000; 19,30 none; 59,59 ff0000"},
	};
	for (const Case& sample : cases)
		ExpectFiltered({(blue + sample.filter).c_str(), sample.pixels}, "color-interpolation-filters='sRGB'");
	ExpectFiltered({"<feFlood flood-color='#f00' result='m'/><feDisplacementMap in='SourceGraphic' in2='m' scale='.5' "
					"xChannelSelector='R' yChannelSelector='G'/>",
					"16,30 ff0000; 49,63 ff0000; 50,40 none; 30,29 none"},
				   "color-interpolation-filters='sRGB' primitiveUnits='objectBoundingBox'");
}

TEST_F(FilterElements, LookAtTheNeighbourhood)
{
	const Case cases[] = {
		// A kernel is turned by half a turn: what stands on its right is taken from the left.
		{"<feConvolveMatrix kernelMatrix='0 0 0 0 0 1 0 0 0'/>", "20,30 none; 21,20 ff0000; 60,59 ff0000; 61,30 none"},
		{"<feConvolveMatrix kernelMatrix='0 1 0 0 0 0 0 0 0'/>",
		 "20,19 ff0000; 30,18 none; 30,58 ff0000; 30,59 none; 19,30 none"},
		{"<feConvolveMatrix order='3 1' kernelMatrix='0 0 1'/>", "20,30 none; 21,20 ff0000; 60,59 ff0000; 61,30 none"},
		{"<feConvolveMatrix order='1 3' kernelMatrix='0 0 1'/>", "30,20 none; 20,21 ff0000; 59,60 ff0000; 30,61 none"},
		{"<feConvolveMatrix order='2' kernelMatrix='1 0 0 0'/>", "19,30 none; 20,20 ff0000; 59,59 ff0000; 60,30 none"},
		{"<feConvolveMatrix order='3 1' targetX='0' kernelMatrix='0 0 1'/>",
		 "19,30 none; 20,20 ff0000; 59,59 ff0000; 60,30 none"},
		{"<feConvolveMatrix order='1 3' targetY='2' kernelMatrix='0 0 1'/>",
		 "30,21 none; 20,22 ff0000; 59,61 ff0000; 30,62 none"},
		// Its sum is what it divides by unless something else is said.
		{"<feConvolveMatrix kernelMatrix='1 1 1 1 1 1 1 1 1'/>",
		 "40,40 ff0000; 19,40 ff000055; 20,40 ff0000aa; 18,40 none"},
		{"<feConvolveMatrix kernelMatrix='0 0 0 0 3 0 0 0 0' divisor='5'/>", "40,40 ff000099"},
		{"<feConvolveMatrix kernelMatrix='0 0 0 0 3 0 0 0 0' divisor='5' preserveAlpha='true'/>", "40,40 990000"},
		{"<feConvolveMatrix kernelMatrix='0 1 0 0 0 0 0 -1 0'/>", "40,40 none; 40,19 ff0000"},
		{"<feConvolveMatrix kernelMatrix='1 1 1'/>", "40,40 none"},
		{"<feConvolveMatrix kernelMatrix='0 0 0 0 1 0 0 0 0' targetX='3'/>", "40,40 none"},
		{"<feConvolveMatrix kernelMatrix='0 0 0 0 1 0 0 0 0' targetY='-1'/>", "40,40 none"},
		{"<feConvolveMatrix order='1' kernelMatrix='1' bias='.2'/>", "40,40 ff3d3d"},
		{"<feMorphology operator='dilate' radius='2'/>", "18,18 ff0000; 17,30 none; 61,61 ff0000; 62,30 none"},
		{"<feMorphology radius='2'/>", "22,22 ff0000; 21,30 none; 57,57 ff0000; 58,30 none"},
		{"<feMorphology operator='dilate' radius='3 1'/>", "17,19 ff0000; 16,30 none; 30,18 none; 62,60 ff0000"},
		{"<feMorphology operator='dilate' radius='0 2'/>", "20,18 ff0000; 19,30 none"},
		{"<feMorphology radius='-1'/>", "20,20 ff0000; 19,30 none"},
		{"<feMorphology/>", "20,20 ff0000; 19,30 none"},
		// Three averages, over four, four and five pixels here: 47 of 80 parts come from this side of the edge.
		{"<feGaussianBlur stdDeviation='2 0'/>", "20,40 ff000096; 19,40 ff000069; 40,20 ff0000; 40,19 none"},
		{"<feGaussianBlur stdDeviation='0 2'/>", "40,20 ff000096; 40,19 ff000069; 20,40 ff0000; 19,40 none"},
		{"<feGaussianBlur stdDeviation='2'/>", "20,40 ff000096; 40,60 ff000069; 40,40 ff0000; 20,20 ff000058"},
		{"<feGaussianBlur/>", "20,20 ff0000; 19,40 none"},
		{"<feGaussianBlur stdDeviation='-2'/>", "20,20 ff0000; 19,40 none"},
		{"<feDropShadow dx='3' dy='1' stdDeviation='0' flood-color='#00f' flood-opacity='.6'/>",
		 "20,20 ff0000; 60,30 0000ff99; 62,60 0000ff99; 63,40 none; 60,20 none; 23,60 0000ff99; 22,60 none"},
		{"<feDropShadow stdDeviation='0'/>", "59,59 ff0000; 61,61 000000; 62,40 none; 61,21 none; 61,22 000000"},
		{"<feDropShadow dx='0' dy='0'/>", "19,40 00000069; 40,60 00000069"},
	};
	for (const Case& sample : cases)
		ExpectFiltered(sample, "color-interpolation-filters='sRGB'");
	ExpectFiltered({"<feMorphology operator='dilate' radius='.05'/>", "18,18 ff0000; 17,30 none"},
				   "primitiveUnits='objectBoundingBox'");
	ExpectFiltered({"<feGaussianBlur stdDeviation='.05 0'/>", "20,40 ff000096; 40,19 none"},
				   "primitiveUnits='objectBoundingBox'");
}

TEST_F(FilterElements, MakePicturesOfTheirOwn)
{
	const Case cases[] = {
		// Noise of no frequency is the same everywhere: in the middle, or nothing where only its size counts.
		{"<feTurbulence type='fractalNoise'/>", "30,30 80808080; 16,16 80808080"},
		{"<feTurbulence/>", "30,30 none"},
		{"<feTurbulence type='fractalNoise' numOctaves='0' baseFrequency='.1'/>", "30,30 80808080; 41,37 80808080"},
		{"<feTurbulence type='fractalNoise' numOctaves='-1'/>", "30,30 none"},
		{"<feTurbulence type='fractalNoise' baseFrequency='-1'/>", "30,30 80808080"},
		{"<feTurbulence baseFrequency='.1 -1'/>", "30,30 none; 41,37 none"},
		{"<feTurbulence baseFrequency='-1 .1'/>", "30,30 none; 41,37 none"},
		// The element's origin is the corner of the subregion.
		{"<feImage href='#r' x='30' y='25' width='20' height='20'/>",
		 "30,25 00ff00; 29,30 none; 39,34 00ff00; 40,30 none; 35,24 none; 35,35 none"},
		{"<feImage href='#h' x='30' y='25' width='20' height='30'/>",
		 "30,25 00ff00; 39,39 00ff00; 40,30 none; 35,40 none"},
		{"<feImage href='#no'/>", "30,30 none"},
		{"<feImage/>", "30,30 none"},
		{"<feFlood flood-color='#00f'/><feImage href='#f'/>", "30,30 none"},
		// Light from straight above, from the side, and on slopes.
		{"<feDiffuseLighting><feDistantLight elevation='90'/></feDiffuseLighting>", "40,40 ffffff; 17,17 ffffff"},
		{"<feDiffuseLighting diffuseConstant='.6'><feDistantLight elevation='90'/></feDiffuseLighting>",
		 "40,40 999999"},
		{"<feDiffuseLighting diffuseConstant='-1'><feDistantLight elevation='90'/></feDiffuseLighting>",
		 "40,40 000000"},
		{"<feDiffuseLighting lighting-color='#f80'><feDistantLight elevation='30' azimuth='77'/></feDiffuseLighting>",
		 "40,40 804400"},
		{"<feDiffuseLighting><feDistantLight/></feDiffuseLighting>",
		 "59,40 b4b4b4; 60,40 b4b4b4; 20,40 000000; 40,40 000000; 40,59 000000"},
		{"<feDiffuseLighting><feDistantLight azimuth='90'/></feDiffuseLighting>",
		 "40,59 b4b4b4; 40,60 b4b4b4; 40,20 000000; 59,40 000000"},
		{"<feDiffuseLighting surfaceScale='-1'><feDistantLight/></feDiffuseLighting>", "20,40 b4b4b4; 59,40 000000"},
		{"<feDiffuseLighting surfaceScale='2'><feDistantLight/></feDiffuseLighting>", "59,40 e4e4e4; 20,40 000000"},
		{"<feDiffuseLighting/>", "40,40 none"},
		{"<feDiffuseLighting><title/><feDistantLight elevation='90'/><feDistantLight "
		 "elevation='270'/></feDiffuseLighting>",
		 "40,40 ffffff"},
		{"<feSpecularLighting specularConstant='.6'><feDistantLight elevation='90'/></feSpecularLighting>",
		 "40,40 ffffff99"},
		// Halfway between the light and the eye: the cosine of 30 degrees, to the exponent.
		{"<feSpecularLighting specularExponent='4'><feDistantLight elevation='30'/></feSpecularLighting>",
		 "40,40 ~ffffff90"},
		{"<feSpecularLighting><feDistantLight elevation='30'/></feSpecularLighting>", "40,40 ~ffffffdd"},
		{"<feSpecularLighting specularExponent='.1'><feDistantLight elevation='30'/></feSpecularLighting>",
		 "40,40 ~ffffffdd"},
	};
	for (const Case& sample : cases)
	{
		ExpectFiltered(
			{(std::string(sample.filter) + "</filter><defs><rect id='r' width='10' height='10' fill='#0f0'/><rect "
										   "id='h' width='50%' height='50%' fill='#0f0'/></defs><filter id='x'>")
				 .c_str(),
			 sample.pixels},
			"color-interpolation-filters='sRGB'");
	}
}

TEST_F(FilterElements, FunctionsChangeColorsWithoutAnElement)
{
	const Case cases[] = {
		{"brightness(2)", "30,30 66ccff"},
		{"brightness(200%)", "30,30 66ccff"},
		{"brightness(0)", "30,30 000000"},
		{"contrast(0)", "30,30 ~808080"},
		{"contrast(2)", "30,30 ~004db3"},
		{"grayscale()", "30,30 5f5f5f"},
		{"grayscale(7)", "30,30 5f5f5f"},
		{"grayscale(0)", "30,30 336699"},
		{"invert(1)", "30,30 cc9966"},
		{"invert(2)", "30,30 cc9966"},
		{"invert(.25)", "30,30 ~59738c"},
		{"opacity(.6)", "30,30 ~33669999"},
		{"opacity(3)", "30,30 336699"},
		{"saturate(0)", "30,30 5f5f5f"},
		{"saturate(1)", "30,30 336699"},
		{"sepia(1)", "30,30 ~7f7158"},
		{"sepia(0)", "30,30 336699"},
		{"hue-rotate(360deg)", "30,30 336699"},
		{"invert(1) opacity(.6)", "30,30 ~cc996699"},
		{"opacity(.6) invert(1)", "30,30 ~cc996699"},
		{"drop-shadow(3px 1px 0 #00f)", "20,20 336699; 60,30 0000ff; 62,60 0000ff; 63,40 none; 60,20 none; 22,60 none"},
		{"drop-shadow(#00f -3px -1px)", "17,19 0000ff; 16,30 none; 30,18 none; 20,20 336699"},
		{"drop-shadow(5% 10% 0 red)", "20,20 336699; 62,65 none"},
		{"drop-shadow(1px 1px)", "60,60 00ff00; 61,61 none"},
		{"drop-shadow(1px 1px);color:rgba(255,0,0,.4)", "60,60 ff000066; 61,61 none"},
		{"blur(0)", "20,20 336699; 19,30 none"},
		{"blur(2px)", "20,40 ~33669996; 40,60 ~33669969; 40,40 336699"},
		{"blur(2px) drop-shadow(30px 0 0 #00f)", "90,40 0000ff69; 50,40 336699"},
		{"brightness(2) url(#no) invert(1)", "30,30 993300"},
	};
	for (const Case& sample : cases)
	{
		ExpectPixels("<rect x='20' y='20' width='40' height='40' fill='#369' color='#0f0' style='filter:" +
						 std::string(sample.filter) + "'/>",
					 sample.pixels);
	}
	ExpectPixels(
		"<g transform='scale(2)'><rect x='10' y='10' width='10' height='10' style='filter:drop-shadow(3px 1px 0 "
		"#00f)'/></g>",
		"45,41 0000ff; 46,30 none; 40,22 0000ff; 40,21 none");
	// One and a third deviations of 8 pixels away.
	ExpectPixels("<g transform='scale(4)'><rect x='-20' y='-20' width='35' height='60' style='filter:blur(2px)'/></g>",
				 "70,50 ~00000018");
}

} // namespace
} // namespace orvan
