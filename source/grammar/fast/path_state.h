// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace orvan::grammar
{
/// Where reading stands between two segments of a path: all that the next one may depend on.
struct PathState
{
	/// What the last segment was.
	enum class Curve : std::uint8_t
	{
		none,
		cubic,
		quadratic
	};

	double startX = 0; ///< Of the subpath.
	double startY = 0;
	double currentX = 0;
	double currentY = 0;
	double controlX = 0; ///< The last control point of a curve.
	double controlY = 0;
	Curve curve = Curve::none;
};
} // namespace orvan::grammar
