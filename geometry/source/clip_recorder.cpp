// SPDX-License-Identifier: MIT
#include "clip_recorder.h"

#include "drawing/clip_shapes.h"
#include "drawing/references.h"
#include "drawing/text_layout.h"
#include "drawing/walk.h"

namespace orvan::geometry
{
namespace
{

using namespace drawing;

/// Collects the areas of shapes and texts, whatever they are painted with.
class ClipSink final : public Sink
{
public:
	ClipSink(Scene& scene, Record& record) noexcept : _scene(scene), _record(record)
	{
	}

	bool TakesContainers() const noexcept override
	{
		return false;
	}

	Result<void> DrawShape(const Frame& frame, Outline& outline) noexcept override
	{
		if (frame.place.style.visibility != SVGVisibility::visible || !Pay(outline))
			return {};
		Extent extent(outline.GetBounds(), {});
		// A plain import knows no "clip-rule", and files that have one have "fill-rule" as well.
		const Style& style = frame.place.style;
		return Append(frame, extent, std::move(outline), _scene.isComplete ? style.clipRule : style.fillRule);
	}

	Result<void> DrawText(const Frame& frame, const TextLayout& text) noexcept override
	{
		Extent extent(text.GetBounds(), {});
		for (const TextFragment& fragment : text.GetFragments())
		{
			if (fragment.frame->place.style.visibility != SVGVisibility::visible)
				continue;
			Outline outline = ORVAN_TRY(text.GetOutline(fragment));
			if (Pay(outline))
				ORVAN_TRY(Append(frame, extent, std::move(outline), SVGFillRule::nonzero));
		}
		return {};
	}

	/// Images clip nothing.
	Result<void> DrawImage(const Frame&, const PlacedImage&) noexcept override
	{
		return {};
	}

	/// A use: its own clip path cuts off what it shows.
	Result<void> DrawGroup(const Frame& frame, const Content& content) noexcept override
	{
		Extent extent(_scene, frame, content);
		const std::int32_t around = _around;
		_around = ORVAN_TRY(RecordClip(_scene, frame, extent, _around, _record));
		const Result<void> drawn = content.DrawInto(*this);
		_around = around;
		if (!drawn.IsOk())
			return drawn.GetError();
		return {};
	}

	Result<void> DrawClipped(const Place&, const Rectangle&, const Content&) noexcept override
	{
		return {};
	}

	BaseArray<ClipShape> shapes;

private:
	bool Pay(const Outline& outline) noexcept
	{
		return _scene.limits.Pay(kElementWork + static_cast<double>(outline.GetCommands().GetCount()) * kCommandWork);
	}

	Result<void> Append(const Frame& frame, Extent& extent, Outline outline, SVGFillRule rule) noexcept
	{
		const std::int32_t clip = ORVAN_TRY(RecordClip(_scene, frame, extent, _around, _record));
		return shapes.Append({std::move(outline), frame.place.transform, rule, clip});
	}

	Scene& _scene;
	Record& _record;
	std::int32_t _around = -1;
};

} // namespace

Result<std::int32_t> RecordClip(Scene& scene, const Frame& frame, Extent& extent, std::int32_t next,
								Record& record) noexcept
{
	using Key = SVGImportAttribute;
	if (frame.effects.clipShape != nullptr)
	{
		BaseArray<ClipShape> shapes;
		Outline outline = ORVAN_TRY(GetClipOutline(*frame.effects.clipShape, frame, extent));
		ORVAN_TRY(shapes.Append({std::move(outline), frame.place.transform, frame.effects.clipShape->fillRule, -1}));
		ORVAN_TRY(record.regions.Append({std::move(shapes), next}));
		return static_cast<std::int32_t>(record.regions.GetCount() - 1);
	}
	const SVGElementRef clip = ORVAN_TRY(FindEffect<SVGClipPathElementInterface>(scene, frame.effects.clipPath, frame));
	if (!clip)
		return next;
	ClipSink sink(scene, record);
	const Place place = ORVAN_TRY(GetContentPlace(scene, clip.GetObject(), frame));
	Frame clipFrame(clip.GetObject(), place, &frame, scene.limits);
	Place content = clipFrame.place;
	// What clips it in turn refers to the clipped element's coordinates; its content has its transform.
	clipFrame.place.transform = place.transform;
	if (clipFrame.GetKeyword(Key::clipPathUnits, SVGUnits::userSpaceOnUse) == SVGUnits::objectBoundingBox)
		content.transform = content.transform * BoxTransform(ORVAN_TRY(extent.GetBox()));
	if (clipFrame.canDraw && IsInvertible(content.transform))
		ORVAN_TRY(Walk(scene, sink).DrawChildren(clip.GetObject(), content, clipFrame));
	const std::int32_t around = ORVAN_TRY(RecordClip(scene, clipFrame, extent, next, record));
	ORVAN_TRY(record.regions.Append({std::move(sink.shapes), around}));
	return static_cast<std::int32_t>(record.regions.GetCount() - 1);
}

} // namespace orvan::geometry
