// SPDX-License-Identifier: MIT
#include "gradients.h"

#include "references.h"

namespace orvan::drawing
{
namespace
{

using Key = SVGImportAttribute;

constexpr std::size_t kMaxStops = 1024;

/// The colour of a stop: a plain colour, or one of the complete import's with opacity or as currentColor.
Result<Stop> ReadStop(const Scene& scene, ObjectBase* element) noexcept
{
	const DataDictionary attributes = Borrowed<SVGElementInterface>(element)->GetAttributeDictionary();
	const auto key = static_cast<std::int32_t>(Key::stopColor);
	Stop stop;
	stop.offset = ClampToUnit(Borrowed<SVGStopElementInterface>(element)->GetOffset());
	stop.alpha = ClampToUnit(attributes.GetOr(static_cast<std::int32_t>(Key::stopOpacity), 1.0));
	if (const auto* color = attributes.Find<Color>(key))
		stop.color = *color;
	else if (const auto* paint = attributes.Find<SVGPaint>(key))
	{
		if (paint->type == SVGPaintType::currentColor)
		{
			Style style = ORVAN_TRY(GetInheritedStyle(SVGElementRef::From(element), {}, scene.initialStyle));
			style.Apply(attributes, {});
			stop.color = style.color;
			stop.alpha *= style.colorAlpha;
		}
		else
		{
			stop.color = paint->color;
			stop.alpha *= ClampToUnit(paint->alpha);
		}
	}
	return stop;
}

Result<BaseArray<Stop>> ReadStops(const Scene& scene, ObjectBase* gradient) noexcept
{
	BaseArray<Stop> stops;
	const Borrowed<HierarchyObjectInterface> hierarchy(gradient);
	if (!hierarchy)
		return stops;
	double least = 0.0;
	for (auto child = hierarchy->GetFirstChild(); child; child = child->GetNextSibling())
	{
		if (!Borrowed<SVGStopElementInterface>(child))
			continue;
		Stop stop = ORVAN_TRY(ReadStop(scene, child.GetObject()));
		stop.offset = least = std::max(least, stop.offset);
		ORVAN_TRY(stops.Append(stop));
	}
	if (stops.GetCount() > kMaxStops)
	{
		const double step = static_cast<double>(stops.GetCount() - 1) / (kMaxStops - 1);
		for (std::size_t i = 0; i < kMaxStops; i++)
			stops[i] = stops[static_cast<std::size_t>(static_cast<double>(i) * step)];
		ORVAN_TRY(stops.Resize(kMaxStops));
	}
	return stops;
}

double ToLight(double value) noexcept
{
	return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double FromLight(double light) noexcept
{
	return light <= 0.0031308 ? light * 12.92 : 1.055 * std::pow(light, 1.0 / 2.4) - 0.055;
}

/// More stops between the ones that are given, so that colours mix as light does.
Result<BaseArray<Stop>> MixAsLight(const BaseArray<Stop>& stops) noexcept
{
	// Where there are many already, fewer come between them.
	constexpr std::size_t kMostSteps = 16;
	constexpr std::size_t kManyStops = 2 * kMaxStops;
	const int steps = static_cast<int>(std::min(kMostSteps, kManyStops / std::max(stops.GetCount(), std::size_t{1})));
	BaseArray<Stop> result;
	const Stop* last = nullptr;
	for (const Stop& stop : stops)
	{
		for (int step = 1; last != nullptr && stop.offset > last->offset && step < steps; step++)
		{
			const double t = static_cast<double>(step) / steps;
			const auto mix = [t](double a, double b)
			{
				return a + (b - a) * t;
			};
			const auto mixLight = [&](double a, double b)
			{
				return FromLight(mix(ToLight(ClampToUnit(a)), ToLight(ClampToUnit(b))));
			};
			ORVAN_TRY(result.Append(
				{mix(last->offset, stop.offset),
				 {mixLight(last->color.red, stop.color.red), mixLight(last->color.green, stop.color.green),
				  mixLight(last->color.blue, stop.color.blue)},
				 mix(last->alpha, stop.alpha)}));
		}
		ORVAN_TRY(result.Append(stop));
		last = &stop;
	}
	return result;
}

/// Reads coordinates: fractions of the bounding box, or lengths in the user's units.
class Coordinates
{
public:
	explicit Coordinates(const GradientDefinition& gradient) noexcept : _gradient(gradient)
	{
	}

	double Get(Key key, Axis axis, double absent) const noexcept
	{
		// An absent coordinate is a percentage in either unit.
		const SVGLength length = _gradient.chain.GetOr(key, SVGLength{absent, SVGLengthUnit::percent});
		if (_gradient.units == SVGGradientUnits::objectBoundingBox && length.unit == SVGLengthUnit::percent)
			return length.value;
		return ToUserUnits(length, axis, _gradient.viewport, _gradient.style);
	}

	double GetOr(Key key, Axis axis, double absent) const noexcept
	{
		return _gradient.chain.Has(key) ? Get(key, axis, 0.0) : absent;
	}

private:
	const GradientDefinition& _gradient;
};

} // namespace

bool IsGradient(ObjectBase* element) noexcept
{
	return Borrowed<SVGLinearGradientElementInterface>(element) || Borrowed<SVGRadialGradientElementInterface>(element);
}

Result<GradientDefinition> GetGradient(Scene& scene, ObjectBase* element) noexcept
{
	GradientDefinition gradient;
	gradient.isRadial = static_cast<bool>(Borrowed<SVGRadialGradientElementInterface>(element));
	gradient.chain = ORVAN_TRY(Chain::Follow(scene, element, &IsGradient));
	gradient.units = gradient.chain.GetKeyword(Key::gradientUnits, SVGGradientUnits::objectBoundingBox);
	gradient.spread = gradient.chain.GetKeyword(Key::spreadMethod, SVGSpreadMethod::pad);
	gradient.stops = ORVAN_TRY(ReadStops(scene, gradient.chain.FindParentOf<SVGStopElementInterface>()));
	gradient.viewport = ORVAN_TRY(GetViewportAround(scene, element));
	gradient.style = ORVAN_TRY(GetInheritedStyle(SVGElementRef::From(element), gradient.viewport, scene.initialStyle));
	gradient.style.Apply(Borrowed<SVGElementInterface>(element)->GetAttributeDictionary(), gradient.viewport);
	if (gradient.style.colorInterpolation == SVGColorInterpolation::linearRGB)
		gradient.stops = ORVAN_TRY(MixAsLight(gradient.stops));
	return gradient;
}

GradientGeometry GetGeometry(const GradientDefinition& gradient) noexcept
{
	const Coordinates at(gradient);
	GradientGeometry geometry;
	if (!gradient.isRadial)
	{
		geometry.from = {at.Get(Key::x1, Axis::horizontal, 0.0), at.Get(Key::y1, Axis::vertical, 0.0)};
		geometry.to = {at.Get(Key::x2, Axis::horizontal, 1.0), at.Get(Key::y2, Axis::vertical, 0.0)};
		return geometry;
	}
	geometry.to = {at.Get(Key::cx, Axis::horizontal, 0.5), at.Get(Key::cy, Axis::vertical, 0.5)};
	geometry.toRadius = at.Get(Key::r, Axis::other, 0.5);
	// The focus follows the centre. One outside of the circle makes a cone.
	geometry.from = {at.GetOr(Key::fx, Axis::horizontal, geometry.to.x),
					 at.GetOr(Key::fy, Axis::vertical, geometry.to.y)};
	geometry.fromRadius = std::max(0.0, at.GetOr(Key::fr, Axis::other, 0.0));
	// Two circles that are one leave no room for colours in between: the inner ones are inside, the last outside.
	if (geometry.fromRadius == geometry.toRadius && geometry.from == geometry.to)
		geometry.fromRadius *= 1.0 - 1e-3;
	return geometry;
}

} // namespace orvan::drawing
