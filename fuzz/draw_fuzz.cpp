// SPDX-License-Identifier: MIT
// Whole files through the complete, tolerant import and onto a small picture, with little time and memory for it.

#include "document.h"
#include "require.h"
#include "svg_render_target.h"

#include "orvan/host/diagnostic_sink.h"
#include "orvan/host/module_loader.h"

#include <cstdint>
#include <cstring>

using namespace orvan;
using fuzz::Require;

namespace
{
/// A colour that is multiplied by its alpha is never larger than that.
void CheckPixels(const SVGRenderPixels& pixels)
{
	for (std::int32_t y = 0; y < pixels.height; y++)
	{
		for (std::int32_t x = 0; x < pixels.width; x++)
		{
			std::uint32_t pixel = 0;
			std::memcpy(&pixel, pixels.data + std::ptrdiff_t{y} * pixels.stride + std::ptrdiff_t{x} * 4, sizeof(pixel));
			const std::uint32_t alpha = pixel >> 24;
			Require((pixel >> 16 & 255) <= alpha && (pixel >> 8 & 255) <= alpha && (pixel & 255) <= alpha,
					"a pixel is a colour");
		}
	}
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
	fuzz::LoadDocument("<svg/>"); // Loads the module.
	static const bool isLoaded = Module::Load(ORVAN_CAIRO_MODULE).IsOk();
	Require(isLoaded, "the renderer is loaded", ORVAN_CAIRO_MODULE);
	const ThreadDiagnosticSink ignored([](const Diagnostic&, void*) {}, nullptr);
	const SVGDocumentRef document = fuzz::LoadCompletely({reinterpret_cast<const char*>(data), size});
	const auto context = CreateObject<SVGContextInterface>(kSVGCairoContextClass).GetValue();
	const auto target = Cast<SVGRenderTargetInterface>(context);
	SVGRenderOptions options;
	options.width = options.height = 64.0;
	options.deadline = 2.0;
	options.memoryLimit = 32.0 * 1024 * 1024;
	// A document may ask for nothing to be drawn.
	if (!target->Begin(document, options).IsOk())
		return 0;
	Require(DrawSVGElement(context, document->GetRootElement()).IsOk(), "what is loaded is drawn");
	const auto pixels = target->GetPixels();
	Require(pixels.IsOk(), "a picture has pixels");
	CheckPixels(pixels.GetValue());
	return 0;
}
