// SPDX-License-Identifier: MIT
/// How a camera was held: what the Exif data of a JPEG file say, and what that makes of its pixels.
#pragma once

#include "image_data.h"

namespace orvan::images
{

/// The number of the orientation in a JPEG file, 1 to 8; 1, which is upright, when the file says nothing.
int FindOrientation(Bytes file) noexcept;

/// The pixels turned and mirrored so that they are upright; the same ones where they are, and nothing when there is no
/// memory for others.
filters::Raster MakeUpright(filters::Raster raster, int orientation) noexcept;

} // namespace orvan::images
