// SPDX-License-Identifier: MIT
/// The boxes of what was recorded.
#pragma once

#include "record.h"

namespace orvan::geometry
{

/// The box of a node with all below it, once it is transformed by `to` from the node's own coordinates. Tight: where a
/// transform turns or slants, the curves are transformed and not their boxes.
Rectangle GetBox(const Record& record, std::int32_t node, SVGBoxKind kind, const Matrix2d& to) noexcept;

/// The same in the view. Each node is looked at once for all boxes together, however much is turned.
Rectangle GetViewBox(const Record& record, std::int32_t node, SVGBoxKind kind) noexcept;

/// The box of the stroke of a shape that has one.
Rectangle GetStrokeBox(const Node& node, const RecordedShape& shape, const Matrix2d& to) noexcept;

/// The box of a clip path's area, transformed from the coordinates of the view.
Rectangle GetClipBox(const Record& record, std::int32_t region, const Matrix2d& to) noexcept;

/// The transform back; the identity of one that has none.
Matrix2d InvertOrNot(const Matrix2d& matrix) noexcept;

} // namespace orvan::geometry
