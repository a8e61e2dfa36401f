// SPDX-License-Identifier: MIT
#include "gradients.h"

#include <new>

namespace orvan::cairo
{
namespace
{

using namespace drawing;

cairo_extend_t ToExtend(SVGSpreadMethod spread) noexcept
{
	switch (spread)
	{
	case SVGSpreadMethod::reflect:
		return CAIRO_EXTEND_REFLECT;
	case SVGSpreadMethod::repeat:
		return CAIRO_EXTEND_REPEAT;
	case SVGSpreadMethod::pad:
		break;
	}
	return CAIRO_EXTEND_PAD;
}

PatternPtr MakePattern(const GradientDefinition& gradient, const GradientGeometry& at, double opacity) noexcept
{
	PatternPtr pattern(gradient.isRadial ? cairo_pattern_create_radial(at.from.x, at.from.y, at.fromRadius, at.to.x,
																	   at.to.y, at.toRadius)
										 : cairo_pattern_create_linear(at.from.x, at.from.y, at.to.x, at.to.y));
	cairo_pattern_set_extend(pattern.get(), ToExtend(gradient.spread));
	for (const Stop& stop : gradient.stops)
	{
		cairo_pattern_add_color_stop_rgba(pattern.get(), stop.offset, ClampToUnit(stop.color.red),
										  ClampToUnit(stop.color.green), ClampToUnit(stop.color.blue),
										  stop.alpha * opacity);
	}
	return pattern;
}

Result<GradientCache::Entry*> FindEntry(Job& job, ObjectBase* element) noexcept
{
	if (job.gradients == nullptr)
		job.gradients.reset(new (std::nothrow) GradientCache);
	if (job.gradients == nullptr)
		return OutOfMemoryError();
	GradientCache::Entry& entry = job.gradients->Find(element);
	if (entry.element != element)
	{
		entry.element = nullptr;
		entry.definition = ORVAN_TRY(GetGradient(job.scene, element));
		entry.pattern.reset();
		entry.element = element;
	}
	return &entry;
}

} // namespace

void DeleteCache::operator()(GradientCache* cache) const noexcept
{
	delete cache;
}

Result<PaintResult> SetGradient(const Canvas& canvas, ObjectBase* element, double opacity,
								const PaintPlace& at) noexcept
{
	GradientCache::Entry& entry = *ORVAN_TRY(FindEntry(canvas.job, element));
	const GradientDefinition& gradient = entry.definition;
	const Place& place = at.frame.place;
	const GradientGeometry geometry = GetGeometry(gradient);
	const bool isFinite = std::isfinite(geometry.from.x + geometry.from.y + geometry.to.x + geometry.to.y) &&
						  std::isfinite(geometry.fromRadius + geometry.toRadius);
	const std::size_t count = gradient.stops.GetCount();
	if (count == 0 || !isFinite)
		return PaintResult::nothing;
	Matrix2d transform = place.transform;
	if (gradient.units == SVGGradientUnits::objectBoundingBox)
	{
		// A box without width or height has no inside that fractions could refer to.
		const Rectangle box = at.box.Get();
		if (!(box.GetWidth() > 0.0 && box.GetHeight() > 0.0))
			return PaintResult::invalid;
		transform = transform * BoxTransform(box);
	}
	// A geometry that is a point has all of its colours there: the last one covers everything.
	const bool isPoint = gradient.isRadial ? !(geometry.toRadius > 0.0) : geometry.from == geometry.to;
	const auto paintLast = [&]
	{
		const Stop& last = gradient.stops[count - 1];
		SetColor(canvas.drawing, last.color, last.alpha * opacity);
		return PaintResult::painted;
	};
	if (count == 1 || isPoint)
		return paintLast();
	transform = transform * gradient.chain.GetTransform(SVGImportAttribute::gradientTransform, place);
	if (!IsInvertible(transform))
		return PaintResult::nothing;
	if (entry.pattern == nullptr || !(entry.geometry == geometry) || entry.opacity != opacity)
	{
		entry.pattern = MakePattern(gradient, geometry, opacity);
		entry.geometry = geometry;
		entry.opacity = opacity;
	}
	const double reach = std::max({std::abs(geometry.from.x), std::abs(geometry.from.y), std::abs(geometry.to.x),
								   std::abs(geometry.to.y), geometry.fromRadius, geometry.toRadius});
	if (!SetMatrix(entry.pattern.get(), Invert(transform), reach))
	{
		entry.pattern.reset();
		return paintLast();
	}
	cairo_set_source(canvas.drawing, entry.pattern.get());
	return PaintResult::painted;
}

} // namespace orvan::cairo
