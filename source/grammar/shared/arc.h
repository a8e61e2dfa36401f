// SPDX-License-Identifier: MIT
#pragma once

#include "grammar.h"

namespace orvan::grammar
{
/// An elliptical arc of path data, in absolute coordinates, as written.
struct Arc
{
	double startX;
	double startY;
	double radiusX;  ///< Not negative.
	double radiusY;  ///< Not negative.
	double rotation; ///< Of the ellipse's x axis, in degrees.
	bool isLarge;
	bool isSweep;
	double endX;
	double endY;
};

/// Delivers an arc as cubics of at most a quarter turn each, the last of which ends bitwise on the arc's end point. An
/// arc that ends where it starts delivers nothing; one without a radius, and one whose conversion leaves the range of
/// finite numbers, is a straight line. Start and end must be finite.
void DeliverArc(const Arc& arc, PathSink& sink);

namespace library
{
/// The same with the library's own conversion, which is what says where the cubics lie.
void DeliverArc(const Arc& arc, PathSink& sink);
} // namespace library
} // namespace orvan::grammar
