// SPDX-License-Identifier: MIT
#include "image_data.h"

#include <png.h>

namespace orvan::images
{

filters::Raster DecodePng(Bytes file, const Bounds& bounds) noexcept
{
	png_image image{};
	image.version = PNG_IMAGE_VERSION;
	if (png_image_begin_read_from_memory(&image, file.data(), file.size()) == 0)
		return {};
	// Files that do not say otherwise hold colours as they are shown.
	image.flags |= PNG_IMAGE_FLAG_16BIT_sRGB;
	filters::Raster raster = MakePixels(image.width, image.height, bounds);
	// The bytes of a pixel in the order of a little-endian number with alpha on top.
	image.format = PNG_FORMAT_BGRA;
	const bool isRead =
		!raster.GetBox().IsEmpty() && png_image_finish_read(&image, nullptr, raster.GetPixels(), 0, nullptr) != 0;
	png_image_free(&image);
	if (!isRead)
		return {};
	MultiplyAll(raster);
	return raster;
}

} // namespace orvan::images
