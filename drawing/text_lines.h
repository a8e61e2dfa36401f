// SPDX-License-Identifier: MIT
/// The lines that decorate texts, as outlines.
#pragma once

#include "outline.h"
#include "svg_elements.h"

namespace orvan::drawing
{

/// The lines of "text-decoration", in the order of their flags.
enum class TextLineKind : std::int32_t
{
	underline = static_cast<std::int32_t>(SVGTextDecoration::underline),
	overline = static_cast<std::int32_t>(SVGTextDecoration::overline),
	lineThrough = static_cast<std::int32_t>(SVGTextDecoration::lineThrough),
};

/// A piece of a line along letters that stand in a row: along the first axis, letters on the side of smaller values of
/// the second.
struct TextLine
{
	TextLineKind kind = TextLineKind::underline;
	SVGTextDecorationStyle style = SVGTextDecorationStyle::solid;
	double start = 0.0;
	double end = 0.0;    ///< Not before the start.
	double center = 0.0; ///< Below the baseline.
	double thickness = 0.0;
};

/// Appends the areas that a line covers; to be filled by the nonzero rule. Dashes and dots are spread evenly, so that
/// the line ends with one, and a line with too many of them is solid.
Result<void> AddTextLine(const TextLine& line, const Matrix2d& place, Outline& outline) noexcept;

} // namespace orvan::drawing
