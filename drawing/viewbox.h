// SPDX-License-Identifier: MIT
/// Fitting a view box into a viewport.
#pragma once

#include "geometry.h"
#include "lengths.h"

#include <optional>

namespace orvan::drawing
{

/// Where the content of a viewport goes.
struct ViewboxFit
{
	Matrix2d transform; ///< From the content's coordinates to those in which the viewport stands.
	Vector2d size;      ///< Of the viewport in the content's coordinates: what percentages refer to.
};

/// Fits `viewbox` into the viewport `area`; a default view box leaves the scale alone. Nothing when
/// nothing is to be drawn: a side of the viewport or of the view box is zero, negative or not finite.
std::optional<ViewboxFit> FitViewbox(const Rectangle& area, const SVGViewbox& viewbox,
									 const SVGPreserveAspectRatio& rule) noexcept;

} // namespace orvan::drawing
