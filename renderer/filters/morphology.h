// SPDX-License-Identifier: MIT
/// feMorphology.
#pragma once

#include "raster.h"

namespace orvan::filters
{

enum class MorphologyOperator
{
	erode,
	dilate,
};

/// The smallest or largest values of each channel within so many pixels to the sides and up and down. What it costs
/// grows with the logarithm of the radius only.
Raster Morph(const Raster& input, MorphologyOperator operation, int radiusX, int radiusY, const Box& area,
			 const Alarm& alarm) noexcept;

} // namespace orvan::filters
