// SPDX-License-Identifier: MIT
/// The records that elements carry and renderers read: lengths, paints, path commands, gradients and boxes.
#pragma once

#include "orvan/array.h"
#include "orvan/data_type.h"
#include "orvan/geometry.h"
#include "orvan/string.h"
#include "svg_length_unit.h"

#include <cstdint>

namespace orvan
{

/// A length in the unit that the document gave. The module converts no units.
struct SVGLength
{
	Float value = 0.0;
	SVGLengthUnit unit = SVGLengthUnit::px;
};

/// A pair of lengths.
struct SVGLength2d
{
	SVGLength x;
	SVGLength y;
};

enum class SVGPaintType : std::int32_t
{
	none = 1,
	color = 2,
	reference = 3, ///< A paint server, by id.

	// Given by the complete import only.
	currentColor = 4,  ///< The `color` that holds where the paint is used.
	contextFill = 5,   ///< The fill of the element that a marker or a use is drawn for.
	contextStroke = 6, ///< The stroke of that element.
};

/// What to paint with when the paint server of a paint cannot be found.
enum class SVGPaintFallback : std::int32_t
{
	absent = 0, ///< Nothing was said; nothing is painted.
	none = 1,
	color = 2, ///< The paint's `color` and `alpha`.
	currentColor = 4,
};

/// What fills a shape or its outline. Attributes that are colours and no paints hold one of type `color` or
/// `currentColor`.
struct SVGPaint
{
	SVGPaintType type = SVGPaintType::color;
	Color color; ///< The colour, or that of the fallback.
	/// The id of the paint server (without "#") when `type` is `reference`; empty otherwise. Copies share the text. The
	/// id is resolved when the paint is used, with `SVGDocumentInterface::GetElementById`.
	String reference;
	/// Only where `type` is `reference`.
	SVGPaintFallback fallback = SVGPaintFallback::absent;
	/// How opaque `color` is, 0 to 1; multiplies with the opacities. 1 for a paint without a colour.
	Float alpha = 1.0;
};

enum class SVGPathCommandType : std::int64_t
{
	move = 0,
	line = 1,
	cubic = 2,
	close = 3,
};

/// One command of a path, in absolute user units. The end point of a move, line or cubic is always `points[2]`; a
/// cubic's control points are `points[0]` and `points[1]`. Points that a command does not use are (0, 0).
struct SVGPathCommand
{
	SVGPathCommandType type = SVGPathCommandType::move;
	Vector2d points[3];
};

/// One stop of a gradient.
struct SVGGradientStop
{
	Color color;
	Float opacity = 1.0;
	Float offset = 0.0; ///< 0 to 1; never smaller than that of the stop before.
};

enum class SVGGradientUnits : std::int32_t
{
	userSpaceOnUse = 0,
	objectBoundingBox = 1,
};

enum class SVGSpreadMethod : std::int32_t
{
	pad = 0,
	reflect = 1,
	repeat = 2,
};

/// A linear gradient as a renderer needs it: the vector from (x1, y1) to (x2, y2), in the units that `units` names.
/// Copying may fail for want of memory, so it is spelled `CopyFrom`.
struct SVGLinearGradient
{
	SVGGradientUnits units = SVGGradientUnits::objectBoundingBox;
	SVGSpreadMethod spread = SVGSpreadMethod::pad;
	BaseArray<SVGGradientStop> stops; ///< In document order.
	Float x1 = 0.0;
	Float y1 = 0.0;
	Float x2 = 1.0;
	Float y2 = 0.0;

	/// Takes over the other's fields and copies its stops, into the own storage where that suffices.
	Result<void> CopyFrom(const SVGLinearGradient& other) noexcept
	{
		units = other.units;
		spread = other.spread;
		x1 = other.x1;
		y1 = other.y1;
		x2 = other.x2;
		y2 = other.y2;
		return stops.CopyFrom(other.stops);
	}
};

/// A radial gradient: the circle around (cx, cy) with radius `r`, and the focus (fx, fy).
/// Copying may fail for want of memory, so it is spelled `CopyFrom`.
struct SVGRadialGradient
{
	SVGGradientUnits units = SVGGradientUnits::objectBoundingBox;
	SVGSpreadMethod spread = SVGSpreadMethod::pad;
	BaseArray<SVGGradientStop> stops; ///< In document order.
	Float cx = 0.5;
	Float cy = 0.5;
	Float r = 0.5;
	Float fx = 0.5;
	Float fy = 0.5;

	/// Takes over the other's fields and copies its stops, into the own storage where that suffices.
	Result<void> CopyFrom(const SVGRadialGradient& other) noexcept
	{
		units = other.units;
		spread = other.spread;
		cx = other.cx;
		cy = other.cy;
		r = other.r;
		fx = other.fx;
		fy = other.fy;
		return stops.CopyFrom(other.stops);
	}
};

/// The value of "viewBox".
struct SVGViewbox
{
	SVGLength x;
	SVGLength y;
	SVGLength width;
	SVGLength height;
	bool isDefault = true; ///< False once a document or a client has given the view box.
};

/// The viewport of an svg element: where it stands and how large it is. 100 % by 100 % by default.
struct SVGViewport
{
	SVGLength x;
	SVGLength y;
	SVGLength width{1.0, SVGLengthUnit::percent};
	SVGLength height{1.0, SVGLengthUnit::percent};
};

enum class SVGAlign : std::int32_t
{
	xMidYMid = 0,
	none = 1,
	xMinYMin = 2,
	xMidYMin = 3,
	xMaxYMin = 4,
	xMinYMid = 5,
	xMaxYMid = 6,
	xMinYMax = 7,
	xMidYMax = 8,
	xMaxYMax = 9,
};

enum class SVGMeetOrSlice : std::int32_t
{
	meet = 0,
	slice = 1,
};

/// The value of "preserveAspectRatio".
struct SVGPreserveAspectRatio
{
	SVGAlign align = SVGAlign::xMidYMid;
	SVGMeetOrSlice meetOrSlice = SVGMeetOrSlice::meet;
};

ORVAN_DATA_TYPE(SVGPaint, "net.orvan.datatype.SVGPaint", "orvan::SVGPaint");
ORVAN_DATA_TYPE(SVGLength, "net.orvan.datatype.SVGLength", "orvan::SVGLength");
ORVAN_DATA_TYPE(SVGLength2d, "net.orvan.datatype.SVGLength2d", "orvan::SVGLength2d");
ORVAN_DATA_TYPE(SVGPathCommand, "net.orvan.datatype.SVGPathCommand", "orvan::SVGPathCommand");
ORVAN_DATA_TYPE(SVGGradientStop, "net.orvan.datatype.SVGGradientStop", "orvan::SVGGradientStop");
ORVAN_DATA_TYPE(SVGLinearGradient, "net.orvan.datatype.SVGLinearGradient", "orvan::SVGLinearGradient");
ORVAN_DATA_TYPE(SVGRadialGradient, "net.orvan.datatype.SVGRadialGradient", "orvan::SVGRadialGradient");
ORVAN_DATA_TYPE(SVGViewbox, "net.orvan.datatype.SVGViewbox", "orvan::SVGViewbox");
ORVAN_DATA_TYPE(SVGViewport, "net.orvan.datatype.SVGViewport", "orvan::SVGViewport");
ORVAN_DATA_TYPE(SVGPreserveAspectRatio, "net.orvan.datatype.SVGPreserveAspectRatio", "orvan::SVGPreserveAspectRatio");

static_assert(sizeof(SVGPathCommand) == 56 && alignof(SVGPreserveAspectRatio) == 4);

} // namespace orvan
