// SPDX-License-Identifier: MIT
#pragma once

#include "grammar.h"

namespace orvan::grammar
{
/// The two ways of reading path data, which yield the same. `ParsePath` takes the first where the processor can.
/// @{
Parsed ParsePathFromTape(std::string_view text, PathSink& sink); ///< Only where `NumberTape::IsAvailable`.
Parsed ParsePathByNumbers(std::string_view text, PathSink& sink);
/// @}
} // namespace orvan::grammar
