// SPDX-License-Identifier: MIT
/// Filters as a group effect.
#pragma once

#include "canvas.h"
#include "drawing/filters.h"

namespace orvan::cairo
{

/// What comes of `content`, which is that of `frame`, after its filters, of which there is at least one, as far as the
/// canvas can show it. Null when nothing shows.
Result<PatternPtr> DrawFiltered(const Canvas& canvas, const drawing::Frame& frame,
								const BaseArray<drawing::FilterStage>& stages, drawing::Extent& extent,
								const drawing::Content& content) noexcept;

} // namespace orvan::cairo
