// SPDX-License-Identifier: MIT
/// What cuts nodes off and changes them: clip paths, masks, filters.
#include "clip_recorder.h"
#include "drawing/references.h"
#include "filter_recorder.h"
#include "picture_recorder.h"
#include "svg_complete.h"

namespace orvan::geometry
{

using namespace drawing;
using Key = SVGImportAttribute;

Result<bool> Recorder::BeginApart(const Frame& frame, const Matrix2d& toPicture) noexcept
{
	if (_contents == nullptr || IsFull() || !ORVAN_TRY(HasFilters(_scene, frame)))
		return false;
	Node node = MakeContent(frame.element, toPicture);
	node.kind = NodeKind::apart;
	_current = GetCount();
	ORVAN_TRY(_record.nodes.Append(std::move(node)));
	return true;
}

void Recorder::EndApart() noexcept
{
	At(_current).end = GetCount();
	_current = At(_current).parent;
}

Result<void> Recorder::LeaveBox(std::int32_t index, const Frame& frame, const LazyBox& box) noexcept
{
	// It is seldom asked for.
	Extent extent(frame.effects.NeedsPicture() ? box.Get() : Rectangle(), {});
	return Leave(index, frame, extent);
}

Result<void> Recorder::Leave(std::int32_t index, const Frame& frame, Extent& extent) noexcept
{
	// Below the node, since it is no picture of its own.
	// Boxes are not cut by several masks, since what they leave together is no rectangle.
	const bool isCut = frame.effects.mask != nullptr &&
					   (_contents != nullptr || !frame.attributes.Has(static_cast<std::int32_t>(Key::maskLayers)));
	if (isCut && _scene.GetNextOnRoute(frame.element, frame.depth) == nullptr)
		ORVAN_TRY(RecordMasks(index, frame, extent));
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

Result<NodeEdges*> Recorder::MakeEdges(std::int32_t index) noexcept
{
	if (At(index).edges < 0)
	{
		At(index).edges = static_cast<std::int32_t>(_record.edges.GetCount());
		ORVAN_TRY(_record.edges.Append({}));
	}
	return &_record.edges[static_cast<std::size_t>(At(index).edges)];
}

Result<void> Recorder::RecordMasks(std::int32_t index, const Frame& user, Extent& extent) noexcept
{
	const BaseArray<SVGElementRef> masks = ORVAN_TRY(FindMasks(_scene, user.effects, user));
	for (std::size_t i = masks.GetCount(); i-- > 0;)
		ORVAN_TRY(RecordMask(index, masks[i], user, extent));
	if (masks.GetCount() > 1)
		ORVAN_TRY(MakeEdges(index))->hasMask = false; // What they leave together is no rectangle.
	return {};
}

Result<void> Recorder::RecordMask(std::int32_t index, const SVGElementRef& mask, const Frame& user,
								  Extent& extent) noexcept
{
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

Result<void> Recorder::RecordMaskContent(std::int32_t index, const Frame& masked, Frame& frame, Extent& extent) noexcept
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
		ORVAN_TRY(RecordMasks(mask.content, frame, extent));
	if (frame.effects.clipPath != nullptr || frame.effects.clipShape != nullptr)
		At(mask.content).clip = ORVAN_TRY(RecordClip(_scene, frame, extent, -1, _record));
	if (IsTurned(user))
		ORVAN_TRY(ClipContent(mask));
	mask.lower = At(index).mask;
	mask.composite = masked.GetKeyword(Key::maskComposite, SVGMaskComposite::add);
	At(index).mask = static_cast<std::int32_t>(_record.masks.GetCount());
	return _record.masks.Append(mask);
}

bool Recorder::IsTurned(const Matrix2d& m) noexcept
{
	return (m.axis1.y != 0.0 || m.axis2.x != 0.0) && (m.axis1.x != 0.0 || m.axis2.y != 0.0);
}

Result<void> Recorder::ClipContent(const RecordedMask& mask) noexcept
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

bool Recorder::IsApart(std::int32_t index) noexcept
{
	const std::int32_t parent = At(index).parent;
	return parent >= 0 && At(parent).kind == NodeKind::apart;
}

Result<void> Recorder::RecordFilterOf(std::int32_t index, const Frame& frame, Extent& extent) noexcept
{
	RecordedFilter filter = ORVAN_TRY(RecordFilter(_scene, frame, extent, *this));
	At(index).filter = static_cast<std::int32_t>(_record.filters.GetCount());
	SetHasPixels(index);
	return _record.filters.Append(std::move(filter));
}

Result<std::int32_t> Recorder::RecordNothing(const Frame& frame) noexcept
{
	const std::int32_t index = GetCount();
	ORVAN_TRY(_record.nodes.Append(MakeContent(frame.element, {})));
	return index;
}

} // namespace orvan::geometry
