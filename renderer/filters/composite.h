// SPDX-License-Identifier: MIT
/// feComposite, and feMerge, which puts pictures over each other.
#pragma once

#include "raster.h"

namespace orvan::filters
{

enum class CompositeOperator
{
	over,
	in,
	out,
	atop,
	exclusiveOr,
	lighter,
};

/// `top` combined with `backdrop` in `area`.
Raster Composite(const Raster& top, const Raster& backdrop, CompositeOperator operation, const Box& area,
				 const Alarm& alarm) noexcept;

/// Puts `top` over what stands in `backdrop` already, within the box of that.
void PutOver(const Raster& top, Raster& backdrop) noexcept;

/// The factors of the arithmetic operator: k1 · top · backdrop + k2 · top + k3 · backdrop + k4.
struct ArithmeticFactors
{
	float k1 = 0.0F;
	float k2 = 0.0F;
	float k3 = 0.0F;
	float k4 = 0.0F;
};

Raster CompositeArithmetic(const Raster& top, const Raster& backdrop, const ArithmeticFactors& factors, const Box& area,
						   const Alarm& alarm) noexcept;

} // namespace orvan::filters
