// SPDX-License-Identifier: MIT
/// Lengths in user units, and what percentages refer to.
#pragma once

#include "svg_types.h"

namespace orvan::drawing
{

/// Size of the nearest viewport in user units: what percentages refer to.
struct Viewport
{
	double width = 0.0;
	double height = 0.0;

	/// What percentages refer to that are neither horizontal nor vertical.
	double GetDiagonal() const noexcept;
};

enum class Axis
{
	horizontal,
	vertical,
	other,
};

/// A length in user units.
double ToUserUnits(const SVGLength& length, Axis axis, const Viewport& viewport, double fontSize) noexcept;

/// `value` limited to 0 … 1; 1 when it is not a number.
double ClampToUnit(double value) noexcept;

} // namespace orvan::drawing
