// SPDX-License-Identifier: MIT
/// Strokes as areas.
#pragma once

#include "record.h"

namespace orvan::geometry
{

/// The edges of a stroke along an outline, for the nonzero rule: `pen` leads to the coordinates in which the pen is
/// round, in which the result is too. No farther off than `tolerance`.
Result<Outline> GetStrokeEdges(const Outline& outline, const Matrix2d& pen, const SVGStroke& stroke,
							   const RecordedDashes& dashes, double tolerance) noexcept;

/// The outline in lines that are no farther off than `tolerance`.
Result<Outline> Flatten(const Outline& outline, const Matrix2d& transform, double tolerance) noexcept;

} // namespace orvan::geometry
