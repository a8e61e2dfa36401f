// SPDX-License-Identifier: MIT
/// Laid out text on its way into the drawing library.
#pragma once

#include "drawing/text_line.h"
#include "handles.h"

namespace orvan::cairo
{

/// What texts are laid out with: outlines unhinted, so that a text has the same shape at every size.
drawing::PangoContextPtr MakeFontContext() noexcept;

/// Fills the glyphs with the drawing's source. Leaves the drawing's transform as the identity.
void FillGlyphs(cairo_t* drawing, const drawing::TextLine& line, const Matrix2d& transform) noexcept;
/// Makes the glyphs' outlines the current path. Leaves the drawing's transform as the identity.
void SetGlyphPath(cairo_t* drawing, const drawing::TextLine& line, const Matrix2d& transform) noexcept;

} // namespace orvan::cairo
