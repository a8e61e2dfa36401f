// SPDX-License-Identifier: MIT
/// Straight pieces in place of curves.
#pragma once

#include "pieces.h"

namespace orvan::geometry
{

/// More pieces than these are too many.
inline constexpr std::size_t kMostPieces = 3'000'000;

/// Makes straight pieces of all curves: where others are near, so short ones that they are no farther off than
/// `tolerance`, elsewhere long ones, which meet and miss the same pieces as the curves.
Result<void> Straighten(Pieces& pieces, double tolerance) noexcept;

} // namespace orvan::geometry
