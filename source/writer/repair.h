// SPDX-License-Identifier: MIT
/// Rewriting what the plain import refuses.
#pragma once

#include "svg_source.h"

#include <string>

namespace orvan::svg
{

/// Rewrites the values of a text, in place, that the plain import refuses, to what the complete one reads there. The
/// result tells what was changed; what could not be mended stays as it was. Fails for want of memory, and with the
/// illegal-argument error for a text that is refused as a whole. May throw std::bad_alloc.
Result<BaseArray<SVGRepair>> RepairText(std::string& text);

} // namespace orvan::svg
