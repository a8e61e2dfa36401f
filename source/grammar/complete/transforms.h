// SPDX-License-Identifier: MIT
#pragma once

/// Transforms, as browsers read them. See values.h for what holds for all.

#include "complete/numbers.h"

namespace orvan::grammar::complete
{
/// How many user units one of each relative unit is, where a value needs to know while it is read.
struct RelativeUnits
{
	double em = 16;
	double ex = 8;
	double rem = 16;
	double ch = 8;
	double cap = 10.5;
	double ic = 16;
	double lh = 18;
	double rlh = 18;
	double viewportWidth = 0;  ///< What vw, vh, vmin and vmax are hundredths of.
	double viewportHeight = 0; ///< See above.
};

/// A transform list as one matrix. Percentages of translations are of a reference box that is not known while the text
/// is read; they add to the matrix's translation, in proportion to the box.
struct Transform
{
	Matrix matrix;       ///< With a box of no size.
	double eOfWidth = 0; ///< What the box's width adds to `matrix.e`, for each unit of it.
	double fOfWidth = 0;
	double eOfHeight = 0;
	double fOfHeight = 0;

	/// The matrix for a box of this size.
	Matrix For(double width, double height) const noexcept
	{
		return {matrix.a,
				matrix.b,
				matrix.c,
				matrix.d,
				matrix.e + eOfWidth * width + eOfHeight * height,
				matrix.f + fOfWidth * width + fOfHeight * height};
	}
};

/// The attributes "transform", "gradientTransform" and "patternTransform": numbers without units, parted by blanks, a
/// comma, or nothing where none is needed ("translate(-1-1)"), and functions parted by blanks, one comma, or nothing.
/// The empty list is the identity. A list with a fault is refused as a whole. Names of functions are taken in any case,
/// and "none" is the identity.
Parsed ParseTransformAttribute(std::string_view text, Matrix& matrix) noexcept;

/// The property "transform": "none" or CSS functions with units, two-dimensional or three-dimensional. Of the latter
/// the part that acts within the plane counts, as browsers have it for SVG; perspective does nothing.
Parsed ParseTransformProperty(std::string_view text, const RelativeUnits& units, Transform& transform) noexcept;

/// The properties that come before "transform", in the order in which they apply.
enum class SingleTransform
{
	translate,
	rotate,
	scale
};

/// "translate", "rotate" and "scale": "none", or the arguments of one function. As with `ParseTransformProperty`, what
/// acts within the plane counts.
Parsed ParseSingleTransform(std::string_view text, SingleTransform property, const RelativeUnits& units,
							Transform& transform) noexcept;

/// The point that a transform leaves where it is; percentages are of the reference box.
struct TransformOrigin
{
	Length x{0, LengthUnit::px};
	Length y{0, LengthUnit::px};
};

/// "transform-origin": one to three lengths, percentages or keywords (left, center, right, top, bottom as 0, 50% and
/// 100%). One value alone leaves the other at 50%. A third, the depth, is checked and dropped.
Parsed ParseTransformOrigin(std::string_view text, Source source, TransformOrigin& origin) noexcept;
} // namespace orvan::grammar::complete
