// SPDX-License-Identifier: MIT
#include "composition.h"

#include "clip_paths.h"
#include "drawing/measure.h"
#include "layers.h"
#include "masks.h"

namespace orvan::cairo
{
namespace
{

using namespace drawing;

/// How many layers inside each other have their content measured before they are made.
constexpr int kMeasuredLayers = 4;

/// Draws content into a layer and puts that through `clip`, `mask` (null for none) and the opacity.
Result<void> ComposeLayer(const Canvas& canvas, const Frame& frame, double opacity, const SVGElementRef& mask,
						  const SVGElementRef& clip, const Extent& extent, const Content& content, Sink& sink) noexcept
{
	Limits& limits = canvas.job.scene.limits;
	const Rectangle area = canvas.GetClipExtents().RoundOut();
	const LayerScope layer(limits, area.GetArea() * (clip ? 2.0 : 1.0));
	const double detail = GetMaskDetail(canvas.job);
	const LayerScope maskLayer(limits, mask ? area.GetArea() * detail * detail : 0.0);
	if (!layer.IsOpen() || !maskLayer.IsOpen())
		return {};
	cairo_t* const drawing = canvas.drawing;
	cairo_push_group(drawing);
	Result<void> drawn = content.DrawInto(sink);
	PatternPtr picture(cairo_pop_group(drawing));
	ORVAN_TRY(drawn);
	if (clip)
	{
		const PatternPtr coverage = ORVAN_TRY(DrawClipPath(canvas, clip, frame));
		const bool isLast = !mask && opacity == 1.0;
		if (!isLast)
			cairo_push_group(drawing);
		cairo_set_source(drawing, picture.get());
		cairo_mask(drawing, coverage.get());
		if (isLast)
			return {};
		picture.reset(cairo_pop_group(drawing));
	}
	cairo_set_source(drawing, picture.get());
	if (mask)
		cairo_mask(drawing, ORVAN_TRY(DrawMask(canvas, mask, frame, area, extent.user, opacity)).get());
	else
		cairo_paint_with_alpha(drawing, opacity);
	return {};
}

} // namespace

Result<void> Compose(const Canvas& canvas, const Frame& frame, const Effects& effects, const Extent& extent,
					 const Content& content, Sink& sink) noexcept
{
	if (effects.IsNone())
		return content.DrawInto(sink);
	const SVGElementRef clip = ORVAN_TRY(FindClipPath(canvas.job, effects, frame));
	const SVGElementRef mask = ORVAN_TRY(FindMask(canvas.job, effects, frame));
	if (effects.opacity == 0.0)
		return {};
	const SavedDrawing saved(canvas);
	if (extent.device != nullptr)
		canvas.ClipTo(extent.device->RoundOut(), {});
	const bool isClipSimple = !clip || ORVAN_TRY(ClipSimply(canvas, clip, frame));
	if (isClipSimple && !mask && effects.opacity == 1.0)
		return canvas.GetClipExtents().GetArea() > 0.0 ? content.DrawInto(sink) : Result<void>();
	// Below a few layers measuring anew would cost more than it saves: the outer ones have set bounds already.
	if (extent.device == nullptr && canvas.job.scene.limits.GetLayerCount() < kMeasuredLayers)
	{
		MeasureSink measure;
		ORVAN_TRY(content.DrawInto(measure));
		canvas.ClipTo(measure.GetTouched().RoundOut(), {});
	}
	if (!(canvas.GetClipExtents().GetArea() > 0.0))
		return {};
	return ComposeLayer(canvas, frame, effects.opacity, mask, isClipSimple ? SVGElementRef() : clip, extent, content,
						sink);
}

} // namespace orvan::cairo
