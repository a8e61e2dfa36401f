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
#include "svg_length_unit.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace orvan
{

/// The kinds of elements: what `SVGElementInterface::GetElementType` returns. Several tags share a kind: polygons and
/// polylines are paths, ellipses are circles. An element of an unknown tag is a group; the complete import makes it,
/// and every element of another namespace, an element of kind 0 instead, which is not drawn.
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

	// Made by the complete import only; without it these tags make groups.
	pattern = 16,
	marker = 17,
	image = 18,
	switchElement = 19, ///< "switch".
	anchor = 20,        ///< "a".
	tspan = 21,
	textPath = 22,
	filter = 23,
	feBlend = 24,
	feColorMatrix = 25,
	feComponentTransfer = 26,
	feComposite = 27,
	feConvolveMatrix = 28,
	feDiffuseLighting = 29,
	feDisplacementMap = 30,
	feDropShadow = 31,
	feFlood = 32,
	feGaussianBlur = 33,
	feImage = 34,
	feMerge = 35,
	feMorphology = 36,
	feOffset = 37,
	feSpecularLighting = 38,
	feTile = 39,
	feTurbulence = 40,
	feDistantLight = 41,
	fePointLight = 42,
	feSpotLight = 43,
	feFuncR = 44,
	feFuncG = 45,
	feFuncB = 46,
	feFuncA = 47,
	feMergeNode = 48,
	title = 49,
	desc = 50,
	style = 51,
	metadata = 52,
	foreignObject = 53,
	textRun = 54, ///< Characters between the elements of a text.
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

	// Set by the complete import only.
	gradientTransform = 50, ///< `Matrix2d`: from the gradient's coordinates to those that `gradientUnits` names.
	patternTransform = 51,  ///< `Matrix2d`.
	patternUnits = 52,      ///< `SVGUnits` as Int32, as for all "…Units".
	patternContentUnits = 53,
	fr = 54,       ///< `SVGLength`: the radius of the focus of a radial gradient.
	link = 55,     ///< String: the id of an element of the document (without "#"), or a whole IRI. Not on `use`, which
				   ///< keeps its own.
	clipRule = 56, ///< `SVGFillRule` as Int32.
	clipPathUnits = 57,
	maskUnits = 58,
	maskContentUnits = 59,
	maskType = 60,    ///< `SVGMaskType` as Int32.
	markerStart = 61, ///< String: the id of the marker; empty means "none". As for the next two.
	markerMid = 62,
	markerEnd = 63,
	markerUnits = 64, ///< `SVGMarkerUnits` as Int32.
	markerWidth = 65, ///< `SVGLength`, as for all up to `refY`.
	markerHeight = 66,
	refX = 67,
	refY = 68,
	orient = 69,                    ///< `SVGOrient`.
	overflow = 70,                  ///< `SVGOverflow` as Int32.
	paintOrder = 71,                ///< `SVGPaintOrder` as Int32.
	vectorEffect = 72,              ///< `SVGVectorEffect` as Int32.
	mixBlendMode = 73,              ///< `SVGBlendMode` as Int32.
	isolation = 74,                 ///< `SVGIsolation` as Int32.
	shapeRendering = 75,            ///< `SVGShapeRendering` as Int32.
	textRendering = 76,             ///< `SVGTextRendering` as Int32.
	imageRendering = 77,            ///< `SVGImageRendering` as Int32.
	colorInterpolation = 78,        ///< `SVGColorInterpolation` as Int32.
	colorInterpolationFilters = 79, ///< `SVGColorInterpolation` as Int32.
	transformOrigin = 80,           ///< `SVGLength2d`; the local transform does not contain it.
	transformBox = 81,              ///< `SVGTransformBox` as Int32.
	xList = 82,             ///< Array of `SVGLength`: "x" of a text with more than one value. `x` has the first.
	yList = 83,             ///< Array of `SVGLength`, likewise for "y".
	dx = 84,                ///< Array of `SVGLength` on text; Float on the offset primitives of filters.
	dy = 85,                ///< Likewise.
	rotate = 86,            ///< Array of Float, in degrees.
	textLength = 87,        ///< `SVGLength`.
	lengthAdjust = 88,      ///< `SVGLengthAdjust` as Int32.
	startOffset = 89,       ///< `SVGLength`.
	textAnchor = 90,        ///< `SVGTextAnchor` as Int32.
	textDecoration = 91,    ///< Flags of `SVGTextDecoration` as Int32.
	letterSpacing = 92,     ///< `SVGLength`; 0 for "normal".
	wordSpacing = 93,       ///< `SVGLength`; 0 for "normal".
	dominantBaseline = 94,  ///< `SVGBaseline` as Int32.
	alignmentBaseline = 95, ///< `SVGBaseline` as Int32.
	baselineShift = 96,     ///< `SVGBaselineShift`.
	writingMode = 97,       ///< `SVGWritingMode` as Int32.
	direction = 98,         ///< `SVGDirection` as Int32.
	unicodeBidi = 99,       ///< `SVGUnicodeBidi` as Int32.
	fontVariant = 100,      ///< `SVGFontVariant` as Int32.
	fontStretch = 101,      ///< Float: a fraction, 1 is normal.
	fontWeightNumber = 102, ///< Float, 1 to 1000: "font-weight" exactly; `fontWeight` says bold from 600 on. Negative:
							///< -1 for "lighter", -2 for "bolder".
	whiteSpace = 103,       ///< `SVGWhiteSpace` as Int32.
	language = 104,         ///< String: "lang" or "xml:lang".
	pathLength = 105,       ///< Float.
	pointerEvents = 106,    ///< `SVGPointerEvents` as Int32.
	color = 107,            ///< `SVGPaint`: what currentColor stands for, on the element and below.
	classList = 108,        ///< String: the classes as written.
	systemLanguage = 109,   ///< String, as written, as for the next two.
	requiredExtensions = 110,
	requiredFeatures = 111,
	filter = 112, ///< Array of `SVGFilterFunction`; empty means "none".
	filterUnits = 113,
	primitiveUnits = 114,
	floodColor = 115,   ///< `SVGPaint`: a colour or currentColor, as for `lightingColor`.
	floodOpacity = 116, ///< Float, as written.
	lightingColor = 117,
	in = 118,          ///< String: a name as `result` gives it, or "SourceGraphic", "SourceAlpha" …
	in2 = 119,         ///< String, likewise.
	result = 120,      ///< String.
	mode = 121,        ///< `SVGBlendMode` as Int32.
	type = 122,        ///< `SVGColorMatrixType`, `SVGTransferType` or `SVGTurbulenceType` as Int32, by the element.
	values = 123,      ///< Array of Float.
	tableValues = 124, ///< Array of Float.
	slope = 125,       ///< Float, as for the next three. Of a transfer function `offset` is one too.
	intercept = 126,
	amplitude = 127,
	exponent = 128,
	operation = 129, ///< `SVGCompositeOperator` or `SVGMorphologyOperator` as Int32, by the element.
	k1 = 130,        ///< Float, as for the next three.
	k2 = 131,
	k3 = 132,
	k4 = 133,
	order = 134,        ///< Array of two Floats; one in the file stands for both.
	kernelMatrix = 135, ///< Array of Float.
	divisor = 136,      ///< Float, as for the next three.
	bias = 137,
	targetX = 138,
	targetY = 139,
	edgeMode = 140,         ///< `SVGEdgeMode` as Int32.
	kernelUnitLength = 141, ///< Array of two Floats; one in the file stands for both.
	preserveAlpha = 142,    ///< Int32: 0 or 1.
	surfaceScale = 143,     ///< Float, as for the next three.
	diffuseConstant = 144,
	specularConstant = 145,
	specularExponent = 146,
	scale = 147,            ///< Float.
	xChannelSelector = 148, ///< `SVGChannel` as Int32.
	yChannelSelector = 149, ///< `SVGChannel` as Int32.
	stdDeviation = 150,     ///< Array of two Floats; one in the file stands for both.
	radius = 151,           ///< Array of two Floats; one in the file stands for both.
	baseFrequency = 152,    ///< Array of two Floats; one in the file stands for both.
	numOctaves = 153,       ///< Float.
	seed = 154,             ///< Float.
	stitchTiles = 155,      ///< Int32: 1 for "stitch", 0 for "noStitch".
	azimuth = 156,          ///< Float, in degrees, as for `elevation`.
	elevation = 157,
	z = 158, ///< Float, as for all up to `limitingConeAngle`.
	pointsAtX = 159,
	pointsAtY = 160,
	pointsAtZ = 161,
	limitingConeAngle = 162,
	target = 163,          ///< String: where an anchor opens its link.
	fontKerning = 164,     ///< `SVGFontKerning` as Int32.
	textOrientation = 165, ///< `SVGTextOrientation` as Int32.
	side = 166,            ///< `SVGTextPathSide` as Int32.
	path = 167,            ///< Array of `SVGPathCommand`: the path of a textPath that is given in place.
	/// `SVGClipShape`, where "clip-path" is a shape instead of a reference; `clipPath` is the empty String then.
	clipShape = 168,
	backgroundColor = 169, ///< `SVGPaint`: what the outermost element lies on.
};

/// The attributes' names by number. The link's is "href"; the attributes that hold more of "x", "y", "font-weight"
/// and "clip-path" than the plain import keeps have names of their own.
inline constexpr std::array<std::string_view, 170> kSVGAttributeNames = {
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
	"gradientTransform",
	"patternTransform",
	"patternUnits",
	"patternContentUnits",
	"fr",
	"href",
	"clip-rule",
	"clipPathUnits",
	"maskUnits",
	"maskContentUnits",
	"mask-type",
	"marker-start",
	"marker-mid",
	"marker-end",
	"markerUnits",
	"markerWidth",
	"markerHeight",
	"refX",
	"refY",
	"orient",
	"overflow",
	"paint-order",
	"vector-effect",
	"mix-blend-mode",
	"isolation",
	"shape-rendering",
	"text-rendering",
	"image-rendering",
	"color-interpolation",
	"color-interpolation-filters",
	"transform-origin",
	"transform-box",
	"x-list",
	"y-list",
	"dx",
	"dy",
	"rotate",
	"textLength",
	"lengthAdjust",
	"startOffset",
	"text-anchor",
	"text-decoration",
	"letter-spacing",
	"word-spacing",
	"dominant-baseline",
	"alignment-baseline",
	"baseline-shift",
	"writing-mode",
	"direction",
	"unicode-bidi",
	"font-variant",
	"font-stretch",
	"font-weight-number",
	"white-space",
	"xml:lang",
	"pathLength",
	"pointer-events",
	"color",
	"class",
	"systemLanguage",
	"requiredExtensions",
	"requiredFeatures",
	"filter",
	"filterUnits",
	"primitiveUnits",
	"flood-color",
	"flood-opacity",
	"lighting-color",
	"in",
	"in2",
	"result",
	"mode",
	"type",
	"values",
	"tableValues",
	"slope",
	"intercept",
	"amplitude",
	"exponent",
	"operator",
	"k1",
	"k2",
	"k3",
	"k4",
	"order",
	"kernelMatrix",
	"divisor",
	"bias",
	"targetX",
	"targetY",
	"edgeMode",
	"kernelUnitLength",
	"preserveAlpha",
	"surfaceScale",
	"diffuseConstant",
	"specularConstant",
	"specularExponent",
	"scale",
	"xChannelSelector",
	"yChannelSelector",
	"stdDeviation",
	"radius",
	"baseFrequency",
	"numOctaves",
	"seed",
	"stitchTiles",
	"azimuth",
	"elevation",
	"z",
	"pointsAtX",
	"pointsAtY",
	"pointsAtZ",
	"limitingConeAngle",
	"target",
	"font-kerning",
	"text-orientation",
	"side",
	"path",
	"clip-shape",
	"background-color",
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

// Values that only the complete import stores. Of the keywords, 0 is the initial one unless it says otherwise.
// ---------

/// What coordinates and lengths of a definition refer to.
enum class SVGUnits : std::int32_t
{
	userSpaceOnUse = 0,
	objectBoundingBox = 1,
};

/// How a mask's pixels become coverage.
enum class SVGMaskType : std::int32_t
{
	luminance = 0,
	alpha = 1,
};

enum class SVGMarkerUnits : std::int32_t
{
	strokeWidth = 0,
	userSpaceOnUse = 1,
};

enum class SVGOverflow : std::int32_t
{
	visible = 0,
	hidden = 1,
	scroll = 2,
	automatic = 3, ///< "auto".
};

/// The order in which fill, stroke and markers of a shape are painted.
enum class SVGPaintOrder : std::int32_t
{
	fillStrokeMarkers = 0, ///< "normal".
	fillMarkersStroke = 1,
	strokeFillMarkers = 2,
	strokeMarkersFill = 3,
	markersFillStroke = 4,
	markersStrokeFill = 5,
};

enum class SVGVectorEffect : std::int32_t
{
	none = 0,
	nonScalingStroke = 1,
};

/// How a group or a filter's input is mixed with what is below.
enum class SVGBlendMode : std::int32_t
{
	normal = 0,
	multiply = 1,
	screen = 2,
	overlay = 3,
	darken = 4,
	lighten = 5,
	colorDodge = 6,
	colorBurn = 7,
	hardLight = 8,
	softLight = 9,
	difference = 10,
	exclusion = 11,
	hue = 12,
	saturation = 13,
	color = 14,
	luminosity = 15,
	plusLighter = 16,
};

enum class SVGIsolation : std::int32_t
{
	automatic = 0, ///< "auto".
	isolate = 1,
};

enum class SVGShapeRendering : std::int32_t
{
	automatic = 0, ///< "auto".
	optimizeSpeed = 1,
	crispEdges = 2,
	geometricPrecision = 3,
};

enum class SVGTextRendering : std::int32_t
{
	automatic = 0, ///< "auto".
	optimizeSpeed = 1,
	optimizeLegibility = 2,
	geometricPrecision = 3,
};

enum class SVGImageRendering : std::int32_t
{
	automatic = 0, ///< "auto".
	optimizeSpeed = 1,
	optimizeQuality = 2,
	pixelated = 3,
	crispEdges = 4,
};

enum class SVGColorInterpolation : std::int32_t
{
	automatic = 0, ///< "auto".
	sRGB = 1,
	linearRGB = 2,
};

/// The box that percentages and keywords of "transform-origin" refer to.
enum class SVGTransformBox : std::int32_t
{
	viewBox = 0,
	fillBox = 1,
	strokeBox = 2,
	contentBox = 3,
	borderBox = 4,
};

enum class SVGLengthAdjust : std::int32_t
{
	spacing = 0,
	spacingAndGlyphs = 1,
};

enum class SVGTextAnchor : std::int32_t
{
	start = 0,
	middle = 1,
	end = 2,
};

/// Lines of a font that text is aligned by.
enum class SVGBaseline : std::int32_t
{
	automatic = 0, ///< "auto".
	alphabetic = 1,
	ideographic = 2,
	middle = 3,
	central = 4,
	mathematical = 5,
	hanging = 6,
	textBeforeEdge = 7,
	textAfterEdge = 8,
	useScript = 9,
	noChange = 10,
	resetSize = 11,
	baseline = 12,
	beforeEdge = 13,
	afterEdge = 14,
};

enum class SVGWritingMode : std::int32_t
{
	horizontalTb = 0,
	verticalRl = 1,
	verticalLr = 2,
	sidewaysRl = 3,
	sidewaysLr = 4,
};

enum class SVGDirection : std::int32_t
{
	leftToRight = 0,
	rightToLeft = 1,
};

enum class SVGUnicodeBidi : std::int32_t
{
	normal = 0,
	embed = 1,
	isolate = 2,
	bidiOverride = 3,
	isolateOverride = 4,
	plaintext = 5,
};

enum class SVGFontKerning : std::int32_t
{
	automatic = 0, ///< "auto".
	normal = 1,
	none = 2,
};

/// How the letters of vertical lines stand.
enum class SVGTextOrientation : std::int32_t
{
	mixed = 0,    ///< Each as its script has it.
	upright = 1,  ///< All of them as in horizontal lines.
	sideways = 2, ///< All of them turned by a quarter.
};

/// On which side of its path a text runs; on the right one it runs back from the path's end.
enum class SVGTextPathSide : std::int32_t
{
	left = 0,
	right = 1,
};

enum class SVGFontVariant : std::int32_t
{
	normal = 0,
	smallCaps = 1,
};

enum class SVGWhiteSpace : std::int32_t
{
	normal = 0,
	pre = 1,
	nowrap = 2,
	preWrap = 3,
	preLine = 4,
	breakSpaces = 5,
};

enum class SVGPointerEvents : std::int32_t
{
	automatic = 0, ///< "auto".
	visiblePainted = 1,
	visibleFill = 2,
	visibleStroke = 3,
	visible = 4,
	painted = 5,
	fill = 6,
	stroke = 7,
	all = 8,
	none = 9,
	boundingBox = 10,
};

enum class SVGColorMatrixType : std::int32_t
{
	matrix = 0,
	saturate = 1,
	hueRotate = 2,
	luminanceToAlpha = 3,
};

enum class SVGTransferType : std::int32_t
{
	identity = 0,
	table = 1,
	discrete = 2,
	linear = 3,
	gamma = 4,
};

enum class SVGTurbulenceType : std::int32_t
{
	turbulence = 0,
	fractalNoise = 1,
};

enum class SVGCompositeOperator : std::int32_t
{
	over = 0,
	in = 1,
	out = 2,
	atop = 3,
	exclusiveOr = 4, ///< "xor".
	arithmetic = 5,
	lighter = 6,
};

enum class SVGMorphologyOperator : std::int32_t
{
	erode = 0,
	dilate = 1,
};

enum class SVGEdgeMode : std::int32_t
{
	duplicate = 0,
	wrap = 1,
	none = 2,
};

enum class SVGChannel : std::int32_t
{
	alpha = 0,
	red = 1,
	green = 2,
	blue = 3,
};

/// The value of "text-decoration": any of these together.
enum class SVGTextDecoration : std::int32_t
{
	none = 0,
	underline = 1,
	overline = 2,
	lineThrough = 4,
};

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
ORVAN_DATA_TYPE(SVGOrient, "net.orvan.datatype.SVGOrient", "orvan::SVGOrient");
ORVAN_DATA_TYPE(SVGBaselineShift, "net.orvan.datatype.SVGBaselineShift", "orvan::SVGBaselineShift");
ORVAN_DATA_TYPE(SVGFilterFunction, "net.orvan.datatype.SVGFilterFunction", "orvan::SVGFilterFunction");
ORVAN_DATA_TYPE(SVGClipShape, "net.orvan.datatype.SVGClipShape", "orvan::SVGClipShape");

static_assert(sizeof(SVGPathCommand) == 56 && alignof(SVGPreserveAspectRatio) == 4);

} // namespace orvan
