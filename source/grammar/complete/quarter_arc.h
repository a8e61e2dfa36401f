// SPDX-License-Identifier: MIT
#pragma once

#include "shared/arc.h"

namespace orvan::grammar::complete
{
/// Delivers an arc as cubics of at most a quarter turn each, whose control points stand 4/3·tan(θ/4) of the radius from
/// their ends: within 2.8e-4 of the radius everywhere. The last one ends bitwise on the arc's end point. Signs of radii
/// do not count. An arc that ends where it starts delivers nothing; one without a radius, and one whose conversion
/// leaves the range of finite numbers, is a straight line. Start and end must be finite.
void DeliverArc(const Arc& arc, PathSink& sink);
} // namespace orvan::grammar::complete
