// SPDX-License-Identifier: MIT
/// Clip paths.
#pragma once

#include "canvas.h"
#include "drawing/measure.h"

namespace orvan::cairo
{

/// The clip path that `effects` names, or null: a reference that leads to nothing, or back to where it comes from,
/// counts as none.
Result<SVGElementRef> FindClipPath(Job& job, const drawing::Effects& effects, const drawing::Frame& frame) noexcept;

/// Clips the canvas to a shape that an element has instead of a clip path; false, and no change, when it is too
/// intricate. `extent` is that of the element.
Result<bool> ClipToShape(const Canvas& canvas, const SVGClipShape& shape, const drawing::Frame& frame,
						 drawing::Extent& extent) noexcept;

/// The area of such a shape, as coverage.
Result<PatternPtr> DrawClipShape(const Canvas& canvas, const SVGClipShape& shape, const drawing::Frame& frame,
								 drawing::Extent& extent) noexcept;

/// Clips the canvas to a clip path of at most one plain shape; false, and no change, when it is more than that.
Result<bool> ClipSimply(const Canvas& canvas, const SVGElementRef& clip, const drawing::Frame& user,
						drawing::Extent& extent) noexcept;

/// The areas of a clip path's shapes together, as coverage. `user` is the element that is clipped, with
/// its extent.
Result<PatternPtr> DrawClipPath(const Canvas& canvas, const SVGElementRef& clip, const drawing::Frame& user,
								drawing::Extent& extent) noexcept;

} // namespace orvan::cairo
