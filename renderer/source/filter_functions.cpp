// SPDX-License-Identifier: MIT
/// From the functions of the Filter Effects module to operations.
#include "pixel_operations.h"

#include "drawing/lengths.h"

namespace orvan::cairo
{

using namespace drawing;

Result<FilterOperationPtr> MakeOperation(const SVGFilterFunction& function, const Frame& user,
										 const FilterSpace& space) noexcept
{
	const float amount = ToFloat(function.amount);
	const float limited = std::min(amount, 1.0F);
	const double deviation = user.Resolve(function.deviation, Axis::other);
	const Vector2d deviations{deviation * space.scale.x, deviation * space.scale.y};
	const auto matrix = [](const filters::ColorMatrix& values)
	{
		return NewOperation<ColorMatrix>(values);
	};
	switch (function.type)
	{
	case SVGFilterFunctionType::reference:
		break;
	case SVGFilterFunctionType::blur:
		if (deviation > 0.0)
			return NewOperation<Blur>(deviations);
		break;
	case SVGFilterFunctionType::brightness:
		return matrix(filters::LinearMatrix(amount, 0.0F, 1.0F));
	case SVGFilterFunctionType::contrast:
		return matrix(filters::LinearMatrix(amount, 0.5F - 0.5F * amount, 1.0F));
	case SVGFilterFunctionType::dropShadow:
	{
		const bool isCurrent = function.color.type == SVGPaintType::currentColor;
		const Style& style = user.place.style;
		const std::uint32_t color = ToPixel(isCurrent ? style.color : function.color.color,
											ClampToUnit(isCurrent ? style.colorAlpha : function.color.alpha));
		const Vector2d shift{user.Resolve(function.x, Axis::horizontal) * space.scale.x,
							 user.Resolve(function.y, Axis::vertical) * space.scale.y};
		return NewOperation<DropShadow>(deviations, shift, color);
	}
	case SVGFilterFunctionType::grayscale:
		return matrix(filters::GrayscaleMatrix(limited));
	case SVGFilterFunctionType::hueRotate:
		return matrix(filters::HueRotationMatrix(amount));
	case SVGFilterFunctionType::invert:
		return matrix(filters::LinearMatrix(1.0F - 2.0F * limited, limited, 1.0F));
	case SVGFilterFunctionType::opacity:
		return matrix(filters::LinearMatrix(1.0F, 0.0F, limited));
	case SVGFilterFunctionType::saturate:
		return matrix(filters::SaturationMatrix(amount));
	case SVGFilterFunctionType::sepia:
		return matrix(filters::SepiaMatrix(limited));
	}
	return MakeCrop();
}

} // namespace orvan::cairo
