// SPDX-License-Identifier: MIT
/// Whether a point is in an area or on a stroke.
#pragma once

#include "record.h"

namespace orvan::geometry
{

/// True when the point is inside of the outline, transformed by `transform`; subpaths count as closed.
bool IsInside(const Outline& outline, const Matrix2d& transform, SVGFillRule rule, const Vector2d& point) noexcept;

/// True when the point is on a stroke along the outline, transformed by `transform`, with a pen that is round there.
/// `dashes` may be empty.
bool IsOnStroke(const Outline& outline, const Matrix2d& transform, const SVGStroke& stroke,
				const RecordedDashes& dashes, const Vector2d& point) noexcept;

} // namespace orvan::geometry
