// SPDX-License-Identifier: MIT
/// Light sources on their way to the pixels.
#include "filter_operation.h"
#include "filters/lighting.h"
#include "filters/pixel.h"
#include "svg_complete.h"

#include <numbers>

namespace orvan::cairo
{
namespace
{

using namespace drawing;
using filters::Alarm;
using filters::Box;
using filters::Light;
using filters::LightKind;
using filters::Point3;
using filters::Raster;
using filters::Surface;
using Key = SVGImportAttribute;

constexpr double kDegrees = std::numbers::pi / 180.0;

class Lighting final : public FilterOperation
{
public:
	Lighting(const Surface& surface, const Light& light, const Box& edges) noexcept
		: _surface(surface), _light(light), _edges(edges)
	{
	}

	Box GetNeeded(std::size_t, const Box& area, const Box&) const noexcept override
	{
		return area.Grow(1, 1);
	}

	Result<Raster> Apply(std::span<const FilterInput> inputs, const Box& area,
						 const Alarm& alarm) const noexcept override
	{
		return Check(filters::Illuminate(*inputs[0].raster, _edges, _surface, _light, area, alarm));
	}

private:
	Surface _surface;
	Light _light;
	Box _edges;
};

/// Exponents of light are 1 to 128.
float LimitExponent(double exponent) noexcept
{
	return static_cast<float>(std::clamp(exponent, 1.0, 128.0));
}

/// Where lights are in the grid of pixels.
class Positions
{
public:
	explicit Positions(const FilterPrimitive& primitive) noexcept : _primitive(primitive)
	{
	}

	Point3 Get(const DataDictionary& attributes, Key x, Key y, Key z) const noexcept
	{
		const auto get = [&](Key key)
		{
			const auto number = static_cast<std::int32_t>(key);
			// Positions share the keys of lengths.
			if (const auto* length = attributes.Find<SVGLength>(number))
				return length->value;
			return attributes.GetOr(number, 0.0);
		};
		const FilterStage& stage = _primitive.stage;
		Vector2d place{get(x), get(y)};
		double height = get(z);
		if (stage.primitiveUnits == SVGUnits::objectBoundingBox)
		{
			place = BoxTransform(stage.box).Apply(place);
			height *= std::hypot(stage.box.GetWidth(), stage.box.GetHeight()) / std::numbers::sqrt2;
		}
		const Vector2d pixel = _primitive.space.userToPixels.Apply(place);
		return {static_cast<float>(pixel.x), static_cast<float>(pixel.y), static_cast<float>(height * GetDepthScale())};
	}

	/// Pixels for a user unit upwards.
	double GetDepthScale() const noexcept
	{
		const Vector2d& scale = _primitive.space.scale;
		return std::hypot(scale.x, scale.y) / std::numbers::sqrt2;
	}

private:
	const FilterPrimitive& _primitive;
};

/// The first light source of a primitive; none where it has none.
bool FindLight(const FilterPrimitive& primitive, Light& light) noexcept
{
	const Positions positions(primitive);
	const Borrowed<HierarchyObjectInterface> hierarchy(primitive.element);
	for (auto child = hierarchy->GetFirstChild(); child; child = child->GetNextSibling())
	{
		const Borrowed<SVGElementInterface> element(child);
		if (!element)
			continue;
		const DataDictionary attributes = element->GetAttributeDictionary();
		const auto get = [&](Key key, double absent)
		{
			return attributes.GetOr(static_cast<std::int32_t>(key), absent);
		};
		switch (element->GetElementType())
		{
		case SVGImportElementKind::feDistantLight:
		{
			const double azimuth = get(Key::azimuth, 0.0) * kDegrees;
			const double elevation = get(Key::elevation, 0.0) * kDegrees;
			light.kind = LightKind::distant;
			light.direction = {static_cast<float>(std::cos(azimuth) * std::cos(elevation)),
							   static_cast<float>(std::sin(azimuth) * std::cos(elevation)),
							   static_cast<float>(std::sin(elevation))};
			return true;
		}
		case SVGImportElementKind::fePointLight:
			light.kind = LightKind::point;
			light.position = positions.Get(attributes, Key::x, Key::y, Key::z);
			return true;
		case SVGImportElementKind::feSpotLight:
			light.kind = LightKind::spot;
			light.position = positions.Get(attributes, Key::x, Key::y, Key::z);
			light.target = positions.Get(attributes, Key::pointsAtX, Key::pointsAtY, Key::pointsAtZ);
			light.exponent = LimitExponent(get(Key::specularExponent, 1.0));
			// An angle of 0 counts as none, as in browsers.
			if (const double angle = get(Key::limitingConeAngle, 0.0); angle != 0.0)
				light.coneCosine = static_cast<float>(std::cos(angle * kDegrees));
			return true;
		default:
			break;
		}
	}
	return false;
}

} // namespace

Result<MadeOperation> MakeLightOperation(const FilterPrimitive& primitive, bool isSpecular) noexcept
{
	Light light;
	if (!FindLight(primitive, light))
		return MadeOperation();
	// Light has no opacity.
	filters::Channels color = filters::Unmultiply(primitive.GetColor(Key::lightingColor, {1.0, 1.0, 1.0}, 1.0));
	color.alpha = 255;
	light.color = filters::Join(color);
	const double scale = primitive.GetNumber(Key::surfaceScale, 1.0);
	Surface surface;
	surface.isSpecular = isSpecular;
	surface.height = static_cast<float>(scale * Positions(primitive).GetDepthScale());
	surface.heightX = static_cast<float>(scale * primitive.space.scale.x);
	surface.heightY = static_cast<float>(scale * primitive.space.scale.y);
	surface.constant = static_cast<float>(
		std::max(primitive.GetNumber(isSpecular ? Key::specularConstant : Key::diffuseConstant, 1.0), 0.0));
	surface.exponent = LimitExponent(primitive.GetNumber(Key::specularExponent, 1.0));
	return MakeNew<Lighting>(surface, light, primitive.edges);
}

} // namespace orvan::cairo
