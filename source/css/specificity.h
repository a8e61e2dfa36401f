// SPDX-License-Identifier: MIT
#pragma once

#include "selector.h"

#include <algorithm>

namespace orvan::css
{
// A specificity is three counts in one number: of ids, of classes and their like, of types.
inline constexpr int kCountBits = 10;
inline constexpr Specificity kMostOfAKind = (1U << kCountBits) - 1;
inline constexpr Specificity kOfType = 1;
inline constexpr Specificity kOfClass = 1U << kCountBits;
inline constexpr Specificity kOfId = 1U << (2 * kCountBits);

/// Adds without letting many classes become an id.
inline Specificity Sum(Specificity left, Specificity right)
{
	Specificity sum = 0;
	for (int shift = 0; shift <= 2 * kCountBits; shift += kCountBits)
		sum |= std::min(kMostOfAKind, (left >> shift & kMostOfAKind) + (right >> shift & kMostOfAKind)) << shift;
	return sum;
}

/// The highest of a list.
inline Specificity FindHighest(const Selector* list)
{
	Specificity highest = 0;
	for (; list; list = list->next)
		highest = std::max(highest, list->specificity);
	return highest;
}
} // namespace orvan::css
