// SPDX-License-Identifier: MIT
#pragma once

#include "orvan/data_dictionary.h"
#include "svg_elements.h"

namespace orvan::svg
{

/// What somebody has put over an element's attributes, and is not to be saved.
struct AttributeCover
{
	SVGElementRef element;
	DataDictionary values; ///< What was put over it.
	DataDictionary before; ///< The attributes without it.
};

} // namespace orvan::svg
