// SPDX-License-Identifier: MIT
/// Finding what is drawn at a place.
#pragma once

#include "box_tree.h"
#include "record.h"

namespace orvan::geometry
{

/// The shapes of a picture by place.
class HitIndex
{
public:
	static Result<HitIndex> Create(const Record& record) noexcept;

	/// Takes over which shapes some nodes have now, and where these lie. Of no node behind the first one may the parent
	/// be within a marker before it. False when it is time to make the index anew.
	Result<bool> Update(const Record& record, std::int32_t first, std::int32_t end) noexcept;

	/// Calls `visit` with the node of each shape whose box, clips considered, meets `area` of the view.
	template <typename Visit>
	void ForEachIn(const Rectangle& area, Visit visit) const noexcept
	{
		_tree.ForEachIn(area, [&](std::uint32_t index) { visit(_nodes[index]); });
	}

	/// The nearest node, of this one and those around it, that cuts something off; -1 for none.
	std::int32_t GetCutter(std::int32_t node) const noexcept
	{
		return node >= 0 ? _cutters[static_cast<std::size_t>(node)] : -1;
	}

private:
	/// Calls `take` with the node of each shape among some nodes and the box of what of it may react, and takes down
	/// what cuts the nodes off.
	template <typename Take>
	Result<void> ForEachReacting(const Record& record, std::int32_t first, std::int32_t end, Take take) noexcept;

	BoxTree _tree;
	BaseArray<std::int32_t> _nodes;   ///< By the tree's indices.
	BaseArray<std::int32_t> _cutters; ///< By node.
	static constexpr std::size_t kNone = ~std::size_t{0};
	BaseArray<std::size_t> _places; ///< The tree's index, by node; `kNone` for those that have none.
	BaseArray<std::size_t> _free;   ///< Indices of the tree whose boxes are empty.
	std::size_t _updateCount = 0;
};

/// What is at a point of the view.
Result<SVGHits> FindHits(const Record& record, const HitIndex& index, const Vector2d& point,
						 const SVGHitOptions& options) noexcept;

/// What is painted and meets an area of the view, or lies inside of it.
Result<SVGHits> FindHitsIn(const Record& record, const HitIndex& index, const Rectangle& area, bool isInside) noexcept;

} // namespace orvan::geometry
