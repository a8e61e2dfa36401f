// SPDX-License-Identifier: MIT
/// Images onto a canvas.
#pragma once

#include "canvas.h"

namespace orvan::cairo
{

/// Paints an image of the picture's own store into its viewport, without effects.
Result<void> PaintImage(const Canvas& canvas, const drawing::Frame& frame, const drawing::PlacedImage& image) noexcept;

} // namespace orvan::cairo
