// SPDX-License-Identifier: MIT
/// What texts need of the drawing library's fonts.
#pragma once

#include "drawing/text_layout.h"
#include "handles.h"

namespace orvan::cairo
{

/// What texts are laid out with: outlines unhinted, so that a text has the same shape at every size.
drawing::PangoContextPtr MakeFontContext() noexcept;

/// Draws the glyphs of a fragment that are pictures, such as emoji; all others are outlines. Leaves the drawing's
/// transform as the identity.
void DrawColorGlyphs(cairo_t* drawing, const drawing::TextLayout& text, const drawing::TextFragment& fragment,
					 const Matrix2d& transform, double opacity) noexcept;

} // namespace orvan::cairo
