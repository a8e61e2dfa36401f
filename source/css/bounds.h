// SPDX-License-Identifier: MIT
#pragma once

/// What a sheet may cost. What is over a bound is dropped and reported, and the rest of the sheet is read as if what
/// was dropped were not there; so a hostile sheet ends in a report, in time and memory linear in its size.

#include <cstddef>
#include <cstdint>

namespace orvan::css
{
/// Bytes of one text, a sheet's or a style attribute's. A longer text is dropped as a whole.
inline constexpr std::size_t kMaxTextSize = std::size_t{64} << 20;

/// Rules of all texts of a sheet together; each selector of a list counts.
inline constexpr std::size_t kMaxRules = 100'000;

/// Declarations of all texts of a sheet together. The declarations of one style attribute have the same bound.
inline constexpr std::size_t kMaxDeclarations = 1'000'000;

/// Compounds of one selector without those inside its parentheses: "a > b.c d" has three. A selector with more makes
/// its rule invalid.
inline constexpr std::size_t kMaxCompounds = 64;

/// Selectors nested in parentheses: ":not(:is(a))" is two deep. A selector that is nested deeper makes its rule
/// invalid.
inline constexpr int kMaxSelectorNesting = 8;

/// Open brackets of any kind. A declaration with more is dropped.
inline constexpr int kMaxBrackets = 256;

/// Rules and at-rules within each other. Blocks that are nested deeper are skipped.
inline constexpr int kMaxRuleNesting = 32;

/// Parentheses within each other in the conditions of at-rules. What is nested deeper is not understood.
inline constexpr int kMaxConditionNesting = 16;

/// Cascade layers of all texts of a sheet together. What stands in a further one counts to the layer around it.
inline constexpr std::size_t kMaxLayers = 10'000;

/// Prefixes of namespaces of one text. Further ones are not declared.
inline constexpr std::size_t kMaxNamespaces = 64;

/// Steps of work that matching may take: so many at once, and so many more for each element that is asked about. A step
/// is a compound that is held against an element, a sibling that is passed, a declaration that is delivered. When they
/// are used up, no rule matches any more, see `Cascade::IsBudgetExceeded`.
inline constexpr std::uint64_t kFreeWork = 8'000'000;
inline constexpr std::uint64_t kWorkPerElement = 512;
} // namespace orvan::css
