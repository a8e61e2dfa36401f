// SPDX-License-Identifier: MIT
#pragma once

#include "grammar.h"
#include "shared/arc.h"

namespace orvan::grammar
{
/// As `ParsePath`, with `deliverArc` for the arcs: with that of the library, the path is the library's to the last bit.
Parsed ParsePathWith(std::string_view text, PathSink& sink, void (*deliverArc)(const Arc&, PathSink&));
} // namespace orvan::grammar
