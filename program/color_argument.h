// SPDX-License-Identifier: MIT
/// Colours on the command line.
#pragma once

#include "orvan/geometry.h"

#include <optional>
#include <string>

namespace orvan::program
{

/// The colour that a text stands for in an SVG file: a keyword, "#rgb", "#rrggbb" or "rgb(…)"; "none" is no colour.
/// Throws `UsageFailure` for anything else.
std::optional<Color> ParseColor(const std::string& text);

} // namespace orvan::program
