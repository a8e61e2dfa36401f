// SPDX-License-Identifier: MIT
#include "composition.h"

#include "clip_paths.h"
#include "drawing/references.h"
#include "filter_effect.h"
#include "layers.h"
#include "masks.h"

#include <array>

namespace orvan::cairo
{
namespace
{

using namespace drawing;

/// How many layers inside each other have their content measured before they are made.
constexpr int kMeasuredLayers = 4;

/// The drawing library's operators, by blend mode.
constexpr std::array kOperators = {
	CAIRO_OPERATOR_OVER,       CAIRO_OPERATOR_MULTIPLY,       CAIRO_OPERATOR_SCREEN,      CAIRO_OPERATOR_OVERLAY,
	CAIRO_OPERATOR_DARKEN,     CAIRO_OPERATOR_LIGHTEN,        CAIRO_OPERATOR_COLOR_DODGE, CAIRO_OPERATOR_COLOR_BURN,
	CAIRO_OPERATOR_HARD_LIGHT, CAIRO_OPERATOR_SOFT_LIGHT,     CAIRO_OPERATOR_DIFFERENCE,  CAIRO_OPERATOR_EXCLUSION,
	CAIRO_OPERATOR_HSL_HUE,    CAIRO_OPERATOR_HSL_SATURATION, CAIRO_OPERATOR_HSL_COLOR,   CAIRO_OPERATOR_HSL_LUMINOSITY,
	CAIRO_OPERATOR_ADD,
};

cairo_operator_t ToOperator(SVGBlendMode mode) noexcept
{
	const auto number = static_cast<std::size_t>(mode);
	return number < kOperators.size() ? kOperators[number] : CAIRO_OPERATOR_OVER;
}

/// The references of the effects, followed; null for none.
struct Followed
{
	BaseArray<FilterStage> filters;
	SVGElementRef clip;                  ///< Only one that is not the drawing library's clip already.
	const SVGClipShape* shape = nullptr; ///< The same instead of a clip path.
	BaseArray<SVGElementRef> masks;
};

/// The content as one picture, with its filters; null when nothing is left of it.
Result<PatternPtr> DrawPicture(const Canvas& canvas, const Frame& frame, const Followed& followed, Extent& extent,
							   const Content& content, Sink& sink) noexcept
{
	if (!followed.filters.IsEmpty())
		return DrawFiltered(canvas, frame, followed.filters, extent, content);
	cairo_push_group(canvas.drawing);
	Result<void> drawn = content.DrawInto(sink);
	PatternPtr picture(cairo_pop_group(canvas.drawing));
	ORVAN_TRY(drawn);
	return picture;
}

/// Draws content into a layer and puts that through the effects.
Result<void> ComposeLayer(const Canvas& canvas, const Frame& frame, const Effects& effects, const Followed& followed,
						  Extent& extent, const Content& content, Sink& sink) noexcept
{
	Limits& limits = canvas.job.scene.limits;
	const Rectangle area = canvas.GetClipExtents().RoundOut();
	// Filters count their pixels themselves.
	const bool isClipped = followed.clip || followed.shape != nullptr;
	const double layers = (followed.filters.IsEmpty() ? 1.0 : 0.0) + (isClipped ? 1.0 : 0.0);
	const LayerScope layer(limits, area.GetArea() * layers);
	if (!layer.IsOpen())
		return {};
	cairo_t* const drawing = canvas.drawing;
	PatternPtr picture = ORVAN_TRY(DrawPicture(canvas, frame, followed, extent, content, sink));
	if (picture == nullptr)
		return {};
	const cairo_operator_t blend = ToOperator(effects.blendMode);
	if (isClipped)
	{
		const PatternPtr coverage = followed.clip ? ORVAN_TRY(DrawClipPath(canvas, followed.clip, frame, extent))
												  : ORVAN_TRY(DrawClipShape(canvas, *followed.shape, frame, extent));
		const bool isLast = followed.masks.IsEmpty() && effects.opacity == 1.0;
		if (!isLast)
			cairo_push_group(drawing);
		else
			cairo_set_operator(drawing, blend);
		cairo_set_source(drawing, picture.get());
		cairo_mask(drawing, coverage.get());
		if (isLast)
			return {};
		picture.reset(cairo_pop_group(drawing));
	}
	PatternPtr mask;
	if (!followed.masks.IsEmpty())
	{
		mask = ORVAN_TRY(DrawMask(canvas, followed.masks, frame, area, extent, effects.opacity));
		// Without a mask to go through nothing shows.
		if (mask == nullptr)
			return {};
	}
	cairo_set_operator(drawing, blend);
	cairo_set_source(drawing, picture.get());
	if (mask != nullptr)
		cairo_mask(drawing, mask.get());
	else
		cairo_paint_with_alpha(drawing, effects.opacity);
	return {};
}

/// What only groups with effects come to.
[[gnu::noinline]] Result<void> ComposeEffects(const Canvas& canvas, const Frame& frame, const Effects& effects,
											  Extent& extent, const Content& content, Sink& sink) noexcept
{
	Followed followed;
	followed.clip = ORVAN_TRY(FindClipPath(canvas.job, effects, frame));
	if (effects.mask != nullptr)
		followed.masks = ORVAN_TRY(FindMasks(canvas.job.scene, effects, frame));
	if (effects.opacity == 0.0)
		return {};
	if (effects.filter != nullptr)
		followed.filters = ORVAN_TRY(GetFilterStages(canvas.job.scene, frame, extent));
	const bool isFiltered = !followed.filters.IsEmpty();
	const SavedDrawing saved(canvas);
	if (isFiltered)
	{
		const Rectangle touched = ORVAN_TRY(extent.GetTouched());
		canvas.ClipTo(GetFilteredBounds(followed.filters, frame, touched).RoundOut(), {});
	}
	else if (extent.IsKnown())
		canvas.ClipTo(ORVAN_TRY(extent.GetTouched()).RoundOut(), {});
	const bool isClipped = followed.clip || effects.clipShape != nullptr;
	if (effects.clipShape != nullptr && !ORVAN_TRY(ClipToShape(canvas, *effects.clipShape, frame, extent)))
		followed.shape = effects.clipShape;
	if (followed.clip && ORVAN_TRY(ClipSimply(canvas, followed.clip, frame, extent)))
		followed.clip = nullptr;
	// What is clipped is a picture of its own, which shows only where something in it is blended.
	const bool isIsolated = effects.isIsolated || (isClipped && ORVAN_TRY(HasBlendModes(canvas.job.scene)));
	const bool needsLayer = isFiltered || followed.clip || followed.shape != nullptr || !followed.masks.IsEmpty() ||
							effects.opacity != 1.0 || effects.blendMode != SVGBlendMode::normal || isIsolated;
	if (!needsLayer)
		return canvas.GetClipExtents().GetArea() > 0.0 ? content.DrawInto(sink) : Result<void>();
	// Below a few layers measuring anew would cost more than it saves: the outer ones have set bounds already.
	if (!isFiltered && !extent.IsKnown() && canvas.job.scene.limits.GetLayerCount() < kMeasuredLayers)
		canvas.ClipTo(ORVAN_TRY(extent.GetTouched()).RoundOut(), {});
	if (!(canvas.GetClipExtents().GetArea() > 0.0))
		return {};
	return ComposeLayer(canvas, frame, effects, followed, extent, content, sink);
}

} // namespace

Result<void> Compose(const Canvas& canvas, const Frame& frame, const Effects& effects, Extent& extent,
					 const Content& content, Sink& sink) noexcept
{
	// Most groups have none: deep trees need little of the stack.
	if (effects.IsNone())
		return content.DrawInto(sink);
	return ComposeEffects(canvas, frame, effects, extent, content, sink);
}

} // namespace orvan::cairo
