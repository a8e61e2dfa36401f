// SPDX-License-Identifier: MIT
/// The attributes and properties of elements, by number and name.
///
/// The numbers are the keys of an element's attribute dictionary. Those up to 49 are the plain import's; the complete
/// import, which tells more of them apart, adds its own behind them. A number never changes its meaning.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace orvan
{

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
	backgroundColor = 169,         ///< `SVGPaint`: what the outermost element lies on.
	textDecorationStyle = 170,     ///< `SVGTextDecorationStyle` as Int32.
	textDecorationThickness = 171, ///< `SVGLength`, a percentage of the font's size. Absent: as the font has it.
	textUnderlineOffset = 172,     ///< `SVGLength` downwards from the baseline, likewise.
	textTransform = 173,           ///< `SVGTextTransform` as Int32.
	fontSizeAdjust = 174,          ///< Float: the height of an x for the size of the font; negative for "none".
	/// Array of eight Floats, where a transform moves by percentages: what one unit of the reference box's width adds
	/// to its translation, the same for the height, the size of the box that the transform was read for, and the
	/// translation that it had then. Without meaning once it has another.
	transformPercentages = 175,
	maskMode = 176,      ///< `SVGMaskMode` as Int32.
	maskComposite = 177, ///< `SVGMaskComposite` as Int32.
	maskLayers = 178,    ///< String: the ids of the masks parted by blanks, the upper first, where there are several.
};

/// The attributes' names by number. The link's is "href"; the attributes that hold more of "x", "y", "font-weight"
/// and "clip-path" than the plain import keeps have names of their own.
inline constexpr std::array<std::string_view, 179> kSVGAttributeNames = {
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
	"text-decoration-style",
	"text-decoration-thickness",
	"text-underline-offset",
	"text-transform",
	"font-size-adjust",
	"transform-percentages",
	"mask-mode",
	"mask-composite",
	"mask-layers",
};

} // namespace orvan
