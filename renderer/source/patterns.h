// SPDX-License-Identifier: MIT
/// Patterns as sources of the drawing library.
#pragma once

#include "paint_servers.h"

namespace orvan::cairo
{

bool IsPattern(ObjectBase* element) noexcept;

/// Makes the pattern `element` the source of the canvas: one tile, drawn at the resolution of the picture, repeated.
Result<PaintResult> SetPattern(const Canvas& canvas, ObjectBase* element, double opacity,
							   const PaintPlace& at) noexcept;

} // namespace orvan::cairo
