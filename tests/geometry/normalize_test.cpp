// SPDX-License-Identifier: MIT
#include "geometry_module.h"

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
	EXPECT_EQ("pf pf kf ", order("stroke-dasharray='1'")); // Dashes are outlined always.
	const AskedPicture picture(marker + "<path d='M5 5h5v5' stroke='lime' marker-start='url(#m)'/>");
	EXPECT_EQ((Color{0, 1, 0}), Must(picture.geometry->Normalize({})).fills[1]);
}

TEST_F(Normalize, FlattensRoundsScalesAndOutlines)
{
	SVGNormalizeOptions options;
	options.grid = 10.0;
	options.precision = 0.5;
	EXPECT_EQ("p - 1,0,0,1 0.4 M1,2 L3,2\n",
			  Of("<path id='p' fill='none' stroke='red' stroke-width='4' d='M11 19h21'/>", options));
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
	const SVGNormalizedPaths paths = Must(picture.geometry->Normalize({}));
	EXPECT_EQ("a server0.5,0,0.5,1 - 0 M0,0 L9,0 L9,9 L0,9 Z\nb 0,0,0,1 - 0 M0,0 L9,0 L9,9 L0,9 Z\n", Describe(paths));
	EXPECT_EQ(1, paths.unclippedCount);
	EXPECT_EQ((Vector2d{200, 100}), paths.size);
	EXPECT_EQ((Vector2d{200, 100}), Must(picture.geometry->GetViewSize()));
}

} // namespace
} // namespace orvan
