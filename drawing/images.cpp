// SPDX-License-Identifier: MIT
#include "images.h"

namespace orvan::drawing
{

Vector2d ImageSize::Complete(double givenWidth, double givenHeight) const noexcept
{
	constexpr Vector2d kDefault{300.0, 150.0};
	const auto orDefault = [](double side, double otherwise)
	{
		return side > 0.0 ? side : otherwise;
	};
	if (givenWidth > 0.0 && givenHeight > 0.0)
		return {givenWidth, givenHeight};
	if (givenWidth > 0.0)
		return {givenWidth, ratio > 0.0 ? givenWidth / ratio : orDefault(height, kDefault.y)};
	if (givenHeight > 0.0)
		return {ratio > 0.0 ? givenHeight * ratio : orDefault(width, kDefault.x), givenHeight};
	if (width > 0.0)
		return Complete(width, height);
	if (height > 0.0)
		return Complete(0.0, height);
	if (!(ratio > 0.0))
		return kDefault;
	// As large as fits.
	return ratio * kDefault.y > kDefault.x ? Complete(kDefault.x, 0.0) : Complete(0.0, kDefault.y);
}

} // namespace orvan::drawing
