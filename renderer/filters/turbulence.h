// SPDX-License-Identifier: MIT
/// feTurbulence: noise as the standard's own program makes it.
#pragma once

#include "raster.h"

namespace orvan::filters
{

struct Turbulence
{
	double frequencyX = 0.0; ///< In user units; neither is negative.
	double frequencyY = 0.0;
	int octaves = 1;
	int seed = 0;
	bool isFractal = false; ///< "fractalNoise".
	bool isStitched = false;
	/// What is stitched together, in user units.
	double tileX = 0.0;
	double tileY = 0.0;
	double tileWidth = 0.0;
	double tileHeight = 0.0;
	/// From pixels to user units: scales and offsets.
	double scaleX = 1.0;
	double scaleY = 1.0;
	double offsetX = 0.0;
	double offsetY = 0.0;
};

/// The noise at the middles of the pixels of `area`.
Raster MakeTurbulence(const Turbulence& turbulence, const Box& area, const Alarm& alarm) noexcept;

} // namespace orvan::filters
