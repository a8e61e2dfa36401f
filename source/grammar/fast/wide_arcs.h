// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace orvan::grammar
{
/// A number of each of eight arcs.
struct alignas(64) ArcRow
{
	static constexpr std::size_t kLanes = 8;

	double& operator[](std::size_t lane)
	{
		return items[lane];
	}

	double operator[](std::size_t lane) const
	{
		return items[lane];
	}

	std::array<double, kLanes> items;
};

/// Up to eight arcs side by side.
struct ArcRows
{
	std::size_t count = 0;
	std::uint8_t areLarge = 0; ///< A bit for each.
	std::uint8_t areSweep = 0;
	ArcRow startX, startY;
	ArcRow radiusX, radiusY;
	ArcRow rotation;
	ArcRow endX, endY;
};

/// A cubic of each of eight arcs.
struct CubicRows
{
	ArcRow x1, y1, x2, y2, x, y;
};

/// What eight arcs are bent to.
struct BentArcs
{
	/// As many as a full turn makes.
	static constexpr std::size_t kMostCubics = 4;

	/// A bit for each. The others leave the range of finite numbers, or rounding would make a fifth cubic of them.
	std::uint8_t areBent = 0;
	ArcRow counts; ///< How many of the cubics are each arc's.
	std::array<CubicRows, kMostCubics> cubics;
};

/// Bends arcs by the same operations in the same order as `DeliverArc`, so that the cubics are the same to the last
/// bit, but for the last one's end. For processors on which `NumberTape::IsAvailable`; on others, nothing is bent.
void BendArcs(const ArcRows& arcs, BentArcs& bent);
} // namespace orvan::grammar
