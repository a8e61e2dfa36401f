// SPDX-License-Identifier: MIT
/// feGaussianBlur.
#pragma once

#include "raster.h"

namespace orvan::filters
{

/// How many pixels a blur with this deviation reaches.
int GetBlurReach(double deviation) noexcept;

/// `input` blurred, with deviations in pixels; 0 and less leaves a direction as it is. Small deviations weigh with the
/// normal distribution itself; from 2 on three boxes in a row stand for it, as the standard has them; from 16 on
/// that happens on a grid of larger cells, so that what a blur costs does not grow with its deviation.
Raster Blur(const Raster& input, double deviationX, double deviationY, const Box& area, const Alarm& alarm) noexcept;

} // namespace orvan::filters
