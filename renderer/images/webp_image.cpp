// SPDX-License-Identifier: MIT
#include "image_data.h"

#include <memory>
#include <webp/decode.h>
#include <webp/demux.h>

namespace orvan::images
{
namespace
{

/// Decodes one picture into pixels that begin at its upper left one; false when the file is damaged. Of a file that is
/// cut off the rows are there up to where it ends.
bool DecodePicture(Bytes picture, std::uint32_t* pixels, std::size_t count, int stride) noexcept
{
	auto* const bytes = reinterpret_cast<unsigned char*>(pixels);
	const std::unique_ptr<WebPIDecoder, decltype(&WebPIDelete)> decoder(
		WebPINewRGB(MODE_BGRA, bytes, count * sizeof(std::uint32_t), stride), &WebPIDelete);
	if (decoder == nullptr)
		return false;
	const VP8StatusCode status = WebPIAppend(decoder.get(), picture.data(), picture.size());
	return status == VP8_STATUS_OK || status == VP8_STATUS_SUSPENDED;
}

/// The first picture of an animation, which covers a part of all.
bool DecodeFirst(Bytes file, filters::Raster& raster) noexcept
{
	const WebPData data{file.data(), file.size()};
	const std::unique_ptr<WebPDemuxer, decltype(&WebPDemuxDelete)> parts(WebPDemux(&data), &WebPDemuxDelete);
	WebPIterator frame{};
	if (parts == nullptr || WebPDemuxGetFrame(parts.get(), 1, &frame) == 0)
		return false;
	const int width = raster.GetBox().GetWidth();
	const bool isInside = frame.x_offset >= 0 && frame.y_offset >= 0 && frame.width <= width - frame.x_offset &&
						  frame.height <= raster.GetBox().GetHeight() - frame.y_offset;
	bool isRead = false;
	if (isInside)
	{
		const auto first = static_cast<std::size_t>(frame.y_offset) * static_cast<std::size_t>(width) +
						   static_cast<std::size_t>(frame.x_offset);
		isRead = DecodePicture({frame.fragment.bytes, frame.fragment.size}, raster.GetPixels() + first,
							   raster.GetCount() - first, width * 4);
	}
	WebPDemuxReleaseIterator(&frame);
	return isRead;
}

} // namespace

filters::Raster DecodeWebp(Bytes file, const Bounds& bounds) noexcept
{
	WebPBitstreamFeatures features{};
	if (WebPGetFeatures(file.data(), file.size(), &features) != VP8_STATUS_OK)
		return {};
	filters::Raster raster = MakePixels(features.width, features.height, bounds);
	if (raster.GetBox().IsEmpty())
		return {};
	const bool isRead = features.has_animation != 0 ? DecodeFirst(file, raster)
													: DecodePicture(file, raster.GetPixels(), raster.GetCount(),
																	raster.GetBox().GetWidth() * 4);
	if (!isRead)
		return {};
	MultiplyAll(raster);
	return raster;
}

} // namespace orvan::images
