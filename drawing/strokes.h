// SPDX-License-Identifier: MIT
/// Which of its paints an element has, and how wide its stroke is.
#pragma once

#include "frame.h"
#include "outline.h"

namespace orvan::drawing
{

/// True when something is filled, with whatever paint.
bool HasFill(const Style& style) noexcept;
/// True when something is stroked, with whatever paint, and the stroke has a width.
bool HasStroke(const Place& place) noexcept;
/// True when the stroke's width is in the units of what the picture is shown in, whatever the transforms.
bool IsStrokeUnscaled(const Frame& frame) noexcept;
/// The width of strokes in user units; 0 when it makes no sense.
double GetStrokeWidth(const Place& place) noexcept;
/// The box of an outline with the solid stroke that it has there, tight around corners and ends. `toBox` leads from the
/// coordinates of both to those of the box.
Rectangle GetStrokeBox(const Place& place, const Outline& outline, const Matrix2d& toBox) noexcept;

} // namespace orvan::drawing
