// SPDX-License-Identifier: MIT
/// The outlines of the elements that have one.
#pragma once

#include "frame.h"
#include "outline.h"

namespace orvan::drawing
{

/// The kinds of elements that are outlines.
enum class ShapeKind
{
	none,
	path, ///< Polygons and polylines included.
	rectangle,
	circle, ///< Ellipses included.
	line,
};

/// Which kind of shape an element is, by its class.
ShapeKind GetShapeKind(ObjectBase* element) noexcept;

/// The outline of a shape whose frame is `frame`; empty when its size or radius is.
Result<Outline> GetOutline(ShapeKind kind, ObjectBase* element, const Frame& frame) noexcept;

} // namespace orvan::drawing
