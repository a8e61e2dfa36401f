// SPDX-License-Identifier: MIT
#include "boxes.h"

#include "curve.h"

namespace orvan::geometry
{
namespace
{

/// Nothing stays nothing, which a transform would make something of that is no number.
Rectangle TransformBox(const Matrix2d& matrix, const Rectangle& box) noexcept
{
	return box.IsEmpty() ? box : drawing::Transform(matrix, box);
}

/// True when boxes go over into boxes.
bool KeepsAxes(const Matrix2d& m) noexcept
{
	return (m.axis1.y == 0.0 && m.axis2.x == 0.0) || (m.axis1.x == 0.0 && m.axis2.y == 0.0);
}

/// The box of a shape alone.
Rectangle GetShapeBox(const Node& node, const RecordedShape& shape, SVGBoxKind kind, const Matrix2d& to) noexcept
{
	Rectangle box;
	if (kind == SVGBoxKind::visual)
	{
		if (!shape.style->isVisible)
			return box;
		if (shape.style->fill.kind != SVGNormalizedPaint::none)
			box = shape.outline.GetBounds(to);
	}
	else
		box = shape.GetArea().GetBounds(to);
	if (kind != SVGBoxKind::fill && shape.style->HasStroke())
		box.Include(GetStrokeBox(node, shape, to));
	return box;
}

/// Found out from the node itself and the boxes of the nodes directly below it, which `getInner` knows.
template <typename GetInner>
Rectangle FindBox(const Record& record, std::int32_t index, SVGBoxKind kind, const Matrix2d& to,
				  GetInner getInner) noexcept
{
	const Node& node = record.At(index);
	Rectangle box;
	if (node.shape >= 0)
		box = GetShapeBox(node, record.ShapeOf(node), kind, to);
	record.ForEachChild(index,
						[&](std::int32_t child)
						{
							const Node& inner = record.At(child);
							// What definitions hold is in no box but their own.
							if (inner.kind != NodeKind::definition &&
								(inner.kind != NodeKind::marker || kind == SVGBoxKind::visual))
								box.Include(getInner(child));
						});
	if (kind != SVGBoxKind::visual || box.IsEmpty())
		return box;
	if (const NodeEdges* edges = record.EdgesOf(node))
	{
		if (edges->hasViewport)
			box = box.Intersect(TransformBox(to, edges->viewport));
		if (edges->hasMask)
			box = box.Intersect(TransformBox(to, edges->mask));
	}
	if (node.clip >= 0)
		box = box.Intersect(GetClipBox(record, node.clip, to * InvertOrNot(node.toView)));
	return box;
}

} // namespace

Matrix2d InvertOrNot(const Matrix2d& matrix) noexcept
{
	return drawing::IsInvertible(matrix) ? drawing::Invert(matrix) : Matrix2d();
}

Rectangle GetBox(const Record& record, std::int32_t node, SVGBoxKind kind, const Matrix2d& to) noexcept
{
	BaseArray<KnownBox>& kept = record.boxes[static_cast<std::size_t>(kind)].own;
	const auto index = static_cast<std::size_t>(node);
	const auto find = [&](const Matrix2d& transform) noexcept
	{
		const auto getInner = [&](std::int32_t child) noexcept
		{
			return GetBox(record, child, kind, transform * record.At(child).toParent);
		};
		return FindBox(record, node, kind, transform, getInner);
	};
	if (!KeepsAxes(to) || index >= kept.GetCount())
		return find(to);
	if (!kept[index].IsKnown())
		kept[index] = {find({})};
	return TransformBox(to, kept[index].box);
}

Rectangle GetViewBox(const Record& record, std::int32_t node, SVGBoxKind kind) noexcept
{
	BaseArray<KnownBox>& kept = record.boxes[static_cast<std::size_t>(kind)].view;
	const auto index = static_cast<std::size_t>(node);
	const Matrix2d& toView = record.At(node).toView;
	// What has no nodes below it has its box from its own coordinates where that can be.
	const bool isLeaf = record.At(node).end == node + 1;
	if ((isLeaf && KeepsAxes(toView)) || index >= kept.GetCount())
		return GetBox(record, node, kind, toView);
	const auto getInner = [&](std::int32_t child) noexcept
	{
		return GetViewBox(record, child, kind);
	};
	if (!kept[index].IsKnown())
		kept[index] = {FindBox(record, node, kind, toView, getInner)};
	return kept[index].box;
}

Rectangle GetStrokeBox(const Node& node, const RecordedShape& shape, const Matrix2d& to) noexcept
{
	if (!shape.style->isPenUnscaled)
		return GetStrokeBounds(shape.outline, shape.style->pen, {}, to);
	return GetStrokeBounds(shape.outline, shape.style->pen, node.toView, to * InvertOrNot(node.toView));
}

Rectangle GetClipBox(const Record& record, std::int32_t index, const Matrix2d& to) noexcept
{
	const ClipRegion& region = record.RegionAt(index);
	Rectangle box;
	for (const ClipShape& shape : region.shapes)
	{
		Rectangle area = shape.outline.GetBounds(to * shape.toView);
		if (shape.clip >= 0)
			area = area.Intersect(GetClipBox(record, shape.clip, to));
		box.Include(area);
	}
	return region.next >= 0 ? box.Intersect(GetClipBox(record, region.next, to)) : box;
}

} // namespace orvan::geometry
