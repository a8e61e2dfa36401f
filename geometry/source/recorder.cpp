// SPDX-License-Identifier: MIT
#include "recorder.h"

#include "clip_recorder.h"
#include "curve.h"
#include "drawing/markers.h"
#include "drawing/references.h"
#include "drawing/strokes.h"
#include "drawing/text_layout.h"
#include "drawing/walk.h"
#include "filter_recorder.h"
#include "orvan/diagnostics.h"
#include "paints.h"
#include "svg_complete.h"

namespace orvan::geometry
{
namespace
{

using namespace drawing;
using Key = SVGImportAttribute;

/// Nodes beyond these many are left out. A file that has more in place takes a gigabyte itself.
constexpr std::size_t kMaxNodes = 4'000'000;

/// How the document counts the length of a shape's outline, as a factor on its dashes; 0 when it counts none.
double GetDashUnit(const Frame& frame, const Outline& outline) noexcept
{
	const double counted = frame.GetOr(Key::pathLength, -1.0);
	if (counted == 0.0)
		return 0.0;
	if (!(counted > 0.0) || !std::isfinite(counted))
		return 1.0;
	const double length = outline.GetLength();
	return std::isfinite(length) ? length / counted : 1.0;
}

/// The dashes of a stroke; empty for a solid line, and for what browsers draw as one.
Result<RecordedDashes> GetDashes(const Frame& frame, const Outline& outline) noexcept
{
	const Style& style = frame.place.style;
	RecordedDashes dashes;
	if (style.dashes == nullptr || style.dashes->IsEmpty())
		return dashes;
	const double unit = GetDashUnit(frame, outline);
	double sum = 0.0;
	for (const SVGLength& dash : *style.dashes)
	{
		const double length = ToUserUnits(dash, Axis::other, frame.place.viewport, style.dashFontSize) * unit;
		if (!(length >= 0.0) || length > kLargest)
			return RecordedDashes();
		sum += length;
		ORVAN_TRY(dashes.lengths.Append(length));
	}
	if (!(sum > 0.0))
		return RecordedDashes();
	const double offset = frame.place.Resolve(style.dashOffset, Axis::other) * unit;
	dashes.offset = std::isfinite(offset) ? offset : 0.0;
	return dashes;
}

SVGStroke GetPen(const Place& place) noexcept
{
	const Style& style = place.style;
	const double width = GetStrokeWidth(place);
	return {width > 0.0 && width <= kLargest ? width : 0.0, style.lineCap, style.lineJoin, style.miterLimit};
}

class Recorder final : public Sink, public ContentRecorder
{
public:
	Recorder(Scene& scene, Record& record, Contents contents) noexcept
		: _scene(scene), _record(record), _contents(contents == Contents::recorded ? this : nullptr)
	{
	}

	Result<std::int32_t> RecordContent(const Frame& frame) noexcept override
	{
		return RecordIn(frame.element, frame.place,
						[&] { return Walk(_scene, *this).DrawChildren(frame.element, frame.place, frame); });
	}

	Result<std::int32_t> RecordElement(ObjectBase* element, const Place& place, const Frame& outer) noexcept override
	{
		return RecordIn(element, place, [&] { return Walk(_scene, *this).DrawElement(element, place, &outer); });
	}

	Result<bool> BeginApart(const Frame& frame, const Matrix2d& toPicture) noexcept override
	{
		if (_contents == nullptr || IsFull() || !ORVAN_TRY(HasFilters(_scene, frame)))
			return false;
		Node node = MakeContent(frame.element, toPicture);
		node.kind = NodeKind::apart;
		_current = GetCount();
		ORVAN_TRY(_record.nodes.Append(std::move(node)));
		return true;
	}

	void EndApart() noexcept override
	{
		At(_current).end = GetCount();
		_current = At(_current).parent;
	}

	Result<void> DrawShape(const Frame& frame, Outline& outline) noexcept override
	{
		const double commandCount = static_cast<double>(outline.GetCommands().GetCount());
		if (IsFull() || (frame.place.isByReference && !_scene.limits.Pay(commandCount * kCommandWork)))
			return {};
		// What the outermost element lies on is seen, and neither hit nor measured, as markers are.
		const bool wasInMarker = std::exchange(_isInMarker, _isInMarker || frame.outer == nullptr);
		const std::int32_t node = ORVAN_TRY(Enter(frame));
		_isInMarker = wasInMarker;
		ShapeStyle style = ORVAN_TRY(MakeStyle(frame, outline, outline));
		const Outline& kept = *ORVAN_TRY(SetShape(node, std::move(outline), std::move(style)));
		if (HasMarkers(frame))
		{
			const bool wasMarker = std::exchange(_isInMarker, true);
			const Result<void> drawn = DrawMarkers(_scene, frame, kept, *this);
			_isInMarker = wasMarker;
			if (!drawn.IsOk())
				return drawn.GetError();
		}
		return LeaveBox(node, frame, kept);
	}

	/// A text is a node, and each part of it that is painted alike is one below it.
	Result<void> DrawText(const Frame& frame, const TextLayout& text) noexcept override
	{
		if (IsFull() || (frame.place.isByReference && !_scene.limits.Pay(text.GetLength() * kCharacterWork)))
			return {};
		const std::int32_t node = ORVAN_TRY(Enter(frame));
		ORVAN_TRY(RecordFragments(frame, frame, text, {text.GetFragments().begin(), text.GetFragments().GetCount()}));
		return LeaveBox(node, frame, text.GetBounds());
	}

	/// An image is the rectangle that it is fitted into.
	Result<void> DrawImage(const Frame& frame, const PlacedImage& image) noexcept override
	{
		if (IsFull())
			return {};
		const std::int32_t node = ORVAN_TRY(Enter(frame));
		ShapeStyle style;
		style.isImage = true;
		style.imageRendering = frame.place.style.imageRendering;
		style.fill = {SVGNormalizedPaint::server, {}, 1.0};
		style.saysFill = true;
		style.pen.width = 0.0;
		style.pointerEvents = frame.place.style.pointerEvents;
		style.isVisible = frame.place.style.visibility == SVGVisibility::visible;
		Outline outline;
		ORVAN_TRY(outline.AddRectangle(image.viewport, 0.0, 0.0));
		if (_contents != nullptr)
			SetHasPixels(node);
		ORVAN_TRY(SetShape(node, std::move(outline), std::move(style)));
		return LeaveBox(node, frame, image.viewport);
	}

	Result<void> DrawGroup(const Frame& frame, const Content& content) noexcept override
	{
		if (IsFull())
			return {};
		const std::int32_t node = ORVAN_TRY(Enter(frame));
		const bool wasMarker = std::exchange(_isInMarker, false);
		const Result<void> drawn = content.DrawInto(*this);
		_isInMarker = wasMarker;
		if (!drawn.IsOk())
			return drawn.GetError();
		Extent extent(_scene, frame, content);
		return Leave(node, frame, extent);
	}

	Result<void> DrawClipped(const Place& place, const Rectangle& clip, const Content& content) noexcept override
	{
		if (_current >= 0)
		{
			// The rectangle is in the coordinates around a view box, which moves and scales only.
			const Matrix2d& toView = At(_current).toView;
			NodeEdges& edges = *ORVAN_TRY(MakeEdges(_current));
			edges.viewport = IsInvertible(toView) ? Transform(Invert(toView) * place.transform, clip) : clip;
			edges.hasViewport = true;
		}
		return content.DrawInto(*this);
	}

	bool keepsFree = false; ///< Leaves nodes free among the others, and behind them.

	/// A node for an element with definitions, whose content `draw` tells.
	template <typename Draw>
	Result<void> RecordDefinition(const Frame& frame, Draw draw) noexcept
	{
		if (IsFull())
			return {};
		const std::int32_t node = ORVAN_TRY(Enter(frame));
		At(node).kind = NodeKind::definition;
		ORVAN_TRY(draw());
		_current = At(node).parent;
		At(node).end = GetCount();
		return {};
	}

private:
	std::int32_t GetCount() const noexcept
	{
		return static_cast<std::int32_t>(_record.nodes.GetCount());
	}

	/// A node for what is not drawn in place, in `_current`.
	Node MakeContent(ObjectBase* element, const Matrix2d& toView) const noexcept
	{
		Node node;
		node.element = SVGElementRef::From(element);
		node.parent = _current;
		node.toView = toView;
		node.kind = NodeKind::content;
		node.isReferenced = true;
		node.end = GetCount() + 1;
		return node;
	}

	/// Records what `draw` tells below a node of its own.
	template <typename Draw>
	Result<std::int32_t> RecordIn(ObjectBase* element, const Place& place, Draw draw) noexcept
	{
		const std::int32_t index = GetCount();
		const std::int32_t outer = _current;
		ORVAN_TRY(_record.nodes.Append(MakeContent(element, place.transform)));
		_current = index;
		const bool wasMarker = std::exchange(_isInMarker, false);
		ORVAN_TRY(draw());
		_isInMarker = wasMarker;
		_current = outer;
		At(index).end = GetCount();
		return index;
	}

	/// Marks a node, and all around it.
	void SetHasPixels(std::int32_t node) noexcept
	{
		for (std::int32_t at = node; at >= 0 && !At(at).hasPixels; at = At(at).parent)
		{
			At(at).hasPixels = true;
			if (At(at).kind == NodeKind::content) // What is cut off beyond is a mask or a tile.
				break;
		}
	}

	Node& At(std::int32_t node) noexcept
	{
		return _record.nodes[static_cast<std::size_t>(node)];
	}

	bool IsFull() noexcept
	{
		if (_record.nodes.GetCount() < kMaxNodes)
			return false;
		_scene.limits.Omit(Omission::work);
		return true;
	}

	/// Begins the node of an element; it stands around all that follow until `Leave`.
	Result<std::int32_t> Enter(const Frame& frame) noexcept
	{
		Node node;
		node.element = SVGElementRef::From(frame.element);
		node.parent = _current;
		node.isReferenced = frame.place.isByReference || (_current >= 0 && At(_current).isReferenced);
		node.toView = frame.place.transform;
		node.toParent = frame.local * frame.inner;
		node.opacity = frame.effects.opacity;
		node.isChanged = frame.effects.mask != nullptr || frame.effects.filter != nullptr ||
						 frame.effects.blendMode != SVGBlendMode::normal;
		node.isFiltered = frame.effects.filter != nullptr && _contents == nullptr;
		node.blendMode = frame.effects.blendMode;
		node.isIsolated = frame.effects.isIsolated;
		if (Borrowed<SVGUseElementInterface>(frame.element))
		{
			node.kind = NodeKind::use;
			node.position = frame.inner.offset;
		}
		if (_current >= 0)
		{
			const Node& parent = At(_current);
			node.isChanged = node.isChanged || parent.isChanged;
			node.isFiltered = node.isFiltered || parent.isFiltered;
			if (_isInMarker)
			{
				node.kind = NodeKind::marker;
				node.isReferenced = true;
				node.toParent = Invert(parent.toView) * node.toView;
			}
		}
		_current = GetCount();
		if (!node.isReferenced)
			ORVAN_TRY(_record.elements.Append({frame.element, _current}));
		ORVAN_TRY(_record.nodes.Append(std::move(node)));
		return _current;
	}

	/// Ends the node of something with this box.
	Result<void> LeaveBox(std::int32_t index, const Frame& frame, const LazyBox& box) noexcept
	{
		// It is seldom asked for.
		Extent extent(frame.effects.NeedsPicture() ? box.Get() : Rectangle(), {});
		return Leave(index, frame, extent);
	}

	/// Now and then a node is kept free for what comes later.
	Result<void> KeepFree() noexcept
	{
		constexpr std::int32_t kDistance = 64;
		if (!keepsFree || _current < 0 || At(_current).isReferenced || GetCount() - _lastFree < kDistance)
			return {};
		_lastFree = GetCount();
		return _record.nodes.Append(MakeFreeNode(_current, GetCount()));
	}

	/// Most of what comes later comes last in what it stands in.
	Result<void> KeepFreeBehind(std::int32_t index) noexcept
	{
		constexpr std::int32_t kMost = 1024;
		constexpr std::int32_t kShare = 32;
		for (std::int32_t count = std::min((GetCount() - index) / kShare, kMost); count > 0; count--)
			ORVAN_TRY(_record.nodes.Append(MakeFreeNode(_current, GetCount())));
		return {};
	}

	/// Ends a node, with what cuts it off.
	Result<void> Leave(std::int32_t index, const Frame& frame, Extent& extent) noexcept
	{
		// Below the node, since it is no picture of its own.
		// Boxes are not cut by several masks, since what they leave together is no rectangle.
		const bool isCut = frame.effects.mask != nullptr &&
						   (_contents != nullptr || !frame.attributes.Has(static_cast<std::int32_t>(Key::maskLayers)));
		if (isCut && _scene.GetNextOnRoute(frame.element, frame.depth) == nullptr)
			ORVAN_TRY(RecordMask(index, frame, extent));
		if (_contents != nullptr && frame.effects.filter != nullptr && IsApart(index))
			ORVAN_TRY(RecordFilterOf(index, frame, extent));
		if (keepsFree && At(index).kind == NodeKind::plain && !At(index).isReferenced)
			ORVAN_TRY(KeepFreeBehind(index));
		_current = At(index).parent;
		At(index).end = GetCount();
		ORVAN_TRY(KeepFree());
		// Of what only leads to what is wanted nothing is known.
		if (_scene.GetNextOnRoute(frame.element, frame.depth) != nullptr)
			return {};
		if (frame.effects.clipPath != nullptr || frame.effects.clipShape != nullptr)
			At(index).clip = ORVAN_TRY(RecordClip(_scene, frame, extent, -1, _record));
		At(index).isBoxUsed = extent.IsKnown(); // Of a shape it always is; that concerns nobody else.
		return {};
	}

	/// The edges of a node, good until the next ones are made.
	Result<NodeEdges*> MakeEdges(std::int32_t index) noexcept
	{
		if (At(index).edges < 0)
		{
			At(index).edges = static_cast<std::int32_t>(_record.edges.GetCount());
			ORVAN_TRY(_record.edges.Append({}));
		}
		return &_record.edges[static_cast<std::size_t>(At(index).edges)];
	}

	/// The region of a mask. Without a usable one nothing shows.
	Result<void> RecordMask(std::int32_t index, const Frame& user, Extent& extent) noexcept
	{
		const SVGElementRef mask = ORVAN_TRY(FindEffect<SVGMaskElementInterface>(_scene, user.effects.mask, user));
		if (!mask)
			return {};
		const Place place = ORVAN_TRY(GetContentPlace(_scene, mask.GetObject(), user));
		Frame frame(mask.GetObject(), place, &user, _scene.limits);
		frame.place.transform = place.transform; // A mask's own transform does nothing.
		const bool isBox = frame.GetKeyword(Key::maskUnits, SVGUnits::objectBoundingBox) == SVGUnits::objectBoundingBox;
		if (isBox && !_scene.isComplete) // A plain import does not tell.
			return RecordMaskContent(index, user, frame, extent);
		const auto get = [&](Key key, Axis axis, double absent)
		{
			const SVGLength length = frame.GetOr(key, SVGLength{absent, SVGLengthUnit::percent});
			return isBox && length.unit == SVGLengthUnit::percent ? length.value : frame.Resolve(length, axis);
		};
		const double x = get(Key::x, Axis::horizontal, -0.1);
		const double y = get(Key::y, Axis::vertical, -0.1);
		NodeEdges& edges = *ORVAN_TRY(MakeEdges(index));
		edges.hasMask = true;
		edges.mask = {x, y, x + get(Key::width, Axis::horizontal, 1.2), y + get(Key::height, Axis::vertical, 1.2)};
		if (isBox)
		{
			const Rectangle box = ORVAN_TRY(extent.GetBox());
			edges.mask = box.IsEmpty() || edges.mask.IsEmpty() ? Rectangle() : Transform(BoxTransform(box), edges.mask);
		}
		return RecordMaskContent(index, user, frame, extent);
	}

	/// What stands in a mask, with what cuts that off in turn.
	Result<void> RecordMaskContent(std::int32_t index, const Frame& masked, Frame& frame, Extent& extent) noexcept
	{
		if (_contents == nullptr)
			return {};
		RecordedMask mask;
		const NodeEdges* const edges = _record.EdgesOf(At(index));
		constexpr double kFar = 1e6;
		mask.region = edges != nullptr && edges->hasMask ? edges->mask : Rectangle{-kFar, -kFar, kFar, kFar};
		const auto mode = masked.GetKeyword(Key::maskMode, SVGMaskMode::matchSource);
		const bool isAlpha = frame.GetKeyword(Key::maskType, SVGMaskType::luminance) == SVGMaskType::alpha;
		mask.isAlpha = mode == SVGMaskMode::matchSource ? isAlpha : mode == SVGMaskMode::alpha;
		mask.isLinear = frame.place.style.colorInterpolation == SVGColorInterpolation::linearRGB;
		const Matrix2d user = frame.place.transform;
		if (frame.GetKeyword(Key::maskContentUnits, SVGUnits::userSpaceOnUse) == SVGUnits::objectBoundingBox)
			frame.place.transform = user * BoxTransform(ORVAN_TRY(extent.GetBox()));
		if (!IsInvertible(frame.place.transform) || mask.region.IsEmpty())
		{
			// Nothing shows through it.
			mask.region = {0.0, 0.0, 0.0, 0.0};
			mask.content = ORVAN_TRY(RecordNothing(frame));
		}
		else
			mask.content = ORVAN_TRY(RecordContent(frame));
		frame.place.transform = user;
		At(mask.content).toView = user;
		if (frame.effects.mask != nullptr)
			ORVAN_TRY(RecordMask(mask.content, frame, extent));
		if (frame.effects.clipPath != nullptr || frame.effects.clipShape != nullptr)
			At(mask.content).clip = ORVAN_TRY(RecordClip(_scene, frame, extent, -1, _record));
		if (IsTurned(user))
			ORVAN_TRY(ClipContent(mask));
		At(index).mask = static_cast<std::int32_t>(_record.masks.GetCount());
		return _record.masks.Append(mask);
	}

	static bool IsTurned(const Matrix2d& m) noexcept
	{
		return (m.axis1.y != 0.0 || m.axis2.x != 0.0) && (m.axis1.x != 0.0 || m.axis2.y != 0.0);
	}

	/// A region that is turned in the view is no rectangle there, but an area like that of a clip path.
	Result<void> ClipContent(const RecordedMask& mask) noexcept
	{
		Node& content = At(mask.content);
		Outline rectangle;
		ORVAN_TRY(rectangle.AddRectangle(mask.region, 0.0, 0.0));
		BaseArray<ClipShape> shapes;
		ORVAN_TRY(shapes.Append({std::move(rectangle), content.toView, SVGFillRule::nonzero, -1}));
		ORVAN_TRY(_record.regions.Append({std::move(shapes), content.clip}));
		content.clip = static_cast<std::int32_t>(_record.regions.GetCount() - 1);
		return {};
	}

	/// True for what a filter is recorded for; where its references lead nowhere, there is none.
	bool IsApart(std::int32_t index) noexcept
	{
		const std::int32_t parent = At(index).parent;
		return parent >= 0 && At(parent).kind == NodeKind::apart;
	}

	Result<void> RecordFilterOf(std::int32_t index, const Frame& frame, Extent& extent) noexcept
	{
		RecordedFilter filter = ORVAN_TRY(RecordFilter(_scene, frame, extent, *this));
		At(index).filter = static_cast<std::int32_t>(_record.filters.GetCount());
		SetHasPixels(index);
		return _record.filters.Append(std::move(filter));
	}

	Result<std::int32_t> RecordNothing(const Frame& frame) noexcept
	{
		const std::int32_t index = GetCount();
		ORVAN_TRY(_record.nodes.Append(MakeContent(frame.element, {})));
		return index;
	}

	/// All of a shape but its outline. `box` is what gradients refer to.
	Result<ShapeStyle> MakeStyle(const Frame& frame, const Outline& outline, const LazyBox& box) noexcept
	{
		const Style& style = frame.place.style;
		ShapeStyle shape;
		shape.fill = ORVAN_TRY(GetPaint(_scene, _record, frame, box, true, _contents));
		shape.stroke = ORVAN_TRY(GetPaint(_scene, _record, frame, box, false, _contents));
		shape.saysFill = HasFill(style) && !shape.fill.isMissing;
		shape.saysStroke = HasStroke(frame.place) && !shape.stroke.isMissing;
		shape.pen = GetPen(frame.place);
		if (shape.HasStroke())
			shape.dashes = ORVAN_TRY(GetDashes(frame, outline));
		shape.isPenUnscaled = IsStrokeUnscaled(frame);
		shape.fillRule = style.fillRule;
		shape.paintOrder = style.paintOrder;
		shape.pointerEvents = style.pointerEvents;
		shape.isVisible = style.visibility == SVGVisibility::visible;
		return shape;
	}

	/// Gives a node its shape; the result is the outline where it is kept.
	Result<const Outline*> SetShape(std::int32_t node, Outline outline, ShapeStyle style,
									Outline* cells = nullptr) noexcept
	{
		const ShapeStyle* const kept = ORVAN_TRY(_record.KeepStyle(std::move(style)));
		const std::size_t index = _record.shapes.GetCount();
		ORVAN_TRY(_record.shapes.Append({std::move(outline), cells, kept}));
		At(node).shape = static_cast<std::int32_t>(index);
		return &_record.shapes[index].outline;
	}

	/// A node for a part of the text that stands in `_current`.
	Node MakePart(const Frame& text, const Frame& owner, double opacity) noexcept
	{
		Node node;
		node.element = SVGElementRef::From(owner.element);
		node.parent = _current;
		node.toView = text.place.transform;
		node.isReferenced = At(_current).isReferenced;
		node.opacity = opacity;
		node.isChanged = At(_current).isChanged;
		node.isFiltered = At(_current).isFiltered;
		for (const Frame* span = &owner; span != nullptr && span->element != text.element; span = span->outer)
		{
			// Effects of parts are left aside, but for what is recorded with all contents.
			if (span->effects.NeedsPicture() && _contents == nullptr)
				node.isChanged = node.isFiltered = true;
		}
		node.end = GetCount() + 1;
		return node;
	}

	/// Parts of a text inside of `around`. With all contents, those that are a picture of their own have a node.
	Result<void> RecordFragments(const Frame& text, const Frame& around, const TextLayout& layout,
								 std::span<const TextFragment> fragments) noexcept
	{
		while (!fragments.empty())
		{
			const auto getPicture = [&](const TextFragment& fragment)
			{
				return _contents != nullptr ? TextLayout::FindPicture(fragment, around) : nullptr;
			};
			const Frame* const picture = getPicture(fragments.front());
			std::size_t count = 1;
			while (picture != nullptr && count < fragments.size() && getPicture(fragments[count]) == picture)
				count++;
			if (picture == nullptr)
				ORVAN_TRY(RecordFragment(text, layout, fragments.front()));
			else
				ORVAN_TRY(RecordPart(text, *picture, layout, fragments.first(count)));
			fragments = fragments.subspan(count);
		}
		return {};
	}

	/// A part of a text that is a picture of its own. It has the coordinates of the text, and the text's box.
	Result<void> RecordPart(const Frame& text, const Frame& part, const TextLayout& layout,
							std::span<const TextFragment> fragments) noexcept
	{
		const bool isApart = part.effects.filter != nullptr && ORVAN_TRY(BeginApart(part, Matrix2d()));
		const std::int32_t node = ORVAN_TRY(Enter(part));
		ORVAN_TRY(RecordFragments(text, part, layout, fragments));
		ORVAN_TRY(LeaveBox(node, part, layout.GetBounds()));
		if (isApart)
			EndApart();
		return {};
	}

	/// Letters between the lines that decorate them below and above.
	Result<void> RecordFragment(const Frame& text, const TextLayout& layout, const TextFragment& fragment) noexcept
	{
		ORVAN_TRY(RecordLines(text, layout, fragment, TextLineKind::underline));
		ORVAN_TRY(RecordLines(text, layout, fragment, TextLineKind::overline));
		ORVAN_TRY(RecordLetters(text, layout, fragment));
		return RecordLines(text, layout, fragment, TextLineKind::lineThrough);
	}

	/// Lines are seen, and neither hit nor measured: in that they are like markers.
	Result<void> RecordLines(const Frame& text, const TextLayout& layout, const TextFragment& fragment,
							 TextLineKind kind) noexcept
	{
		for (int i = 0; const Frame* const frame = TextLayout::FindDecorating(fragment, kind, i); i++)
		{
			Outline lines = ORVAN_TRY(layout.GetLines(fragment, kind, *frame));
			ShapeStyle style = ORVAN_TRY(MakeStyle(*frame, lines, layout.GetBounds()));
			style.fillRule = SVGFillRule::nonzero;
			style.isVisible = fragment.frame->place.style.visibility == SVGVisibility::visible;
			Node node = MakePart(text, *frame, fragment.opacity);
			node.kind = NodeKind::marker;
			node.isReferenced = true;
			const std::int32_t index = GetCount();
			ORVAN_TRY(_record.nodes.Append(std::move(node)));
			ORVAN_TRY(SetShape(index, std::move(lines), std::move(style)));
		}
		return {};
	}

	Result<void> RecordLetters(const Frame& text, const TextLayout& layout, const TextFragment& fragment) noexcept
	{
		// What stands in patterns stands before the node.
		Outline letters = ORVAN_TRY(layout.GetOutline(fragment));
		ShapeStyle style = ORVAN_TRY(MakeStyle(*fragment.frame, letters, layout.GetBounds()));
		Node node = MakePart(text, *fragment.frame, fragment.opacity);
		const std::int32_t index = GetCount();
		for (const Frame* span = fragment.frame; span != nullptr && span->element != text.element; span = span->outer)
		{
			if (!node.isReferenced)
				ORVAN_TRY(_record.elements.Append({span->element, index}));
		}
		ORVAN_TRY(_record.nodes.Append(std::move(node)));
		style.fillRule = SVGFillRule::nonzero;
		Outline cells;
		for (std::size_t cluster = fragment.first; cluster < fragment.end; cluster++)
		{
			Outline cell;
			ORVAN_TRY(cell.AddRectangle(layout.GetCell(cluster), 0.0, 0.0));
			ORVAN_TRY(cells.Append(cell, layout.GetPlace(cluster)));
		}
		const std::size_t cellsIndex = _record.cells.GetCount();
		ORVAN_TRY(_record.cells.Append(std::move(cells)));
		ORVAN_TRY(SetShape(index, std::move(letters), std::move(style), &_record.cells[cellsIndex]));
		return {};
	}

	Scene& _scene;
	Record& _record;
	ContentRecorder* _contents; ///< This, or null where what stands in masks and patterns is left aside.
	std::int32_t _current = -1; ///< The node that stands around what comes next.
	bool _isInMarker = false;   ///< The next node is a marker's.
	std::int32_t _lastFree = 0; ///< Where a node was kept free.
};

Place GetOutermostPlace(const Scene& scene) noexcept
{
	Place place;
	place.style = scene.initialStyle;
	const Vector2d& size = scene.viewportSize;
	place.viewport = {size.x, size.y, {size.x, size.y}};
	return place;
}

/// Finds the elements that hold definitions, and records what stands in them.
class DefinitionFinder
{
public:
	DefinitionFinder(Scene& scene, Record& record) noexcept : _scene(scene), _recorder(scene, record, Contents::left)
	{
	}

	Result<void> Visit(ObjectBase* element, const Place& outside, const Frame* outer) noexcept
	{
		const Borrowed<SVGElementInterface> svgElement(element);
		if (!svgElement || svgElement->GetDisplay() == SVGDisplay::none)
			return {};
		const bool isDefinition = IsDefinition(element);
		if (!isDefinition && !Borrowed<SVGGroupElementInterface>(element) && !Borrowed<SVGSVGElementInterface>(element))
			return {};
		const Frame frame(element, outside, outer, _scene.limits);
		if (!frame.canDraw)
			return {};
		const auto visitChildren = [&](bool draws) noexcept -> Result<void>
		{
			const Borrowed<HierarchyObjectInterface> hierarchy(element);
			for (auto child = hierarchy->GetFirstChild(); child; child = child->GetNextSibling())
			{
				if (draws)
					ORVAN_TRY(Walk(_scene, _recorder).DrawElement(child.GetObject(), frame.place, &frame));
				ORVAN_TRY(Visit(child.GetObject(), frame.place, &frame));
			}
			return {};
		};
		if (!isDefinition)
			return visitChildren(false);
		return _recorder.RecordDefinition(frame, [&] { return visitChildren(true); });
	}

private:
	static bool IsDefinition(ObjectBase* element) noexcept
	{
		return Borrowed<SVGDefsElementInterface>(element) || Borrowed<SVGSymbolElementInterface>(element) ||
			   Borrowed<SVGClipPathElementInterface>(element) || Borrowed<SVGMaskElementInterface>(element) ||
			   Borrowed<SVGMarkerElementInterface>(element) || Borrowed<SVGPatternElementInterface>(element);
	}

	Scene& _scene;
	Recorder _recorder;
};

} // namespace

Result<Record> RecordPicture(Scene& scene, Contents contents) noexcept
{
	Record record;
	record.viewSize = scene.viewportSize;
	scene.referenced = &record.referenced;
	scene.drawsFilteredApart = contents == Contents::recorded;
	Recorder recorder(scene, record, contents);
	const SVGElementRef root = scene.document->GetRootElement();
	recorder.keepsFree = contents == Contents::left && scene.route.empty();
	if (root)
		ORVAN_TRY(Walk(scene, recorder).DrawElement(root.GetObject(), GetOutermostPlace(scene), nullptr));
	record.hasMissing = scene.hasMissing;
	if (!record.nodes.IsEmpty())
		record.documentToView = record.nodes[0].toView;
	record.pictureEnd = static_cast<std::int32_t>(record.nodes.GetCount());
	record.sharedCount = record.CountShared();
	record.shapeCount = record.shapes.GetCount();
	scene.referenced = nullptr;
	record.SortElements();
	return record;
}

Result<void> RecordDefinitions(Scene& scene, Record& record) noexcept
{
	const SVGElementRef root = scene.document->GetRootElement();
	if (!root)
		return {};
	Place place = GetOutermostPlace(scene);
	place.transform = record.documentToView;
	scene.referenced = &record.referenced;
	ORVAN_TRY(DefinitionFinder(scene, record).Visit(root.GetObject(), place, nullptr));
	scene.referenced = nullptr;
	record.SortElements();
	return {};
}

} // namespace orvan::geometry
