// SPDX-License-Identifier: MIT
/// Strokes.
#pragma once

#include "canvas.h"

namespace orvan::cairo
{

/// Strokes the current path, which is used up, with the drawing's source and the pen that `place` asks for. The
/// drawing's transform must be the identity.
void StrokePath(const Canvas& canvas, const drawing::Place& place) noexcept;

} // namespace orvan::cairo
