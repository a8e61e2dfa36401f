// SPDX-License-Identifier: MIT
/// What something is painted with.
#pragma once

#include "drawing/frame.h"
#include "drawing/scene.h"
#include "record.h"

namespace orvan::geometry
{

/// The paint that fills, or strokes, an element. A paint server that cannot be found or shows nothing is none, unless
/// the paint names something to fall back to. Gradients are written into the record; `box` is what they refer to.
Result<RecordedPaint> GetPaint(drawing::Scene& scene, Record& record, const drawing::Frame& frame,
							   const drawing::LazyBox& box, bool isFill) noexcept;

} // namespace orvan::geometry
