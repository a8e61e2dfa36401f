// SPDX-License-Identifier: MIT
/// Primitives that put pixels where they belong: feFlood, feOffset, feTile, and cutting out.
#pragma once

#include "raster.h"

namespace orvan::filters
{

/// `area` filled with one pixel.
Raster Flood(std::uint32_t pixel, const Box& area) noexcept;

/// The part of `input` that lies in `area`.
Raster Crop(const Raster& input, const Box& area) noexcept;

/// The part of `input`, moved, that lies in `area`.
Raster Offset(const Raster& input, int x, int y, const Box& area) noexcept;

/// The alpha of `input` in `area`, with black.
Raster TakeAlpha(const Raster& input, const Box& area) noexcept;

/// A tile of pixels whose sides need not be whole.
struct Tile
{
	double left = 0.0;
	double top = 0.0;
	double width = 0.0;
	double height = 0.0;
};

/// `area` covered with what `input` has in `tile`, over and over.
Raster Repeat(const Raster& input, const Tile& tile, const Box& area) noexcept;

} // namespace orvan::filters
