// SPDX-License-Identifier: MIT
/// Painting texts.
#pragma once

#include "canvas.h"
#include "drawing/text_layout.h"

#include <span>

namespace orvan::cairo
{

/// True when fragments of a text are painted in one go: a paint can be made transparent itself then.
bool IsPaintedOnce(std::span<const drawing::TextFragment> fragments) noexcept;

/// Fills and strokes the characters of fragments of a text with the lines that decorate them, each with the paints of
/// its element. `frame` is the text's own, or one with its coordinates.
Result<void> PaintText(const Canvas& canvas, const drawing::Frame& frame, const drawing::TextLayout& text,
					   std::span<const drawing::TextFragment> fragments, double opacity) noexcept;

/// Fills all visible characters with the drawing's source, whatever they are painted with.
Result<void> FillText(const Canvas& canvas, const drawing::Frame& frame, const drawing::TextLayout& text) noexcept;

} // namespace orvan::cairo
