// SPDX-License-Identifier: MIT
/// Gradients as they are to be drawn: everything that links and units leave open settled.
#pragma once

#include "chains.h"
#include "frame.h"

namespace orvan::drawing
{

/// One colour of a gradient.
struct Stop
{
	double offset = 0.0; ///< 0 to 1, never smaller than that of the stop before.
	Color color;
	double alpha = 1.0;
};

/// What a gradient says, its links followed, before it is laid over an element.
struct GradientDefinition
{
	Chain chain;
	bool isRadial = false;
	SVGGradientUnits units = SVGGradientUnits::objectBoundingBox;
	SVGSpreadMethod spread = SVGSpreadMethod::pad;
	BaseArray<Stop> stops;
	Style style{};       ///< What is in force in the gradient: lengths may be multiples of its font.
	Viewport viewport{}; ///< What percentages refer to: as in browsers, where the gradient stands.
};

/// Where a gradient runs: from one circle to another, or, for a linear one, between two points.
struct GradientGeometry
{
	Vector2d from;
	Vector2d to;
	double fromRadius = 0.0;
	double toRadius = 0.0;

	friend bool operator==(const GradientGeometry&, const GradientGeometry&) noexcept = default;
};

bool IsGradient(ObjectBase* element) noexcept;

/// Reads a gradient. A gradient of very many stops is read with as many of them as a picture can show.
Result<GradientDefinition> GetGradient(Scene& scene, ObjectBase* element) noexcept;

/// The geometry in the coordinates that the units name.
GradientGeometry GetGeometry(const GradientDefinition& gradient) noexcept;

} // namespace orvan::drawing
