// SPDX-License-Identifier: MIT
/// The records that only the complete import stores: a marker's orientation, the shift of a baseline, the steps of a
/// filter and the shapes of clip paths.
#pragma once

#include "orvan/array.h"
#include "orvan/data_type.h"
#include "orvan/string.h"
#include "svg_keywords.h"
#include "svg_values.h"

#include <cstdint>

namespace orvan
{

enum class SVGOrientType : std::int32_t
{
	angle = 0,
	automatic = 1,        ///< "auto": along the path.
	autoStartReverse = 2, ///< Along the path, and against it at its start.
};

/// The value of a marker's "orient".
struct SVGOrient
{
	SVGOrientType type = SVGOrientType::angle;
	Float angle = 0.0; ///< In degrees, clockwise.
};

enum class SVGBaselineShiftType : std::int32_t
{
	baseline = 0,
	sub = 1,
	super = 2,
	length = 3,
};

/// The value of "baseline-shift".
struct SVGBaselineShift
{
	SVGBaselineShiftType type = SVGBaselineShiftType::baseline;
	SVGLength length; ///< Where `type` is `length`: upwards, percentages of the line height.
};

enum class SVGFilterFunctionType : std::int32_t
{
	reference = 0, ///< A filter element, by id.
	blur = 1,
	brightness = 2,
	contrast = 3,
	dropShadow = 4,
	grayscale = 5,
	hueRotate = 6,
	invert = 7,
	opacity = 8,
	saturate = 9,
	sepia = 10,
};

/// One step of "filter": a filter element, or one of the functions of the Filter Effects module.
struct SVGFilterFunction
{
	SVGFilterFunctionType type = SVGFilterFunctionType::reference;
	/// Of brightness, contrast, grayscale, invert, opacity, saturate and sepia the amount, 1 is 100 %; of hueRotate the
	/// angle in degrees.
	Float amount = 1.0;
	SVGLength x;                                        ///< Offset of a drop shadow.
	SVGLength y;                                        ///< Offset of a drop shadow.
	SVGLength deviation;                                ///< Standard deviation of a blur or a drop shadow.
	SVGPaint color{SVGPaintType::currentColor, {}, {}}; ///< Of a drop shadow.
	String reference;                                   ///< The id of the filter element (without "#"), or a whole IRI.
};

enum class SVGClipShapeType : std::int32_t
{
	box = 0, ///< All of the box.
	inset = 1,
	circle = 2,
	ellipse = 3,
	polygon = 4,
	path = 5,
	rect = 6,
	xywh = 7,
};

/// The box of an element that lengths of a shape refer to.
enum class SVGReferenceBox : std::int32_t
{
	strokeBox = 0, ///< Around fill and stroke.
	fillBox = 1,
	viewBox = 2, ///< The nearest viewport.
};

/// One of the shapes of the CSS Shapes module, in a box of the element's own coordinates.
/// Copying may fail for want of memory, so it is spelled `CopyFrom`.
struct SVGClipShape
{
	/// A radius that reaches to the box's nearest side, instead of a length.
	static constexpr Float kClosestSide = -1.0;
	/// Likewise to the farthest side.
	static constexpr Float kFarthestSide = -2.0;

	SVGClipShapeType type = SVGClipShapeType::box;
	SVGReferenceBox box = SVGReferenceBox::strokeBox;
	SVGFillRule fillRule = SVGFillRule::nonzero; ///< Of polygons and paths.
	/// What the shape is made of; percentages are of the box. An inset's distances from top, right, bottom and left; a
	/// rect's edges top, right, bottom and left, from the box's own top and left; of xywh the position and the size;
	/// then for all three, where corners are round, their horizontal radii from the upper left clockwise, and their
	/// vertical ones. Of a circle the radius, of an ellipse both; then the centre: for each axis two lengths, which are
	/// added. Of a polygon its points. Of a path nothing.
	BaseArray<SVGLength> lengths;
	BaseArray<SVGPathCommand> path; ///< Of a path, from the box's upper left corner.

	/// Takes over the other's fields and copies its arrays, into the own storage where that suffices.
	Result<void> CopyFrom(const SVGClipShape& other) noexcept
	{
		type = other.type;
		box = other.box;
		fillRule = other.fillRule;
		ORVAN_TRY(lengths.CopyFrom(other.lengths));
		return path.CopyFrom(other.path);
	}
};

ORVAN_DATA_TYPE(SVGOrient, "net.orvan.datatype.SVGOrient", "orvan::SVGOrient");
ORVAN_DATA_TYPE(SVGBaselineShift, "net.orvan.datatype.SVGBaselineShift", "orvan::SVGBaselineShift");
ORVAN_DATA_TYPE(SVGFilterFunction, "net.orvan.datatype.SVGFilterFunction", "orvan::SVGFilterFunction");
ORVAN_DATA_TYPE(SVGClipShape, "net.orvan.datatype.SVGClipShape", "orvan::SVGClipShape");

} // namespace orvan
