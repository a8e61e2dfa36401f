// SPDX-License-Identifier: MIT
#include "filter_space.h"

namespace orvan::cairo
{

using namespace drawing;

namespace
{

/// Farther away there are no pixels; sums of such coordinates are still whole numbers.
constexpr double kFarthest = 1 << 28;

int ToPlace(double at) noexcept
{
	return static_cast<int>(std::clamp(std::isnan(at) ? 0.0 : at, -kFarthest, kFarthest));
}

filters::Box RoundOutPixels(const Rectangle& r) noexcept
{
	// Rounding errors do not make a pixel.
	constexpr double kNothing = 1e-4;
	if (r.IsEmpty())
		return {};
	return {ToPlace(std::floor(r.left + kNothing)), ToPlace(std::floor(r.top + kNothing)),
			ToPlace(std::ceil(r.right - kNothing)), ToPlace(std::ceil(r.bottom - kNothing))};
}

} // namespace

FilterSpace::FilterSpace(const Matrix2d& user, double detail) noexcept
{
	scale = {std::hypot(user.axis1.x, user.axis1.y) * detail, std::hypot(user.axis2.x, user.axis2.y) * detail};
	const bool isUpright = user.axis1.y == 0.0 && user.axis2.x == 0.0 && user.axis1.x > 0.0 && user.axis2.y > 0.0;
	// Mirrored pixels lie on those of the picture as well.
	const bool isStraight = user.axis1.y == 0.0 && user.axis2.x == 0.0;
	const double offsetX = isStraight && user.axis1.x < 0.0 ? -user.offset.x : user.offset.x;
	const double offsetY = isStraight && user.axis2.y < 0.0 ? -user.offset.y : user.offset.y;
	userToPixels = Translation(isStraight ? offsetX * detail : 0.0, isStraight ? offsetY * detail : 0.0) *
				   Scaling(scale.x, scale.y);
	isExact = isStraight && detail == 1.0;
	pictureToPixels = isUpright && isExact ? Matrix2d() : userToPixels * Invert(user);
}

filters::Box FilterSpace::RoundOut(const Rectangle& user) const noexcept
{
	return RoundOutPixels(user.IsEmpty() ? user : Transform(userToPixels, user));
}

filters::Box FilterSpace::Round(const Rectangle& user) const noexcept
{
	if (user.IsEmpty())
		return {};
	const Rectangle r = Transform(userToPixels, user);
	const filters::Box box{ToPlace(std::floor(r.left + 0.5)), ToPlace(std::floor(r.top + 0.5)),
						   ToPlace(std::floor(r.right + 0.5)), ToPlace(std::floor(r.bottom + 0.5))};
	return {box.left, box.top, std::max(box.right, box.left + 1), std::max(box.bottom, box.top + 1)};
}

filters::Box FilterSpace::FromPicture(const Rectangle& picture) const noexcept
{
	return RoundOutPixels(picture.IsEmpty() ? picture : Transform(pictureToPixels, picture));
}

} // namespace orvan::cairo
