// SPDX-License-Identifier: MIT
/// Where the clusters of a text stand.
#pragma once

#include "text_shaping.h"

namespace orvan::drawing
{

/// Where a cluster stands.
struct TextPosition
{
	/// The start of the cluster on its line: on the baseline, or on the middle of a vertical line; without what moves
	/// the baseline.
	Vector2d point;
	double turn = 0.0;     ///< How a path turns the line, in radians.
	double rotation = 0.0; ///< How the cluster itself is turned, in radians.
	double pivot = 0.0;    ///< How far along the line the point is that it is turned around.
	double stretch = 1.0;  ///< How much longer it is along the line.
	bool isHidden = false; ///< It would stand beside the ends of its path.
};

/// The positions of all clusters, in their order, by the text layout algorithm of SVG 2: lists of positions and shifts,
/// lengths that are asked for, anchors, paths.
Result<BaseArray<TextPosition>> PlaceText(const TextContent& content, const ShapedText& text) noexcept;

} // namespace orvan::drawing
