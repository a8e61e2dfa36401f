// SPDX-License-Identifier: MIT
/// Bold letters for want of a bold font.
#pragma once

#include "outline.h"

namespace orvan::drawing
{

/// Makes the stems of a glyph wider by `strength`, in the outline's own coordinates with y upwards: each edge moves
/// outwards by half of it, and the glyph as a whole to where it begins and stands as before.
Result<Outline> Embolden(const Outline& glyph, double strength) noexcept;

} // namespace orvan::drawing
