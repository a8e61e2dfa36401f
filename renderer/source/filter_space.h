// SPDX-License-Identifier: MIT
/// The grid of pixels that a filter works on.
#pragma once

#include "drawing/geometry.h"
#include "filters/raster.h"

namespace orvan::cairo
{

/// The grid lies along the axes of the filtered element's coordinates, as filters want it, and its pixels are as large
/// as those of the picture. Where the element is neither turned nor skewed nor mirrored they are the picture's own.
struct FilterSpace
{
	FilterSpace() noexcept = default;

	/// `user` leads from the element's coordinates to those of the picture; `detail` is how many pixels there are for
	/// one of the picture's units.
	FilterSpace(const Matrix2d& user, double detail) noexcept;

	Vector2d scale{1.0, 1.0}; ///< Pixels for a user unit.
	Matrix2d userToPixels;
	Matrix2d pictureToPixels;
	bool isExact = true; ///< The pixels are those of the picture, mirrored perhaps.

	/// The pixels that a rectangle of the element's coordinates touches.
	filters::Box RoundOut(const drawing::Rectangle& user) const noexcept;
	/// The pixels most of which lie in such a rectangle; at least one in each direction.
	filters::Box Round(const drawing::Rectangle& user) const noexcept;
	/// The pixels that a rectangle of the picture touches.
	filters::Box FromPicture(const drawing::Rectangle& picture) const noexcept;
};

} // namespace orvan::cairo
