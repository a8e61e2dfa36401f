// SPDX-License-Identifier: MIT
/// The names of the attributes that the plain import knows.
#pragma once

#include "importer/names.h"
#include "svg_attributes.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace orvan::svg
{

struct AttributeName
{
	std::string_view name;
	SVGImportAttribute number;
};

/// Numbers from here on belong to the complete import.
inline constexpr std::size_t kPlainNumberCount = static_cast<std::size_t>(SVGImportAttribute::points) + 1;

/// The public names, and the link's as it is usually written.
inline constexpr auto kPlainAttributeNames = []
{
	std::array<AttributeName, kPlainNumberCount> names;
	for (std::size_t number = 1; number < kPlainNumberCount; number++)
		names[number - 1] = {kSVGAttributeNames[number], static_cast<SVGImportAttribute>(number)};
	names.back() = {"xlink:href", SVGImportAttribute::href};
	return names;
}();

inline constexpr NameIndex kPlainAttributeIndex(kPlainAttributeNames);

/// The number of an attribute name, `unknown` when there is none.
inline SVGImportAttribute FindAttribute(std::string_view name) noexcept
{
	const AttributeName* row = kPlainAttributeIndex.Find(kPlainAttributeNames, name);
	return row != nullptr ? row->number : SVGImportAttribute::unknown;
}

} // namespace orvan::svg
