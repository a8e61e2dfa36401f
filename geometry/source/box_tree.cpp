// SPDX-License-Identifier: MIT
#include "box_tree.h"

#include <algorithm>

namespace orvan::geometry
{
namespace
{

using drawing::Rectangle;

/// The place of a point on Hilbert's curve through a square of 2^16 by 2^16: near on the curve is near in the plane.
std::uint32_t GetHilbertPlace(std::uint32_t x, std::uint32_t y) noexcept
{
	std::uint32_t place = 0;
	for (std::uint32_t side = 1u << 15; side > 0; side /= 2)
	{
		const std::uint32_t right = (x & side) != 0 ? 1 : 0;
		const std::uint32_t lower = (y & side) != 0 ? 1 : 0;
		place += side * side * ((3 * right) ^ lower);
		if (lower != 0)
			continue;
		if (right != 0)
		{
			x = 65535 - x;
			y = 65535 - y;
		}
		std::swap(x, y);
	}
	return place;
}

} // namespace

Result<BoxTree> BoxTree::Create(const BaseArray<Rectangle>& boxes) noexcept
{
	struct Leaf
	{
		std::uint32_t place;
		std::uint32_t index;
	};
	Rectangle all;
	for (const Rectangle& box : boxes)
	{
		if (box.IsFinite())
			all.Include(box);
	}
	const auto scale = [](double value, double from, double size)
	{
		return size > 0.0 ? static_cast<std::uint32_t>(std::clamp((value - from) / size, 0.0, 1.0) * 65535.0) : 0;
	};
	BaseArray<Leaf> leaves;
	ORVAN_TRY(leaves.Reserve(boxes.GetCount()));
	for (std::size_t i = 0; i < boxes.GetCount(); i++)
	{
		const Rectangle& box = boxes[i];
		if (!box.IsFinite())
			continue;
		const std::uint32_t x = scale(box.left + box.GetWidth() / 2.0, all.left, all.GetWidth());
		const std::uint32_t y = scale(box.top + box.GetHeight() / 2.0, all.top, all.GetHeight());
		ORVAN_TRY(leaves.Append({GetHilbertPlace(x, y), static_cast<std::uint32_t>(i)}));
	}
	std::sort(leaves.begin(), leaves.end(), [](const Leaf& a, const Leaf& b) { return a.place < b.place; });

	BoxTree tree;
	ORVAN_TRY(tree._indices.Reserve(leaves.GetCount()));
	ORVAN_TRY(tree._boxes.Reserve(leaves.GetCount() + leaves.GetCount() / (kFanOut - 1) + 8));
	for (const Leaf& leaf : leaves)
	{
		ORVAN_TRY(tree._indices.Append(leaf.index));
		ORVAN_TRY(tree._boxes.Append(boxes[leaf.index]));
	}
	Level level{0, leaves.GetCount()};
	while (level.count > 0)
	{
		ORVAN_TRY(tree._levels.Append(level));
		if (level.count <= kFanOut)
			break;
		const Level above{level.first + level.count, (level.count + kFanOut - 1) / kFanOut};
		for (std::size_t i = 0; i < above.count; i++)
		{
			Rectangle around;
			for (std::size_t j = i * kFanOut; j < std::min((i + 1) * kFanOut, level.count); j++)
				around.Include(tree._boxes[level.first + j]);
			ORVAN_TRY(tree._boxes.Append(around));
		}
		level = above;
	}
	return tree;
}

} // namespace orvan::geometry
