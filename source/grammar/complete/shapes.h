// SPDX-License-Identifier: MIT
#pragma once

/// The shapes of "clip-path", as browsers read them. See values.h for what holds for all.

#include "complete/paths.h"

namespace orvan::grammar::complete
{
/// The numbers are those of `SVGClipShapeType`.
enum class ClipShapeKind
{
	box,
	inset,
	circle,
	ellipse,
	polygon,
	path,
	rect,
	xywh
};

/// The numbers are those of `SVGReferenceBox`.
enum class ReferenceBox
{
	strokeBox,
	fillBox,
	viewBox
};

/// What stands for the radii "closest-side" and "farthest-side": lengths below zero, as in `SVGClipShape`.
inline constexpr Length kClosestSide{-1, LengthUnit::number};
inline constexpr Length kFarthestSide{-2, LengthUnit::number};

/// A shape without its lengths, which go to a sink in the order that `SVGClipShape` describes.
struct ClipShape
{
	ClipShapeKind kind = ClipShapeKind::box;
	ReferenceBox box = ReferenceBox::strokeBox;
	bool isEvenOdd = false;
	PathFunction path; ///< Of a path: its data, which is not looked at.
};

/// "clip-path", where it is a shape, a box, or both in any order. Lengths may have been delivered before a value is
/// refused.
Parsed ParseClipShape(std::string_view text, Source source, ClipShape& shape, LengthSink& lengths);
} // namespace orvan::grammar::complete
