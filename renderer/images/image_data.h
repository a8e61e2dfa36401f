// SPDX-License-Identifier: MIT
/// Image files: which format they are in, and their pixels. Knows neither trees nor a drawing library.
#pragma once

#include "filters/raster.h"

#include <span>

namespace orvan::images
{

using Bytes = std::span<const unsigned char>;

enum class Format
{
	unknown,
	png,
	jpeg,
	gif,
	webp,
	svg, ///< Text that may be SVG, packed or not.
};

/// The format of a file, by its first bytes: what a name or a type says about it does not count.
Format FindFormat(Bytes file) noexcept;

/// What an image may have.
struct Bounds
{
	double pixels = 0.0; ///< Pixels in all.
	int side = 32767;    ///< Pixels on a side.

	bool Allow(std::int64_t width, std::int64_t height) const noexcept
	{
		return width > 0 && height > 0 && width <= side && height <= side &&
			   static_cast<double>(width) * static_cast<double>(height) <= pixels;
	}
};

/// Pixels of an image from (0, 0) on, multiplied by alpha; an empty box when the file is damaged, when its format is
/// none of pixels, when it is beyond the bounds, and when there is no memory for it. Of animations the first picture.
filters::Raster Decode(Bytes file, const Bounds& bounds) noexcept;

// One format each, as `Decode`.
filters::Raster DecodePng(Bytes file, const Bounds& bounds) noexcept;
filters::Raster DecodeJpeg(Bytes file, const Bounds& bounds) noexcept;
filters::Raster DecodeWebp(Bytes file, const Bounds& bounds) noexcept;
filters::Raster DecodeGif(Bytes file, const Bounds& bounds) noexcept;

/// An empty picture of this size, or nothing where that is not allowed or not to be had.
filters::Raster MakePixels(std::int64_t width, std::int64_t height, const Bounds& bounds) noexcept;

/// Multiplies colours by their alpha, in place.
void MultiplyAll(filters::Raster& raster) noexcept;

} // namespace orvan::images
