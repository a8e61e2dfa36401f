// SPDX-License-Identifier: MIT
#include "hits.h"

#include "boxes.h"
#include "curve.h"
#include "inside.h"
#include "stroke_edges.h"

#include <functional>
#include <optional>

namespace orvan::geometry
{
namespace
{

/// What of an element reacts to a pointer.
struct Reaction
{
	enum class Part
	{
		never,
		painted, ///< When it has a paint.
		always,
	};

	Part fill;
	Part stroke;
	bool needsVisible;
};

/// By the numbers of `SVGPointerEvents`, the bounding box apart.
constexpr Reaction kReactions[] = {
	{Reaction::Part::painted, Reaction::Part::painted, true},  // auto
	{Reaction::Part::painted, Reaction::Part::painted, true},  // visiblePainted
	{Reaction::Part::always, Reaction::Part::never, true},     // visibleFill
	{Reaction::Part::never, Reaction::Part::always, true},     // visibleStroke
	{Reaction::Part::always, Reaction::Part::always, true},    // visible
	{Reaction::Part::painted, Reaction::Part::painted, false}, // painted
	{Reaction::Part::always, Reaction::Part::never, false},    // fill
	{Reaction::Part::never, Reaction::Part::always, false},    // stroke
	{Reaction::Part::always, Reaction::Part::always, false},   // all
	{Reaction::Part::never, Reaction::Part::never, false},     // none
};

bool Reacts(Reaction::Part part, bool isPainted) noexcept
{
	return part == Reaction::Part::always || (part == Reaction::Part::painted && isPainted);
}

bool IsInRegion(const Record& record, std::int32_t index, const Vector2d& point) noexcept
{
	if (index < 0)
		return true;
	const ClipRegion& region = record.RegionAt(index);
	const auto isIn = [&](const ClipShape& shape)
	{
		return IsInside(shape.outline, {}, shape.rule, InvertOrNot(shape.toView).Apply(point)) &&
			   IsInRegion(record, shape.clip, point);
	};
	return std::any_of(region.shapes.begin(), region.shapes.end(), isIn) && IsInRegion(record, region.next, point);
}

/// Looks what of a shape is at a point.
class ShapeProbe
{
public:
	ShapeProbe(const Node& node, const RecordedShape& shape, const Vector2d& point, double tolerance) noexcept
		: _node(node), _shape(shape), _point(point), _tolerance(tolerance), _own(InvertOrNot(node.toView).Apply(point))
	{
	}

	std::optional<SVGHitPart> Find(bool ignoresPointerEvents) const noexcept
	{
		const auto events = ignoresPointerEvents ? SVGPointerEvents::automatic : _shape.style->pointerEvents;
		if (events == SVGPointerEvents::boundingBox)
		{
			const Rectangle box = _shape.GetArea().GetBounds();
			return box.Contains(_own) ? std::optional(SVGHitPart::box) : std::nullopt;
		}
		const auto number = static_cast<std::size_t>(events);
		if (number >= std::size(kReactions))
			return std::nullopt;
		const Reaction& reaction = kReactions[number];
		if (reaction.needsVisible && !_shape.style->isVisible)
			return std::nullopt;
		const bool takesFill = Reacts(reaction.fill, _shape.style->saysFill);
		const bool takesStroke = Reacts(reaction.stroke, _shape.style->saysStroke) && _shape.style->pen.width > 0.0;
		if (_shape.cells != nullptr)
		{
			// The whole of a character reacts, as it does in browsers.
			if ((takesFill || takesStroke) && IsInArea(*_shape.cells, SVGFillRule::nonzero))
				return SVGHitPart::text;
			return std::nullopt;
		}
		// Whatever is painted last lies on top; which of the two is reported matters little where both are.
		if (takesStroke && IsOnLine())
			return SVGHitPart::stroke;
		if (takesFill && IsInArea(_shape.outline, _shape.style->fillRule))
			return SVGHitPart::fill;
		return std::nullopt;
	}

private:
	bool IsInArea(const Outline& outline, SVGFillRule rule) const noexcept
	{
		if (IsInside(outline, {}, rule, _own))
			return true;
		const SVGStroke edge{_tolerance * 2.0, SVGLineCap::round, SVGLineJoin::round, 1.0};
		return _tolerance > 0.0 && IsOnStroke(outline, _node.toView, edge, {}, _point);
	}

	bool IsOnLine() const noexcept
	{
		SVGStroke pen = _shape.style->pen;
		if (_shape.style->isPenUnscaled)
		{
			pen.width += _tolerance * 2.0;
			return IsOnStroke(_shape.outline, _node.toView, pen, _shape.style->dashes, _point);
		}
		const double scale = drawing::GetMeanScale(_node.toView);
		if (!(_tolerance > 0.0) || KeepsCircles(_node.toView))
		{
			pen.width += scale > 0.0 ? _tolerance * 2.0 / scale : 0.0;
			return IsOnStroke(_shape.outline, {}, pen, _shape.style->dashes, _own);
		}
		if (IsOnStroke(_shape.outline, {}, pen, _shape.style->dashes, _own))
			return true;
		// What is as far off one way as the other in the view is not so in the shape: the edges are looked at there.
		const double exactness = _tolerance * kExactness / drawing::GetStretch(_node.toView);
		const auto edges = GetStrokeEdges(_shape.outline, {}, pen, _shape.style->dashes, exactness);
		const SVGStroke near{_tolerance * 2.0, SVGLineCap::round, SVGLineJoin::round, 1.0};
		return edges.IsOk() && IsOnStroke(edges.GetValue(), _node.toView, near, {}, _point);
	}

	static constexpr double kExactness = 1e-3;

	const Node& _node;
	const RecordedShape& _shape;
	Vector2d _point; ///< In the view.
	double _tolerance;
	Vector2d _own; ///< In the shape's own coordinates.
};

/// Adds a hit, with the uses that it is shown through.
Result<void> AddHit(const Record& record, std::int32_t index, SVGHitPart part, SVGHits& hits) noexcept
{
	const std::size_t first = hits.uses.GetCount();
	for (std::int32_t at = record.At(index).parent; at >= 0; at = record.At(at).parent)
	{
		if (record.At(at).kind == NodeKind::use)
			ORVAN_TRY(hits.uses.Append(record.At(at).element));
	}
	std::reverse(hits.uses.begin() + first, hits.uses.end());
	return hits.hits.Append({record.At(index).element, part, static_cast<std::int32_t>(hits.uses.GetCount() - first),
							 static_cast<std::int32_t>(first)});
}

/// The nodes of shapes near an area, the topmost first.
Result<BaseArray<std::int32_t>> FindNear(const HitIndex& index, const Rectangle& area) noexcept
{
	BaseArray<std::int32_t> nodes;
	bool isGood = true;
	index.ForEachIn(area, [&](std::int32_t node) { isGood = isGood && nodes.Append(node).IsOk(); });
	if (!isGood)
		return OutOfMemoryError();
	std::sort(nodes.begin(), nodes.end(), std::greater<>());
	return nodes;
}

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr Rectangle kEverywhere{-kInfinity, -kInfinity, kInfinity, kInfinity};

/// The edges that a node has, in the view.
Rectangle GetCut(const Record& record, const Node& node) noexcept
{
	Rectangle cut = kEverywhere;
	if (const NodeEdges* edges = record.EdgesOf(node); edges != nullptr && edges->hasViewport)
		cut = edges->viewport.IsEmpty() ? Rectangle() : drawing::Transform(node.toView, edges->viewport);
	return node.clip >= 0 ? cut.Intersect(GetClipBox(record, node.clip, {})) : cut;
}

/// The box of what may react, which is more than what is painted.
Rectangle GetReactingBox(const Node& node, const RecordedShape& shape) noexcept
{
	Rectangle box = shape.GetArea().GetBounds(node.toView);
	// Mostly there is no stroke, and nothing that asks for one.
	const auto number = static_cast<std::size_t>(shape.style->pointerEvents);
	const bool takesStroke =
		number < std::size(kReactions) && Reacts(kReactions[number].stroke, shape.style->saysStroke);
	if (shape.style->pen.width > 0.0 && (takesStroke || shape.style->saysStroke))
		box.Include(GetStrokeBox(node, shape, node.toView));
	return box;
}

} // namespace

template <typename Take>
Result<void> HitIndex::ForEachReacting(const Record& record, std::int32_t first, std::int32_t end, Take take) noexcept
{
	BaseArray<Rectangle> cuts; // By node, from the first on: what the node and those around it leave.
	ORVAN_TRY(cuts.Reserve(static_cast<std::size_t>(end - first)));
	const auto getAround = [&](std::int32_t node)
	{
		if (node >= first)
			return cuts[static_cast<std::size_t>(node - first)];
		Rectangle around = kEverywhere;
		for (std::int32_t at = node; at >= 0; at = record.At(at).parent)
			around = around.Intersect(GetCut(record, record.At(at)));
		return around;
	};
	for (std::int32_t i = first; i < end; i++)
	{
		const Node& node = record.At(i);
		ORVAN_TRY(cuts.Append(GetCut(record, node).Intersect(getAround(node.parent))));
		_cutters[static_cast<std::size_t>(i)] = node.edges >= 0 || node.clip >= 0 ? i : GetCutter(node.parent);
		if (node.kind == NodeKind::marker)
		{
			// Markers do not react; what stands in them is passed over, but keeps its place in the columns.
			for (; i + 1 < node.end; i++)
				ORVAN_TRY(cuts.Append(Rectangle()));
		}
		else if (node.shape >= 0)
		{
			const Rectangle& cut = cuts[static_cast<std::size_t>(i - first)];
			ORVAN_TRY(take(i, GetReactingBox(node, record.ShapeOf(node)).Intersect(cut)));
		}
	}
	return {};
}

Result<HitIndex> HitIndex::Create(const Record& record) noexcept
{
	HitIndex index;
	const auto count = static_cast<std::size_t>(record.pictureEnd);
	ORVAN_TRY(index._cutters.Resize(count));
	ORVAN_TRY(index._places.Reserve(count));
	for (std::size_t i = 0; i < count; i++)
		ORVAN_TRY(index._places.Append(kNone));
	BaseArray<Rectangle> boxes;
	ORVAN_TRY(boxes.Reserve(record.shapes.GetCount()));
	ORVAN_TRY(index._nodes.Reserve(record.shapes.GetCount()));
	const auto take = [&](std::int32_t node, const Rectangle& box) noexcept -> Result<void>
	{
		index._places[static_cast<std::size_t>(node)] = index._nodes.GetCount();
		ORVAN_TRY(boxes.Append(box));
		return index._nodes.Append(node);
	};
	if (count > 0)
		ORVAN_TRY(index.ForEachReacting(record, 0, record.pictureEnd, take));
	// For what comes later.
	constexpr std::size_t kShare = 16;
	for (std::size_t i = 0; i < count / kShare; i++)
	{
		ORVAN_TRY(index._free.Append(index._nodes.GetCount()));
		ORVAN_TRY(boxes.Append({}));
		ORVAN_TRY(index._nodes.Append(-1));
	}
	index._tree = ORVAN_TRY(BoxTree::Create(boxes));
	return index;
}

Result<bool> HitIndex::Update(const Record& record, std::int32_t first, std::int32_t end) noexcept
{
	// From behind, so that what is as it was takes the place that it had.
	for (std::int32_t i = end; i-- > first;)
	{
		std::size_t& place = _places[static_cast<std::size_t>(i)];
		if (place == kNone)
			continue;
		ORVAN_TRY(_free.Append(place));
		_tree.Set(place, {});
		place = kNone;
	}
	bool hasRoom = true;
	const auto take = [&](std::int32_t node, const Rectangle& box) noexcept -> Result<void>
	{
		hasRoom = hasRoom && !_free.IsEmpty();
		if (!hasRoom)
			return {};
		const std::size_t place = _free[_free.GetCount() - 1];
		ORVAN_TRY(_free.Resize(_free.GetCount() - 1));
		_places[static_cast<std::size_t>(node)] = place;
		_nodes[place] = node;
		_tree.Set(place, box);
		_updateCount++;
		return {};
	};
	ORVAN_TRY(ForEachReacting(record, first, end, take));
	// Boxes that have moved far make those around them large.
	constexpr std::size_t kFewest = 64;
	return hasRoom && _updateCount < std::max(kFewest, _nodes.GetCount());
}

Result<SVGHits> FindHits(const Record& record, const HitIndex& index, const Vector2d& point,
						 const SVGHitOptions& options) noexcept
{
	SVGHits hits;
	const Rectangle area = Rectangle{point.x, point.y, point.x, point.y}.Grow(options.tolerance);
	if (!area.IsFinite())
		return hits;
	const auto isCutOff = [&](std::int32_t node)
	{
		for (std::int32_t at = index.GetCutter(node); at >= 0; at = index.GetCutter(record.At(at).parent))
		{
			const Node& cutter = record.At(at);
			const NodeEdges* edges = record.EdgesOf(cutter);
			const bool hasViewport = edges != nullptr && edges->hasViewport;
			if (hasViewport && !edges->viewport.Contains(InvertOrNot(cutter.toView).Apply(point)))
				return true;
			if (!IsInRegion(record, cutter.clip, point))
				return true;
		}
		return false;
	};
	for (const std::int32_t at : ORVAN_TRY(FindNear(index, area)))
	{
		const Node& node = record.At(at);
		const ShapeProbe probe(node, record.ShapeOf(node), point, options.tolerance);
		const auto part = probe.Find(options.ignoresPointerEvents);
		if (!part || isCutOff(at))
			continue;
		ORVAN_TRY(AddHit(record, at, *part, hits));
		if (!options.findsAll)
			break;
	}
	return hits;
}

Result<SVGHits> FindHitsIn(const Record& record, const HitIndex& index, const Rectangle& area, bool isInside) noexcept
{
	SVGHits hits;
	if (area.IsEmpty())
		return hits;
	for (const std::int32_t at : ORVAN_TRY(FindNear(index, area)))
	{
		const Node& node = record.At(at);
		Rectangle box = GetViewBox(record, at, SVGBoxKind::visual);
		for (std::int32_t cutter = index.GetCutter(node.parent); cutter >= 0 && !box.IsEmpty();
			 cutter = index.GetCutter(record.At(cutter).parent))
			box = box.Intersect(GetCut(record, record.At(cutter)));
		const Rectangle common = box.Intersect(area);
		const bool isWhole = common.left == box.left && common.top == box.top && common.right == box.right &&
							 common.bottom == box.bottom;
		if (!common.IsEmpty() && (isWhole || !isInside))
			ORVAN_TRY(AddHit(record, at, SVGHitPart::box, hits));
	}
	return hits;
}

} // namespace orvan::geometry
