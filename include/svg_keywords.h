// SPDX-License-Identifier: MIT
/// The keywords that attributes and properties take, one enumeration each. A dictionary holds them as Int32.
///
/// Enumerations that belong to a record (the type of a paint, the alignment of an aspect ratio …) stand beside it in
/// `svg_values.h` and `svg_complete_values.h`.
#pragma once

#include <cstdint>

namespace orvan
{

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
	miterClip = 4, ///< Mitred, and cut off where the limit is. Only of a complete import.
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

// Stored by the complete import only. 0 is the initial keyword unless it says otherwise.
// --------------------------------------------------------------------------------------

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

/// What of a mask's picture counts, whatever the mask says itself.
enum class SVGMaskMode : std::int32_t
{
	matchSource = 0, ///< What the mask says.
	luminance = 1,
	alpha = 2,
};

/// What becomes of several masks of one element: each with those below it.
enum class SVGMaskComposite : std::int32_t
{
	add = 0,
	subtract = 1, ///< The upper where the lower ones are not.
	intersect = 2,
	exclude = 3, ///< Either, but not both.
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
	allSmallCaps = 2,
	petiteCaps = 3,
	allPetiteCaps = 4,
	unicase = 5,
	titlingCaps = 6,
};

/// How the letters of a text are changed before they are drawn.
enum class SVGTextTransform : std::int32_t
{
	none = 0,
	capitalize = 1, ///< The first letter of each word becomes a capital.
	uppercase = 2,
	lowercase = 3,
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

/// How the lines of "text-decoration" look.
enum class SVGTextDecorationStyle : std::int32_t
{
	solid = 0,
	doubled = 1, ///< "double".
	dotted = 2,
	dashed = 3,
	wavy = 4,
};

} // namespace orvan
