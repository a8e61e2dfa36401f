// SPDX-License-Identifier: MIT
/// Strokes.
#pragma once

#include "canvas.h"

namespace orvan::cairo
{

/// Strokes the current path, which is used up, with the canvas's source and the pen that the frame asks for.
/// `pathLength` is the length of the path in user units as the document counts it for dashes, relative to what it is:
/// 1 for as it is. The canvas's transform must be the identity.
void StrokePath(const Canvas& canvas, const drawing::Frame& frame, double pathLength) noexcept;

} // namespace orvan::cairo
