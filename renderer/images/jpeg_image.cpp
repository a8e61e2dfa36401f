// SPDX-License-Identifier: MIT
#include "filters/pixel.h"
#include "image_data.h"
#include "orientation.h"

#include <algorithm>
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

/// Where the last segment begins that is no restart of the data before it.
std::size_t FindLastSegment(Bytes file) noexcept
{
	const auto isSegment = [&](std::size_t at)
	{
		const unsigned code = file[at + 1];
		return file[at] == 0xFF && code >= 0xC0 && code < 0xFF && (code & 0xF8) != 0xD0;
	};
	std::size_t at = file.size() < 2 ? 0 : file.size() - 2;
	while (at > 0 && !isSegment(at))
		at--;
	return at;
}

/// Decodes into pixels that are as large as the image, as far as the file goes. False when that is not as far as the
/// first of them: what the library says tells no warnings from failures once it has warned.
bool Decode(tjhandle decoder, Bytes file, filters::Raster& raster, bool hasInks) noexcept
{
	const int width = raster.GetBox().GetWidth();
	// A file of many passes would take long for its size.
	const int status = tjDecompress2(decoder, file.data(), static_cast<unsigned long>(file.size()),
									 reinterpret_cast<unsigned char*>(raster.GetPixels()), width, width * 4,
									 raster.GetBox().GetHeight(), hasInks ? TJPF_CMYK : TJPF_BGRA, TJFLAG_LIMITSCANS);
	if (status == 0)
		return true;
	const std::uint32_t* const pixels = raster.GetPixels();
	return tjGetErrorCode(decoder) == TJERR_WARNING &&
		   std::any_of(pixels, pixels + raster.GetCount(), [](std::uint32_t pixel) { return pixel != 0; });
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
	// The library gives up where a file is cut off within a table; what comes before it is as good as ever.
	if (!Decode(decoder.get(), file, raster, hasInks) &&
		!Decode(decoder.get(), file.first(FindLastSegment(file)), raster, hasInks))
		return {};
	if (hasInks)
		ConvertInks(raster);
	return MakeUpright(std::move(raster), FindOrientation(file));
}

} // namespace orvan::images
