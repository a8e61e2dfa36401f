// SPDX-License-Identifier: MIT
#include "picture_recorder.h"

#include "curve.h"
#include "drawing/markers.h"
#include "drawing/references.h"
#include "drawing/stroke_parts.h"
#include "drawing/strokes.h"
#include "orvan/diagnostics.h"
#include "svg_complete.h"

namespace orvan::geometry
{

using namespace drawing;
using Key = SVGImportAttribute;

namespace
{

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
		const double length = ToUserUnits(dash, Axis::other, frame.place.viewport, style, style.dashFontSize) * unit;
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
	const SVGLineJoin join = IsMitred(style.lineJoin) ? SVGLineJoin::miter : style.lineJoin;
	return {width > 0.0 && width <= kLargest ? width : 0.0, style.lineCap, join, style.miterLimit};
}

} // namespace

Result<std::int32_t> Recorder::RecordContent(const Frame& frame) noexcept
{
	return RecordIn(frame.element, frame.place,
					[&] { return Walk(_scene, *this).DrawChildren(frame.element, frame.place, frame); });
}

Result<std::int32_t> Recorder::RecordElement(ObjectBase* element, const Place& place, const Frame& outer) noexcept
{
	return RecordIn(element, place, [&] { return Walk(_scene, *this).DrawElement(element, place, &outer); });
}

Result<void> Recorder::DrawShape(const Frame& frame, Outline& outline) noexcept
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

Result<void> Recorder::DrawImage(const Frame& frame, const PlacedImage& image) noexcept
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

Result<void> Recorder::DrawGroup(const Frame& frame, const Content& content) noexcept
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

Result<void> Recorder::DrawClipped(const Place& place, const Rectangle& clip, const Content& content) noexcept
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

Node Recorder::MakeContent(ObjectBase* element, const Matrix2d& toView) const noexcept
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

void Recorder::SetHasPixels(std::int32_t node) noexcept
{
	for (std::int32_t at = node; at >= 0 && !At(at).hasPixels; at = At(at).parent)
	{
		At(at).hasPixels = true;
		if (At(at).kind == NodeKind::content) // What is cut off beyond is a mask or a tile.
			break;
	}
}

bool Recorder::IsFull() noexcept
{
	if (_record.nodes.GetCount() < kMaxNodes)
		return false;
	_scene.limits.Omit(Omission::work);
	return true;
}

Result<std::int32_t> Recorder::Enter(const Frame& frame) noexcept
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

Result<void> Recorder::KeepFree() noexcept
{
	constexpr std::int32_t kDistance = 64;
	if (!keepsFree || _current < 0 || At(_current).isReferenced || GetCount() - _lastFree < kDistance)
		return {};
	_lastFree = GetCount();
	return _record.nodes.Append(MakeFreeNode(_current, GetCount()));
}

Result<void> Recorder::KeepFreeBehind(std::int32_t index) noexcept
{
	constexpr std::int32_t kMost = 1024;
	constexpr std::int32_t kShare = 32;
	for (std::int32_t count = std::min((GetCount() - index) / kShare, kMost); count > 0; count--)
		ORVAN_TRY(_record.nodes.Append(MakeFreeNode(_current, GetCount())));
	return {};
}

Result<ShapeStyle> Recorder::MakeStyle(const Frame& frame, const Outline& outline, const LazyBox& box) noexcept
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

Result<const Outline*> Recorder::SetShape(std::int32_t node, Outline outline, ShapeStyle style, Outline* cells) noexcept
{
	const ShapeStyle* const kept = ORVAN_TRY(_record.KeepStyle(std::move(style)));
	const std::size_t index = _record.shapes.GetCount();
	ORVAN_TRY(_record.shapes.Append({std::move(outline), cells, kept}));
	At(node).shape = static_cast<std::int32_t>(index);
	return &_record.shapes[index].outline;
}

namespace
{

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
