// SPDX-License-Identifier: MIT
#include "geometry_module.h"
#include "svg_source.h"

#include <filesystem>

namespace orvan
{
namespace
{

class Normalize : public GeometryTest
{
protected:
	/// Each path on a line: its element, its paints and its commands.
	static std::string Describe(const SVGNormalizedPaths& paths)
	{
		std::string text;
		const auto paint = [&](SVGNormalizedPaint kind, const Color& color, Float opacity)
		{
			if (kind == SVGNormalizedPaint::none)
				return std::string("-");
			std::string name = kind == SVGNormalizedPaint::server ? "server" : "";
			for (const Float channel : {color.red, color.green, color.blue})
				name += AskedPicture::Round(channel) + ',';
			return name + AskedPicture::Round(opacity);
		};
		for (std::size_t i = 0; i < paths.elements.GetCount(); i++)
		{
			text += std::string(paths.elements[i]->GetId().CString()) + ' ' +
					paint(paths.fillKinds[i], paths.fills[i], paths.fillOpacities[i]) + ' ' +
					paint(paths.strokeKinds[i], paths.strokes[i], paths.strokeOpacities[i]) + ' ' +
					AskedPicture::Round(paths.strokeWidths[i]);
			auto point = static_cast<std::size_t>(paths.pointOffsets[i]);
			for (auto at = paths.commandOffsets[i]; at < paths.commandOffsets[i + 1]; at++)
			{
				const std::uint8_t command = paths.commands[static_cast<std::size_t>(at)];
				text += std::string(" ") + "MLCZ"[command];
				for (int count = command == 3 ? 0 : command == 2 ? 3 : 1; count > 0; count--)
				{
					text +=
						AskedPicture::Round(paths.points[point].x) + ',' + AskedPicture::Round(paths.points[point].y);
					text += count > 1 ? " " : "";
					point++;
				}
			}
			EXPECT_EQ(static_cast<std::size_t>(paths.pointOffsets[i + 1]), point);
			text += '\n';
		}
		return text;
	}

	static std::string Of(const std::string& elements, const SVGNormalizeOptions& options = {})
	{
		return Describe(Must(AskedPicture(elements).geometry->Normalize(options)));
	}
};

TEST_F(Normalize, ResolvesTransformsUsesAndStyles)
{
	EXPECT_EQ(
		"r 1,0,0,0.25 0,0,1,0.5 4 M12,4 L16,4 L16,8 L12,8 Z\n"
		"p 0,0,0,1 - 0 M1,1 C1,2 3,2 3,1\n"
		"u 0,0,0,1 - 0 M31,0 L33,0 L33,2 L31,2 Z\n",
		Of("<style>.a{fill:red;stroke:blue}</style><g opacity='0.5' transform='translate(10) scale(2)'><rect id='r' "
		   "class='a' x='1' y='2' width='2' height='2' fill-opacity='0.5' stroke-width='2' stroke-opacity='2'/></g>"
		   "<path id='p' d='M9 9M1 1C1 2 3 2 3 1M4 4'/><rect display='none' width='9' height='9'/><rect width='1' "
		   "height='1' visibility='hidden'/><rect width='1' height='1' fill='none'/><defs><rect id='u' x='1' width='2' "
		   "height='2'/></defs>"
		   "<use href='#u' x='30'/>"));
}

TEST_F(Normalize, KeepsThePaintingOrder)
{
	const std::string marker = "<marker id='m' markerUnits='userSpaceOnUse' style='overflow:visible'><rect id='k' "
							   "width='1' height='1' fill='context-stroke'/></marker>";
	const auto order = [&](const std::string& attributes)
	{
		std::string ids;
		const AskedPicture picture(marker + "<path id='p' d='M5 5h5v5' stroke='lime' marker-start='url(#m)' " +
								   attributes + "/>");
		const SVGNormalizedPaths paths = Must(picture.geometry->Normalize({}));
		for (std::size_t i = 0; i < paths.elements.GetCount(); i++)
		{
			ids += paths.elements[i]->GetId().CString();
			ids += paths.fillKinds[i] != SVGNormalizedPaint::none ? "f" : "";
			ids += paths.strokeKinds[i] != SVGNormalizedPaint::none ? "s " : " ";
		}
		return ids;
	};
	EXPECT_EQ("pfs kf ", order(""));
	EXPECT_EQ("ps pf kf ", order("paint-order='stroke'"));
	EXPECT_EQ("kf pfs ", order("paint-order='markers'"));
	EXPECT_EQ("pf kf ps ", order("paint-order='fill markers'"));
	EXPECT_EQ("ps kf pf ", order("paint-order='stroke markers'"));
	EXPECT_EQ("kf ps pf ", order("paint-order='markers stroke'"));
	EXPECT_EQ("pf pf kf ", order("stroke-dasharray='1'")); // Dashes are outlined always.
	const AskedPicture picture(marker + "<path d='M5 5h5v5' stroke='lime' marker-start='url(#m)'/>");
	EXPECT_EQ((Color{0, 1, 0}), Must(picture.geometry->Normalize({})).fills[1]);
}

TEST_F(Normalize, TellsOfStrokesInColumns)
{
	const AskedPicture picture(
		"<g stroke='red' fill='none' transform='scale(4 1)'><path d='M0 0h1' stroke-linecap='round' "
		"stroke-linejoin='bevel' stroke-miterlimit='7'/><path d='M0 0h1' stroke-linecap='square' "
		"stroke-linejoin='round' fill='blue' fill-rule='evenodd' opacity='.5'/><path d='M0 0h1' "
		"vector-effect='non-scaling-stroke' stroke-opacity='.25' stroke-miterlimit='.5'/></g>",
		"width='50' height='200'");
	SVGNormalizeOptions options;
	options.grid = 100.0;
	const SVGNormalizedPaths paths = Must(picture.geometry->Normalize(options));
	ASSERT_EQ(3u, paths.elements.GetCount());
	EXPECT_EQ((Vector2d{25, 100}), paths.size);
	EXPECT_EQ(SVGLineCap::round, paths.strokeCaps[0]);
	EXPECT_EQ(SVGLineCap::square, paths.strokeCaps[1]);
	EXPECT_EQ(SVGLineJoin::bevel, paths.strokeJoins[0]);
	EXPECT_EQ(SVGLineJoin::round, paths.strokeJoins[1]);
	EXPECT_EQ(7.0, paths.strokeMiterLimits[0]);
	EXPECT_EQ(1.0, paths.strokeMiterLimits[2]); // Lines are no shorter than they are.
	EXPECT_EQ(SVGFillRule::nonzero, paths.fillRules[0]);
	EXPECT_EQ(SVGFillRule::evenodd, paths.fillRules[1]);
	// As wide as the area that the pen covers: between four times and once, and half of that in the grid.
	EXPECT_EQ(1.0, paths.strokeWidths[0]);
	EXPECT_EQ(0.5, paths.strokeWidths[2]);
	EXPECT_EQ(0.5, paths.fillOpacities[1]);
	EXPECT_EQ(0.25, paths.strokeOpacities[2]);
	EXPECT_EQ((Vector2d{2, 0}), paths.points[1]);
}

TEST_F(Normalize, FlattensRoundsScalesAndOutlines)
{
	SVGNormalizeOptions options;
	options.grid = 10.0;
	options.precision = 0.5;
	EXPECT_EQ("p - 1,0,0,1 0.4 M1,2 L3,2\n",
			  Of("<path id='p' fill='none' stroke='red' stroke-width='4' d='M11 19h21'/>", options));
	options = {};
	options.grid = 0.5;
	EXPECT_EQ("p 0,0,0,1 - 0 M0,0 L0.25,0 L0.25,0.5\n", Of("<path id='p' d='M0 0h50v100'/>", options));
	options = {};
	options.strokes = SVGNormalizedStrokes::outlined;
	EXPECT_EQ("p 0,0,0,1 - 0 M10,10 L20,10 L20,20\np 1,0,0,1 - 0 M10,11 L20,11 L20,10 L19,10 L19,20 L21,20 L21,10 "
			  "L21,9 L20,9 L10,9 Z\n",
			  Of("<path id='p' stroke='red' stroke-width='2' stroke-miterlimit='9' d='M10 10h10v10'/>", options));
	options = {};
	options.flattening = 0.01;
	const std::string lines = Of("<circle id='c' cx='50' cy='50' r='40'/>", options);
	EXPECT_EQ(std::string::npos, lines.find('C'));
	EXPECT_GT(std::ranges::count(lines, 'L'), 50);
	EXPECT_LT(std::ranges::count(lines, 'L'), 500);
	options.precision = -1.0;
	const AskedPicture picture("");
	EXPECT_EQ("The options for normalised paths make no sense.", MessageOf(picture.geometry->Normalize(options)));
}

TEST_F(Normalize, TellsWhatItLeavesAside)
{
	const AskedPicture picture(
		"<linearGradient id='g'><stop stop-color='red'/><stop offset='1' stop-color='blue'/>"
		"</linearGradient><clipPath id='c'><rect width='5' height='5'/></clipPath><rect id='a' width='9' "
		"height='9' fill='url(#g)'/><g clip-path='url(#c)'><rect id='b' width='9' height='9'/></g>"
		"<rect width='9' height='9' fill='url(#none)'/>",
		"width='200' height='100'");
	const AskedPicture masked("<mask id='m'/><text x='10' y='50'>a<tspan mask='url(#m)'>b</tspan></text>");
	EXPECT_EQ(1, Must(masked.geometry->Normalize({})).unclippedCount);
	const SVGNormalizedPaths paths = Must(picture.geometry->Normalize({}));
	EXPECT_EQ("a server0.5,0,0.5,1 - 0 M0,0 L9,0 L9,9 L0,9 Z\nb 0,0,0,1 - 0 M0,0 L9,0 L9,9 L0,9 Z\n", Describe(paths));
	EXPECT_EQ(1, paths.unclippedCount);
	const SVGNormalizedPaths kept = Must(picture.geometry->NormalizeWith({}, SVGNormalizedClips::kept));
	EXPECT_EQ(Describe(paths), Describe(kept)) << "Columns have no place for clip paths.";
	EXPECT_EQ(1, kept.unclippedCount);
	EXPECT_EQ("", Of("<rect width='9' height='9' stroke='red' visibility='hidden'/>"));
	const AskedPicture line("<text x='10' y='50' text-decoration='overline'>a</text>");
	EXPECT_EQ(2u, Must(line.geometry->Normalize({})).elements.GetCount());
	EXPECT_EQ((Vector2d{200, 100}), paths.size);
	EXPECT_EQ((Vector2d{200, 100}), Must(picture.geometry->GetViewSize()));
}

/// The document that a picture becomes, as text.
class NormalizedDocument : public GeometryTest
{
protected:
	static std::string TextOf(const SVGDocumentRef& document)
	{
		const BaseArray<char> text = Must(Cast<SVGDocumentSourceInterface>(document)->SaveToMemory({}));
		return {text.begin(), text.end()};
	}

	static std::string Of(const SVGDocumentRef& document, SVGNormalizedClips clips,
						  const SVGNormalizeOptions& options = {})
	{
		const SVGGeometryRef geometry = Must(CreateObject<SVGGeometryInterface>(kSVGGeometryClass));
		Must(geometry->SetDocument(document, {}));
		const SVGDocumentRef normal = Must(geometry->NormalizeToDocument(options, clips));
		const std::string text = TextOf(normal);
		// Once more, nothing changes.
		Must(geometry->SetDocument(normal, {}));
		EXPECT_EQ(text, TextOf(Must(geometry->NormalizeToDocument(options, clips))));
		return text;
	}

	/// The lines between the root's tags.
	static std::string ContentOf(const std::string& elements, SVGNormalizedClips clips,
								 const SVGNormalizeOptions& options = {})
	{
		const std::string text = Of(AskedPicture(elements).GetDocument(), clips, options);
		const std::size_t start = text.find('\n') + 1;
		return text.substr(start, text.rfind("</svg>") - start);
	}
};

TEST_F(NormalizedDocument, EndsPathsAtClips)
{
	const std::string picture =
		"<clipPath id='inner'><rect width='5' height='20'/></clipPath><clipPath id='c' clip-path='url(#inner)'>"
		"<rect width='10' height='4'/><path clip-rule='evenodd' d='M0 0h10v10h-10zM2 2h6v6h-6z'/></clipPath>"
		"<g clip-path='url(#c)' opacity='.5'><rect width='20' height='20'/><rect width='3' height='1' stroke='red' "
		"stroke-dasharray='99'/></g><svg x='50' width='10' height='10'><path stroke='red' stroke-width='4' "
		"d='M5 5h20'/><rect x='1' y='1' width='2' height='2' stroke='red' stroke-linecap='round'/><path d='M30 "
		"0h9v9z'/></svg>";
	EXPECT_EQ("<g opacity=\"0.5\">\n"
			  "<path fill=\"#000000\" d=\"M0 10L0 0L5 0L5 4L2 4L2 8L5 8L5 10Z\"/>\n"
			  "<path fill=\"#000000\" d=\"M0 1L0 0L3 0L3 1Z\"/>\n"
			  "<path fill=\"#ff0000\" d=\"M0 1.5L0 0L3.5 0L3.5 1.5Z\"/>\n"
			  "</g>\n"
			  "<path fill=\"#ff0000\" d=\"M55 7L55 3L60 3L60 7Z\"/>\n"
			  "<path fill=\"#000000\" stroke=\"#ff0000\" stroke-width=\"1\" stroke-linecap=\"round\" "
			  "d=\"M51 1L53 1L53 3L51 3Z\"/>\n",
			  ContentOf(picture, SVGNormalizedClips::applied));
	EXPECT_EQ("<clipPath id=\"c1\"><path d=\"M0 0L5 0L5 20L0 20Z\"/></clipPath>\n"
			  "<clipPath id=\"c2\" clip-path=\"url(#c1)\"><path d=\"M0 0L10 0L10 4L0 4Z\"/><path clip-rule=\"evenodd\" "
			  "d=\"M0 0L10 0L10 10L0 10ZM2 2L8 2L8 8L2 8Z\"/></clipPath>\n"
			  "<g opacity=\"0.5\" clip-path=\"url(#c2)\">\n",
			  ContentOf(picture, SVGNormalizedClips::kept).substr(0, 252));
	EXPECT_EQ(std::string::npos, ContentOf(picture, SVGNormalizedClips::ignored).find("clip"));
	// In columns as well, with what no area is known of left whole.
	const AskedPicture asked(picture + "<rect id='m' width='9' height='9' filter='blur(1px)'/>");
	const SVGNormalizedPaths paths = Must(asked.geometry->NormalizeWith({}, SVGNormalizedClips::applied));
	EXPECT_EQ(6u, paths.elements.GetCount());
	EXPECT_EQ(1, paths.unclippedCount);
	EXPECT_EQ(0.5, paths.fillOpacities[0]);
	EXPECT_FALSE(asked.geometry->NormalizeWith({}, static_cast<SVGNormalizedClips>(3)).IsOk());
}

TEST_F(NormalizedDocument, KeepsGradientsImagesAndWhatPathsShare)
{
	const std::string picture =
		"<linearGradient id='g' x2='.5' gradientTransform='matrix(0 1 -1 0 0 0)' spreadMethod='reflect'><stop "
		"stop-color='red' "
		"stop-opacity='.5'/><stop offset='1' stop-color='blue'/></linearGradient><radialGradient id='r' "
		"gradientUnits='userSpaceOnUse' cx='50' cy='50' r='50%' fx='40' href='#g'/>"
		"<g transform='translate(10)'><rect id='a' width='20' height='10' fill='url(#g)' fill-opacity='.5'/>"
		"<path fill='url(#r)' stroke='url(#g)' stroke-width='2' stroke-linecap='round' opacity='.25' d='M0 0h9' "
		"fill-rule='evenodd'/></g>"
		"<image transform='scale(2)' x='1' width='4' height='3' href='a&amp;b.png' preserveAspectRatio='xMaxYMin "
		"slice' opacity='.5'/><path d='M0 0h9' fill='url(#g) lime' stroke='url(#g)'/>";
	EXPECT_EQ(
		"<linearGradient id=\"p1\" gradientUnits=\"userSpaceOnUse\" x1=\"0\" y1=\"0\" x2=\"0.5\" y2=\"0\" "
		"spreadMethod=\"reflect\" gradientTransform=\"matrix(0 10 -20 0 10 0)\"><stop offset=\"0\" "
		"stop-color=\"#ff0000\" stop-opacity=\"0.5\"/><stop offset=\"1\" stop-color=\"#0000ff\"/></linearGradient>\n"
		"<path fill=\"url(#p1)\" fill-opacity=\"0.5\" d=\"M10 0L30 0L30 10L10 10Z\"/>\n"
		"<radialGradient id=\"p2\" gradientUnits=\"userSpaceOnUse\" cx=\"50\" cy=\"50\" r=\"50\" fx=\"40\" fy=\"50\" "
		"spreadMethod=\"reflect\" gradientTransform=\"matrix(0 1 -1 0 10 0)\"><stop offset=\"0\" "
		"stop-color=\"#ff0000\" stop-opacity=\"0.5\"/><stop offset=\"1\" stop-color=\"#0000ff\"/></radialGradient>\n"
		"<path opacity=\"0.25\" fill=\"url(#p2)\" fill-rule=\"evenodd\" d=\"M10 0L19 0\"/>\n"
		"<image opacity=\"0.5\" x=\"1\" y=\"0\" width=\"4\" height=\"3\" preserveAspectRatio=\"xMaxYMin slice\" "
		"transform=\"matrix(2 0 0 2 0 0)\" href=\"a&amp;b.png\"/>\n"
		"<path fill=\"#00ff00\" d=\"M0 0L9 0\"/>\n",
		ContentOf(picture, SVGNormalizedClips::kept));
	// What a context lends keeps its place there: that of the path, not that of its marker.
	const auto gradient = [](const std::string& id)
	{
		return "<linearGradient id=\"" + id +
			   "\" gradientUnits=\"userSpaceOnUse\" x1=\"0\" y1=\"0\" x2=\"1\" y2=\"0\" "
			   "gradientTransform=\"matrix(10 0 0 10 20 0)\"><stop offset=\"0\" stop-color=\"#000000\"/><stop "
			   "offset=\"1\" "
			   "stop-color=\"#ff0000\"/></linearGradient>\n";
	};
	EXPECT_EQ(
		gradient("p1") + "<path fill=\"url(#p1)\" d=\"M20 0L30 0L30 10\"/>\n"
						 "<path fill=\"url(#p1)\" d=\"M30 10L34 10L34 14L30 14Z\"/>\n",
		ContentOf("<linearGradient id='g'><stop/><stop offset='1' stop-color='red'/></linearGradient><marker id='m' "
				  "markerUnits='userSpaceOnUse' style='overflow:visible'><rect width='4' height='4' "
				  "fill='context-fill'/></marker><path d='M20 0h10v10' fill='url(#g)' marker-end='url(#m)'/>",
				  SVGNormalizedClips::kept));
	// A pen that is wider one way has no stroke that tells of it, so it becomes an area.
	EXPECT_EQ(
		"<path fill=\"#ff0000\" d=\"M0 5.5L18 5.5L18 4.5L0 4.5Z\"/>\n",
		ContentOf("<path fill='none' stroke='red' transform='scale(2 1)' d='M0 5h9'/>", SVGNormalizedClips::kept));
}

TEST_F(NormalizedDocument, HasMasksPatternsAndBlending)
{
	const std::string white = "<path fill=\"#ffffff\" d=\"M0 0L50 0L50 50L0 50Z\"/>\n";
	EXPECT_EQ(
		"<mask id=\"m1\" maskUnits=\"userSpaceOnUse\" x=\"4\" y=\"4\" width=\"72\" height=\"72\">\n" + white +
			"</mask>\n<g opacity=\"0.5\" mask=\"url(#m1)\">\n<path fill=\"#000000\" d=\"M10 10L70 10L70 70L10 70Z\"/>\n"
			"</g>\n",
		ContentOf("<mask id='m'><rect width='50' height='50' fill='white'/></mask><g mask='url(#m)' opacity='.5'><rect "
				  "x='10' y='10' width='60' height='60'/></g>",
				  SVGNormalizedClips::kept));
	// A mask in the box of what it masks, masked in turn, of alpha, and one that shows nothing.
	EXPECT_EQ(
		"<mask id=\"m1\" maskUnits=\"userSpaceOnUse\" x=\"10\" y=\"0\" width=\"20\" height=\"10\" "
		"mask-type=\"alpha\">\n"
		"<mask id=\"m2\" maskUnits=\"userSpaceOnUse\" x=\"8\" y=\"-1\" width=\"24\" height=\"12\" "
		"color-interpolation=\"linearRGB\">\n</mask>\n<g mask=\"url(#m2)\">\n<path fill=\"#000000\" d=\"M10 0L20 0L20 "
		"10L10 10Z\"/>\n</g>\n</mask>\n<g mask=\"url(#m1)\" style=\"mix-blend-mode:multiply\">\n<path fill=\"#000000\" "
		"d=\"M10 0L30 0L30 10L10 10Z\"/>\n</g>\n",
		ContentOf("<mask id='n' color-interpolation='linearRGB'/><mask id='m' mask-type='alpha' mask='url(#n)' x='0' "
				  "y='0' width='1' height='1' maskContentUnits='objectBoundingBox'><rect width='.5' height='1'/></mask>"
				  "<rect x='10' width='20' height='10' mask='url(#m)' style='mix-blend-mode:multiply'/>",
				  SVGNormalizedClips::kept));
	// What is masked has a say in that.
	const auto masked = [](std::string_view type, std::string_view mode)
	{
		return ContentOf("<mask id='m' mask-type='" + std::string(type) +
							 "'><rect width='5' height='5'/></mask><rect "
							 "width='9' height='9' style='mask:url(#m);mask-mode:" +
							 std::string(mode) + "'/>",
						 SVGNormalizedClips::kept);
	};
	EXPECT_EQ(masked("alpha", "match-source"), masked("luminance", "alpha"));
	EXPECT_EQ(masked("luminance", "match-source"), masked("alpha", "luminance"));
	EXPECT_NE(masked("luminance", "luminance"), masked("alpha", "alpha"));
	// Several masks follow on each other in their order, each with its own masks before the next.
	const auto joined = [](std::string_view style)
	{
		const std::string all =
			ContentOf("<mask id='n'/><mask id='m' x='0' y='0' width='1' height='1' mask='url(#n)'/><mask id='o' "
					  "mask-type='alpha' x='0' y='0' width='1' height='1'/><rect width='9' height='9' style='" +
						  std::string(style) + "'/>",
					  SVGNormalizedClips::kept);
		const std::size_t end = all.rfind("</mask>");
		return all.substr(end, all.find("\n<path", end) - end);
	};
	EXPECT_EQ("</mask>\n<g style=\"mask:url(#m1),url(#m2)\">", joined("mask:url(#m),url(#o)"));
	EXPECT_EQ("</mask>\n<g style=\"mask:url(#m1),url(#m2);mask-composite:exclude;mix-blend-mode:screen\">",
			  joined("mask-image:url(#m),none,url(#o);mask-composite:exclude;mix-blend-mode:screen"));
	// What is clipped stays a picture of its own where its paths end at the clip path.
	EXPECT_EQ(
		"<g style=\"isolation:isolate\">\n<path style=\"mix-blend-mode:screen\" fill=\"#000000\" d=\"M0 0L5 0L5 5L0 "
		"5Z\"/>\n</g>\n",
		ContentOf("<clipPath id='c'><rect width='9' height='9'/></clipPath><g clip-path='url(#c)'><rect width='5' "
				  "height='5' style='mix-blend-mode:screen'/></g>",
				  SVGNormalizedClips::applied));
	// Tiles keep their coordinates. Both shapes have the same pattern, the third one in its own box.
	EXPECT_EQ(
		"<pattern id=\"p1\" patternUnits=\"userSpaceOnUse\" x=\"3\" y=\"2\" width=\"10\" height=\"8\" "
		"patternTransform=\"matrix(2 0 0 2 0 0)\">\n<path opacity=\"0.5\" fill=\"#0000ff\" d=\"M0 0L6 0L6 4Z\"/>\n"
		"</pattern>\n<path fill=\"url(#p1)\" fill-opacity=\"0.5\" d=\"M0 0L18 0L18 18\"/>\n"
		"<path fill=\"none\" stroke=\"url(#p1)\" stroke-width=\"2\" d=\"M0 10L18 10\"/>\n"
		"<pattern id=\"p2\" patternUnits=\"userSpaceOnUse\" x=\"20\" y=\"0\" width=\"10\" height=\"5\">\n"
		"<path fill=\"#000000\" d=\"M0 0L4 0L4 1L0 1Z\"/>\n</pattern>\n<path fill=\"url(#p2)\" d=\"M20 0L40 0L40 10L20 "
		"10Z\"/>\n",
		ContentOf("<pattern id='q' x='3' y='2' width='10' height='8' patternUnits='userSpaceOnUse' viewBox='0 0 5 4' "
				  "patternTransform='scale(2)'><path d='M0 0h3v2z' fill='blue' opacity='.5'/></pattern><pattern id='b' "
				  "width='.5' height='.5' patternContentUnits='objectBoundingBox'><rect width='.2' height='.1'/>"
				  "</pattern><path d='M0 0h18v18' fill='url(#q)' fill-opacity='.5'/><path d='M0 10h18' fill='none' "
				  "stroke='url(#q)' stroke-width='2'/><rect x='20' width='20' height='10' fill='url(#b)'/>",
				  SVGNormalizedClips::kept));
}

TEST_F(NormalizedDocument, KeepsFilters)
{
	// Lengths and regions of the box, and of the font, are in the coordinates of what is filtered, which stay its own.
	// What cuts off a filtered picture is kept, since no path ends there.
	EXPECT_EQ(
		"<clipPath id=\"c1\"><path d=\"M10 0L60 0L60 50L10 50Z\"/></clipPath>\n<g clip-path=\"url(#c1)\">\n"
		"<g transform=\"matrix(0 2 -2 0 10 0)\">\n"
		"<filter id=\"f1\" filterUnits=\"userSpaceOnUse\" x=\"10\" y=\"-1\" width=\"40\" height=\"12\">\n"
		"<feDropShadow color-interpolation-filters=\"sRGB\" flood-color=\"#ff0000\" flood-opacity=\"0.25\" "
		"stdDeviation=\"40 20\" dx=\"2\" dy=\"20\"/>\n"
		"<feSpecularLighting color-interpolation-filters=\"sRGB\" result=\"a&lt;\"><fePointLight x=\"20\" y=\"0\" "
		"z=\"15.811388300841896\"/></feSpecularLighting>\n"
		"<feComposite y=\"5\" color-interpolation-filters=\"sRGB\" in2=\"a&lt;\" operator=\"arithmetic\" k1=\"2\"/>\n"
		"</filter>\n<g opacity=\"0.5\" filter=\"url(#f1) blur(4px)\">\n"
		"<path fill=\"none\" stroke=\"#ff0000\" stroke-width=\"0.5\" d=\"M10 0L30 0L30 10L10 10Z\"/>\n"
		"</g>\n</g>\n<path fill=\"#000000\" d=\"M10 0L19 0L19 9L10 9Z\"/>\n</g>\n",
		ContentOf(
			"<clipPath id='c'><rect width='50' height='50'/></clipPath><filter id='f' "
			"primitiveUnits='objectBoundingBox' x='0' width='2' color-interpolation-filters='sRGB'><feDropShadow "
			"dx='.1' flood-color='rgb(255 0 0/.5)' flood-opacity='.5'/><feSpecularLighting result='a&lt;'>"
			"<fePointLight x='.5' z='1'/></feSpecularLighting><feComposite in2='a&lt;' y='.5' "
			"operator='arithmetic' k1='2'/></filter><g clip-path='url(#c)' transform='translate(10)'>"
			"<g transform='matrix(0 2 -2 0 0 0)' filter='url(#f) blur(1em) url(#none)' font-size='4' opacity='.5'>"
			"<rect x='10' width='20' height='10' fill='none' stroke='red' vector-effect='non-scaling-stroke'/>"
			"</g><rect width='9' height='9'/></g>",
			SVGNormalizedClips::applied));
	// What goes into a filter becomes plain paths, filtered in turn; parts of texts are filtered as well.
	EXPECT_EQ(
		"<defs>\n<g id=\"i1\">\n<g transform=\"matrix(0.5 0 0 0.12 0.5 0)\">\n<g filter=\"invert(1)\">\n"
		"<path fill=\"#000000\" d=\"M0 0L50 0L50 4L0 4Z\"/>\n</g>\n</g>\n</g>\n</defs>\n"
		"<filter id=\"f1\" filterUnits=\"userSpaceOnUse\" x=\"19\" y=\"-1\" width=\"12\" height=\"12\">\n"
		"<feImage width=\"50\" href=\"#i1\"/>\n<feImage image-rendering=\"pixelated\" href=\"a.png\"/>\n"
		"</filter>\n<g filter=\"url(#f1)\">\n</g>\n"
		"<g filter=\"sepia(.5)\">\n</g>\n<path fill=\"#000000\" d=\"M0 0L3 0L3 2L0 2Z\"/>\n",
		ContentOf("<filter id='i'><feImage href='#t' width='50'/><feImage href='a.png' image-rendering='pixelated'/>"
				  "</filter><defs><rect id='t' width='50%' height='4' transform='translate(1)' filter='invert(1)'/>"
				  "</defs><rect x='20' width='10' height='10' filter='url(#i)' visibility='hidden'/>"
				  "<text><tspan filter='sepia(.5)' visibility='hidden'>A</tspan></text>"
				  "<rect width='3' height='2' filter='url(#none)'/>",
				  SVGNormalizedClips::kept));
}

/// Whatever there is among the examples and pictures is, once normalised, what it becomes when it is normalised.
TEST_F(NormalizedDocument, StaysWhatItIs)
{
	int count = 0;
	for (const char* folder : {ORVAN_EXAMPLES, ORVAN_PICTURES})
	{
		for (const auto& entry : std::filesystem::directory_iterator(folder))
		{
			if (entry.path().extension() != ".svg")
				continue;
			SCOPED_TRACE(entry.path());
			const SVGDocumentRef document = Must(CreateObject<SVGDocumentInterface>(kSVGDocumentClass));
			SVGImportOptions options;
			options.isTolerant = options.isComplete = true;
			Must(Cast<SVGDocumentImportInterface>(document)->SetImportOptions(options));
			Must(document->Init(Must(Url::FromPath(entry.path().c_str()))));
			SVGNormalizeOptions wanted;
			wanted.precision = count % 2 == 0 ? 0.0 : 0.01;
			Of(document, count % 3 == 0 ? SVGNormalizedClips::kept : SVGNormalizedClips::applied, wanted);
			count++;
		}
	}
	EXPECT_GT(count, 70);
}

} // namespace
} // namespace orvan
