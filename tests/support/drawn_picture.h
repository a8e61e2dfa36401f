// SPDX-License-Identifier: MIT
/// Pictures that the renderer's module makes of texts.
#pragma once

#include "svg_import.h"
#include "svg_module.h"
#include "svg_render_target.h"

#include <cstring>

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

	static std::string Document(const std::string& elements)
	{
		return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='100' "
			   "height='100'>" +
			   elements + "</svg>";
	}

private:
	static inline Module* _renderer = nullptr;
};

} // namespace orvan
