// SPDX-License-Identifier: MIT
#pragma once

#include "shared/arc.h"

namespace orvan::grammar
{
/// Delivers an arc of a circle and of clearly less than half a turn, as most are, by square roots alone; the library's
/// conversion takes two arc tangents and, for each end of a cubic, sine and cosine. False, and nothing delivered, for
/// all other arcs, and for those whose number of cubics hangs on how the library's angles are rounded.
///
/// The cubics are the library's, with exact ends, and each control point stands within two units in the last place of
/// where the library's formula has it, for the largest among the arc's coordinates, its control points' and the radius.
/// The library itself, whose centre and angles are rounded, strays further from its formula: for flat arcs, by the
/// ratio of radius to chord. Start and end must be finite and differ.
bool DeliverShortArc(const Arc& arc, PathSink& sink);
} // namespace orvan::grammar
