// SPDX-License-Identifier: MIT
/// feBlend.
#pragma once

#include "raster.h"

namespace orvan::filters
{

/// The modes, numbered as in CSS's list of them.
enum class BlendMode
{
	normal,
	multiply,
	screen,
	overlay,
	darken,
	lighten,
	colorDodge,
	colorBurn,
	hardLight,
	softLight,
	difference,
	exclusion,
	hue,
	saturation,
	color,
	luminosity,
};

/// `top` mixed with `backdrop` in `area`.
Raster Blend(const Raster& top, const Raster& backdrop, BlendMode mode, const Box& area, const Alarm& alarm) noexcept;

} // namespace orvan::filters
