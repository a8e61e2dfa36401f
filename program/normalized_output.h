// SPDX-License-Identifier: MIT
/// Plain paths in the forms that other programs read.
#pragma once

#include "svg_geometry.h"

#include <optional>
#include <string>
#include <string_view>

namespace orvan::program
{

enum class NormalizedFormat
{
	svg,
	json,
	hpgl,   ///< For pen plotters: 40 units a millimetre, a pixel 1/96 inch, y upwards.
	gcode,  ///< For machines with one tool: millimetres, y upwards, the tool down at Z-1 and up at Z1.
	arrays, ///< The columns as arrays of NumPy, in one file (.npz).
};

/// The format of a name, as on the command line or as the end of a file's name; none for others.
std::optional<NormalizedFormat> FindFormat(std::string_view name);

/// The end of the names of files in a format.
std::string_view GetSuffix(NormalizedFormat format);

/// True when a format knows straight lines only.
bool NeedsLines(NormalizedFormat format);

/// A whole file, in any format but svg.
std::string FormatNormalized(const SVGNormalizedPaths& paths, NormalizedFormat format);

/// The file of a normalised document. Throws `Failure`.
std::string FormatNormalized(const SVGDocumentRef& document);

} // namespace orvan::program
