// SPDX-License-Identifier: MIT
/// What a style sheet says about the elements of a tree that was loaded already.
#pragma once

#include "elements/element_base.h"

#include <string_view>

namespace orvan::svg::complete
{

/// What a sheet says about one element: entries for its dictionary.
struct SheetOverlay
{
	SVGElementRef element;
	DataDictionary values;
};

/// Matches a sheet against a tree. Values are read as the complete import reads them; what cannot be read is left out,
/// and so are properties that stand outside of dictionaries. Elements that nothing is said about are not listed. Fails
/// for want of memory only.
Result<BaseArray<SheetOverlay>> MatchSheet(ElementBase& root, std::string_view sheet) noexcept;

} // namespace orvan::svg::complete
