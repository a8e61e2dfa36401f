// SPDX-License-Identifier: MIT
/// The properties that elements inherit, and the ones that they do not.
#pragma once

#include "svg_elements.h"

namespace orvan::cairo
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

/// The inherited properties at one place of the tree. Pointers lead into the attributes of elements that are above that
/// place, and which nothing changes during a walk; null stands for the initial value.
struct Style
{
	const SVGPaint* fill = nullptr;
	const SVGPaint* stroke = nullptr;
	const BaseArray<SVGLength>* dashes = nullptr;
	const String* fontFamily = nullptr;
	double fillOpacity = 1.0;
	double strokeOpacity = 1.0;
	double miterLimit = 4.0;
	double dashFontSize = 16.0; ///< The font size where the dashes were given, for their units em and ex.
	double fontSize = 16.0;     ///< In user units.
	SVGLength strokeWidth{1.0, SVGLengthUnit::number};
	SVGLength dashOffset{0.0, SVGLengthUnit::number};
	SVGFillRule fillRule = SVGFillRule::nonzero;
	SVGLineCap lineCap = SVGLineCap::butt;
	SVGLineJoin lineJoin = SVGLineJoin::miter;
	SVGVisibility visibility = SVGVisibility::visible;
	SVGFontStyle fontStyle = SVGFontStyle::normal;
	SVGFontWeight fontWeight = SVGFontWeight::normal;

	/// Takes over what an element says itself.
	void Apply(const DataDictionary& attributes) noexcept;
};

/// What applies to an element together with all below it, as one picture.
struct Effects
{
	double opacity = 1.0;
	const String* mask = nullptr;
	const String* clipPath = nullptr;

	explicit Effects(const DataDictionary& attributes) noexcept;

	bool IsNone() const noexcept
	{
		return opacity == 1.0 && mask == nullptr && clipPath == nullptr;
	}
};

/// `value` limited to 0 … 1; 1 when it is not a number.
double ClampToUnit(double value) noexcept;

} // namespace orvan::cairo
