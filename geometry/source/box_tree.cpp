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
		const Rectangle box = boxes[i].IsFinite() ? boxes[i] : Rectangle{0.0, 0.0, 0.0, 0.0};
		const std::uint32_t x = scale(box.left + box.GetWidth() / 2.0, all.left, all.GetWidth());
		const std::uint32_t y = scale(box.top + box.GetHeight() / 2.0, all.top, all.GetHeight());
		ORVAN_TRY(leaves.Append({GetHilbertPlace(x, y), static_cast<std::uint32_t>(i)}));
	}
	std::sort(leaves.begin(), leaves.end(), [](const Leaf& a, const Leaf& b) { return a.place < b.place; });

	BoxTree tree;
	ORVAN_TRY(tree._indices.Reserve(leaves.GetCount()));
	ORVAN_TRY(tree._boxes.Reserve(leaves.GetCount() + leaves.GetCount() / (kFanOut - 1) + 8));
	ORVAN_TRY(tree._leaves.Resize(leaves.GetCount()));
	for (const Leaf& leaf : leaves)
	{
		tree._leaves[leaf.index] = static_cast<std::uint32_t>(tree._indices.GetCount());
		ORVAN_TRY(tree._indices.Append(leaf.index));
		ORVAN_TRY(tree._boxes.Append(boxes[leaf.index].IsFinite() ? boxes[leaf.index] : Rectangle()));
	}
	Level level{0, leaves.GetCount()};
	while (level.count > 0)
	{
		ORVAN_TRY(tree._levels.Append(level));
		if (level.count <= kFanOut)
			break;
		const Level above{level.first + level.count, (level.count + kFanOut - 1) / kFanOut};
		for (std::size_t i = 0; i < above.count; i++)
			ORVAN_TRY(tree._boxes.Append(tree.GetAround(tree._levels.GetCount(), i)));
		level = above;
	}
	return tree;
}

Rectangle BoxTree::GetAround(std::size_t level, std::size_t index) const noexcept
{
	const Level& below = _levels[level - 1];
	Rectangle around;
	for (std::size_t i = index * kFanOut; i < std::min((index + 1) * kFanOut, below.count); i++)
		around.Include(_boxes[below.first + i]);
	return around;
}

void BoxTree::Set(std::size_t index, const Rectangle& box) noexcept
{
	std::size_t at = _leaves[index];
	_boxes[at] = box.IsFinite() ? box : Rectangle();
	for (std::size_t level = 1; level < _levels.GetCount(); level++)
	{
		at /= kFanOut;
		_boxes[_levels[level].first + at] = GetAround(level, at);
	}
}

} // namespace orvan::geometry
