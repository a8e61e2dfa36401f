// SPDX-License-Identifier: MIT
/// The kinds of elements, by number.
#pragma once

#include <cstdint>

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

} // namespace orvan
