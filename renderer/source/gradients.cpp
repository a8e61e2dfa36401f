// SPDX-License-Identifier: MIT
#include "gradients.h"

namespace orvan::cairo
{
namespace
{

using namespace drawing;
using Key = SVGImportAttribute;

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

/// Reads a gradient's coordinates: fractions of the bounding box, or lengths in the user's units.
class Coordinates
{
public:
	Coordinates(const ObjectBase* gradient, SVGGradientUnits units, const PaintPlace& at) noexcept
		: _attributes(SVGElementRef::From(const_cast<ObjectBase*>(gradient))->GetAttributeDictionary()), _units(units),
		  _place(at.place)
	{
	}

	bool Has(SVGImportAttribute key) const noexcept
	{
		return _attributes.Has(static_cast<std::int32_t>(key));
	}

	double Get(SVGImportAttribute key, Axis axis, double absent) const noexcept
	{
		// An absent coordinate is a percentage in either unit.
		const SVGLength length =
			_attributes.GetOr(static_cast<std::int32_t>(key), SVGLength{absent, SVGLengthUnit::percent});
		if (_units == SVGGradientUnits::boundingBox && length.unit == SVGLengthUnit::percent)
			return length.value;
		return _place.Resolve(length, axis);
	}

private:
	DataDictionary _attributes;
	SVGGradientUnits _units;
	const Place& _place;
};

/// Lays a gradient with its stops over the element. `isPoint` says that its geometry is a point, so that the last stop
/// covers everything.
template <typename Gradient>
bool SetStops(cairo_t* drawing, const Gradient& gradient, PatternPtr pattern, bool isPoint, double opacity,
			  const PaintPlace& at) noexcept
{
	const std::size_t count = gradient.stops.GetCount();
	if (count == 0)
		return false;
	const SVGGradientStop& last = gradient.stops[count - 1];
	if (count == 1 || isPoint)
	{
		SetColor(drawing, last.color, ClampToUnit(last.opacity) * opacity);
		return true;
	}
	Matrix2d transform = at.place.transform;
	if (gradient.units == SVGGradientUnits::boundingBox)
	{
		transform = transform * Translation(at.bounds.left, at.bounds.top) *
					Scaling(at.bounds.GetWidth(), at.bounds.GetHeight());
	}
	cairo_matrix_t matrix = ToCairo(transform);
	if (!IsInvertible(transform) || cairo_matrix_invert(&matrix) != CAIRO_STATUS_SUCCESS)
		return false;
	cairo_pattern_set_matrix(pattern.get(), &matrix);
	cairo_pattern_set_extend(pattern.get(), ToExtend(gradient.spread));
	for (const SVGGradientStop& stop : gradient.stops)
	{
		cairo_pattern_add_color_stop_rgba(pattern.get(), stop.offset, ClampToUnit(stop.color.red),
										  ClampToUnit(stop.color.green), ClampToUnit(stop.color.blue),
										  ClampToUnit(stop.opacity) * opacity);
	}
	cairo_set_source(drawing, pattern.get());
	return true;
}

bool SetLinear(cairo_t* drawing, const SVGLinearGradient& gradient, const Coordinates& coordinates, double opacity,
			   const PaintPlace& at) noexcept
{
	const Vector2d from{coordinates.Get(Key::x1, Axis::horizontal, 0.0), coordinates.Get(Key::y1, Axis::vertical, 0.0)};
	const Vector2d to{coordinates.Get(Key::x2, Axis::horizontal, 1.0), coordinates.Get(Key::y2, Axis::vertical, 0.0)};
	if (!std::isfinite(from.x + from.y + to.x + to.y))
		return false;
	return SetStops(drawing, gradient, PatternPtr(cairo_pattern_create_linear(from.x, from.y, to.x, to.y)), from == to,
					opacity, at);
}

bool SetRadial(cairo_t* drawing, const SVGRadialGradient& gradient, const Coordinates& coordinates, double opacity,
			   const PaintPlace& at) noexcept
{
	const Vector2d center{coordinates.Get(Key::cx, Axis::horizontal, 0.5),
						  coordinates.Get(Key::cy, Axis::vertical, 0.5)};
	const double radius = coordinates.Get(Key::r, Axis::other, 0.5);
	Vector2d focus{coordinates.Has(Key::fx) ? coordinates.Get(Key::fx, Axis::horizontal, 0.0) : center.x,
				   coordinates.Has(Key::fy) ? coordinates.Get(Key::fy, Axis::vertical, 0.0) : center.y};
	if (!std::isfinite(center.x + center.y + radius + focus.x + focus.y) || radius < 0.0)
		return false;
	// A focus outside of the circle is moved onto it.
	const Vector2d away = focus - center;
	if (const double distance = std::hypot(away.x, away.y); distance > radius && radius > 0.0)
		focus = {center.x + away.x / distance * radius, center.y + away.y / distance * radius};
	return SetStops(drawing, gradient,
					PatternPtr(cairo_pattern_create_radial(focus.x, focus.y, 0.0, center.x, center.y, radius)),
					radius == 0.0, opacity, at);
}

} // namespace

void SetColor(cairo_t* drawing, const Color& color, double opacity) noexcept
{
	cairo_set_source_rgba(drawing, ClampToUnit(color.red), ClampToUnit(color.green), ClampToUnit(color.blue), opacity);
}

Result<bool> SetGradient(const Canvas& canvas, ObjectBase* element, double opacity, const PaintPlace& at) noexcept
{
	// Boxes without width or height have no inside that fractions could refer to, which the missing inverse tells.
	if (const Borrowed<SVGLinearGradientElementInterface> linear(element); linear)
	{
		const SVGLinearGradient gradient = ORVAN_TRY(linear->GetLinearGradient());
		return SetLinear(canvas.drawing, gradient, {element, gradient.units, at}, opacity, at);
	}
	if (const Borrowed<SVGRadialGradientElementInterface> radial(element); radial)
	{
		const SVGRadialGradient gradient = ORVAN_TRY(radial->GetRadialGradient());
		return SetRadial(canvas.drawing, gradient, {element, gradient.units, at}, opacity, at);
	}
	return false;
}

} // namespace orvan::cairo
