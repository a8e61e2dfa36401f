// SPDX-License-Identifier: MIT
#pragma once

#include "shared/arc.h"

#include <algorithm>
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
	/// For one that there is room for.
	void Add(const Arc& arc)
	{
		const std::size_t lane = count++;
		areLarge |= static_cast<std::uint8_t>(arc.isLarge << lane);
		areSweep |= static_cast<std::uint8_t>(arc.isSweep << lane);
		startX[lane] = arc.startX;
		startY[lane] = arc.startY;
		radiusX[lane] = arc.radiusX;
		radiusY[lane] = arc.radiusY;
		rotation[lane] = arc.rotation;
		endX[lane] = arc.endX;
		endY[lane] = arc.endY;
	}

	std::size_t count = 0;
	std::uint8_t areLarge = 0; ///< A bit for each.
	std::uint8_t areSweep = 0;
	ArcRow startX, startY;
	ArcRow radiusX, radiusY;
	ArcRow rotation;
	ArcRow endX, endY;
};

/// A point of each of eight arcs: x and y of the first, the third and so on, and those of the others.
struct PointRow
{
	const double* operator[](std::size_t lane) const
	{
		return points[lane % 2].items.data() + lane / 2 * 2;
	}

	std::array<ArcRow, 2> points;
};

/// A cubic of each of eight arcs.
struct CubicRows
{
	PointRow first, second, end;
};

/// What eight arcs are bent to.
struct BentArcs
{
	/// As many as a full turn makes.
	static constexpr std::size_t kMostCubics = 4;

	/// Puts the cubics of a bent arc, the last of which ends where that does, into room for as many as can be.
	void Put(std::size_t lane, const ArcRows& arcs, PathSegment* room) const
	{
		const auto cubicCount = static_cast<std::size_t>(counts[lane]);
		for (std::size_t i = 0; i != kMostCubics; ++i)
		{
			double* const to = room[i].coordinates.data();
			std::copy_n(cubics[i].first[lane], 2, to);
			std::copy_n(cubics[i].second[lane], 2, to + 2);
			std::copy_n(cubics[i].end[lane], 2, to + 4);
			room[i].kind = i < cubicCount ? PathSegment::Kind::cubic : PathSegment::Kind::none;
		}
		room[cubicCount - 1].coordinates[4] = arcs.endX[lane];
		room[cubicCount - 1].coordinates[5] = arcs.endY[lane];
	}

	/// A bit for each. The others leave the range of finite numbers, or rounding would make a fifth cubic of them, or
	/// they are no arcs at all: they have no radius, or end where they start.
	std::uint8_t areBent = 0;
	ArcRow counts; ///< How many of the cubics are each arc's.
	std::array<CubicRows, kMostCubics> cubics;
};

/// Bends arcs by the same operations in the same order as `DeliverArc`, so that the cubics are the same to the last
/// bit, but for the last one's end. For processors on which `NumberTape::IsAvailable`; on others, nothing is bent.
void BendArcs(const ArcRows& arcs, BentArcs& bent);
} // namespace orvan::grammar
