// SPDX-License-Identifier: MIT
#include "lengths.h"

#include <algorithm>
#include <cmath>

namespace orvan::drawing
{
namespace
{

constexpr double kPixelsPerInch = 96.0;

} // namespace

double Viewport::GetDiagonal() const noexcept
{
	return std::hypot(width, height) / std::sqrt(2.0);
}

double ToUserUnits(const SVGLength& length, Axis axis, const Viewport& viewport, double fontSize) noexcept
{
	switch (length.unit)
	{
	case SVGLengthUnit::em:
		return length.value * fontSize;
	case SVGLengthUnit::ex:
		return length.value * fontSize / 2.0;
	case SVGLengthUnit::in:
		return length.value * kPixelsPerInch;
	case SVGLengthUnit::cm:
		return length.value * kPixelsPerInch / 2.54;
	case SVGLengthUnit::mm:
		return length.value * kPixelsPerInch / 25.4;
	case SVGLengthUnit::pt:
		return length.value * kPixelsPerInch / 72.0;
	case SVGLengthUnit::pc:
		return length.value * kPixelsPerInch / 6.0;
	case SVGLengthUnit::percent:
		return length.value * (axis == Axis::horizontal ? viewport.width
							   : axis == Axis::vertical ? viewport.height
														: viewport.GetDiagonal());
	case SVGLengthUnit::px:
	case SVGLengthUnit::number:
		break;
	}
	return length.value;
}

double ClampToUnit(double value) noexcept
{
	return std::isnan(value) ? 1.0 : std::clamp(value, 0.0, 1.0);
}

} // namespace orvan::drawing
