// SPDX-License-Identifier: MIT
#include "paints.h"

#include "drawing/gradients.h"
#include "drawing/references.h"
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

Result<RecordedPaint> GetServer(Scene& scene, const String& id) noexcept
{
	const SVGElementRef found = ORVAN_TRY(FindElement(scene.document, id));
	if (IsGradient(found.GetObject()))
	{
		const GradientDefinition gradient = ORVAN_TRY(GetGradient(scene, found.GetObject()));
		return gradient.stops.IsEmpty() ? RecordedPaint() : GetMean(gradient.stops);
	}
	if (Borrowed<SVGPatternElementInterface>(found))
		return RecordedPaint{SVGNormalizedPaint::server, {0.5, 0.5, 0.5}, 1.0};
	return RecordedPaint();
}

Result<RecordedPaint> Resolve(Scene& scene, const Frame& frame, const SVGPaint* paint, bool isFill) noexcept
{
	if (paint == nullptr) // Nothing was said.
		return isFill ? MakeColor({}, 1.0) : RecordedPaint();
	const Style& style = frame.place.style;
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
		return RecordedPaint();
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
			break;
		const Style& around = context->frame.place.style;
		const bool isContextFill = paint->type == SVGPaintType::contextFill;
		return Resolve(scene, context->frame, isContextFill ? around.fill : around.stroke, isContextFill);
	}
	case SVGPaintType::reference:
	{
		const RecordedPaint server = ORVAN_TRY(GetServer(scene, paint->reference));
		if (server.kind != SVGNormalizedPaint::none)
			return server;
		return getFallback();
	}
	}
	return RecordedPaint();
}

} // namespace

Result<RecordedPaint> GetPaint(Scene& scene, const Frame& frame, bool isFill) noexcept
{
	const Style& style = frame.place.style;
	RecordedPaint paint = ORVAN_TRY(Resolve(scene, frame, isFill ? style.fill : style.stroke, isFill));
	paint.opacity *= ClampToUnit(isFill ? style.fillOpacity : style.strokeOpacity);
	return paint;
}

} // namespace orvan::geometry
