// SPDX-License-Identifier: MIT
#include "arrange.h"

#include <cmath>

namespace orvan::filters
{

Raster Flood(std::uint32_t pixel, const Box& area) noexcept
{
	if (pixel == 0)
		return {};
	Raster result(area);
	if (result.IsThere())
		std::fill_n(result.GetPixels(), result.GetCount(), pixel);
	return result;
}

Raster Crop(const Raster& input, const Box& area) noexcept
{
	return Offset(input, 0, 0, area);
}

Raster Offset(const Raster& input, int x, int y, const Box& area) noexcept
{
	Raster result(area.Intersect(input.GetBox().Move(x, y)));
	const Box& box = result.GetBox();
	if (box.IsEmpty() || !result.IsThere())
		return result;
	for (int row = box.top; row < box.bottom; row++)
	{
		const std::uint32_t* const from = input.GetRow(row - y) + (box.left - x - input.GetBox().left);
		std::copy_n(from, box.GetWidth(), result.GetRow(row));
	}
	return result;
}

Raster TakeAlpha(const Raster& input, const Box& area) noexcept
{
	Raster result = Crop(input, area);
	for (std::size_t i = 0; i < result.GetCount() && result.IsThere(); i++)
		result.GetPixels()[i] &= 0xFF000000;
	return result;
}

Raster Repeat(const Raster& input, const Tile& tile, const Box& area) noexcept
{
	if (!(tile.width > 0.0 && tile.height > 0.0))
		return {};
	Raster result(area);
	if (area.IsEmpty() || !result.IsThere())
		return result;
	// Middles of pixels are looked up, so that tiles do not drift away from where their fractions belong.
	const auto wrap = [](int at, double start, double size)
	{
		const double distance = at + 0.5 - start;
		return static_cast<int>(std::floor(start + distance - std::floor(distance / size) * size));
	};
	for (int y = area.top; y < area.bottom; y++)
	{
		const int from = wrap(y, tile.top, tile.height);
		std::uint32_t* const row = result.GetRow(y);
		for (int x = area.left; x < area.right; x++)
			row[x - area.left] = input.At(wrap(x, tile.left, tile.width), from);
	}
	return result;
}

} // namespace orvan::filters
