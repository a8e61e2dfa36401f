// SPDX-License-Identifier: MIT
/// What applies to an element as one picture: filter, clip path, mask, opacity and
/// blend mode, in this order.
///
/// An element with such effects is drawn into a layer as large as the part of the picture that can change, and the
/// layer is then put through the clip, the mask and the opacity. Two shortcuts do without: a clip path of one plain
/// shape becomes a clip of the drawing library's, and a shape's opacity goes into its paint where there is but one.
#pragma once

#include "canvas.h"
#include "drawing/measure.h"

namespace orvan::cairo
{

/// Draws `content`, which is that of `frame`, into `sink` with `effects`. The sink draws on `canvas`.
Result<void> Compose(const Canvas& canvas, const drawing::Frame& frame, const drawing::Effects& effects,
					 drawing::Extent& extent, const drawing::Content& content, drawing::Sink& sink) noexcept;

} // namespace orvan::cairo
