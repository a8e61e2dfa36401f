// SPDX-License-Identifier: MIT
/// Vectors, lines, cubics and strokes: the arithmetic that measuring has as well, by the names that it goes by here.
#pragma once

#include "drawing/segments.h"
#include "drawing/stroke_bounds.h"
#include "drawing/stroke_parts.h"

namespace orvan::geometry
{

using drawing::Cross;
using drawing::Curve;
using drawing::Dot;
using drawing::FindMiter;
using drawing::FindTurns;
using drawing::ForEachCusp;
using drawing::GetStrokeBounds;
using drawing::IsCusp;
using drawing::IsMitred;
using drawing::IsUsable;
using drawing::KeepsCircles;
using drawing::kLargest;
using drawing::LengthOf;
using drawing::Mix;
using drawing::Normalize;
using drawing::Rectangle;
using drawing::StrokeVisitor;
using drawing::Times;
using drawing::Turn;
using drawing::VisitSegments;
using drawing::VisitStroke;

} // namespace orvan::geometry
