// SPDX-License-Identifier: MIT
/// The presentation properties: one row each.
#pragma once

#include "svg_types.h"

#include <algorithm>

namespace orvan::svg
{

/// A property: where it stands in the dictionary, what a getter returns when it is absent, and the limiter that a
/// setter applies, which then refuses NaN. Enumerations stand in the dictionary as Int32.
template <typename T>
struct Property
{
	SVGImportAttribute key;
	T absent{};
	T (*limit)(T value) = nullptr;
};

/// The nearest number of 0 … 1; 0 for what is no number.
constexpr Float ClampToUnit(Float value) noexcept
{
	return value > 0.0 ? std::min(value, 1.0) : 0.0;
}

constexpr SVGLength UserUnits(Float value) noexcept
{
	return {value, SVGLengthUnit::number};
}

constexpr SVGLength Pixels(Float value) noexcept
{
	return {value, SVGLengthUnit::px};
}

inline SVGPaint NoPaint() noexcept
{
	return {SVGPaintType::none, {}, {}};
}

// clang-format off

/// The properties of every element: name of the methods, type, attribute, value when absent, limiter if there is one.
#define ORVAN_SVG_PROPERTIES(row)                                                                                      \
	row(Visibility, SVGVisibility, visibility, SVGVisibility::visible)                                                 \
	row(Display, SVGDisplay, display, SVGDisplay::inherit)                                                             \
	row(Opacity, Float, opacity, 1.0, &ClampToUnit)                                                                    \
	row(Fill, SVGPaint, fill, SVGPaint())                                                                              \
	row(FillRule, SVGFillRule, fillRule, SVGFillRule::nonzero)                                                         \
	row(FillOpacity, Float, fillOpacity, 1.0, &ClampToUnit)                                                            \
	row(Stroke, SVGPaint, stroke, NoPaint())                                                                           \
	row(StrokeOpacity, Float, strokeOpacity, 1.0, &ClampToUnit)                                                        \
	row(StrokeWidth, SVGLength, strokeWidth, UserUnits(1.0))                                                           \
	row(StrokeLineCap, SVGLineCap, strokeLineCap, SVGLineCap::butt)                                                    \
	row(StrokeLineJoin, SVGLineJoin, strokeLineJoin, SVGLineJoin::miter)                                               \
	row(StrokeMiterLimit, Float, strokeMiterLimit, 4.0)                                                                \
	row(StrokeDashOffset, SVGLength, strokeDashOffset, UserUnits(0.0))                                                 \
	row(Mask, String, mask, String())                                                                                  \
	row(ClipPath, String, clipPath, String())

/// Those that a text element has methods for, likewise.
#define ORVAN_SVG_TEXT_PROPERTIES(row)                                                                                 \
	row(FontSize, SVGLength, fontSize, Pixels(16.0))                                                                   \
	row(Font, String, fontFamily, String())                                                                            \
	row(FontStyle, SVGFontStyle, fontStyle, SVGFontStyle::normal)                                                      \
	row(FontWeight, SVGFontWeight, fontWeight, SVGFontWeight::normal)

/// `SetName` and `GetName`, from a row.
#define ORVAN_PROPERTY_METHODS(Name, Type, key, ...)                                                                   \
	Result<void> Set##Name(const Type& value) noexcept                                                                 \
	{                                                                                                                  \
		return this->Set(Property<Type>{SVGImportAttribute::key, __VA_ARGS__}, value);                                 \
	}                                                                                                                  \
	Type Get##Name() const noexcept                                                                                    \
	{                                                                                                                  \
		return this->Get(Property<Type>{SVGImportAttribute::key, __VA_ARGS__});                                        \
	}

// clang-format on

} // namespace orvan::svg
