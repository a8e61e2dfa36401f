// SPDX-License-Identifier: MIT
/// The shapes that clip an element without being elements themselves.
#pragma once

#include "measure.h"

namespace orvan::drawing
{

/// The outline of the shape that clips the element of `frame`, in the element's coordinates; empty when nothing is left
/// of it. `extent` is that of the element.
Result<Outline> GetClipOutline(const SVGClipShape& shape, const Frame& frame, Extent& extent) noexcept;

} // namespace orvan::drawing
