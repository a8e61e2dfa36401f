// SPDX-License-Identifier: MIT
/// The two colour spaces that filters work in.
#pragma once

#include "raster.h"

namespace orvan::filters
{

enum class ColorSpace
{
	sRGB,
	linear, ///< Linear light, with the primaries of sRGB.
};

/// Converts pixels in place.
void Convert(Raster& raster, ColorSpace from, ColorSpace to) noexcept;

/// Converts a single pixel, which is multiplied by its alpha.
std::uint32_t Convert(std::uint32_t pixel, ColorSpace from, ColorSpace to) noexcept;

} // namespace orvan::filters
