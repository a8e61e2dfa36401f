// SPDX-License-Identifier: MIT
#include "morphology.h"

namespace orvan::filters
{
namespace
{

/// The extremes of `size` neighbours from each place on, in place: over a line of elements that are `stride` bytes wide
/// and so far apart. Extremes over two neighbours, four, eight and so on are put together; the last step overlaps.
/// The last size - 1 elements are of no use afterwards.
template <typename Choose>
void TakeExtremes(unsigned char* bytes, std::size_t count, std::size_t stride, std::size_t size, Choose choose) noexcept
{
	std::size_t have = 1;
	while (have < size && have < count)
	{
		const std::size_t step = std::min(have, size - have);
		const std::size_t end = (count - std::min(step, count)) * stride;
		const unsigned char* const ahead = bytes + step * stride;
		// Each byte is read before it is written: those ahead are still those of the step before.
		for (std::size_t i = 0; i < end; i++)
			bytes[i] = choose(bytes[i], ahead[i]);
		have += step;
	}
}

template <typename Choose>
bool MorphPadded(Raster& padded, int sizeX, int sizeY, const Alarm& alarm, Choose choose) noexcept
{
	const auto width = static_cast<std::size_t>(padded.GetBox().GetWidth());
	const auto height = static_cast<std::size_t>(padded.GetBox().GetHeight());
	for (int y = padded.GetBox().top; y < padded.GetBox().bottom; y++)
	{
		if (alarm.IsOver())
			return false;
		TakeExtremes(reinterpret_cast<unsigned char*>(padded.GetRow(y)), width, 4, static_cast<std::size_t>(sizeX),
					 choose);
	}
	// A line of rows: all columns at once.
	TakeExtremes(reinterpret_cast<unsigned char*>(padded.GetPixels()), height, width * 4,
				 static_cast<std::size_t>(sizeY), choose);
	return !alarm.IsOver();
}

} // namespace

Raster Morph(const Raster& input, MorphologyOperator operation, int radiusX, int radiusY, const Box& area,
			 const Alarm& alarm) noexcept
{
	const bool isErosion = operation == MorphologyOperator::erode;
	const Box& from = input.GetBox();
	// Farther than everything is far enough.
	const Box all = from.Unite(area);
	radiusX = std::clamp(radiusX, 0, all.GetWidth());
	radiusY = std::clamp(radiusY, 0, all.GetHeight());
	const Box box = area.Intersect(isErosion ? from : from.Grow(radiusX, radiusY));
	if (box.IsEmpty())
		return {};
	Raster padded = Raster(box.Grow(radiusX, radiusY));
	if (!padded.IsThere())
		return padded;
	const Box shared = padded.GetBox().Intersect(from);
	for (int y = shared.top; y < shared.bottom; y++)
	{
		std::copy_n(input.GetRow(y) + (shared.left - from.left), shared.GetWidth(),
					padded.GetRow(y) + (shared.left - padded.GetBox().left));
	}
	const int sizeX = 2 * radiusX + 1;
	const int sizeY = 2 * radiusY + 1;
	const auto least = [](unsigned char a, unsigned char b)
	{
		return std::min(a, b);
	};
	const auto most = [](unsigned char a, unsigned char b)
	{
		return std::max(a, b);
	};
	const bool isDone =
		isErosion ? MorphPadded(padded, sizeX, sizeY, alarm, least) : MorphPadded(padded, sizeX, sizeY, alarm, most);
	if (!isDone)
		return {};
	// The extremes from a place on are those around the place that lies a radius farther.
	Raster result(box);
	for (int y = box.top; y < box.bottom && result.IsThere(); y++)
		std::copy_n(padded.GetRow(y - radiusY), box.GetWidth(), result.GetRow(y));
	return result;
}

} // namespace orvan::filters
