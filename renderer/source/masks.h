// SPDX-License-Identifier: MIT
/// Masks.
#pragma once

#include "canvas.h"
#include "drawing/measure.h"

namespace orvan::cairo
{

/// The brightness (or the opacity) of the content of masks over `area`, which is in whole pixels of the picture, times
/// the opacity, as coverage. `user` is the element that is masked, with its extent. Null when nothing shows through.
Result<PatternPtr> DrawMask(const Canvas& canvas, const BaseArray<SVGElementRef>& masks, const drawing::Frame& user,
							const drawing::Rectangle& area, drawing::Extent& extent, double opacity) noexcept;

} // namespace orvan::cairo
