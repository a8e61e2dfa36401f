// SPDX-License-Identifier: MIT
#include "color_space.h"

#include "pixel.h"

#include <array>
#include <cmath>

namespace orvan::filters
{
namespace
{

using Table = std::array<std::uint8_t, 256>;

template <typename Function>
Table MakeTable(Function function) noexcept
{
	Table table{};
	for (std::size_t i = 0; i < table.size(); i++)
		table[i] = static_cast<std::uint8_t>(std::lround(255.0 * function(static_cast<double>(i) / 255.0)));
	return table;
}

double ToLinear(double value) noexcept
{
	return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double FromLinear(double value) noexcept
{
	return value <= 0.0031308 ? value * 12.92 : 1.055 * std::pow(value, 1.0 / 2.4) - 0.055;
}

const Table& GetTable(ColorSpace to) noexcept
{
	static const Table linear = MakeTable(&ToLinear);
	static const Table standard = MakeTable(&FromLinear);
	return to == ColorSpace::linear ? linear : standard;
}

std::uint32_t Map(std::uint32_t pixel, const Table& table) noexcept
{
	if (pixel == 0)
		return 0;
	const auto map = [&](int value)
	{
		return static_cast<int>(table[static_cast<std::size_t>(value)]);
	};
	const Channels c = Unmultiply(pixel);
	return MultiplyByAlpha({map(c.blue), map(c.green), map(c.red), c.alpha});
}

} // namespace

void Convert(Raster& raster, ColorSpace from, ColorSpace to) noexcept
{
	if (from == to)
		return;
	const Table& table = GetTable(to);
	std::uint32_t* const pixels = raster.GetPixels();
	// Neighbours are often the same.
	std::uint32_t last = 0;
	std::uint32_t lastMapped = 0;
	for (std::size_t i = 0; i < raster.GetCount(); i++)
	{
		if (pixels[i] != last)
		{
			last = pixels[i];
			lastMapped = Map(last, table);
		}
		pixels[i] = lastMapped;
	}
}

std::uint32_t Convert(std::uint32_t pixel, ColorSpace from, ColorSpace to) noexcept
{
	return from == to ? pixel : Map(pixel, GetTable(to));
}

} // namespace orvan::filters
