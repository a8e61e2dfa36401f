// SPDX-License-Identifier: MIT
/// Masks.
#pragma once

#include "canvas.h"

namespace orvan::cairo
{

/// The mask that `effects` names, or null: a reference that leads to nothing, or back to where it comes from, counts
/// as none.
Result<SVGElementRef> FindMask(Job& job, const drawing::Effects& effects, const drawing::Frame& frame) noexcept;

/// How many pixels masks have for each unit of the picture.
double GetMaskDetail(const Job& job) noexcept;

/// The brightness of a mask's content over `area` (of the picture, in whole pixels), times the opacity, as coverage.
/// `user` is the element that is masked, `bounds` its bounding box in its own coordinates, or null.
Result<PatternPtr> DrawMask(const Canvas& canvas, const SVGElementRef& mask, const drawing::Frame& user,
							const drawing::Rectangle& area, const drawing::Rectangle* bounds, double opacity) noexcept;

} // namespace orvan::cairo
