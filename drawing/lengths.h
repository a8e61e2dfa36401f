// SPDX-License-Identifier: MIT
/// Lengths in user units, and what percentages refer to.
#pragma once

#include "orvan/geometry.h"
#include "svg_types.h"

namespace orvan::drawing
{

/// Size of the nearest viewport in user units: what percentages refer to.
struct Viewport
{
	double width = 0.0;
	double height = 0.0;

	/// What the units refer to that the nearest viewport does not change.
	struct Outermost
	{
		double width = 0.0; ///< Size of the outermost viewport in user units.
		double height = 0.0;
		double fontSize = 16.0; ///< The font size of the outermost element.
	} outermost;

	void Resize(const Vector2d& size) noexcept
	{
		width = size.x;
		height = size.y;
	}

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
