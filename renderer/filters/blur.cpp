// SPDX-License-Identifier: MIT
#include "blur.h"

#include "pixel.h"

#include <array>
#include <cmath>
#include <numbers>

namespace orvan::filters
{
namespace
{

// Four channels at once; both compilers make vector instructions of these.
using Lanes = std::uint32_t __attribute__((vector_size(16)));
using FloatLanes = float __attribute__((vector_size(16)));

constexpr double kSmall = 2.0; ///< Deviations below this one are worked out exactly.
constexpr double kCell = 8.0;  ///< Smallest deviation in cells of a coarser grid.
constexpr double kLargest = 1e6;

Lanes ToLanes(std::uint32_t pixel) noexcept
{
	return Lanes{pixel & 255, pixel >> 8 & 255, pixel >> 16 & 255, pixel >> 24};
}

/// What weighs the pixels of one direction: the sizes of three boxes, or the weights themselves.
struct Window
{
	explicit Window(double deviation) noexcept
	{
		if (!(deviation > 0.0))
		{
			weights[0] = 1.0F;
			return;
		}
		if (deviation < kSmall)
		{
			reach = std::min(kMaxReach, static_cast<int>(std::ceil(deviation * 3.0)));
			float sum = 0.0F;
			for (int i = -reach; i <= reach; i++)
			{
				// The share of the bell over the pixel's width, not its height in the middle: that holds for the
				// narrowest ones, too.
				const double scale = 1.0 / (deviation * std::numbers::sqrt2);
				const auto share = static_cast<float>(std::erf((i + 0.5) * scale) - std::erf((i - 0.5) * scale));
				weights[static_cast<std::size_t>(i + reach)] = share;
				sum += share;
			}
			for (int i = 0; i <= 2 * reach; i++)
				weights[static_cast<std::size_t>(i)] /= sum;
			return;
		}
		box = static_cast<int>(std::floor(deviation * 3.0 * std::sqrt(2.0 * std::numbers::pi) / 4.0 + 0.5));
		reach = box / 2 * 3 + 1;
	}

	static constexpr int kMaxReach = 8;

	int reach = 0; ///< Pixels to each side that count.
	int box = 0;   ///< Size of the boxes; 0 where the weights hold.
	std::array<float, 2 * kMaxReach + 1> weights{};
};

/// Blurs lines. The room for a line, with what counts beside it, is made once.
class LineBlur
{
public:
	/// Lines of `from` to `to` elements into lines of `area`.
	LineBlur(const Window& window, int from, int to, int areaFrom, int areaTo) noexcept
		: _window(window), _from(from), _to(to), _areaFrom(areaFrom), _areaTo(areaTo),
		  _length(static_cast<std::size_t>(areaTo - areaFrom + 2 * (window.reach + 1)))
	{
		_lines.reset(static_cast<Lanes*>(std::aligned_alloc(sizeof(Lanes), 2 * _length * sizeof(Lanes))));
	}

	bool IsThere() const noexcept
	{
		return _lines != nullptr;
	}

	/// Blurs the line at `from`, whose elements follow each other, and writes the result `stride` elements apart.
	void Blur(const std::uint32_t* from, std::uint32_t* to, std::ptrdiff_t stride) noexcept
	{
		const int margin = _window.reach + 1;
		Lanes* const line = _lines.get();
		for (std::size_t i = 0; i < _length; i++)
		{
			const int at = _areaFrom - margin + static_cast<int>(i);
			line[i] = at >= _from && at < _to ? ToLanes(from[at - _from]) : Lanes{};
		}
		if (_window.box == 0)
			Weigh(to, stride);
		else
			TakeBoxes(to, stride);
	}

private:
	struct Free
	{
		void operator()(Lanes* lanes) const noexcept
		{
			std::free(lanes);
		}
	};

	static std::uint32_t Round(const FloatLanes& sums) noexcept
	{
		const auto round = [](float value)
		{
			return static_cast<int>(std::min(value + 0.5F, 255.0F));
		};
		return Join({round(sums[0]), round(sums[1]), round(sums[2]), round(sums[3])});
	}

	void Weigh(std::uint32_t* to, std::ptrdiff_t stride) const noexcept
	{
		const int count = 2 * _window.reach + 1;
		for (int x = 0; x < _areaTo - _areaFrom; x++)
		{
			const Lanes* const at = _lines.get() + x + 1;
			FloatLanes sum{};
			for (int i = 0; i < count; i++)
			{
				const float weight = _window.weights[static_cast<std::size_t>(i)];
				sum += __builtin_convertvector(at[i], FloatLanes) * FloatLanes{weight, weight, weight, weight};
			}
			to[x * stride] = Round(sum);
		}
	}

	/// Sums over `size` neighbours, `before` of which stand before each place.
	static void Sum(const Lanes* from, Lanes* to, std::size_t length, int size, int before) noexcept
	{
		const auto count = static_cast<std::ptrdiff_t>(length);
		Lanes sum{};
		for (std::ptrdiff_t i = 0; i < count + before; i++)
		{
			// `i` is the last neighbour of the place that it completes.
			const std::ptrdiff_t place = i - (size - 1 - before);
			if (i < count)
				sum += from[i];
			if (place >= 0 && place < count)
				to[place] = sum;
			if (i - (size - 1) >= 0 && i - (size - 1) < count)
				sum -= from[i - (size - 1)];
		}
	}

	/// Three boxes in a row, as whole numbers: what is rounded is only their result. Even sizes are shifted by half a
	/// pixel to either side, and the third box makes up for them.
	void TakeBoxes(std::uint32_t* to, std::ptrdiff_t stride) noexcept
	{
		const int d = _window.box;
		Lanes* const a = _lines.get();
		Lanes* const b = a + _length;
		const bool isOdd = d % 2 != 0;
		const int last = isOdd ? d : d + 1;
		Sum(a, b, _length, d, d / 2);
		Sum(b, a, _length, d, isOdd ? d / 2 : d / 2 - 1);
		Sum(a, b, _length, last, last / 2);
		const float share = 1.0F / (static_cast<float>(d) * static_cast<float>(d) * static_cast<float>(last));
		const FloatLanes shares{share, share, share, share};
		for (int x = 0; x < _areaTo - _areaFrom; x++)
			to[x * stride] = Round(__builtin_convertvector(b[x + _window.reach + 1], FloatLanes) * shares);
	}

	const Window& _window;
	int _from;
	int _to;
	int _areaFrom;
	int _areaTo;
	std::size_t _length;
	std::unique_ptr<Lanes, Free> _lines;
};

/// A box with its two directions exchanged.
Box Turn(const Box& box) noexcept
{
	return {box.top, box.left, box.bottom, box.right};
}

/// Blurs along the rows into `area`, whose rows become the columns of the result.
Raster BlurRows(const Raster& input, double deviation, const Box& area, const Alarm& alarm) noexcept
{
	const Window window(deviation);
	const Box& from = input.GetBox();
	const Box box = area.Intersect(from.Grow(window.reach, 0));
	Raster result(Turn(box));
	if (box.IsEmpty() || !result.IsThere())
		return result;
	LineBlur blur(window, from.left, from.right, box.left, box.right);
	if (!blur.IsThere())
		return Raster::Missing();
	for (int y = box.top; y < box.bottom && !alarm.IsOver(); y++)
		blur.Blur(input.GetRow(y), result.GetPixels() + (y - box.top), box.GetHeight());
	return result;
}

Raster BlurOnGrid(const Raster& input, double deviationX, double deviationY, const Box& area,
				  const Alarm& alarm) noexcept
{
	const int reachY = GetBlurReach(deviationY);
	Raster turned = BlurRows(input, deviationX, area.Grow(0, reachY).Intersect(area.Unite(input.GetBox())), alarm);
	if (!turned.IsThere())
		return turned;
	return BlurRows(turned, deviationY, Turn(area), alarm);
}

// Coarser grids ------------------------------------------------------------------------------------------------------

int FloorDivide(int a, int b) noexcept
{
	return a >= 0 ? a / b : -((b - 1 - a) / b);
}

/// The box of the cells that cover a box of pixels.
Box ToCells(const Box& box, int cellX, int cellY) noexcept
{
	return {FloorDivide(box.left, cellX), FloorDivide(box.top, cellY), FloorDivide(box.right + cellX - 1, cellX),
			FloorDivide(box.bottom + cellY - 1, cellY)};
}

/// The mean of the pixels in each cell.
Raster Shrink(const Raster& input, int cellX, int cellY, const Alarm& alarm) noexcept
{
	const Box& from = input.GetBox();
	Raster result(ToCells(from, cellX, cellY));
	const Box& box = result.GetBox();
	if (box.IsEmpty() || !result.IsThere())
		return result;
	const float share = 1.0F / (static_cast<float>(cellX) * static_cast<float>(cellY));
	for (int y = box.top; y < box.bottom && !alarm.IsOver(); y++)
	{
		std::uint32_t* const row = result.GetRow(y);
		for (int x = box.left; x < box.right; x++)
		{
			const Box cell = Box{x * cellX, y * cellY, x * cellX + cellX, y * cellY + cellY}.Intersect(from);
			FloatLanes sum{};
			for (int j = cell.top; j < cell.bottom; j++)
			{
				// A row of a cell never has more pixels than whole numbers can add up.
				Lanes rowSum{};
				const std::uint32_t* const pixels = input.GetRow(j) - from.left;
				for (int i = cell.left; i < cell.right; i++)
					rowSum += ToLanes(pixels[i]);
				sum += __builtin_convertvector(rowSum, FloatLanes);
			}
			const auto mean = [&](int lane)
			{
				return ToByte(sum[lane] * share);
			};
			row[x - box.left] = Join({mean(0), mean(1), mean(2), mean(3)});
		}
	}
	return result;
}

/// Cells back to pixels, along straight lines between the middles of the cells.
Raster Expand(const Raster& cells, int cellX, int cellY, const Box& area, const Alarm& alarm) noexcept
{
	Raster result(area);
	const auto place = [](int at, int cell, int& before)
	{
		const double middle = (at + 0.5) / cell - 0.5;
		before = static_cast<int>(std::floor(middle));
		return static_cast<float>(middle - before);
	};
	for (int y = area.top; y < area.bottom && result.IsThere() && !alarm.IsOver(); y++)
	{
		int top = 0;
		const float shareY = place(y, cellY, top);
		std::uint32_t* const row = result.GetRow(y);
		for (int x = area.left; x < area.right; x++)
		{
			int left = 0;
			const float shareX = place(x, cellX, left);
			const auto lanes = [&](int i, int j, float share)
			{
				return __builtin_convertvector(ToLanes(cells.At(left + i, top + j)), FloatLanes) *
					   FloatLanes{share, share, share, share};
			};
			const FloatLanes sum = lanes(0, 0, (1.0F - shareX) * (1.0F - shareY)) +
								   lanes(1, 0, shareX * (1.0F - shareY)) + lanes(0, 1, (1.0F - shareX) * shareY) +
								   lanes(1, 1, shareX * shareY);
			row[x - area.left] = Join({ToByte(sum[0]), ToByte(sum[1]), ToByte(sum[2]), ToByte(sum[3])});
		}
	}
	return result;
}

/// How many pixels a cell is wide for a deviation.
int GetCell(double deviation) noexcept
{
	int cell = 1;
	while (deviation / (2.0 * cell) >= kCell)
		cell *= 2;
	return cell;
}

} // namespace

int GetBlurReach(double deviation) noexcept
{
	constexpr double kFar = 1e8;
	return deviation > 0.0 ? static_cast<int>(std::ceil(std::min(deviation * 3.0 + 3.0, kFar))) : 0;
}

Raster Blur(const Raster& input, double deviationX, double deviationY, const Box& area, const Alarm& alarm) noexcept
{
	if (area.IsEmpty() || input.GetBox().IsEmpty())
		return {};
	deviationX = std::min(deviationX, kLargest);
	deviationY = std::min(deviationY, kLargest);
	const int cellX = GetCell(deviationX);
	const int cellY = GetCell(deviationY);
	if (cellX == 1 && cellY == 1)
		return BlurOnGrid(input, deviationX, deviationY, area, alarm);
	Raster cells = Shrink(input, cellX, cellY, alarm);
	if (!cells.IsThere())
		return cells;
	Raster blurred =
		BlurOnGrid(cells, deviationX / cellX, deviationY / cellY, ToCells(area, cellX, cellY).Grow(1, 1), alarm);
	if (!blurred.IsThere())
		return blurred;
	return Expand(blurred, cellX, cellY, area, alarm);
}

} // namespace orvan::filters
