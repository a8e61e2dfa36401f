// SPDX-License-Identifier: MIT
#include "paints.h"

#include "drawing/chains.h"
#include "drawing/gradients.h"
#include "drawing/references.h"
#include "drawing/viewbox.h"
#include "svg_complete.h"

namespace orvan::geometry
{
namespace
{

using namespace drawing;

RecordedPaint MakeColor(const Color& color, double alpha) noexcept
{
	return {SVGNormalizedPaint::color, color, ClampToUnit(alpha)};
}

/// The mean of the stops, each as wide as it is seen: opaque ones count more than transparent ones.
RecordedPaint GetMean(const BaseArray<Stop>& stops) noexcept
{
	RecordedPaint mean{SVGNormalizedPaint::server, {}, 0.0};
	double weightSum = 0.0;
	const auto add = [&](const Stop& stop, double width)
	{
		const double weight = width * ClampToUnit(stop.alpha);
		mean.color.red += stop.color.red * weight;
		mean.color.green += stop.color.green * weight;
		mean.color.blue += stop.color.blue * weight;
		mean.opacity += weight;
		weightSum += weight;
	};
	double end = 0.0;
	for (std::size_t i = 0; i < stops.GetCount(); i++)
	{
		// Half of the way to each neighbour; the first and the last reach to the ends.
		const double start = end;
		end = i + 1 < stops.GetCount() ? (stops[i].offset + stops[i + 1].offset) / 2.0 : 1.0;
		add(stops[i], std::max(end - start, 0.0));
	}
	if (weightSum > 0.0)
		mean.color = {mean.color.red / weightSum, mean.color.green / weightSum, mean.color.blue / weightSum};
	return mean;
}

/// Whose paint is asked for, and for whom: with context paints these are two.
struct PaintUser
{
	Scene& scene;
	Record& record;
	const Frame& user;
	ContentRecorder* contents;
};

/// A gradient on an element; nothing when it is none, or cannot be laid over the element's box.
Result<std::optional<RecordedPaint>> LayGradient(const PaintUser& to, const Frame& frame, const LazyBox& lazyBox,
												 ObjectBase* element) noexcept
{
	std::optional<RecordedPaint> paint;
	GradientDefinition definition = ORVAN_TRY(GetGradient(to.scene, element));
	const std::size_t count = definition.stops.GetCount();
	RecordedGradient gradient;
	gradient.geometry = GetGeometry(definition);
	const GradientGeometry& at = gradient.geometry;
	if (count == 0 || !std::isfinite(at.from.x + at.from.y + at.to.x + at.to.y + at.fromRadius + at.toRadius))
		return std::optional(RecordedPaint());
	if (definition.units == SVGGradientUnits::objectBoundingBox)
	{
		const Rectangle box = lazyBox.Get();
		if (!(box.GetWidth() > 0.0 && box.GetHeight() > 0.0))
			return paint; // Fractions of it are nowhere.
		gradient.toNode = BoxTransform(box);
	}
	if (count == 1 || (definition.isRadial ? !(at.toRadius > 0.0) : at.from == at.to))
	{
		const Stop& last = definition.stops[count - 1];
		return std::optional(MakeColor(last.color, last.alpha));
	}
	gradient.toNode =
		gradient.toNode * definition.chain.GetTransform(SVGImportAttribute::gradientTransform, frame.place);
	if (&frame != &to.user)
		gradient.toNode = Invert(to.user.place.transform) * frame.place.transform * gradient.toNode;
	if (!IsInvertible(gradient.toNode))
		return std::optional(RecordedPaint());
	paint = GetMean(definition.stops);
	paint->gradient = static_cast<std::int32_t>(to.record.gradients.GetCount());
	gradient.isRadial = definition.isRadial;
	gradient.spread = definition.spread;
	gradient.stops = std::move(definition.stops);
	ORVAN_TRY(to.record.gradients.Append(std::move(gradient)));
	return paint;
}

bool IsPattern(ObjectBase* element) noexcept
{
	return static_cast<bool>(Borrowed<SVGPatternElementInterface>(element));
}

/// From what stands in a pattern to the corner of its tile; nothing where nothing shows.
std::optional<Matrix2d> GetContentTransform(const Chain& chain, bool isBox, const Rectangle& tile,
											const Rectangle& box) noexcept
{
	using Key = SVGImportAttribute;
	const auto viewbox = chain.GetOr(Key::viewBox, SVGViewbox());
	if (viewbox.isDefault)
		return isBox ? Scaling(box.GetWidth(), box.GetHeight()) : Matrix2d();
	const Rectangle area{0.0, 0.0, tile.GetWidth(), tile.GetHeight()};
	const auto fit = FitViewbox(area, viewbox, chain.GetOr(Key::preserveAspectRatio, SVGPreserveAspectRatio()));
	return fit ? std::optional(fit->transform) : std::nullopt;
}

bool IsSame(const Rectangle& a, const Rectangle& b) noexcept
{
	return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

/// A pattern that lies in the same way over something recorded before; -1 for none. Mostly that was not long ago.
std::int32_t FindPattern(const Record& record, const RecordedPattern& wanted) noexcept
{
	constexpr std::size_t kLooks = 32;
	const std::size_t count = record.patterns.GetCount();
	for (std::size_t i = 1; i <= std::min(count, kLooks); i++)
	{
		const RecordedPattern& known = record.patterns[count - i];
		if (known.element == wanted.element && IsSame(known.tile, wanted.tile) && known.toView == wanted.toView &&
			known.toCorner == wanted.toCorner)
			return static_cast<std::int32_t>(count - i);
	}
	return -1;
}

/// A pattern on an element; nothing when it cannot be laid there. Grey stands for those that are not recorded.
Result<std::optional<RecordedPaint>> LayPattern(const PaintUser& to, const Frame& frame, const LazyBox& lazyBox,
												ObjectBase* element) noexcept
{
	using Key = SVGImportAttribute;
	const std::optional<RecordedPaint> none;
	RecordedPaint paint{SVGNormalizedPaint::server, {0.5, 0.5, 0.5}, 1.0};
	if (to.contents == nullptr)
		return std::optional(paint);
	const Chain chain = ORVAN_TRY(Chain::Follow(to.scene, element, &IsPattern));
	ObjectBase* const parent = chain.FindParentOf<SVGElementInterface>();
	if (parent == nullptr || frame.IsWithin(element) || frame.IsWithin(parent))
		return none;
	const auto isInBox = [&](Key key, SVGUnits absent)
	{
		return chain.GetKeyword(key, absent) == SVGUnits::objectBoundingBox;
	};
	const bool isTileInBox = isInBox(Key::patternUnits, SVGUnits::objectBoundingBox);
	const bool isContentInBox = isInBox(Key::patternContentUnits, SVGUnits::userSpaceOnUse);
	const Rectangle box = isTileInBox || isContentInBox ? lazyBox.Get() : Rectangle{0.0, 0.0, 1.0, 1.0};
	if (!(box.GetWidth() > 0.0 && box.GetHeight() > 0.0))
		return none;
	Place place = frame.place;
	place.viewport = ORVAN_TRY(GetViewportAround(to.scene, element));
	const Rectangle tile = chain.GetArea(isTileInBox, place, box);
	const Matrix2d toView = frame.place.transform * chain.GetTransform(Key::patternTransform, place);
	const auto toCorner = GetContentTransform(chain, isContentInBox, tile, box);
	if (!tile.IsFinite() || !(tile.right > tile.left && tile.bottom > tile.top) || !IsInvertible(toView) || !toCorner)
		return none;
	paint.pattern = FindPattern(to.record, {element, tile, toView, *toCorner});
	if (paint.pattern >= 0)
		return std::optional(paint);
	place = ORVAN_TRY(GetContentPlace(to.scene, parent, frame));
	place.transform = *toCorner;
	Frame inner(parent, place, &frame, to.scene.limits);
	// A pattern has no transform of its own beside that of its coordinates.
	inner.place.transform = *toCorner;
	if (!inner.canDraw || !IsInvertible(*toCorner))
		return std::optional(RecordedPaint());
	const std::int32_t content = ORVAN_TRY(to.contents->RecordContent(inner));
	paint.pattern = static_cast<std::int32_t>(to.record.patterns.GetCount());
	ORVAN_TRY(to.record.patterns.Append({element, tile, toView, *toCorner, content}));
	return std::optional(paint);
}

/// Nothing when there is no such paint server, or none that paints here; `exists` tells which.
Result<std::optional<RecordedPaint>> GetServer(const PaintUser& to, const Frame& frame, const LazyBox& box,
											   const String& id, bool& exists) noexcept
{
	const SVGElementRef found = ORVAN_TRY(FindElement(to.scene, id));
	exists = IsGradient(found.GetObject()) || IsPattern(found.GetObject());
	if (IsGradient(found.GetObject()))
		return LayGradient(to, frame, box, found.GetObject());
	if (IsPattern(found.GetObject()))
		return LayPattern(to, frame, box, found.GetObject());
	return std::optional<RecordedPaint>();
}

Result<RecordedPaint> Resolve(const PaintUser& to, const Frame& frame, const LazyBox& box, const SVGPaint* paint,
							  bool isFill) noexcept
{
	if (paint == nullptr) // Nothing was said.
		return isFill ? MakeColor({}, 1.0) : RecordedPaint();
	const Style& style = frame.place.style;
	bool exists = false;
	const auto getFallback = [&]
	{
		switch (paint->fallback)
		{
		case SVGPaintFallback::color:
			return MakeColor(paint->color, paint->alpha);
		case SVGPaintFallback::currentColor:
			return MakeColor(style.color, style.colorAlpha);
		case SVGPaintFallback::absent:
		case SVGPaintFallback::none:
			break;
		}
		RecordedPaint missing;
		missing.isMissing = !exists;
		return missing;
	};
	switch (paint->type)
	{
	case SVGPaintType::none:
		break;
	case SVGPaintType::color:
		return MakeColor(paint->color, paint->alpha);
	case SVGPaintType::currentColor:
		return MakeColor(style.color, style.colorAlpha);
	case SVGPaintType::contextFill:
	case SVGPaintType::contextStroke:
	{
		const ContextPaints* const context = frame.place.context;
		if (context == nullptr)
		{
			RecordedPaint missing;
			missing.isMissing = true;
			return missing;
		}
		const Style& around = context->frame.place.style;
		const bool isContextFill = paint->type == SVGPaintType::contextFill;
		return Resolve(to, context->frame, context->box, isContextFill ? around.fill : around.stroke, isContextFill);
	}
	case SVGPaintType::reference:
	{
		const std::optional<RecordedPaint> server = ORVAN_TRY(GetServer(to, frame, box, paint->reference, exists));
		return server ? *server : getFallback();
	}
	}
	return RecordedPaint();
}

} // namespace

Result<RecordedPaint> GetPaint(Scene& scene, Record& record, const Frame& frame, const LazyBox& box, bool isFill,
							   ContentRecorder* contents) noexcept
{
	const Style& style = frame.place.style;
	RecordedPaint paint =
		ORVAN_TRY(Resolve({scene, record, frame, contents}, frame, box, isFill ? style.fill : style.stroke, isFill));
	paint.gradientOpacity = ClampToUnit(isFill ? style.fillOpacity : style.strokeOpacity);
	paint.opacity *= paint.gradientOpacity;
	return paint;
}

} // namespace orvan::geometry
