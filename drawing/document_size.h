// SPDX-License-Identifier: MIT
/// How large a document wants to be shown.
#pragma once

#include "svg_base.h"

#include <optional>

namespace orvan::drawing
{

/// What the root of a document says about its size, in user units: sides that do not depend on what it is shown in, and
/// width for a height of 1.
struct NaturalSize
{
	std::optional<double> width;
	std::optional<double> height;
	std::optional<double> ratio;
};

NaturalSize GetStatedSize(const SVGElementRef& root) noexcept;

/// The size in user units that a document with this root gives itself: the width and height of an svg element, where
/// these are missing or relative the size of its view box, and without one 300 by 150. 0 or less where it asks for
/// nothing to be drawn.
Vector2d GetNaturalSize(const SVGElementRef& root) noexcept;

} // namespace orvan::drawing
