// SPDX-License-Identifier: MIT
#include "convolve.h"

#include "pixel.h"

namespace orvan::filters
{
namespace
{

/// The place within first … last that stands for `at`, or -1 below all of them for none.
int FindPlace(int at, int first, int end, EdgeMode mode, bool& isThere) noexcept
{
	if (at >= first && at < end)
		return at;
	switch (mode)
	{
	case EdgeMode::duplicate:
		return std::clamp(at, first, end - 1);
	case EdgeMode::wrap:
	{
		const int size = end - first;
		const int rest = (at - first) % size;
		return first + (rest < 0 ? rest + size : rest);
	}
	case EdgeMode::none:
		break;
	}
	isThere = false;
	return at;
}

struct Sums
{
	double blue = 0.0;
	double green = 0.0;
	double red = 0.0;
	double alpha = 0.0;
};

} // namespace

Raster Convolve(const Raster& input, const Box& edges, const Kernel& kernel, const Box& area,
				const Alarm& alarm) noexcept
{
	if (edges.IsEmpty())
		return {};
	// Only at the edges of the picture does something come from farther away than the kernel reaches.
	Raster result(area);
	const double factor = 1.0 / kernel.divisor;
	for (int y = area.top; y < area.bottom && result.IsThere(); y++)
	{
		std::uint32_t* const row = result.GetRow(y);
		for (int x = area.left; x < area.right; x++)
		{
			// A large kernel makes even one row long work.
			if ((x - area.left) % 64 == 0 && alarm.IsOver())
				return result;
			Sums sums;
			for (int j = 0; j < kernel.height; j++)
			{
				bool isRowThere = true;
				const int fromY =
					FindPlace(y - kernel.targetY + j, edges.top, edges.bottom, kernel.edgeMode, isRowThere);
				for (int i = 0; i < kernel.width && isRowThere; i++)
				{
					bool isThere = true;
					const int fromX =
						FindPlace(x - kernel.targetX + i, edges.left, edges.right, kernel.edgeMode, isThere);
					const std::uint32_t pixel = isThere ? input.At(fromX, fromY) : 0;
					if (pixel == 0)
						continue;
					const Channels c = kernel.keepsAlpha ? Unmultiply(pixel) : Split(pixel);
					const int index = (kernel.height - 1 - j) * kernel.width + kernel.width - 1 - i;
					const double weight = kernel.values[static_cast<std::size_t>(index)];
					sums.blue += weight * c.blue;
					sums.green += weight * c.green;
					sums.red += weight * c.red;
					sums.alpha += weight * c.alpha;
				}
			}
			const double alpha = kernel.keepsAlpha ? static_cast<double>(input.At(x, y) >> 24)
												   : sums.alpha * factor + kernel.bias * 255.0;
			// Colours are raised by as much of the bias as is opaque.
			const auto finish = [&](double color)
			{
				return ToByte(static_cast<float>(color * factor + kernel.bias * alpha));
			};
			const Channels sum{finish(sums.blue), finish(sums.green), finish(sums.red),
							   ToByte(static_cast<float>(alpha))};
			if (kernel.keepsAlpha)
			{
				row[x - area.left] = MultiplyByAlpha(sum);
				continue;
			}
			row[x - area.left] = Join({std::min(sum.blue, sum.alpha), std::min(sum.green, sum.alpha),
									   std::min(sum.red, sum.alpha), sum.alpha});
		}
	}
	return result;
}

} // namespace orvan::filters
