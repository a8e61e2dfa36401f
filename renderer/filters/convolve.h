// SPDX-License-Identifier: MIT
/// feConvolveMatrix.
#pragma once

#include "raster.h"

#include <span>

namespace orvan::filters
{

/// What stands beside the edges of a picture.
enum class EdgeMode
{
	duplicate, ///< The pixels at the edge.
	wrap,      ///< Those at the opposite edge.
	none,      ///< Nothing.
};

struct Kernel
{
	std::span<const double> values; ///< Rows from the top; the pixel at the left of the target meets the last one.
	int width = 0;
	int height = 0;
	int targetX = 0; ///< Where in the matrix the pixel is that is worked out.
	int targetY = 0;
	double divisor = 1.0;
	double bias = 0.0;
	EdgeMode edgeMode = EdgeMode::duplicate;
	bool keepsAlpha = false; ///< Alpha stays, and colours are taken without it.
};

/// `input`, a picture with the edges `edges`, put through a kernel.
Raster Convolve(const Raster& input, const Box& edges, const Kernel& kernel, const Box& area,
				const Alarm& alarm) noexcept;

} // namespace orvan::filters
