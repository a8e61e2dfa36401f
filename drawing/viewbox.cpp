// SPDX-License-Identifier: MIT
#include "viewbox.h"

namespace orvan::drawing
{
namespace
{

/// How much of the free space lies before the content: none, half or all of it.
struct Alignment
{
	double x;
	double y;
};

constexpr Alignment GetAlignment(SVGAlign align) noexcept
{
	switch (align)
	{
	case SVGAlign::none:
	case SVGAlign::xMinYMin:
		return {0.0, 0.0};
	case SVGAlign::xMidYMin:
		return {0.5, 0.0};
	case SVGAlign::xMaxYMin:
		return {1.0, 0.0};
	case SVGAlign::xMinYMid:
		return {0.0, 0.5};
	case SVGAlign::xMidYMid:
		break;
	case SVGAlign::xMaxYMid:
		return {1.0, 0.5};
	case SVGAlign::xMinYMax:
		return {0.0, 1.0};
	case SVGAlign::xMidYMax:
		return {0.5, 1.0};
	case SVGAlign::xMaxYMax:
		return {1.0, 1.0};
	}
	return {0.5, 0.5};
}

bool IsSize(double width, double height) noexcept
{
	return std::isfinite(width) && std::isfinite(height) && width > 0.0 && height > 0.0;
}

} // namespace

std::optional<ViewboxFit> FitViewbox(const Rectangle& area, const SVGViewbox& viewbox,
									 const SVGPreserveAspectRatio& rule) noexcept
{
	const double width = area.right - area.left;
	const double height = area.bottom - area.top;
	if (!IsSize(width, height))
		return std::nullopt;
	if (viewbox.isDefault)
		return ViewboxFit{Translation(area.left, area.top), {width, height}};
	const Vector2d content{viewbox.width.value, viewbox.height.value};
	if (!IsSize(content.x, content.y))
		return std::nullopt;

	double scaleX = width / content.x;
	double scaleY = height / content.y;
	if (rule.align != SVGAlign::none)
		scaleX = scaleY =
			rule.meetOrSlice == SVGMeetOrSlice::slice ? std::max(scaleX, scaleY) : std::min(scaleX, scaleY);
	const Alignment alignment = GetAlignment(rule.align);
	const Matrix2d transform = Translation(area.left + (width - content.x * scaleX) * alignment.x,
										   area.top + (height - content.y * scaleY) * alignment.y) *
							   Scaling(scaleX, scaleY) * Translation(-viewbox.x.value, -viewbox.y.value);
	return ViewboxFit{transform, content};
}

} // namespace orvan::drawing
