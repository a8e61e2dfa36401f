// SPDX-License-Identifier: MIT
#include "lengths.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace orvan::drawing
{
namespace
{

constexpr double kPixelsPerInch = 96.0;

/// What a unit is a multiple of.
enum class Base
{
	userUnit,
	fontSize,
	rootFontSize,
	viewport,
	outermostWidth,
	outermostHeight,
	outermostSmaller,
	outermostLarger,
};

struct Unit
{
	double factor;
	Base base;
};

/// By the number of the unit.
constexpr Unit kUnits[] = {
	{1.0, Base::fontSize},
	{0.5, Base::fontSize},
	{1.0, Base::userUnit},
	{kPixelsPerInch, Base::userUnit},
	{kPixelsPerInch / 2.54, Base::userUnit},
	{kPixelsPerInch / 25.4, Base::userUnit},
	{kPixelsPerInch / 72.0, Base::userUnit},
	{kPixelsPerInch / 6.0, Base::userUnit},
	{1.0, Base::viewport},
	{1.0, Base::userUnit},
	{kPixelsPerInch / 101.6, Base::userUnit},
	{1.0, Base::rootFontSize},
	{0.5, Base::fontSize},
	{0.01, Base::outermostWidth},
	{0.01, Base::outermostHeight},
	{0.01, Base::outermostSmaller},
	{0.01, Base::outermostLarger},
	{0.655, Base::fontSize},
	{1.0, Base::fontSize},
	{1.125, Base::fontSize},
	{1.125, Base::rootFontSize},
};

double GetBase(Base base, Axis axis, const Viewport& viewport, double fontSize) noexcept
{
	const Viewport::Outermost& outermost = viewport.outermost;
	switch (base)
	{
	case Base::userUnit:
		break;
	case Base::fontSize:
		return fontSize;
	case Base::rootFontSize:
		return outermost.fontSize;
	case Base::viewport:
		return axis == Axis::horizontal ? viewport.width
			   : axis == Axis::vertical ? viewport.height
										: viewport.GetDiagonal();
	case Base::outermostWidth:
		return outermost.width;
	case Base::outermostHeight:
		return outermost.height;
	case Base::outermostSmaller:
		return std::min(outermost.width, outermost.height);
	case Base::outermostLarger:
		return std::max(outermost.width, outermost.height);
	}
	return 1.0;
}

} // namespace

double Viewport::GetDiagonal() const noexcept
{
	return std::hypot(width, height) / std::sqrt(2.0);
}

double ToUserUnits(const SVGLength& length, Axis axis, const Viewport& viewport, double fontSize) noexcept
{
	const auto number = static_cast<std::size_t>(length.unit);
	if (number >= std::size(kUnits))
		return length.value;
	const Unit& unit = kUnits[number];
	return length.value * unit.factor * GetBase(unit.base, axis, viewport, fontSize);
}

double ClampToUnit(double value) noexcept
{
	return std::isnan(value) ? 1.0 : std::clamp(value, 0.0, 1.0);
}

} // namespace orvan::drawing
