// SPDX-License-Identifier: MIT
#include "displacement.h"

#include "pixel.h"

#include <cmath>

namespace orvan::filters
{
namespace
{

int GetChannel(const Channels& c, Channel channel) noexcept
{
	switch (channel)
	{
	case Channel::alpha:
		break;
	case Channel::red:
		return c.red;
	case Channel::green:
		return c.green;
	case Channel::blue:
		return c.blue;
	}
	return c.alpha;
}

/// A place of the grid; far away where it is not in the range of whole numbers.
int ToPlace(double at) noexcept
{
	constexpr double kFar = 1e9;
	return static_cast<int>(std::floor(std::clamp(at, -kFar, kFar)));
}

} // namespace

Raster Displace(const Raster& input, const Raster& map, const Displacement& by, const Box& area,
				const Alarm& alarm) noexcept
{
	Raster result(area);
	for (int y = area.top; y < area.bottom && result.IsThere() && !alarm.IsOver(); y++)
	{
		std::uint32_t* const row = result.GetRow(y);
		for (int x = area.left; x < area.right; x++)
		{
			const Channels c = Unmultiply(map.At(x, y));
			const double shiftX = by.scaleX * (GetChannel(c, by.channelX) / 255.0 - 0.5);
			const double shiftY = by.scaleY * (GetChannel(c, by.channelY) / 255.0 - 0.5);
			row[x - area.left] = input.At(ToPlace(x + 0.5 + shiftX), ToPlace(y + 0.5 + shiftY));
		}
	}
	return result;
}

} // namespace orvan::filters
