// SPDX-License-Identifier: MIT
/// The cascade: the properties that elements inherit.
#pragma once

#include "lengths.h"
#include "svg_elements.h"

#include <limits>

namespace orvan::drawing
{

/// The inherited properties at one place of the tree. Pointers lead into the attributes of elements that are above that
/// place, and which nothing changes during a walk; null stands for the initial value.
struct Style
{
	const SVGPaint* fill = nullptr;
	const SVGPaint* stroke = nullptr;
	const BaseArray<SVGLength>* dashes = nullptr;
	const String* fontFamily = nullptr;
	const String* language = nullptr;
	const String* markerStart = nullptr;
	const String* markerMid = nullptr;
	const String* markerEnd = nullptr;
	Color color; ///< What currentColor stands for, with its opacity.
	double colorAlpha = 1.0;
	double fillOpacity = 1.0;
	double strokeOpacity = 1.0;
	double miterLimit = 4.0;
	double dashFontSize = 16.0; ///< The font size where the dashes were given, for their units em and ex.
	double fontSize = 16.0;     ///< In user units.
	SVGLength strokeWidth{1.0, SVGLengthUnit::number};
	SVGLength dashOffset{0.0, SVGLengthUnit::number};
	SVGFillRule fillRule = SVGFillRule::nonzero;
	SVGFillRule clipRule = SVGFillRule::nonzero;
	SVGPaintOrder paintOrder = SVGPaintOrder::fillStrokeMarkers;
	SVGShapeRendering shapeRendering = SVGShapeRendering::automatic;
	SVGImageRendering imageRendering = SVGImageRendering::automatic;
	SVGColorInterpolation colorInterpolation = SVGColorInterpolation::sRGB;
	SVGColorInterpolation colorInterpolationFilters = SVGColorInterpolation::linearRGB;
	SVGLineCap lineCap = SVGLineCap::butt;
	SVGLineJoin lineJoin = SVGLineJoin::miter;
	SVGVisibility visibility = SVGVisibility::visible;
	SVGPointerEvents pointerEvents = SVGPointerEvents::automatic;
	SVGFontStyle fontStyle = SVGFontStyle::normal;
	SVGFontVariant fontVariant = SVGFontVariant::normal;
	SVGTextTransform textTransform = SVGTextTransform::none;
	SVGFontKerning fontKerning = SVGFontKerning::automatic;
	SVGTextAnchor textAnchor = SVGTextAnchor::start;
	SVGBaseline dominantBaseline = SVGBaseline::automatic;
	SVGWritingMode writingMode = SVGWritingMode::horizontalTb;
	SVGTextOrientation textOrientation = SVGTextOrientation::mixed;
	SVGDirection direction = SVGDirection::leftToRight;
	double fontWeight = 400.0;  ///< 1 to 1000.
	double fontStretch = 1.0;   ///< The width of the letters, 1 is normal.
	double letterSpacing = 0.0; ///< In user units, as the next one.
	double wordSpacing = 0.0;
	double fontSizeAdjust = -1.0; ///< The height of an x for the size of the font; negative for the font's own.
	double underlineOffset = std::numeric_limits<double>::quiet_NaN(); ///< In user units; NaN for the font's own.

	/// Takes over what an element says itself. The viewport is for font sizes in units of the outermost one.
	void Apply(const DataDictionary& attributes, const Viewport& viewport) noexcept;
};

/// A length in user units, where units of fonts are those of the font in force, at a size of its own or that in force.
double ToUserUnits(const SVGLength& length, Axis axis, const Viewport& viewport, const Style& style,
				   double fontSize) noexcept;

inline double ToUserUnits(const SVGLength& length, Axis axis, const Viewport& viewport, const Style& style) noexcept
{
	return ToUserUnits(length, axis, viewport, style, style.fontSize);
}

/// The properties that an element gets from the elements around it, where it stands in the document.
/// `initial` is what holds outside of the document.
Result<Style> GetInheritedStyle(const SVGElementRef& element, const Viewport& viewport, const Style& initial) noexcept;

} // namespace orvan::drawing
