// SPDX-License-Identifier: MIT
#include "color_matrix.h"

#include "pixel.h"

#include <cmath>
#include <numbers>

namespace orvan::filters
{

ColorMatrix SaturationMatrix(float s) noexcept
{
	return {0.213F + 0.787F * s,
			0.715F - 0.715F * s,
			0.072F - 0.072F * s,
			0,
			0,
			0.213F - 0.213F * s,
			0.715F + 0.285F * s,
			0.072F - 0.072F * s,
			0,
			0,
			0.213F - 0.213F * s,
			0.715F - 0.715F * s,
			0.072F + 0.928F * s,
			0,
			0,
			0,
			0,
			0,
			1,
			0};
}

ColorMatrix HueRotationMatrix(float degrees) noexcept
{
	const float angle = degrees * std::numbers::pi_v<float> / 180.0F;
	const float c = std::cos(angle);
	const float s = std::sin(angle);
	// clang-format off
	return {0.213F + c * 0.787F - s * 0.213F, 0.715F - c * 0.715F - s * 0.715F, 0.072F - c * 0.072F + s * 0.928F, 0, 0,
			0.213F - c * 0.213F + s * 0.143F, 0.715F + c * 0.285F + s * 0.140F, 0.072F - c * 0.072F - s * 0.283F, 0, 0,
			0.213F - c * 0.213F - s * 0.787F, 0.715F - c * 0.715F + s * 0.715F, 0.072F + c * 0.928F + s * 0.072F, 0, 0,
			0, 0, 0, 1, 0};
	// clang-format on
}

ColorMatrix LuminanceToAlphaMatrix() noexcept
{
	ColorMatrix matrix{};
	matrix[15] = 0.2125F;
	matrix[16] = 0.7154F;
	matrix[17] = 0.0721F;
	return matrix;
}

ColorMatrix GrayscaleMatrix(float amount) noexcept
{
	const float s = 1.0F - amount;
	return {0.2126F + 0.7874F * s,
			0.7152F - 0.7152F * s,
			0.0722F - 0.0722F * s,
			0,
			0,
			0.2126F - 0.2126F * s,
			0.7152F + 0.2848F * s,
			0.0722F - 0.0722F * s,
			0,
			0,
			0.2126F - 0.2126F * s,
			0.7152F - 0.7152F * s,
			0.0722F + 0.9278F * s,
			0,
			0,
			0,
			0,
			0,
			1,
			0};
}

ColorMatrix SepiaMatrix(float amount) noexcept
{
	const float s = 1.0F - amount;
	return {0.393F + 0.607F * s,
			0.769F - 0.769F * s,
			0.189F - 0.189F * s,
			0,
			0,
			0.349F - 0.349F * s,
			0.686F + 0.314F * s,
			0.168F - 0.168F * s,
			0,
			0,
			0.272F - 0.272F * s,
			0.534F - 0.534F * s,
			0.131F + 0.869F * s,
			0,
			0,
			0,
			0,
			0,
			1,
			0};
}

ColorMatrix LinearMatrix(float slope, float intercept, float opacity) noexcept
{
	return {slope, 0, 0, 0, intercept, 0, slope, 0, 0, intercept, 0, 0, slope, 0, intercept, 0, 0, 0, opacity, 0};
}

Raster ApplyColorMatrix(const Raster& input, const ColorMatrix& matrix, const Box& area, const Alarm& alarm) noexcept
{
	const auto apply = [&](std::uint32_t pixel)
	{
		const Channels c = Unmultiply(pixel);
		const auto red = static_cast<float>(c.red);
		const auto green = static_cast<float>(c.green);
		const auto blue = static_cast<float>(c.blue);
		const auto alpha = static_cast<float>(c.alpha);
		const auto row = [&](std::size_t i)
		{
			return ToByte(matrix[i] * red + matrix[i + 1] * green + matrix[i + 2] * blue + matrix[i + 3] * alpha +
						  matrix[i + 4] * 255.0F);
		};
		return MultiplyByAlpha({row(10), row(5), row(0), row(15)});
	};
	// What is transparent may become opaque everywhere.
	const std::uint32_t outside = apply(0);
	Raster result(outside != 0 ? area : area.Intersect(input.GetBox()));
	const Box& box = result.GetBox();
	std::uint32_t last = 0;
	std::uint32_t lastApplied = outside;
	for (int y = box.top; y < box.bottom && result.IsThere() && !alarm.IsOver(); y++)
	{
		std::uint32_t* const row = result.GetRow(y);
		for (int x = box.left; x < box.right; x++)
		{
			const std::uint32_t pixel = input.At(x, y);
			if (pixel != last)
			{
				last = pixel;
				lastApplied = apply(pixel);
			}
			row[x - box.left] = lastApplied;
		}
	}
	return result;
}

} // namespace orvan::filters
