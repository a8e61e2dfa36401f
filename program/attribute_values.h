// SPDX-License-Identifier: MIT
/// Looking at the values of an element's attributes, and what kinds and units are called.
#pragma once

#include "orvan/data_dictionary.h"
#include "svg_types.h"

#include <iterator>
#include <string_view>

namespace orvan::program
{

/// The tags of the kinds of elements, by the numbers of `SVGImportElementKind`; the first and the last have none.
inline constexpr std::string_view kElementNames[] = {
	"?",
	"svg",
	"g",
	"use",
	"defs",
	"symbol",
	"linearGradient",
	"radialGradient",
	"stop",
	"path",
	"rect",
	"circle",
	"line",
	"text",
	"mask",
	"clipPath",
	"pattern",
	"marker",
	"image",
	"switch",
	"a",
	"tspan",
	"textPath",
	"filter",
	"feBlend",
	"feColorMatrix",
	"feComponentTransfer",
	"feComposite",
	"feConvolveMatrix",
	"feDiffuseLighting",
	"feDisplacementMap",
	"feDropShadow",
	"feFlood",
	"feGaussianBlur",
	"feImage",
	"feMerge",
	"feMorphology",
	"feOffset",
	"feSpecularLighting",
	"feTile",
	"feTurbulence",
	"feDistantLight",
	"fePointLight",
	"feSpotLight",
	"feFuncR",
	"feFuncG",
	"feFuncB",
	"feFuncA",
	"feMergeNode",
	"title",
	"desc",
	"style",
	"metadata",
	"foreignObject",
	"(text)",
};
static_assert(std::size(kElementNames) == static_cast<std::size_t>(SVGImportElementKind::textRun) + 1);

/// The units of lengths, by the numbers of `SVGLengthUnit`.
inline constexpr std::string_view kUnitNames[] = {"em",  "ex", "px", "in", "cm",   "mm",   "pt",  "pc", "%",  "",   "q",
												  "rem", "ch", "vw", "vh", "vmin", "vmax", "cap", "ic", "lh", "rlh"};
static_assert(std::size(kUnitNames) == static_cast<std::size_t>(SVGLengthUnit::rlh) + 1);

/// Calls `visit` with the value of a dictionary's entry, as a reference to its own type. Returns false for a value of
/// a type that no attribute has.
template <typename Visitor>
bool VisitAttribute(const DataDictionary& attributes, const DataDictionary::Entry& entry, Visitor&& visit)
{
	const auto tryTypes = [&]<typename... Types>(std::type_identity<Types>...)
	{
		const auto tryType = [&](const auto* value)
		{
			if (value != nullptr)
				visit(*value);
			return value != nullptr;
		};
		return (tryType(attributes.GetValue<Types>(entry)) || ...);
	};
	return tryTypes(std::type_identity<SVGLength>(), std::type_identity<SVGPaint>(), std::type_identity<std::int32_t>(),
					std::type_identity<Float>(), std::type_identity<String>(),
					std::type_identity<BaseArray<SVGLength>>(), std::type_identity<Color>(),
					std::type_identity<SVGViewbox>(), std::type_identity<SVGPreserveAspectRatio>(),
					std::type_identity<Matrix2d>(), std::type_identity<SVGLength2d>(), std::type_identity<SVGOrient>(),
					std::type_identity<SVGBaselineShift>(), std::type_identity<BaseArray<Float>>(),
					std::type_identity<BaseArray<SVGFilterFunction>>(), std::type_identity<BaseArray<SVGPathCommand>>(),
					std::type_identity<SVGClipShape>());
}

/// The name of the attribute that stands under a key; empty when the key has none.
inline std::string_view GetAttributeName(std::int32_t key)
{
	const auto index = static_cast<std::size_t>(key);
	return index < kSVGAttributeNames.size() ? kSVGAttributeNames[index] : std::string_view();
}

} // namespace orvan::program
