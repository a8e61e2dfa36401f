// SPDX-License-Identifier: MIT
#pragma once

/// Path data and points, as browsers read them. See values.h for what holds for all.

#include "complete/numbers.h"

namespace orvan::grammar::complete
{
/// "d": path data. It is drawn up to its first fault: every segment before it is delivered. Segments arrive as with the
/// plain import, except that an arc is at most a quarter turn to a cubic, with control points at 4/3·tan(θ/4), and that
/// radii below zero count by their magnitude. A segment that leaves the range of finite numbers is a fault. "none" and
/// the empty text are an empty path. All errors that a sink throws pass.
Progress ParsePath(std::string_view text, PathSink& sink);

/// The two ways of reading path data, "none" aside, which yield the same. `ParsePath` takes the first where the
/// processor can.
/// @{
Progress ParsePathFromTape(std::string_view text, PathSink& sink); ///< Only where `NumberTape::IsAvailable`.
Progress ParsePathByNumbers(std::string_view text, PathSink& sink);
/// @}

/// "points": pairs of numbers, parted by blanks, a comma, or nothing where none is needed; the first is a move, the
/// others are lines. Nothing is closed. All pairs before a fault are delivered; a last number without its partner is a
/// fault at that number.
Progress ParsePoints(std::string_view text, PathSink& sink);

/// The property "d": "path(…)".
struct PathFunction
{
	std::string_view data;   ///< Path data to be read with `ParsePath`. Points into the value.
	bool hasEscapes = false; ///< Whether `data` is to go through `ResolveEscapes` first.
};

/// The property "d": "path(…)", or "none" (`nothing`). The data itself is not looked at; where it has a fault, browsers
/// drop the declaration.
Parsed ParsePathFunction(std::string_view text, PathFunction& path) noexcept;
} // namespace orvan::grammar::complete
