// SPDX-License-Identifier: MIT
/// feDiffuseLighting and feSpecularLighting: a surface as high as a picture is opaque, under a light.
#pragma once

#include "raster.h"

namespace orvan::filters
{

struct Point3
{
	float x = 0.0F;
	float y = 0.0F;
	float z = 0.0F;
};

enum class LightKind
{
	distant,
	point,
	spot,
};

/// A light, in pixels.
struct Light
{
	LightKind kind = LightKind::distant;
	Point3 direction;         ///< Of a distant light: towards it, of length 1.
	Point3 position;          ///< Of the others.
	Point3 target;            ///< What a spot light points at.
	float exponent = 1.0F;    ///< How a spot light fades away from its axis.
	float coneCosine = -2.0F; ///< Beyond this angle from its axis a spot light does not shine; below -1 it has none.
	std::uint32_t color = 0;  ///< Opaque.
};

struct Surface
{
	float heightX = 1.0F; ///< Height of what is opaque, in pixels, as it counts for slopes along x, and along y.
	float heightY = 1.0F;
	float height = 1.0F;   ///< Height as the lights see it.
	float constant = 1.0F; ///< kd or ks.
	float exponent = 1.0F; ///< Of specular light.
	bool isSpecular = false;
};

/// `input`, a picture with the edges `edges`, as a surface.
Raster Illuminate(const Raster& input, const Box& edges, const Surface& surface, const Light& light, const Box& area,
				  const Alarm& alarm) noexcept;

} // namespace orvan::filters
