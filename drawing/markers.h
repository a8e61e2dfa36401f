// SPDX-License-Identifier: MIT
/// Markers: what is drawn at the vertices of a shape.
#pragma once

#include "scene.h"
#include "sink.h"

namespace orvan::drawing
{

/// True when a shape may have markers: it is a path, a polygon, a polyline or a line, and its style names some.
bool HasMarkers(const Frame& frame) noexcept;

/// Tells `sink` about the markers of a shape, in the order of its vertices.
Result<void> DrawMarkers(Scene& scene, const Frame& frame, const Outline& outline, Sink& sink) noexcept;

} // namespace orvan::drawing
