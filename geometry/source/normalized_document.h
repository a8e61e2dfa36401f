// SPDX-License-Identifier: MIT
/// Everything that is painted, as a document.
#pragma once

#include "record.h"

namespace orvan::geometry
{

/// The text of the document.
Result<BaseArray<char>> WriteNormalized(const Record& record, const SVGNormalizeOptions& options,
										SVGNormalizedClips clips) noexcept;

} // namespace orvan::geometry
