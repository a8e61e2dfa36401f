// SPDX-License-Identifier: MIT
/// Paths as the texts of other formats.
#pragma once

#include "svg_geometry.h"

#include <string>

namespace orvan::program
{

/// A number in the shortest form that reads back as the same double.
std::string ToShortestText(double number);

/// SVG path data: absolute commands, numbers in their shortest form.
std::string ToPathData(const BaseArray<SVGPathCommand>& commands);

/// The same of one of the paths of a normalised document.
std::string ToPathData(const SVGNormalizedPaths& paths, std::size_t path);

} // namespace orvan::program
