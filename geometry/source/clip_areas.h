// SPDX-License-Identifier: MIT
/// Clip paths and viewports as areas that paths end at.
#pragma once

#include "record.h"

namespace orvan::geometry
{

/// What is left of paths within everything that cuts off their nodes. The areas are made when they are first needed.
class ClipAreas
{
public:
	/// `toResult` leads from the view to the coordinates of the paths.
	ClipAreas(const Record& record, const Matrix2d& toResult) noexcept : _record(record), _toResult(toResult)
	{
	}

	/// True when nothing cuts a node off within `bounds`.
	Result<bool> IsWhole(std::int32_t node, const Rectangle& bounds) noexcept;

	/// Cuts an outline of a node, whose area is that by `rule`. What is left is the same by both rules; it is empty
	/// when nothing is. Fails with the illegal-argument error for what is too intricate.
	Result<Outline> Cut(std::int32_t node, const Outline& outline, SVGFillRule rule) noexcept;

private:
	struct Area
	{
		Outline outline;
		/// Inside of it is nothing but the area; empty where no such rectangle is known.
		Rectangle inside;
		bool isKnown = false;
		bool isIntricate = false; ///< It could not be made.
	};

	/// Calls `visit` with each area that cuts off a node, until one is an error.
	template <typename Visit>
	Result<void> ForEachArea(std::int32_t node, Visit visit) noexcept;
	Result<const Area*> GetRegion(std::int32_t region) noexcept;
	Result<Outline> MakeRegion(const ClipRegion& region) noexcept;
	Result<const Area*> GetViewport(std::int32_t node) noexcept;
	Result<Outline> UniteShapes(const ClipRegion& region) noexcept;

	const Record& _record;
	const Matrix2d _toResult;
	BaseArray<Area> _regions;   ///< By region.
	BaseArray<Area> _viewports; ///< By the nodes' edges.
};

} // namespace orvan::geometry
