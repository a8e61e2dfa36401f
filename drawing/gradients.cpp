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

/// Reads coordinates: fractions of the bounding box, or lengths in the user's units.
class Coordinates
{
public:
	Coordinates(const GradientDefinition& gradient, const Place& place) noexcept : _gradient(gradient), _place(place)
	{
	}

	double Get(Key key, Axis axis, double absent) const noexcept
	{
		// An absent coordinate is a percentage in either unit.
		const SVGLength length = _gradient.chain.GetOr(key, SVGLength{absent, SVGLengthUnit::percent});
		if (_gradient.units == SVGGradientUnits::objectBoundingBox && length.unit == SVGLengthUnit::percent)
			return length.value;
		return _place.Resolve(length, axis);
	}

	double GetOr(Key key, Axis axis, double absent) const noexcept
	{
		return _gradient.chain.Has(key) ? Get(key, axis, 0.0) : absent;
	}

private:
	const GradientDefinition& _gradient;
	const Place& _place;
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
	gradient.transform = gradient.chain.GetOr(Key::gradientTransform, Matrix2d());
	gradient.stops = ORVAN_TRY(ReadStops(scene, gradient.chain.FindParentOf<SVGStopElementInterface>()));
	return gradient;
}

GradientGeometry GetGeometry(const GradientDefinition& gradient, const Place& place) noexcept
{
	const Coordinates at(gradient, place);
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
	return geometry;
}

} // namespace orvan::drawing
