// SPDX-License-Identifier: MIT
/// Everything that is painted, as columns.
#pragma once

#include "record.h"

namespace orvan::geometry
{

Result<SVGNormalizedPaths> MakeColumns(const Record& record, const SVGNormalizeOptions& options,
									   SVGNormalizedClips clips) noexcept;

} // namespace orvan::geometry
