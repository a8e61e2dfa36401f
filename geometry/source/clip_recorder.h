// SPDX-License-Identifier: MIT
/// Writing down the areas of clip paths.
#pragma once

#include "drawing/measure.h"
#include "drawing/scene.h"
#include "record.h"

namespace orvan::geometry
{

/// The region of the clip path that the element of `frame` has; `next` when it has none, or none that can be found.
/// `extent` is that of the element. The region's next one is `next`.
Result<std::int32_t> RecordClip(drawing::Scene& scene, const drawing::Frame& frame, drawing::Extent& extent,
								std::int32_t next, Record& record) noexcept;

} // namespace orvan::geometry
