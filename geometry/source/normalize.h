// SPDX-License-Identifier: MIT
/// Everything that is painted, as plain paths.
#pragma once

#include "record.h"

namespace orvan::geometry
{

Result<SVGNormalizedPaths> NormalizeRecord(const Record& record, const SVGNormalizeOptions& options) noexcept;

} // namespace orvan::geometry
