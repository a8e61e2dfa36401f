// SPDX-License-Identifier: MIT
/// Union, intersection, difference and exclusion of outlines.
#pragma once

#include "drawing/outline.h"
#include "svg_geometry.h"

namespace orvan::geometry
{

/// The areas of two outlines put together. What is left of a curve stays a curve: straight pieces serve to find out
/// which parts are needed, and the places where curves meet are found on the curves themselves then. The result has no
/// crossings and goes around its areas clockwise on a screen and around holes the other way, so that it is the same by
/// both fill rules. A tolerance of 0 stands for a millionth of the size. Fails as `CutIntoPieces` does.
Result<drawing::Outline> Combine(const drawing::Outline& first, SVGFillRule firstRule, const drawing::Outline& second,
								 SVGFillRule secondRule, SVGOutlineOperation operation, double tolerance) noexcept;

/// What an outline goes around, clockwise counting as positive. The last subpaths count as closed.
double GetSignedArea(const drawing::Outline& outline) noexcept;

} // namespace orvan::geometry
