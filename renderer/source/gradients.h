// SPDX-License-Identifier: MIT
/// Gradients as sources of the drawing library.
#pragma once

#include "paint_servers.h"

namespace orvan::cairo
{

/// Makes a colour the source.
void SetColor(cairo_t* drawing, const Color& color, double opacity) noexcept;

/// Makes a gradient the source of the canvas; false when `element` is none, or paints nothing.
Result<bool> SetGradient(const Canvas& canvas, ObjectBase* element, double opacity, const PaintPlace& at) noexcept;

} // namespace orvan::cairo
