// SPDX-License-Identifier: MIT
/// The importer's own scanner for plain lengths, which is laxer than the grammar of other attributes.
#pragma once

#include "svg_types.h"

#include <string_view>

namespace orvan::svg
{

/// Reads the length at the start of `text`: a number and a unit; what follows the unit is ignored. Anything that is no
/// length is 0 px: an empty number, a decimal point without digits behind it, an unknown unit, a leading blank. A
/// negative exponent is not read. The value is infinite when the number is too large.
SVGLength ScanLength(std::string_view text) noexcept;

} // namespace orvan::svg
