// SPDX-License-Identifier: MIT
/// Finding boxes by place.
#pragma once

#include "drawing/geometry.h"
#include "orvan/array.h"

#include <cstdint>

namespace orvan::geometry
{

/// Boxes in a tree that is packed into one array: neighbours in the plane stand together, and every sixteen of them
/// have a box around them one level up. Boxes that change keep their place in it.
class BoxTree
{
public:
	/// Empty boxes, and such that are not finite, are never found.
	static Result<BoxTree> Create(const BaseArray<drawing::Rectangle>& boxes) noexcept;
	/// Gives the box of an index another place.
	void Set(std::size_t index, const drawing::Rectangle& box) noexcept;

	/// Calls `visit` with the index of each box that meets `area`, in no order.
	template <typename Visit>
	void ForEachIn(const drawing::Rectangle& area, Visit visit) const noexcept
	{
		if (!_levels.IsEmpty())
			VisitBelow(area, _levels.GetCount() - 1, 0, _levels[_levels.GetCount() - 1].count, visit);
	}

private:
	static constexpr std::size_t kFanOut = 16;

	/// The boxes of one level, from the leaves upwards.
	struct Level
	{
		std::size_t first;
		std::size_t count;
	};

	template <typename Visit>
	void VisitBelow(const drawing::Rectangle& area, std::size_t level, std::size_t first, std::size_t end,
					Visit& visit) const noexcept
	{
		for (std::size_t i = first; i < end; i++)
		{
			if (area.Intersect(_boxes[_levels[level].first + i]).IsEmpty())
				continue;
			if (level == 0)
				visit(_indices[i]);
			else
			{
				const std::size_t below = i * kFanOut;
				VisitBelow(area, level - 1, below, std::min(below + kFanOut, _levels[level - 1].count), visit);
			}
		}
	}

	/// The box around those below one of a level.
	drawing::Rectangle GetAround(std::size_t level, std::size_t index) const noexcept;

	BaseArray<drawing::Rectangle> _boxes; ///< Level after level.
	BaseArray<Level> _levels;
	BaseArray<std::uint32_t> _indices; ///< Of the boxes in the lowest level.
	BaseArray<std::uint32_t> _leaves;  ///< Where the box of an index stands in the lowest level.
};

} // namespace orvan::geometry
