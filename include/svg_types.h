// SPDX-License-Identifier: MIT
/// The value types of the SVG framework: plain records that elements carry and renderers read.
///
/// Every type has usable defaults, is owned by whoever holds it and is registered with the host as a data type, so that
/// it can stand in a `Data`, a `DataDictionary` or an array. None of them supports comparison or hashing through the
/// host; code that needs equality compares the fields. Values have no synchronisation of their own.
///
///     SVGPaint paint = element->GetFill();
///     if (paint.type == SVGPaintType::color)
///         UseColor(paint.color.red, paint.color.green, paint.color.blue);
#pragma once

#include "orvan/array.h"
#include "orvan/data_type.h"
#include "orvan/geometry.h"
#include "orvan/string.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace orvan
{

/// The kinds of elements: what `SVGElementInterface::GetElementType` returns. Several tags share a kind: polygons and
/// polylines are paths, ellipses are circles, and an element of an unknown tag is a group.
enum class SVGImportElementKind : std::int32_t
{
	unknown = 0,
	svg = 1,
	group = 2,
	use = 3,
	defs = 4,
	symbol = 5,
	linearGradient = 6,
	radialGradient = 7,
	stop = 8,
	path = 9,
	rect = 10,
	circle = 11,
	line = 12,
	text = 13,
	mask = 14,
	clipPath = 15,
};

/// The numbers of the attributes, which are the keys of an element's attribute dictionary. Each says which type its
/// value has there. The id, the class, the link, the transform, the path data, the style and the points never stand in
/// the dictionary: they go to the element itself.
enum class SVGImportAttribute : std::int32_t
{
	unknown = 0,
	id = 1,
	classNames = 2, ///< "class"; ignored.
	href = 3,
	transform = 4,
	display = 5,             ///< `SVGDisplay` as Int32.
	visibility = 6,          ///< `SVGVisibility` as Int32.
	opacity = 7,             ///< Float, as written: not clamped by the importer.
	viewBox = 8,             ///< `SVGViewbox`.
	preserveAspectRatio = 9, ///< `SVGPreserveAspectRatio`.
	x = 10,                  ///< `SVGLength`, as for all up to `ry`.
	y = 11,
	width = 12,
	height = 13,
	x1 = 14,
	y1 = 15,
	x2 = 16,
	y2 = 17,
	cx = 18,
	cy = 19,
	fx = 20,
	fy = 21,
	r = 22,
	rx = 23,
	ry = 24,
	d = 25,
	fill = 26,             ///< `SVGPaint`.
	fillRule = 27,         ///< `SVGFillRule` as Int32.
	fillOpacity = 28,      ///< Float, as written.
	stroke = 29,           ///< `SVGPaint`.
	strokeWidth = 30,      ///< `SVGLength`.
	strokeOpacity = 31,    ///< Float, as written.
	strokeLineJoin = 32,   ///< `SVGLineJoin` as Int32.
	strokeLineCap = 33,    ///< `SVGLineCap` as Int32.
	strokeMiterLimit = 34, ///< Float.
	strokeDashArray = 35,  ///< Array of `SVGLength`; empty means "none".
	strokeDashOffset = 36, ///< `SVGLength`.
	gradientUnits = 37,    ///< `SVGGradientUnits` as Int32.
	spreadMethod = 38,     ///< `SVGSpreadMethod` as Int32.
	offset = 39,           ///< Float, a fraction, as written.
	stopColor = 40,        ///< `Color`.
	stopOpacity = 41,      ///< Float, as written.
	fontSize = 42,         ///< `SVGLength`.
	fontFamily = 43,       ///< String.
	fontStyle = 44,        ///< `SVGFontStyle` as Int32.
	fontWeight = 45,       ///< `SVGFontWeight` as Int32.
	mask = 46,             ///< String: the id of the mask element; empty means "none".
	clipPath = 47,         ///< String: the id of the clip path element; empty means "none".
	style = 48,
	points = 49,
};

/// The attributes' names by number. The link's is "href".
inline constexpr std::array<std::string_view, 50> kSVGAttributeNames = {
	"",
	"id",
	"class",
	"href",
	"transform",
	"display",
	"visibility",
	"opacity",
	"viewBox",
	"preserveAspectRatio",
	"x",
	"y",
	"width",
	"height",
	"x1",
	"y1",
	"x2",
	"y2",
	"cx",
	"cy",
	"fx",
	"fy",
	"r",
	"rx",
	"ry",
	"d",
	"fill",
	"fill-rule",
	"fill-opacity",
	"stroke",
	"stroke-width",
	"stroke-opacity",
	"stroke-linejoin",
	"stroke-linecap",
	"stroke-miterlimit",
	"stroke-dasharray",
	"stroke-dashoffset",
	"gradientUnits",
	"spreadMethod",
	"offset",
	"stop-color",
	"stop-opacity",
	"font-size",
	"font-family",
	"font-style",
	"font-weight",
	"mask",
	"clip-path",
	"style",
	"points",
};

enum class SVGDisplay : std::int32_t
{
	inherit = 0, ///< Nothing was said; the element shows.
	shown = 1,   ///< Set by icons for a visible layer; the importer never writes it.
	none = 2,
};

enum class SVGVisibility : std::int32_t
{
	visible = 1,
	hidden = 2,
	collapse = 3,
};

enum class SVGFillRule : std::int32_t
{
	nonzero = 1,
	evenodd = 2,
};

enum class SVGLineCap : std::int32_t
{
	butt = 1,
	round = 2,
	square = 3,
};

enum class SVGLineJoin : std::int32_t
{
	miter = 1,
	round = 2,
	bevel = 3,
};

enum class SVGFontStyle : std::int32_t
{
	normal = 0,
	italic = 1,
	oblique = 2,
};

enum class SVGFontWeight : std::int32_t
{
	normal = 0,
	bold = 1,
};

enum class SVGLengthUnit : std::int32_t
{
	em = 0,
	ex = 1,
	px = 2,
	in = 3,
	cm = 4,
	mm = 5,
	pt = 6,
	pc = 7,
	percent = 8, ///< The value is a fraction: 0.5 is 50 %.
	number = 9,  ///< A plain number: user units.
};

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
};

/// What fills a shape or its outline.
struct SVGPaint
{
	SVGPaintType type = SVGPaintType::color;
	Color color;
	/// The id of the paint server (without "#") when `type` is `reference`; empty otherwise. Copies share the text. The
	/// id is resolved when the paint is used, with `SVGDocumentInterface::GetElementById`.
	String reference;
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
	userSpace = 0,
	boundingBox = 1,
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
	SVGGradientUnits units = SVGGradientUnits::boundingBox;
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
	SVGGradientUnits units = SVGGradientUnits::boundingBox;
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
