// SPDX-License-Identifier: MIT
#include "turbulence.h"

#include "pixel.h"

#include <array>
#include <cmath>

namespace orvan::filters
{
namespace
{

constexpr int kSize = 256;
constexpr int kMask = kSize - 1;
constexpr std::int64_t kRange = 2 * std::int64_t{kSize};
constexpr double kOffset = 4096.0; ///< Keeps coordinates away from zero, where truncation changes its direction.
/// What further octaves add cannot be seen.
constexpr int kMaxOctaves = 12;

/// The standard's generator of random numbers.
class Random
{
public:
	explicit Random(int seed) noexcept : _seed(seed)
	{
		if (_seed <= 0)
			_seed = -(_seed % (kModulus - 1)) + 1;
		_seed = std::min(_seed, kModulus - 1);
	}

	std::int64_t Next() noexcept
	{
		_seed = kFactor * (_seed % kQuotient) - kRest * (_seed / kQuotient);
		if (_seed <= 0)
			_seed += kModulus;
		return _seed;
	}

private:
	static constexpr std::int64_t kModulus = 2147483647;
	static constexpr std::int64_t kFactor = 16807;
	static constexpr std::int64_t kQuotient = 127773;
	static constexpr std::int64_t kRest = 2836;

	std::int64_t _seed;
};

/// How a lattice is folded where tiles are stitched together.
struct Stitch
{
	int width = 0;
	int height = 0;
	int wrapX = 0;
	int wrapY = 0;
};

/// The lattice of gradients: four channels of them at each point.
class Lattice
{
public:
	explicit Lattice(int seed) noexcept
	{
		Random random(seed);
		for (std::size_t channel = 0; channel < 4; channel++)
		{
			for (std::size_t i = 0; i < kSize; i++)
			{
				_selector[i] = static_cast<std::uint8_t>(i);
				auto& gradient = _gradients[i];
				for (auto* side : {&gradient.x, &gradient.y})
					(*side)[channel] = static_cast<float>(static_cast<double>(random.Next() % kRange - kSize) / kSize);
				const double length = std::hypot(gradient.x[channel], gradient.y[channel]);
				gradient.x[channel] = static_cast<float>(gradient.x[channel] / length);
				gradient.y[channel] = static_cast<float>(gradient.y[channel] / length);
			}
		}
		for (std::size_t i = kSize - 1; i > 0; i--)
			std::swap(_selector[i], _selector[static_cast<std::size_t>(random.Next() % kSize)]);
	}

	/// The noise of all channels at a point of the lattice.
	std::array<float, 4> GetNoise(double x, double y, const Stitch* stitch) const noexcept
	{
		const double atX = x + kOffset;
		const double atY = y + kOffset;
		int left = ToIndex(atX);
		int top = ToIndex(atY);
		int right = left + 1;
		int bottom = top + 1;
		if (stitch != nullptr)
		{
			const auto fold = [](int& at, int wrap, int size)
			{
				if (at >= wrap)
					at -= size;
			};
			fold(left, stitch->wrapX, stitch->width);
			fold(right, stitch->wrapX, stitch->width);
			fold(top, stitch->wrapY, stitch->height);
			fold(bottom, stitch->wrapY, stitch->height);
		}
		const auto fractionX = static_cast<float>(atX - std::floor(atX));
		const auto fractionY = static_cast<float>(atY - std::floor(atY));
		const int i = Select(left);
		const int j = Select(right);
		const Gradient& g00 = At(i + top);
		const Gradient& g10 = At(j + top);
		const Gradient& g01 = At(i + bottom);
		const Gradient& g11 = At(j + bottom);
		const float sx = Ease(fractionX);
		const float sy = Ease(fractionY);
		const float restX = fractionX - 1.0F;
		const float restY = fractionY - 1.0F;
		std::array<float, 4> noise{};
		for (std::size_t c = 0; c < 4; c++)
		{
			const float a =
				Mix(sx, fractionX * g00.x[c] + fractionY * g00.y[c], restX * g10.x[c] + fractionY * g10.y[c]);
			const float b = Mix(sx, fractionX * g01.x[c] + restY * g01.y[c], restX * g11.x[c] + restY * g11.y[c]);
			noise[c] = Mix(sy, a, b);
		}
		return noise;
	}

private:
	struct Gradient
	{
		std::array<float, 4> x;
		std::array<float, 4> y;
	};

	/// The whole part of a coordinate, folded into the range of whole numbers: the lattice repeats anyway.
	static int ToIndex(double at) noexcept
	{
		constexpr double kFar = 1 << 30;
		const double whole = std::floor(at);
		const double folded = std::abs(whole) < kFar ? whole : std::fmod(whole, kSize);
		return std::isnan(folded) ? 0 : static_cast<int>(folded);
	}

	static float Ease(float t) noexcept
	{
		return t * t * (3.0F - 2.0F * t);
	}

	static float Mix(float t, float a, float b) noexcept
	{
		return a + t * (b - a);
	}

	int Select(int at) const noexcept
	{
		return _selector[static_cast<std::size_t>(at & kMask)];
	}

	const Gradient& At(int at) const noexcept
	{
		return _gradients[static_cast<std::size_t>(Select(at))];
	}

	std::array<std::uint8_t, kSize> _selector{};
	std::array<Gradient, kSize> _gradients{};
};

/// A frequency with which the tile holds a whole number of periods: the one of two that is nearer.
double FitFrequency(double frequency, double size) noexcept
{
	if (frequency == 0.0 || !(size > 0.0))
		return frequency;
	const double low = std::floor(size * frequency) / size;
	const double high = std::ceil(size * frequency) / size;
	return low != 0.0 && frequency / low < high / frequency ? low : high;
}

/// The first octave's folding; sizes that no lattice has are left alone.
Stitch MakeStitch(const Turbulence& t, double frequencyX, double frequencyY) noexcept
{
	const auto toInt = [](double value)
	{
		return static_cast<int>(std::clamp(value, -1e5, 1e5));
	};
	Stitch stitch;
	stitch.width = toInt(t.tileWidth * frequencyX + 0.5);
	stitch.height = toInt(t.tileHeight * frequencyY + 0.5);
	stitch.wrapX = toInt(t.tileX * frequencyX + kOffset + stitch.width);
	stitch.wrapY = toInt(t.tileY * frequencyY + kOffset + stitch.height);
	return stitch;
}

} // namespace

Raster MakeTurbulence(const Turbulence& turbulence, const Box& area, const Alarm& alarm) noexcept
{
	Raster result(area);
	if (area.IsEmpty() || !result.IsThere())
		return result;
	const Lattice lattice(turbulence.seed);
	double frequencyX = turbulence.frequencyX;
	double frequencyY = turbulence.frequencyY;
	if (turbulence.isStitched)
	{
		frequencyX = FitFrequency(frequencyX, turbulence.tileWidth);
		frequencyY = FitFrequency(frequencyY, turbulence.tileHeight);
	}
	const Stitch firstStitch = MakeStitch(turbulence, frequencyX, frequencyY);
	const int octaves = std::min(turbulence.octaves, kMaxOctaves);
	for (int y = area.top; y < area.bottom && !alarm.IsOver(); y++)
	{
		std::uint32_t* const row = result.GetRow(y);
		const double userY = (y + 0.5) * turbulence.scaleY + turbulence.offsetY;
		for (int x = area.left; x < area.right; x++)
		{
			double atX = ((x + 0.5) * turbulence.scaleX + turbulence.offsetX) * frequencyX;
			double atY = userY * frequencyY;
			std::array<float, 4> sums{};
			Stitch stitch = firstStitch;
			float share = 1.0F;
			for (int octave = 0; octave < octaves; octave++)
			{
				const std::array<float, 4> noise =
					lattice.GetNoise(atX, atY, turbulence.isStitched ? &stitch : nullptr);
				for (std::size_t c = 0; c < 4; c++)
					sums[c] += (turbulence.isFractal ? noise[c] : std::abs(noise[c])) * share;
				atX *= 2.0;
				atY *= 2.0;
				share /= 2.0F;
				stitch.width *= 2;
				stitch.height *= 2;
				stitch.wrapX = 2 * stitch.wrapX - static_cast<int>(kOffset);
				stitch.wrapY = 2 * stitch.wrapY - static_cast<int>(kOffset);
			}
			const auto toByte = [&](float sum)
			{
				return ToByte(255.0F * (turbulence.isFractal ? (sum + 1.0F) / 2.0F : sum));
			};
			row[x - area.left] = MultiplyByAlpha({toByte(sums[2]), toByte(sums[1]), toByte(sums[0]), toByte(sums[3])});
		}
	}
	return result;
}

} // namespace orvan::filters
