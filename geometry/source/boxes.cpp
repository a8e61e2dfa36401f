// SPDX-License-Identifier: MIT
#include "boxes.h"

#include "stroke_bounds.h"

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
		if (!shape.isVisible)
			return box;
		if (shape.fill.kind != SVGNormalizedPaint::none)
			box = shape.outline.GetBounds(to);
	}
	else
		box = shape.GetArea().GetBounds(to);
	if (kind != SVGBoxKind::fill && shape.HasStroke())
		box.Include(GetStrokeBox(node, shape, to));
	return box;
}

Rectangle FindBox(const Record& record, std::int32_t index, SVGBoxKind kind, const Matrix2d& to) noexcept
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
								box.Include(GetBox(record, child, kind, to * inner.toParent));
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
	BaseArray<KnownBox>& kept = record.boxes[static_cast<std::size_t>(kind)];
	const auto index = static_cast<std::size_t>(node);
	if (!KeepsAxes(to) || index >= kept.GetCount())
		return FindBox(record, node, kind, to);
	if (!kept[index].isKnown)
		kept[index] = {FindBox(record, node, kind, {}), true};
	return TransformBox(to, kept[index].box);
}

Rectangle GetStrokeBox(const Node& node, const RecordedShape& shape, const Matrix2d& to) noexcept
{
	if (!shape.isPenUnscaled)
		return GetStrokeBounds(shape.outline, shape.pen, {}, to);
	return GetStrokeBounds(shape.outline, shape.pen, node.toView, to * InvertOrNot(node.toView));
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
