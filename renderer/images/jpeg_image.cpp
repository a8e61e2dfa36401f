// SPDX-License-Identifier: MIT
#include "filters/pixel.h"
#include "image_data.h"
#include "orientation.h"

#include <turbojpeg.h>

namespace orvan::images
{
namespace
{

struct DestroyDecoder
{
	void operator()(void* decoder) const noexcept
	{
		tjDestroy(decoder);
	}
};

/// Inks, as programs that write such files store them: 255 for none.
void ConvertInks(filters::Raster& raster) noexcept
{
	std::uint32_t* const pixels = raster.GetPixels();
	for (std::size_t i = 0; i < raster.GetCount(); i++)
	{
		// The bytes are those of cyan, magenta, yellow and black.
		const filters::Channels inks = filters::Split(pixels[i]);
		pixels[i] = filters::Join({filters::Multiply(inks.red, inks.alpha), filters::Multiply(inks.green, inks.alpha),
								   filters::Multiply(inks.blue, inks.alpha), 255});
	}
}

} // namespace

filters::Raster DecodeJpeg(Bytes file, const Bounds& bounds) noexcept
{
	const std::unique_ptr<void, DestroyDecoder> decoder(tjInitDecompress());
	if (decoder == nullptr)
		return {};
	const auto size = static_cast<unsigned long>(file.size());
	int width = 0;
	int height = 0;
	int sampling = 0;
	int colors = 0;
	if (tjDecompressHeader3(decoder.get(), file.data(), size, &width, &height, &sampling, &colors) != 0)
		return {};
	filters::Raster raster = MakePixels(width, height, bounds);
	if (raster.GetBox().IsEmpty())
		return {};
	const bool hasInks = colors == TJCS_CMYK || colors == TJCS_YCCK;
	// A file of many passes would take long for its size; one that is cut off shows as far as it goes.
	const int status =
		tjDecompress2(decoder.get(), file.data(), size, reinterpret_cast<unsigned char*>(raster.GetPixels()), width,
					  width * 4, height, hasInks ? TJPF_CMYK : TJPF_BGRA, TJFLAG_LIMITSCANS);
	if (status != 0 && tjGetErrorCode(decoder.get()) != TJERR_WARNING)
		return {};
	if (hasInks)
		ConvertInks(raster);
	return MakeUpright(std::move(raster), FindOrientation(file));
}

} // namespace orvan::images
