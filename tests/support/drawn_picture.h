// SPDX-License-Identifier: MIT
/// Pictures that the renderer's module makes of texts.
#pragma once

#include "svg_import.h"
#include "svg_module.h"
#include "svg_render_target.h"

#include <cstdlib>
#include <cstring>
#include <sstream>

namespace orvan
{

/// The pixels of a drawn text.
class DrawnPicture
{
public:
	DrawnPicture(const SVGDocumentRef& document, const SVGRenderOptions& options = {})
		: _context(Must(CreateObject<SVGContextInterface>(kSVGContextClass))),
		  _target(Cast<SVGRenderTargetInterface>(_context))
	{
		Must(_target->Begin(document, options));
		Must(DrawSVGElement(_context, document->GetRootElement()));
		_pixels = Must(_target->GetPixels());
	}

	/// The colour of a pixel: "rrggbb", with a fourth pair for its alpha unless it is opaque; "none" where nothing is.
	std::string At(int x, int y) const
	{
		std::uint32_t pixel = 0;
		std::memcpy(&pixel, _pixels.data + std::ptrdiff_t{y} * _pixels.stride + std::ptrdiff_t{x} * 4, sizeof(pixel));
		const std::uint32_t alpha = pixel >> 24;
		if (alpha == 0)
			return "none";
		std::string text;
		const auto append = [&](std::uint32_t value)
		{
			text += "0123456789abcdef"[value >> 4 & 15];
			text += "0123456789abcdef"[value & 15];
		};
		for (const int shift : {16, 8, 0})
			append(((pixel >> shift & 255) * 255 + alpha / 2) / alpha);
		if (alpha != 255)
			append(alpha);
		return text;
	}

	const SVGRenderPixels& GetPixels() const
	{
		return _pixels;
	}

private:
	SVGContextRef _context;
	SVGRenderTargetRef _target;
	SVGRenderPixels _pixels;
};

/// Elements, and what `RendererTest::ExpectPixels` is to find in their picture.
struct PixelCase
{
	const char* elements;
	const char* pixels;
};

/// Loads the renderer beside the SVG module.
class RendererTest : public SvgModuleTest
{
protected:
	static void SetUpTestSuite()
	{
		SvgModuleTest::SetUpTestSuite();
		_renderer = Must(Module::Load(ORVAN_CAIRO_MODULE));
	}

	static void TearDownTestSuite()
	{
		EXPECT_EQ("no error", MessageOf(Module::Unload(_renderer)));
		SvgModuleTest::TearDownTestSuite();
	}

	/// The picture of elements in a document of 100 by 100.
	static DrawnPicture Draw(const std::string& elements)
	{
		return DrawnPicture(Load(Document(elements)));
	}

	/// Loads a text with all that a browser would read.
	static SVGDocumentRef LoadCompletely(const std::string& text)
	{
		const SVGDocumentRef document = MakeDocument();
		SVGImportOptions options;
		options.isTolerant = options.isComplete = true;
		Must(Cast<SVGDocumentImportInterface>(document)->SetImportOptions(options));
		Must(document->Init(TextFile(text).GetUrl()));
		return document;
	}

	/// Draws elements with all that a browser would read, and looks at pixels: "x,y colour; x,y colour". A "~" before a
	/// colour lets each of its channels be two levels off, one behind it allows for the rim of a curve, whose pixels it
	/// covers or leaves out but for a sixteenth.
	static void ExpectPixels(const std::string& elements, const std::string& pixels)
	{
		const DrawnPicture picture(LoadCompletely(Document(elements)));
		std::istringstream list(pixels);
		for (std::string entry; std::getline(list, entry, ';');)
		{
			int x = -1;
			int y = -1;
			char comma = 0;
			std::string wanted;
			std::istringstream(entry) >> x >> comma >> y >> wanted;
			ASSERT_TRUE(x >= 0 && x < 100 && y >= 0 && y < 100 && !wanted.empty()) << entry;
			const std::string found = picture.At(x, y);
			const bool isAsWanted = wanted.front() == '~'  ? IsNear(wanted.substr(1), found)
									: wanted.back() == '~' ? IsAtRim(wanted.substr(0, wanted.size() - 1), found)
														   : wanted == found;
			EXPECT_TRUE(isAsWanted) << "at " << x << ',' << y << ' ' << found << " instead of " << wanted << " in\n"
									<< elements;
		}
	}

	static std::string Document(const std::string& elements)
	{
		return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='100' "
			   "height='100'>" +
			   elements + "</svg>";
	}

private:
	static bool IsNear(const std::string& wanted, const std::string& found)
	{
		bool isNear = wanted.size() == found.size();
		for (std::size_t i = 0; isNear && i < wanted.size(); i += 2)
			isNear =
				std::abs(std::stoi(wanted.substr(i, 2), nullptr, 16) - std::stoi(found.substr(i, 2), nullptr, 16)) <= 2;
		return isNear;
	}

	static bool IsAtRim(const std::string& wanted, const std::string& found)
	{
		const auto alphaOf = [](const std::string& colour)
		{
			return colour == "none" ? 0 : colour.size() == 8 ? std::stoi(colour.substr(6), nullptr, 16) : 255;
		};
		const bool isColour = wanted == "none" || found == "none" || wanted.substr(0, 6) == found.substr(0, 6);
		return isColour && std::abs(alphaOf(wanted) - alphaOf(found)) <= 16;
	}

	static inline Module* _renderer = nullptr;
};

} // namespace orvan
