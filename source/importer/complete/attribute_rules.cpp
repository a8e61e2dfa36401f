// SPDX-License-Identifier: MIT
#include "importer/complete/attribute_rules.h"

#include "importer/complete/value_readers.h"

#include <array>

namespace orvan::svg::complete
{
namespace
{

using Kind = SVGImportElementKind;
using Number = SVGImportAttribute;
using grammar::complete::Keyword;

// Where attributes count ---------------------------------------------------------------------------------------------

constexpr TagSet kAll = TagSet::All();
constexpr TagSet kGradients{Kind::linearGradient, Kind::radialGradient};
constexpr TagSet kPrimitives = TagSet::Range(Kind::feBlend, Kind::feTurbulence);
constexpr TagSet kTransferFunctions = TagSet::Range(Kind::feFuncR, Kind::feFuncA);
constexpr TagSet kTexts = TagSet{Kind::text, Kind::tspan} | TagSet::Of({Tag::tref});
constexpr TagSet kFitted{Kind::svg, Kind::symbol, Kind::marker, Kind::pattern};
constexpr TagSet kRound = TagSet{Kind::circle, Kind::radialGradient} | TagSet::Of({Tag::ellipse});
constexpr TagSet kSized =
	kPrimitives | TagSet{Kind::svg,    Kind::rect,    Kind::use,    Kind::image,        Kind::mask,
						 Kind::filter, Kind::pattern, Kind::symbol, Kind::foreignObject};
constexpr TagSet kPositioned = kSized | kTexts | TagSet{Kind::fePointLight, Kind::feSpotLight};
constexpr TagSet kShifted = kTexts | TagSet{Kind::feOffset, Kind::feDropShadow};
constexpr TagSet kLinking =
	kGradients | TagSet::Of({Tag::tref}) |
	TagSet{Kind::use, Kind::pattern, Kind::filter, Kind::textPath, Kind::image, Kind::feImage, Kind::anchor};

// Keywords -----------------------------------------------------------------------------------------------------------

// Those of properties are in lower case and match in any; those of other attributes match as they are written. The
// numbers are those of the enumerations in svg_keywords.h.

// clang-format off

constexpr Keyword kUnits[] = {{"userSpaceOnUse", 0}, {"objectBoundingBox", 1}};
constexpr Keyword kSpreadMethod[] = {{"pad", 0}, {"reflect", 1}, {"repeat", 2}};
constexpr Keyword kFillRule[] = {{"nonzero", 1}, {"evenodd", 2}};
constexpr Keyword kVisibility[] = {{"visible", 1}, {"hidden", 2}, {"collapse", 3}};
constexpr Keyword kLineCap[] = {{"butt", 1}, {"round", 2}, {"square", 3}};
constexpr Keyword kLineJoin[] = {{"miter", 1}, {"round", 2}, {"bevel", 3}, {"miter-clip", 4}, {"arcs", 1}};
constexpr Keyword kMaskType[] = {{"luminance", 0}, {"alpha", 1}};
constexpr Keyword kMaskMode[] = {{"match-source", 0}, {"luminance", 1}, {"alpha", 2}};
constexpr Keyword kMaskComposite[] = {{"add", 0}, {"subtract", 1}, {"intersect", 2}, {"exclude", 3}, {"source-over", 0}, {"source-out", 1}, {"source-in", 2}, {"xor", 3}};
constexpr Keyword kMarkerUnits[] = {{"strokeWidth", 0}, {"userSpaceOnUse", 1}};
constexpr Keyword kOverflow[] = {{"visible", 0}, {"hidden", 1}, {"clip", 1}, {"scroll", 2}, {"auto", 3}};
constexpr Keyword kVectorEffect[] = {{"none", 0}, {"non-scaling-stroke", 1}};
constexpr Keyword kBlendMode[] = {{"normal", 0}, {"multiply", 1}, {"screen", 2}, {"overlay", 3}, {"darken", 4}, {"lighten", 5}, {"color-dodge", 6}, {"color-burn", 7}, {"hard-light", 8}, {"soft-light", 9}, {"difference", 10}, {"exclusion", 11}, {"hue", 12}, {"saturation", 13}, {"color", 14}, {"luminosity", 15}, {"plus-lighter", 16}};
constexpr Keyword kIsolation[] = {{"auto", 0}, {"isolate", 1}};
constexpr Keyword kShapeRendering[] = {{"auto", 0}, {"optimizespeed", 1}, {"crispedges", 2}, {"geometricprecision", 3}};
constexpr Keyword kTextRendering[] = {{"auto", 0}, {"optimizespeed", 1}, {"optimizelegibility", 2}, {"geometricprecision", 3}};
constexpr Keyword kImageRendering[] = {{"auto", 0}, {"optimizespeed", 1}, {"optimizequality", 2}, {"pixelated", 3}, {"crisp-edges", 4}, {"-webkit-optimize-contrast", 4}};
constexpr Keyword kColorInterpolation[] = {{"auto", 0}, {"srgb", 1}, {"linearrgb", 2}};
constexpr Keyword kTransformBox[] = {{"view-box", 0}, {"fill-box", 1}, {"stroke-box", 2}, {"content-box", 3}, {"border-box", 4}};
constexpr Keyword kLengthAdjust[] = {{"spacing", 0}, {"spacingAndGlyphs", 1}};
constexpr Keyword kTextAnchor[] = {{"start", 0}, {"middle", 1}, {"end", 2}};
constexpr Keyword kDominantBaseline[] = {{"auto", 0}, {"alphabetic", 1}, {"ideographic", 2}, {"middle", 3}, {"central", 4}, {"mathematical", 5}, {"hanging", 6}, {"text-before-edge", 7}, {"text-after-edge", 8}, {"use-script", 9}, {"no-change", 10}, {"reset-size", 11}};
constexpr Keyword kAlignmentBaseline[] = {{"auto", 0}, {"baseline", 12}, {"before-edge", 13}, {"text-before-edge", 7}, {"middle", 3}, {"central", 4}, {"after-edge", 14}, {"text-after-edge", 8}, {"ideographic", 2}, {"alphabetic", 1}, {"hanging", 6}, {"mathematical", 5}};
constexpr Keyword kWritingMode[] = {{"horizontal-tb", 0}, {"lr-tb", 0}, {"rl-tb", 0}, {"lr", 0}, {"rl", 0}, {"vertical-rl", 1}, {"tb-rl", 1}, {"tb", 1}, {"vertical-lr", 2}, {"sideways-rl", 3}, {"sideways-lr", 4}};
constexpr Keyword kDirection[] = {{"ltr", 0}, {"rtl", 1}};
constexpr Keyword kUnicodeBidi[] = {{"normal", 0}, {"embed", 1}, {"isolate", 2}, {"bidi-override", 3}, {"isolate-override", 4}, {"plaintext", 5}};
constexpr Keyword kFontVariant[] = {{"normal", 0}, {"none", 0}, {"small-caps", 1}, {"all-small-caps", 2}, {"petite-caps", 3}, {"all-petite-caps", 4}, {"unicase", 5}, {"titling-caps", 6}};
constexpr Keyword kTextTransform[] = {{"none", 0}, {"capitalize", 1}, {"uppercase", 2}, {"lowercase", 3}};
constexpr Keyword kTextDecorationStyle[] = {{"solid", 0}, {"double", 1}, {"dotted", 2}, {"dashed", 3}, {"wavy", 4}};
constexpr Keyword kFontKerning[] = {{"auto", 0}, {"normal", 1}, {"none", 2}};
constexpr Keyword kTextOrientation[] = {{"mixed", 0}, {"upright", 1}, {"sideways", 2}, {"sideways-right", 2}};
constexpr Keyword kGlyphOrientation[] = {{"auto", 0}, {"0", 1}, {"0deg", 1}, {"90", 2}, {"90deg", 2}};
constexpr Keyword kSide[] = {{"left", 0}, {"right", 1}};
constexpr Keyword kWhiteSpace[] = {{"normal", 0}, {"pre", 1}, {"nowrap", 2}, {"pre-wrap", 3}, {"pre-line", 4}, {"break-spaces", 5}};
constexpr Keyword kPointerEvents[] = {{"auto", 0}, {"visiblepainted", 1}, {"visiblefill", 2}, {"visiblestroke", 3}, {"visible", 4}, {"painted", 5}, {"fill", 6}, {"stroke", 7}, {"all", 8}, {"none", 9}, {"bounding-box", 10}};
constexpr Keyword kEdgeMode[] = {{"duplicate", 0}, {"wrap", 1}, {"none", 2}};
constexpr Keyword kChannel[] = {{"A", 0}, {"R", 1}, {"G", 2}, {"B", 3}};
constexpr Keyword kStitchTiles[] = {{"noStitch", 0}, {"stitch", 1}};
constexpr Keyword kBoolean[] = {{"false", 0}, {"true", 1}};

// The table ----------------------------------------------------------------------------------------------------------

constexpr std::array kRules = {
	Rule{"id", Number::id, &ReadId},
	Rule{"class", Number::classList, &ReadRawText},
	Rule{"href", Number::href, &ReadLink, Role::attribute, kLinking},
	Rule{"xlink:href", Number::href, &ReadLink, Role::attribute, kLinking},
	Rule{"transform", Number::transform, &ReadTransform, Role::property},
	Rule{"display", Number::display, &ReadDisplay, Role::property},
	Rule{"visibility", Number::visibility, &ReadKeyword, Role::inherited, kAll, "visible", kVisibility},
	Rule{"opacity", Number::opacity, &ReadAlpha, Role::property},
	Rule{"viewBox", Number::viewBox, &ReadViewBox, Role::attribute, kFitted},
	Rule{"preserveAspectRatio", Number::preserveAspectRatio, &ReadAspectRatio, Role::attribute, kFitted | TagSet{Kind::image, Kind::feImage}},
	Rule{"x", Number::x, &ReadX, Role::geometry, kPositioned},
	Rule{"y", Number::y, &ReadY, Role::geometry, kPositioned},
	Rule{"width", Number::width, &ReadSize, Role::geometry, kSized},
	Rule{"height", Number::height, &ReadSize, Role::geometry, kSized},
	Rule{"x1", Number::x1, &ReadLength, Role::attribute, TagSet{Kind::line, Kind::linearGradient}},
	Rule{"y1", Number::y1, &ReadLength, Role::attribute, TagSet{Kind::line, Kind::linearGradient}},
	Rule{"x2", Number::x2, &ReadLength, Role::attribute, TagSet{Kind::line, Kind::linearGradient}},
	Rule{"y2", Number::y2, &ReadLength, Role::attribute, TagSet{Kind::line, Kind::linearGradient}},
	Rule{"cx", Number::cx, &ReadLength, Role::geometry, kRound},
	Rule{"cy", Number::cy, &ReadLength, Role::geometry, kRound},
	Rule{"fx", Number::fx, &ReadLength, Role::attribute, TagSet{Kind::radialGradient}},
	Rule{"fy", Number::fy, &ReadLength, Role::attribute, TagSet{Kind::radialGradient}},
	Rule{"r", Number::r, &ReadNotNegativeLength, Role::geometry, TagSet{Kind::circle, Kind::radialGradient}},
	Rule{"rx", Number::rx, &ReadRadius, Role::geometry, TagSet{Kind::rect} | TagSet::Of({Tag::ellipse})},
	Rule{"ry", Number::ry, &ReadRadius, Role::geometry, TagSet{Kind::rect} | TagSet::Of({Tag::ellipse})},
	Rule{"d", Number::d, &ReadPathData, Role::geometry, TagSet{Kind::path}},
	Rule{"points", Number::points, &ReadPoints, Role::attribute, TagSet::Of({Tag::polygon, Tag::polyline})},
	Rule{"style", Number::style, &ReadNothing},
	Rule{"fill", Number::fill, &ReadPaint, Role::inherited, kAll, "black"},
	Rule{"fill-rule", Number::fillRule, &ReadKeyword, Role::inherited, kAll, "nonzero", kFillRule},
	Rule{"fill-opacity", Number::fillOpacity, &ReadAlpha, Role::inherited, kAll, "1"},
	Rule{"stroke", Number::stroke, &ReadPaint, Role::inherited, kAll, "none"},
	Rule{"stroke-width", Number::strokeWidth, &ReadNotNegativeLength, Role::inherited, kAll, "1"},
	Rule{"stroke-opacity", Number::strokeOpacity, &ReadAlpha, Role::inherited, kAll, "1"},
	Rule{"stroke-linejoin", Number::strokeLineJoin, &ReadKeyword, Role::inherited, kAll, "miter", kLineJoin},
	Rule{"stroke-linecap", Number::strokeLineCap, &ReadKeyword, Role::inherited, kAll, "butt", kLineCap},
	Rule{"stroke-miterlimit", Number::strokeMiterLimit, &ReadNotNegativeNumber, Role::inherited, kAll, "4"},
	Rule{"stroke-dasharray", Number::strokeDashArray, &ReadDashArray, Role::inherited, kAll, "none"},
	Rule{"stroke-dashoffset", Number::strokeDashOffset, &ReadLength, Role::inherited, kAll, "0"},
	Rule{"gradientUnits", Number::gradientUnits, &ReadExactKeyword, Role::attribute, kGradients, "", kUnits},
	Rule{"spreadMethod", Number::spreadMethod, &ReadExactKeyword, Role::attribute, kGradients, "", kSpreadMethod},
	Rule{"offset", Number::offset, &ReadOffset, Role::attribute, TagSet{Kind::stop} | kTransferFunctions},
	Rule{"stop-color", Number::stopColor, &ReadStopColor, Role::property},
	Rule{"stop-opacity", Number::stopOpacity, &ReadAlpha, Role::property},
	Rule{"font-size", Number::fontSize, &ReadFontSize, Role::inherited, kAll, "medium"},
	Rule{"font-family", Number::fontFamily, &ReadFontFamily, Role::inherited, kAll, "serif"},
	Rule{"font-style", Number::fontStyle, &ReadFontStyle, Role::inherited, kAll, "normal"},
	Rule{"font-weight", Number::fontWeight, &ReadFontWeight, Role::inherited, kAll, "normal"},
	Rule{"mask", Number::mask, &ReadMask, Role::property},
	Rule{"mask-image", Number::mask, &ReadMask, Role::declaration},
	Rule{"clip-path", Number::clipPath, &ReadClipPath, Role::property},
	Rule{"gradientTransform", Number::gradientTransform, &ReadMatrix, Role::attribute, kGradients},
	Rule{"patternTransform", Number::patternTransform, &ReadMatrix, Role::attribute, TagSet{Kind::pattern}},
	Rule{"patternUnits", Number::patternUnits, &ReadExactKeyword, Role::attribute, TagSet{Kind::pattern}, "", kUnits},
	Rule{"patternContentUnits", Number::patternContentUnits, &ReadExactKeyword, Role::attribute, TagSet{Kind::pattern}, "", kUnits},
	Rule{"fr", Number::fr, &ReadNotNegativeLength, Role::attribute, TagSet{Kind::radialGradient}},
	Rule{"clip-rule", Number::clipRule, &ReadKeyword, Role::inherited, kAll, "nonzero", kFillRule},
	Rule{"clipPathUnits", Number::clipPathUnits, &ReadExactKeyword, Role::attribute, TagSet{Kind::clipPath}, "", kUnits},
	Rule{"maskUnits", Number::maskUnits, &ReadExactKeyword, Role::attribute, TagSet{Kind::mask}, "", kUnits},
	Rule{"maskContentUnits", Number::maskContentUnits, &ReadExactKeyword, Role::attribute, TagSet{Kind::mask}, "", kUnits},
	Rule{"mask-type", Number::maskType, &ReadKeyword, Role::property, kAll, "", kMaskType},
	Rule{"mask-mode", Number::maskMode, &ReadKeyword, Role::declaration, kAll, "", kMaskMode},
	Rule{"mask-composite", Number::maskComposite, &ReadKeyword, Role::declaration, kAll, "", kMaskComposite},
	Rule{"marker-start", Number::markerStart, &ReadReference, Role::inherited, kAll, "none"},
	Rule{"marker-mid", Number::markerMid, &ReadReference, Role::inherited, kAll, "none"},
	Rule{"marker-end", Number::markerEnd, &ReadReference, Role::inherited, kAll, "none"},
	Rule{"marker", Number::markerStart, &ReadMarkers, Role::declaration, kAll, "none"},
	Rule{"markerUnits", Number::markerUnits, &ReadExactKeyword, Role::attribute, TagSet{Kind::marker}, "", kMarkerUnits},
	Rule{"markerWidth", Number::markerWidth, &ReadNotNegativeLength, Role::attribute, TagSet{Kind::marker}},
	Rule{"markerHeight", Number::markerHeight, &ReadNotNegativeLength, Role::attribute, TagSet{Kind::marker}},
	Rule{"refX", Number::refX, &ReadReferencePoint, Role::attribute, TagSet{Kind::marker, Kind::symbol}},
	Rule{"refY", Number::refY, &ReadReferencePoint, Role::attribute, TagSet{Kind::marker, Kind::symbol}},
	Rule{"orient", Number::orient, &ReadOrient, Role::attribute, TagSet{Kind::marker}},
	Rule{"overflow", Number::overflow, &ReadKeyword, Role::property, kAll, "", kOverflow},
	Rule{"paint-order", Number::paintOrder, &ReadPaintOrder, Role::inherited, kAll, "normal"},
	Rule{"vector-effect", Number::vectorEffect, &ReadKeyword, Role::property, kAll, "", kVectorEffect},
	Rule{"mix-blend-mode", Number::mixBlendMode, &ReadKeyword, Role::declaration, kAll, "", kBlendMode},
	Rule{"isolation", Number::isolation, &ReadKeyword, Role::declaration, kAll, "", kIsolation},
	Rule{"shape-rendering", Number::shapeRendering, &ReadKeyword, Role::inherited, kAll, "auto", kShapeRendering},
	Rule{"text-rendering", Number::textRendering, &ReadKeyword, Role::inherited, kAll, "auto", kTextRendering},
	Rule{"image-rendering", Number::imageRendering, &ReadKeyword, Role::inherited, kAll, "auto", kImageRendering},
	Rule{"color-interpolation", Number::colorInterpolation, &ReadKeyword, Role::inherited, kAll, "srgb", kColorInterpolation},
	Rule{"color-interpolation-filters", Number::colorInterpolationFilters, &ReadKeyword, Role::inherited, kAll, "linearrgb", kColorInterpolation},
	Rule{"transform-origin", Number::transformOrigin, &ReadTransformOrigin, Role::property},
	Rule{"transform-box", Number::transformBox, &ReadKeyword, Role::declaration, kAll, "", kTransformBox},
	Rule{"dx", Number::dx, &ReadShift, Role::attribute, kShifted},
	Rule{"dy", Number::dy, &ReadShift, Role::attribute, kShifted},
	Rule{"rotate", Number::rotate, &ReadNumbers, Role::attribute, kTexts},
	Rule{"textLength", Number::textLength, &ReadNotNegativeLength, Role::attribute, kTexts | TagSet{Kind::textPath}},
	Rule{"lengthAdjust", Number::lengthAdjust, &ReadExactKeyword, Role::attribute, kTexts | TagSet{Kind::textPath}, "", kLengthAdjust},
	Rule{"startOffset", Number::startOffset, &ReadLength, Role::attribute, TagSet{Kind::textPath}},
	Rule{"text-anchor", Number::textAnchor, &ReadKeyword, Role::inherited, kAll, "start", kTextAnchor},
	Rule{"text-decoration", Number::textDecoration, &ReadTextDecoration, Role::property},
	Rule{"text-decoration-line", Number::textDecoration, &ReadTextDecoration, Role::declaration},
	Rule{"text-decoration-style", Number::textDecorationStyle, &ReadKeyword, Role::declaration, kAll, "", kTextDecorationStyle},
	Rule{"text-decoration-thickness", Number::textDecorationThickness, &ReadThickness, Role::declaration},
	Rule{"text-underline-offset", Number::textUnderlineOffset, &ReadThickness, Role::declaration},
	Rule{"letter-spacing", Number::letterSpacing, &ReadSpacing, Role::inherited, kAll, "normal"},
	Rule{"word-spacing", Number::wordSpacing, &ReadSpacing, Role::inherited, kAll, "normal"},
	Rule{"dominant-baseline", Number::dominantBaseline, &ReadKeyword, Role::inherited, kAll, "auto", kDominantBaseline},
	Rule{"alignment-baseline", Number::alignmentBaseline, &ReadKeyword, Role::property, kAll, "", kAlignmentBaseline},
	Rule{"baseline-shift", Number::baselineShift, &ReadBaselineShift, Role::property},
	Rule{"writing-mode", Number::writingMode, &ReadKeyword, Role::inherited, kAll, "horizontal-tb", kWritingMode},
	Rule{"direction", Number::direction, &ReadKeyword, Role::inherited, kAll, "ltr", kDirection},
	Rule{"unicode-bidi", Number::unicodeBidi, &ReadKeyword, Role::property, kAll, "", kUnicodeBidi},
	Rule{"font", Number::fontSize, &ReadFont, Role::declaration, kAll, "16px serif"},
	Rule{"font-variant", Number::fontVariant, &ReadKeyword, Role::inherited, kAll, "normal", kFontVariant},
	Rule{"font-variant-caps", Number::fontVariant, &ReadKeyword, Role::declaration, kAll, "normal", kFontVariant},
	Rule{"font-stretch", Number::fontStretch, &ReadFontStretch, Role::inherited, kAll, "normal"},
	Rule{"font-width", Number::fontStretch, &ReadFontStretch, Role::declaration, kAll, "normal"},
	Rule{"text-transform", Number::textTransform, &ReadKeyword, Role::declaration, kAll, "", kTextTransform},
	Rule{"font-size-adjust", Number::fontSizeAdjust, &ReadFontSizeAdjust, Role::declaration},
	Rule{"white-space", Number::whiteSpace, &ReadKeyword, Role::inherited, kAll, "normal", kWhiteSpace},
	Rule{"xml:space", Number::whiteSpace, &ReadXmlSpace},
	Rule{"lang", Number::language, &ReadRawText},
	Rule{"xml:lang", Number::language, &ReadRawText},
	Rule{"pathLength", Number::pathLength, &ReadNumber, Role::attribute, TagSet{Kind::path, Kind::rect, Kind::circle, Kind::line} | TagSet::Of({Tag::polygon, Tag::polyline, Tag::ellipse})},
	Rule{"pointer-events", Number::pointerEvents, &ReadKeyword, Role::inherited, kAll, "auto", kPointerEvents},
	Rule{"color", Number::color, &ReadColor, Role::inherited, kAll, "black"},
	Rule{"systemLanguage", Number::systemLanguage, &ReadRawText},
	Rule{"requiredExtensions", Number::requiredExtensions, &ReadRawText},
	Rule{"requiredFeatures", Number::requiredFeatures, &ReadRawText},
	Rule{"filter", Number::filter, &ReadFilter, Role::property},
	Rule{"filterUnits", Number::filterUnits, &ReadExactKeyword, Role::attribute, TagSet{Kind::filter}, "", kUnits},
	Rule{"primitiveUnits", Number::primitiveUnits, &ReadExactKeyword, Role::attribute, TagSet{Kind::filter}, "", kUnits},
	Rule{"flood-color", Number::floodColor, &ReadColor, Role::property},
	Rule{"flood-opacity", Number::floodOpacity, &ReadAlpha, Role::property},
	Rule{"lighting-color", Number::lightingColor, &ReadColor, Role::property},
	Rule{"in", Number::in, &ReadText, Role::attribute, kPrimitives | TagSet{Kind::feMergeNode}},
	Rule{"in2", Number::in2, &ReadText, Role::attribute, kPrimitives},
	Rule{"result", Number::result, &ReadText, Role::attribute, kPrimitives},
	Rule{"mode", Number::mode, &ReadExactKeyword, Role::attribute, TagSet{Kind::feBlend}, "", kBlendMode},
	Rule{"type", Number::type, &ReadType, Role::attribute, TagSet{Kind::feColorMatrix, Kind::feTurbulence} | kTransferFunctions},
	Rule{"values", Number::values, &ReadNumbers, Role::attribute, TagSet{Kind::feColorMatrix}},
	Rule{"tableValues", Number::tableValues, &ReadNumbers, Role::attribute, kTransferFunctions},
	Rule{"slope", Number::slope, &ReadNumber, Role::attribute, kTransferFunctions},
	Rule{"intercept", Number::intercept, &ReadNumber, Role::attribute, kTransferFunctions},
	Rule{"amplitude", Number::amplitude, &ReadNumber, Role::attribute, kTransferFunctions},
	Rule{"exponent", Number::exponent, &ReadNumber, Role::attribute, kTransferFunctions},
	Rule{"operator", Number::operation, &ReadOperator, Role::attribute, TagSet{Kind::feComposite, Kind::feMorphology}},
	Rule{"k1", Number::k1, &ReadNumber, Role::attribute, TagSet{Kind::feComposite}},
	Rule{"k2", Number::k2, &ReadNumber, Role::attribute, TagSet{Kind::feComposite}},
	Rule{"k3", Number::k3, &ReadNumber, Role::attribute, TagSet{Kind::feComposite}},
	Rule{"k4", Number::k4, &ReadNumber, Role::attribute, TagSet{Kind::feComposite}},
	Rule{"order", Number::order, &ReadNumberPair, Role::attribute, TagSet{Kind::feConvolveMatrix}},
	Rule{"kernelMatrix", Number::kernelMatrix, &ReadNumbers, Role::attribute, TagSet{Kind::feConvolveMatrix}},
	Rule{"divisor", Number::divisor, &ReadNumber, Role::attribute, TagSet{Kind::feConvolveMatrix}},
	Rule{"bias", Number::bias, &ReadNumber, Role::attribute, TagSet{Kind::feConvolveMatrix}},
	Rule{"targetX", Number::targetX, &ReadNumber, Role::attribute, TagSet{Kind::feConvolveMatrix}},
	Rule{"targetY", Number::targetY, &ReadNumber, Role::attribute, TagSet{Kind::feConvolveMatrix}},
	Rule{"edgeMode", Number::edgeMode, &ReadExactKeyword, Role::attribute, TagSet{Kind::feConvolveMatrix, Kind::feGaussianBlur}, "", kEdgeMode},
	Rule{"kernelUnitLength", Number::kernelUnitLength, &ReadNumberPair, Role::attribute, TagSet{Kind::feConvolveMatrix} | TagSet{Kind::feDiffuseLighting, Kind::feSpecularLighting}},
	Rule{"preserveAlpha", Number::preserveAlpha, &ReadExactKeyword, Role::attribute, TagSet{Kind::feConvolveMatrix}, "", kBoolean},
	Rule{"surfaceScale", Number::surfaceScale, &ReadNumber, Role::attribute, TagSet{Kind::feDiffuseLighting, Kind::feSpecularLighting}},
	Rule{"diffuseConstant", Number::diffuseConstant, &ReadNumber, Role::attribute, TagSet{Kind::feDiffuseLighting, Kind::feSpecularLighting}},
	Rule{"specularConstant", Number::specularConstant, &ReadNumber, Role::attribute, TagSet{Kind::feDiffuseLighting, Kind::feSpecularLighting}},
	Rule{"specularExponent", Number::specularExponent, &ReadNumber, Role::attribute, TagSet{Kind::feDiffuseLighting, Kind::feSpecularLighting} | TagSet{Kind::feSpotLight}},
	Rule{"scale", Number::scale, &ReadNumber, Role::attribute, TagSet{Kind::feDisplacementMap}},
	Rule{"xChannelSelector", Number::xChannelSelector, &ReadExactKeyword, Role::attribute, TagSet{Kind::feDisplacementMap}, "", kChannel},
	Rule{"yChannelSelector", Number::yChannelSelector, &ReadExactKeyword, Role::attribute, TagSet{Kind::feDisplacementMap}, "", kChannel},
	Rule{"stdDeviation", Number::stdDeviation, &ReadNumberPair, Role::attribute, TagSet{Kind::feGaussianBlur, Kind::feDropShadow}},
	Rule{"radius", Number::radius, &ReadNumberPair, Role::attribute, TagSet{Kind::feMorphology}},
	Rule{"baseFrequency", Number::baseFrequency, &ReadNumberPair, Role::attribute, TagSet{Kind::feTurbulence}},
	Rule{"numOctaves", Number::numOctaves, &ReadNumber, Role::attribute, TagSet{Kind::feTurbulence}},
	Rule{"seed", Number::seed, &ReadNumber, Role::attribute, TagSet{Kind::feTurbulence}},
	Rule{"stitchTiles", Number::stitchTiles, &ReadExactKeyword, Role::attribute, TagSet{Kind::feTurbulence}, "", kStitchTiles},
	Rule{"azimuth", Number::azimuth, &ReadNumber, Role::attribute, TagSet{Kind::feDistantLight}},
	Rule{"elevation", Number::elevation, &ReadNumber, Role::attribute, TagSet{Kind::feDistantLight}},
	Rule{"z", Number::z, &ReadNumber, Role::attribute, TagSet{Kind::fePointLight, Kind::feSpotLight}},
	Rule{"pointsAtX", Number::pointsAtX, &ReadNumber, Role::attribute, TagSet{Kind::feSpotLight}},
	Rule{"pointsAtY", Number::pointsAtY, &ReadNumber, Role::attribute, TagSet{Kind::feSpotLight}},
	Rule{"pointsAtZ", Number::pointsAtZ, &ReadNumber, Role::attribute, TagSet{Kind::feSpotLight}},
	Rule{"limitingConeAngle", Number::limitingConeAngle, &ReadNumber, Role::attribute, TagSet{Kind::feSpotLight}},
	Rule{"target", Number::target, &ReadText, Role::attribute, TagSet{Kind::anchor}},
	Rule{"font-kerning", Number::fontKerning, &ReadKeyword, Role::declaration, kAll, "", kFontKerning},
	Rule{"glyph-orientation-vertical", Number::textOrientation, &ReadKeyword, Role::inherited, kAll, "auto", kGlyphOrientation},
	Rule{"text-orientation", Number::textOrientation, &ReadKeyword, Role::declaration, kAll, "", kTextOrientation},
	Rule{"side", Number::side, &ReadExactKeyword, Role::attribute, TagSet{Kind::textPath}, "", kSide},
	Rule{"path", Number::path, &ReadTextPathData, Role::attribute, TagSet{Kind::textPath}},
	Rule{"background-color", Number::backgroundColor, &ReadBackground, Role::declaration, TagSet{Kind::svg}},
	Rule{"background", Number::backgroundColor, &ReadBackground, Role::declaration, TagSet{Kind::svg}},
	Rule{"-webkit-transform", Number::transform, &ReadTransform, Role::declaration},
	Rule{"-webkit-transform-origin", Number::transformOrigin, &ReadTransformOrigin, Role::declaration},
	Rule{"-webkit-mask", Number::mask, &ReadMask, Role::declaration},
	Rule{"-webkit-mask-image", Number::mask, &ReadMask, Role::declaration},
	Rule{"-webkit-mask-composite", Number::maskComposite, &ReadKeyword, Role::declaration, kAll, "", kMaskComposite},
	Rule{"-webkit-clip-path", Number::clipPath, &ReadClipPath, Role::declaration},
	Rule{"-webkit-filter", Number::filter, &ReadFilter, Role::declaration},
	Rule{"-webkit-opacity", Number::opacity, &ReadAlpha, Role::declaration},
};

// clang-format on

constexpr ProbedNameIndex<kRules.size()> kIndex(kRules);
// With fewer slots for so many names the compiler gives up before it finds a multiplier.
constexpr ShortNameIndex<kRules.size(), 12> kShortNames(kRules);

constexpr Number kFont[] = {Number::fontStyle,   Number::fontVariant, Number::fontWeight,
							Number::fontStretch, Number::fontSize,    Number::fontFamily};
constexpr Number kMarkers[] = {Number::markerStart, Number::markerMid, Number::markerEnd};
constexpr Number kFontVariantAlone[] = {Number::fontVariant};
constexpr Number kFontStretchAlone[] = {Number::fontStretch};

struct LonghandsRow
{
	std::string_view name;
	std::span<const Number> longhands;
};

constexpr LonghandsRow kLonghands[] = {
	{"font", kFont},
	{"marker", kMarkers},
	{"font-variant-caps", kFontVariantAlone},
	{"font-width", kFontStretchAlone},
};

constexpr Number kOfDecorations[] = {Number::textDecorationStyle, Number::textDecorationThickness};
constexpr Number kOfMasks[] = {Number::maskMode, Number::maskComposite};

constexpr LonghandsRow kAlsoSet[] = {
	{"text-decoration", kOfDecorations}, {"mask", kOfMasks}, {"-webkit-mask", kOfMasks}};

std::span<const Number> FindRow(std::span<const LonghandsRow> rows, std::string_view name) noexcept
{
	for (const LonghandsRow& row : rows)
	{
		if (row.name == name)
			return row.longhands;
	}
	return {};
}

} // namespace

const Rule* FindRule(std::string_view name) noexcept
{
	return kIndex.Find(kRules, name);
}

const Rule* FindRuleInText(std::string_view name) noexcept
{
	if (const std::size_t number = kShortNames.Find(name.data(), name.size()); number != 0) [[likely]]
		return &kRules[number - 1];
	return name.size() > NameWords::kLongest ? FindRule(name) : nullptr;
}

std::span<const SVGImportAttribute> LonghandsOf(const Rule& rule) noexcept
{
	return rule.role == Role::declaration ? FindRow(kLonghands, rule.name) : std::span<const Number>();
}

std::span<const SVGImportAttribute> AlsoSetBy(const Rule& rule) noexcept
{
	return FindRow(kAlsoSet, rule.name);
}

const Rule* PropertyOf(const Rule& rule) noexcept
{
	if (rule.number == Number::gradientTransform || rule.number == Number::patternTransform)
		return FindRule("transform");
	return IsProperty(rule) ? &rule : nullptr;
}

Number KeptAs(const Rule& property, Tag tag) noexcept
{
	if (property.number != Number::transform)
		return property.number;
	if (kGradients.Has(tag))
		return Number::gradientTransform;
	return tag == TagOf(SVGImportElementKind::pattern) ? Number::patternTransform : Number::transform;
}

std::span<const Rule> AllRules() noexcept
{
	return kRules;
}

} // namespace orvan::svg::complete
