// SPDX-License-Identifier: MIT
/// A tree as it is drawn, written down so that it can be asked without walking it again.
#pragma once

#include "drawing/gradients.h"
#include "drawing/outline.h"
#include "steady_array.h"
#include "svg_geometry.h"

#include <span>

namespace orvan::geometry
{

using drawing::Outline;
using drawing::Rectangle;

/// What something is painted with, as far as it matters here.
struct RecordedPaint
{
	SVGNormalizedPaint kind = SVGNormalizedPaint::none;
	Color color;
	double opacity = 1.0; ///< The paint's own and that of its property.
	/// Index of the gradient, or -1; then that of its property alone stands beside it.
	std::int32_t gradient = -1;
	std::int32_t pattern = -1; ///< Likewise; only where contents are recorded.
	double gradientOpacity = 1.0;
	bool isMissing = false; ///< What was named is not there, and nothing to fall back to.
};

/// A gradient as it lies over one shape.
struct RecordedGradient
{
	bool isRadial = false;
	SVGSpreadMethod spread = SVGSpreadMethod::pad;
	BaseArray<drawing::Stop> stops;
	drawing::GradientGeometry geometry;
	Matrix2d toNode; ///< From its coordinates to those of the shape.
};

/// A pattern as it lies over one shape.
struct RecordedPattern
{
	const ObjectBase* element;
	Rectangle tile;
	Matrix2d toView;           ///< From the pattern's coordinates.
	Matrix2d toCorner;         ///< From the coordinates of what stands in it to those of the tile's corner …
	std::int32_t content = -1; ///< … and the node that has it below.
};

/// A mask as it lies over a node.
struct RecordedMask
{
	Rectangle region; ///< In the node's coordinates; endless where it is not known.
	bool isAlpha = false;
	bool isLinear = false;     ///< Luminance is that of linear light.
	std::int32_t content = -1; ///< The node whose content is the mask.
	std::int32_t lower = -1;   ///< The mask below this one of the same node, with which this one is joined.
	SVGMaskComposite composite = SVGMaskComposite::add; ///< How.
};

/// What "filter" does to a node, in the node's coordinates and without anything that refers to other elements.
struct RecordedFilter
{
	/// Where an element's picture goes into a filter, as the text of its id.
	struct Picture
	{
		std::size_t place;    ///< In the text of the step.
		std::int32_t content; ///< The node that has it below.
	};

	/// A function, or what stands behind the id in the tag of a filter element, with all up to its end.
	struct Step
	{
		BaseArray<char> text;
		bool isElement = false;
		BaseArray<Picture> pictures;
	};

	BaseArray<Step> steps;
};

/// The dashes of a stroke, in the units of its pen.
struct RecordedDashes
{
	BaseArray<double> lengths; ///< Empty for a solid line. Their sum is greater than 0.
	double offset = 0.0;
};

/// All of a shape but its outline. Shapes that look alike share one.
struct ShapeStyle
{
	bool isImage = false; ///< The outline is what an image is fitted into.
	SVGImageRendering imageRendering = SVGImageRendering::automatic;
	RecordedPaint fill;
	RecordedPaint stroke;
	bool saysFill = false; ///< "fill" is something, be it a gradient that shows nothing.
	bool saysStroke = false;
	SVGStroke pen; ///< Its width is 0 when there is none.
	RecordedDashes dashes;
	bool isPenUnscaled = false; ///< The pen is round in the view, whatever the transforms.
	SVGFillRule fillRule = SVGFillRule::nonzero;
	SVGPaintOrder paintOrder = SVGPaintOrder::fillStrokeMarkers;
	SVGPointerEvents pointerEvents = SVGPointerEvents::automatic;
	bool isVisible = true;

	bool HasStroke() const noexcept
	{
		return stroke.kind != SVGNormalizedPaint::none && pen.width > 0.0;
	}

	/// True when both are the same, and plain: those with gradients and dashes are not looked at.
	bool IsLike(const ShapeStyle& other) const noexcept;
	Result<ShapeStyle> Copy() const noexcept;
};

/// A shape, or letters of a text that are painted alike.
struct RecordedShape
{
	Outline outline;                   ///< In the node's coordinates.
	Outline* cells = nullptr;          ///< Of a text: the cells of its characters, which stand in the record.
	const ShapeStyle* style = nullptr; ///< Stands in the record.

	/// The outline that counts as the area of the shape.
	const Outline& GetArea() const noexcept
	{
		return cells != nullptr ? *cells : outline;
	}
};

/// A part of a clip path.
struct ClipShape
{
	Outline outline;
	Matrix2d toView;
	SVGFillRule rule = SVGFillRule::nonzero;
	std::int32_t clip = -1; ///< The region that cuts it off in turn, or -1.
};

/// The area of a clip path: that of its shapes together, cut off by another region.
struct ClipRegion
{
	BaseArray<ClipShape> shapes;
	std::int32_t next = -1; ///< Or -1.
};

/// The kinds of nodes that are more than groups or shapes.
enum class NodeKind : std::uint8_t
{
	plain,
	use,
	marker,     ///< Stands below the shape that it belongs to; also a line that decorates a text.
	definition, ///< Is not drawn in place.
	content,    ///< Of a mask or pattern. Stands below what uses it, and is not drawn in place either.
	gone,       ///< Stands for nothing: left by what was removed, or kept free for what comes. Has nothing below it.
	apart,      ///< Has what is filtered below it, in coordinates that begin there: `toView` leads from them.
};

/// What cuts off a node beside its clip path. Few nodes have that.
struct NodeEdges
{
	bool hasViewport = false;
	bool hasMask = false;
	Rectangle viewport; ///< Cuts off what stands in the node, in its coordinates, as the next one.
	Rectangle mask;     ///< The region of a mask, which cuts off the node.
};

/// An element where it is drawn: in place, or through uses. Its coordinates are those of what stands in it, which are
/// the element's own but for a use.
struct Node
{
	SVGElementRef element;
	Matrix2d toView;      ///< From its coordinates.
	Matrix2d toParent;    ///< From its coordinates to those of the node around it.
	Vector2d position;    ///< Of a use: from the element's own coordinates to those of what it shows.
	double opacity = 1.0; ///< Its own.
	std::int32_t parent = -1;
	std::int32_t end = 0;    ///< Behind the last node below; those below stand in between, in painting order.
	std::int32_t shape = -1; ///< Its index, or -1.
	std::int32_t clip = -1;  ///< The region that cuts off the node and all below, or -1.
	std::int32_t edges = -1; ///< Its index, or -1.
	std::int32_t mask = -1;  ///< Likewise; only where contents are recorded, as the next one.
	std::int32_t filter = -1;
	SVGBlendMode blendMode = SVGBlendMode::normal;
	bool isIsolated = false;
	NodeKind kind = NodeKind::plain;
	bool isReferenced = false; ///< Drawn through a use, or in a marker.
	bool isChanged = false;    ///< A mask, filter or blending changes it, or a node around it.
	bool isFiltered = false;   ///< A filter does, or what applies to a part of a text.
	bool hasPixels = false;    ///< Something below cannot end where it is cut off, as paths do.
	bool isBoxUsed = false;    ///< What cuts it off depends on the box of what stands in it.
};

/// A node that stands for nothing, at an index below another one.
inline Node MakeFreeNode(std::int32_t parent, std::int32_t index) noexcept
{
	Node node;
	node.kind = NodeKind::gone;
	node.parent = parent;
	node.end = index + 1;
	return node;
}

/// A box, once it is known.
struct KnownBox
{
	Rectangle box{std::numeric_limits<double>::quiet_NaN(), 0.0, 0.0, 0.0};

	bool IsKnown() const noexcept
	{
		return !std::isnan(box.left);
	}
};

/// The boxes of one kind by node, as far as they are known; empty where nobody asked for them yet.
struct KnownBoxes
{
	BaseArray<KnownBox> own;  ///< In the coordinates of the nodes.
	BaseArray<KnownBox> view; ///< In the view, but for single nodes that are not turned there.
};

/// Where an element is drawn.
struct ElementEntry
{
	ObjectBase* element;
	std::int32_t node;
};

/// Everything that is drawn of a document.
struct Record
{
	SteadyArray<Node> nodes;
	SteadyArray<RecordedShape> shapes;
	SteadyArray<ShapeStyle> styles;
	SteadyArray<Outline> cells;
	BaseArray<ClipRegion> regions;
	BaseArray<NodeEdges> edges;
	BaseArray<RecordedGradient> gradients;
	BaseArray<RecordedPattern> patterns;
	BaseArray<RecordedMask> masks;
	BaseArray<RecordedFilter> filters;
	/// What is drawn where it stands, not through uses. Elements in a text have an entry for each part of it. Sorted by
	/// `SortElements`.
	BaseArray<ElementEntry> elements;
	/// Every element that a reference led to; sorted likewise.
	BaseArray<ObjectBase*> referenced;
	mutable KnownBoxes boxes[3]; ///< By kind.
	Vector2d viewSize;
	Matrix2d documentToView;     ///< From the root's own coordinates.
	bool hasMissing = false;     ///< A reference leads nowhere: to an id that something may get.
	std::size_t shapeCount = 0;  ///< Number of shapes when the picture had been recorded.
	std::size_t sharedCount = 0; ///< `CountShared` when the picture had been recorded.
	std::int32_t pictureEnd = 0; ///< The nodes before it are the picture, those behind it definitions.

	/// Calls `visit` with each node directly below one, in painting order.
	template <typename Visit>
	void ForEachChild(std::int32_t node, Visit visit) const noexcept
	{
		const auto end = nodes[static_cast<std::size_t>(node)].end;
		for (std::int32_t child = node + 1; child < end; child = At(child).end)
		{
			if (At(child).kind != NodeKind::gone)
				visit(child);
		}
	}

	const Node& At(std::int32_t node) const noexcept
	{
		return nodes[static_cast<std::size_t>(node)];
	}

	/// The edges of a node, or null.
	const NodeEdges* EdgesOf(const Node& node) const noexcept
	{
		return node.edges >= 0 ? &edges[static_cast<std::size_t>(node.edges)] : nullptr;
	}

	/// Makes room for the boxes of a kind, so that each is found out once.
	Result<void> KeepBoxes(SVGBoxKind kind) noexcept
	{
		KnownBoxes& kept = boxes[static_cast<std::size_t>(kind)];
		ORVAN_TRY(kept.own.Resize(nodes.GetCount()));
		return kept.view.Resize(nodes.GetCount());
	}

	/// Number of things that shapes and nodes have in common, or leave behind when they are replaced.
	std::size_t CountShared() const noexcept
	{
		return regions.GetCount() + gradients.GetCount() + styles.GetCount() + edges.GetCount();
	}

	/// Has the boxes of a node found out anew.
	void ForgetBoxes(std::int32_t node) const noexcept
	{
		const auto index = static_cast<std::size_t>(node);
		for (KnownBoxes& kept : boxes)
		{
			if (index < kept.own.GetCount())
				kept.own[index] = kept.view[index] = KnownBox();
		}
	}

	/// To be called when elements or references have been added.
	void SortElements() noexcept;
	/// Adds an element to, or takes one from, sorted ones. Its place stays free.
	Result<void> AddElement(const ElementEntry& entry) noexcept;
	void RemoveElement(const ElementEntry& entry) noexcept;
	/// All places of an element, free ones as well, which have a node of -1.
	std::span<ElementEntry> FindPlaces(const ObjectBase* element) noexcept;
	/// The nodes of an element: one, but for the parts of a text.
	std::span<const ElementEntry> Find(const ObjectBase* element) const noexcept;
	/// True when a reference leads to the element.
	bool IsReferenced(ObjectBase* element) const noexcept;
	/// The style, or one like it that is there already; good as long as the record.
	Result<const ShapeStyle*> KeepStyle(ShapeStyle style) noexcept;

	/// The shape of a node that has one.
	const RecordedShape& ShapeOf(const Node& node) const noexcept
	{
		return shapes[static_cast<std::size_t>(node.shape)];
	}

	const ClipRegion& RegionAt(std::int32_t region) const noexcept
	{
		return regions[static_cast<std::size_t>(region)];
	}
};

} // namespace orvan::geometry
