// SPDX-License-Identifier: MIT
/// feDisplacementMap.
#pragma once

#include "raster.h"

namespace orvan::filters
{

enum class Channel
{
	alpha,
	red,
	green,
	blue,
};

struct Displacement
{
	double scaleX = 0.0; ///< Pixels between a channel's values 0 and 1.
	double scaleY = 0.0;
	Channel channelX = Channel::alpha;
	Channel channelY = Channel::alpha;
};

/// `input` with each pixel taken from as far away as the colour of `map` there says, alpha not multiplied in.
Raster Displace(const Raster& input, const Raster& map, const Displacement& by, const Box& area,
				const Alarm& alarm) noexcept;

} // namespace orvan::filters
