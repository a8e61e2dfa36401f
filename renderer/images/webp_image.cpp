// SPDX-License-Identifier: MIT
#include "image_data.h"

#include <webp/decode.h>

namespace orvan::images
{

filters::Raster DecodeWebp(Bytes file, const Bounds& bounds) noexcept
{
	WebPBitstreamFeatures features{};
	if (WebPGetFeatures(file.data(), file.size(), &features) != VP8_STATUS_OK || features.has_animation != 0)
		return {};
	filters::Raster raster = MakePixels(features.width, features.height, bounds);
	if (raster.GetBox().IsEmpty())
		return {};
	const bool isRead =
		WebPDecodeBGRAInto(file.data(), file.size(), reinterpret_cast<unsigned char*>(raster.GetPixels()),
						   raster.GetCount() * sizeof(std::uint32_t), raster.GetBox().GetWidth() * 4) != nullptr;
	if (!isRead)
		return {};
	MultiplyAll(raster);
	return raster;
}

} // namespace orvan::images
