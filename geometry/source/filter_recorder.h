// SPDX-License-Identifier: MIT
/// Writing down what "filter" does to an element, so that nothing of the document is needed for it.
#pragma once

#include "drawing/measure.h"
#include "paints.h"

namespace orvan::geometry
{

/// True when there is something that filters the element of `frame`, and a way to write it down.
Result<bool> HasFilters(drawing::Scene& scene, const drawing::Frame& frame) noexcept;

/// The filters of the element of `frame`, for which `HasFilters` is true. Regions and lengths are in the element's
/// coordinates then, whatever they were in. `extent` is that of the element's content.
Result<RecordedFilter> RecordFilter(drawing::Scene& scene, const drawing::Frame& frame, drawing::Extent& extent,
									ContentRecorder& contents) noexcept;

} // namespace orvan::geometry
