// SPDX-License-Identifier: MIT
#include "documents.h"
#include "svg_render_target.h"

#include <cmath>
#include <pybind11/numpy.h>
#include <pybind11/stl.h>

namespace orvan::python
{
namespace
{

/// Draws a document; returns its target, whose picture is complete, and what is said about it.
struct Picture
{
	SVGRenderTargetRef target;
	std::vector<std::string> warnings;
};

SVGRenderOptions MakeOptions(const py::kwargs& wanted)
{
	SVGRenderOptions options;
	for (const auto& [key, value] : wanted)
	{
		const auto name = key.cast<std::string>();
		const auto toColor = [](const py::handle& color)
		{
			const auto numbers = color.cast<std::array<double, 3>>();
			return Color{numbers[0], numbers[1], numbers[2]};
		};
		if (name == "width")
			options.width = value.cast<double>();
		else if (name == "height")
			options.height = value.cast<double>();
		else if (name == "scale")
			options.scale = value.cast<double>();
		else if (name == "deadline")
			options.deadline = value.cast<double>();
		else if (name == "memory_limit")
			options.memoryLimit = value.cast<double>();
		else if (name == "current_color")
			options.currentColor = toColor(value);
		else if (name == "background")
		{
			options.background = toColor(value);
			options.backgroundOpacity = 1.0;
		}
		else
			throw py::type_error("There is no option " + name + ".");
	}
	return options;
}

/// Draws while other threads of the interpreter go on.
Picture Draw(SharedDocument& shared, const SVGRenderOptions& options)
{
	RequireModule("net.orvan.svg.cairo.so");
	Picture picture;
	Result<void> result;
	{
		const LongCall others;
		CollectedDiagnostics said;
		result = [&]() -> Result<void>
		{
			const SVGContextRef context = ORVAN_TRY(CreateObject<SVGContextInterface>(kSVGContextClass));
			picture.target = Cast<SVGRenderTargetInterface>(context);
			ORVAN_TRY(picture.target->Begin(shared.document, options));
			return DrawSVGElement(context, shared.document->GetRootElement());
		}();
		picture.warnings = std::move(said.texts);
	}
	Unwrap(std::move(result));
	return picture;
}

/// From the renderer's pixels, premultiplied and in the processor's order, to rows of red, green, blue and alpha.
void ToStraight(const SVGRenderPixels& pixels, std::uint8_t* target)
{
	for (std::int32_t y = 0; y < pixels.height; y++)
	{
		const unsigned char* row = pixels.data + static_cast<std::ptrdiff_t>(y) * pixels.stride;
		for (std::int32_t x = 0; x < pixels.width; x++, target += 4)
		{
			std::uint32_t pixel = 0;
			std::memcpy(&pixel, row + static_cast<std::ptrdiff_t>(x) * 4, 4);
			const std::uint32_t alpha = pixel >> 24;
			const auto straight = [&](int shift)
			{
				const std::uint32_t value = pixel >> shift & 0xff;
				return static_cast<std::uint8_t>(
					alpha == 0 ? 0 : std::min<std::uint32_t>(255, (value * 255 + alpha / 2) / alpha));
			};
			target[0] = straight(16);
			target[1] = straight(8);
			target[2] = straight(0);
			target[3] = static_cast<std::uint8_t>(alpha);
		}
	}
}

} // namespace

void DefinePictures(py::module_& module)
{
	module.def(
		"_render",
		[](SharedDocument& shared, const py::kwargs& wanted)
		{
			const SVGRenderOptions options = MakeOptions(wanted);
			const DocumentLock lock(shared);
			const Picture picture = Draw(shared, options);
			const SVGRenderPixels pixels = Unwrap(picture.target->GetPixels());
			py::array_t<std::uint8_t> image({py::ssize_t{pixels.height}, py::ssize_t{pixels.width}, py::ssize_t{4}});
			std::uint8_t* const target = image.mutable_data();
			{
				const LongCall others;
				ToStraight(pixels, target);
			}
			return py::make_tuple(image, picture.warnings);
		},
		py::arg("document"));
	module.def(
		"_write_picture",
		[](SharedDocument& shared, const std::string& path, bool isPage, const py::kwargs& wanted)
		{
			SVGRenderOptions options = MakeOptions(wanted);
			options.output = isPage ? SVGRenderOutput::page : SVGRenderOutput::pixels;
			const DocumentLock lock(shared);
			const Picture picture = Draw(shared, options);
			const String file = ToString(path);
			Result<void> result;
			{
				const LongCall others;
				result = picture.target->Finish(file);
			}
			Unwrap(std::move(result));
			return picture.warnings;
		},
		py::arg("document"), py::arg("path"), py::arg("is_page"));
}

} // namespace orvan::python
