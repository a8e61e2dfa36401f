// SPDX-License-Identifier: MIT
/// Lengths in user units, and what percentages refer to.
#pragma once

#include "orvan/geometry.h"
#include "orvan/string.h"
#include "svg_types.h"

namespace orvan::drawing
{

class Fonts;

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
		/// The family of the outermost element's font; it is part of the document.
		const String* fontFamily = nullptr;
		Fonts* fonts = nullptr; ///< Where fonts are looked up whose units are asked for; null for nowhere.
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

/// A length in user units. What depends on more of a font than its size is taken as in most fonts; `ToUserUnits` of
/// style.h asks the font in force.
double ToUserUnits(const SVGLength& length, Axis axis, const Viewport& viewport, double fontSize) noexcept;

/// `value` limited to 0 … 1; 1 when it is not a number.
double ClampToUnit(double value) noexcept;

} // namespace orvan::drawing
