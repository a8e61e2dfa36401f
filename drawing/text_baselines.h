// SPDX-License-Identifier: MIT
/// How high letters stand: the lines of fonts that are aligned, and what moves them.
#pragma once

#include "fonts.h"
#include "frame.h"

namespace orvan::drawing
{

/// How far the baseline of a span is moved upwards by what the span says itself, in user units; those around it come on
/// top, and a text itself is not moved. `font` is the span's, null where none was found, and `size` its size.
double GetBaselineShift(const Frame& frame, const Font* font, double size) noexcept;

/// The height of the line of a font that is put where the text's line is, above the alphabetic baseline, for a size
/// of 1.
double GetBaseline(SVGBaseline baseline, const FontMetrics& metrics, bool isUpright) noexcept;

} // namespace orvan::drawing
