// SPDX-License-Identifier: MIT
#include "blend.h"

#include "composite.h"
#include "pixel.h"

#include <array>
#include <cmath>

namespace orvan::filters
{
namespace
{

/// A colour with channels of 0 to 1, not multiplied by anything.
struct Color
{
	float red;
	float green;
	float blue;
};

using Separable = float (*)(float backdrop, float source) noexcept;
using NotSeparable = Color (*)(const Color& backdrop, const Color& source) noexcept;

// Channel by channel -------------------------------------------------------------------------------------------------

float Multiplied(float b, float s) noexcept
{
	return b * s;
}

float Screened(float b, float s) noexcept
{
	return b + s - b * s;
}

float HardLight(float b, float s) noexcept
{
	return s <= 0.5F ? Multiplied(b, 2.0F * s) : Screened(b, 2.0F * s - 1.0F);
}

float Overlay(float b, float s) noexcept
{
	return HardLight(s, b);
}

float Darken(float b, float s) noexcept
{
	return std::min(b, s);
}

float Lighten(float b, float s) noexcept
{
	return std::max(b, s);
}

float ColorDodge(float b, float s) noexcept
{
	if (b == 0.0F)
		return 0.0F;
	return s >= 1.0F ? 1.0F : std::min(1.0F, b / (1.0F - s));
}

float ColorBurn(float b, float s) noexcept
{
	if (b >= 1.0F)
		return 1.0F;
	return s <= 0.0F ? 0.0F : 1.0F - std::min(1.0F, (1.0F - b) / s);
}

float SoftLight(float b, float s) noexcept
{
	if (s <= 0.5F)
		return b - (1.0F - 2.0F * s) * b * (1.0F - b);
	const float d = b <= 0.25F ? ((16.0F * b - 12.0F) * b + 4.0F) * b : std::sqrt(b);
	return b + (2.0F * s - 1.0F) * (d - b);
}

float Difference(float b, float s) noexcept
{
	return std::abs(b - s);
}

float Exclusion(float b, float s) noexcept
{
	return b + s - 2.0F * b * s;
}

// All channels together ----------------------------------------------------------------------------------------------

float GetLuminosity(const Color& c) noexcept
{
	return 0.3F * c.red + 0.59F * c.green + 0.11F * c.blue;
}

float GetSaturation(const Color& c) noexcept
{
	return std::max({c.red, c.green, c.blue}) - std::min({c.red, c.green, c.blue});
}

Color SetLuminosity(const Color& c, float luminosity) noexcept
{
	const float shift = luminosity - GetLuminosity(c);
	const Color moved{c.red + shift, c.green + shift, c.blue + shift};
	const float least = std::min({moved.red, moved.green, moved.blue});
	const float most = std::max({moved.red, moved.green, moved.blue});
	const auto clip = [&](float value)
	{
		if (least < 0.0F)
			value = luminosity + (value - luminosity) * luminosity / (luminosity - least);
		if (most > 1.0F)
			value = luminosity + (value - luminosity) * (1.0F - luminosity) / (most - luminosity);
		return value;
	};
	return {clip(moved.red), clip(moved.green), clip(moved.blue)};
}

Color SetSaturation(const Color& c, float saturation) noexcept
{
	const float least = std::min({c.red, c.green, c.blue});
	const float range = GetSaturation(c);
	if (range <= 0.0F)
		return {0.0F, 0.0F, 0.0F};
	const auto scale = [&](float value)
	{
		return (value - least) * saturation / range;
	};
	return {scale(c.red), scale(c.green), scale(c.blue)};
}

Color Hue(const Color& b, const Color& s) noexcept
{
	return SetLuminosity(SetSaturation(s, GetSaturation(b)), GetLuminosity(b));
}

Color Saturation(const Color& b, const Color& s) noexcept
{
	return SetLuminosity(SetSaturation(b, GetSaturation(s)), GetLuminosity(b));
}

Color Colored(const Color& b, const Color& s) noexcept
{
	return SetLuminosity(s, GetLuminosity(b));
}

Color Luminosity(const Color& b, const Color& s) noexcept
{
	return SetLuminosity(b, GetLuminosity(s));
}

/// By the number of the mode; normal has none, the last four are not separable.
constexpr std::array<Separable, 12> kSeparable = {nullptr,    &Multiplied, &Screened,   &Overlay,
												  &Darken,    &Lighten,    &ColorDodge, &ColorBurn,
												  &HardLight, &SoftLight,  &Difference, &Exclusion};
constexpr std::array<NotSeparable, 4> kNotSeparable = {&Hue, &Saturation, &Colored, &Luminosity};

/// What a mode makes of two pixels that are both not transparent.
template <typename Mix>
std::uint32_t BlendPixels(std::uint32_t top, std::uint32_t backdrop, Mix mix) noexcept
{
	const Channels s = Split(top);
	const Channels b = Split(backdrop);
	const float sourceAlpha = static_cast<float>(s.alpha) / 255.0F;
	const float backdropAlpha = static_cast<float>(b.alpha) / 255.0F;
	const auto plain = [](const Channels& c)
	{
		const auto alpha = static_cast<float>(c.alpha);
		return Color{std::min(static_cast<float>(c.red) / alpha, 1.0F),
					 std::min(static_cast<float>(c.green) / alpha, 1.0F),
					 std::min(static_cast<float>(c.blue) / alpha, 1.0F)};
	};
	const Color mixed = mix(plain(b), plain(s));
	const auto compose = [&](int source, int below, float color)
	{
		return ToByte(static_cast<float>(source) * (1.0F - backdropAlpha) +
					  static_cast<float>(below) * (1.0F - sourceAlpha) + 255.0F * sourceAlpha * backdropAlpha * color);
	};
	const int alpha = s.alpha + b.alpha - Multiply(s.alpha, b.alpha);
	return Join({std::min(compose(s.blue, b.blue, mixed.blue), alpha),
				 std::min(compose(s.green, b.green, mixed.green), alpha),
				 std::min(compose(s.red, b.red, mixed.red), alpha), alpha});
}

template <typename Mix>
Raster BlendWith(const Raster& top, const Raster& backdrop, const Box& area, const Alarm& alarm, Mix mix) noexcept
{
	Raster result(area.Intersect(top.GetBox().Unite(backdrop.GetBox())));
	const Box& box = result.GetBox();
	for (int y = box.top; y < box.bottom && result.IsThere() && !alarm.IsOver(); y++)
	{
		std::uint32_t* const row = result.GetRow(y);
		for (int x = box.left; x < box.right; x++)
		{
			const std::uint32_t s = top.At(x, y);
			const std::uint32_t b = backdrop.At(x, y);
			row[x - box.left] = s >> 24 == 0 ? b : b >> 24 == 0 ? s : BlendPixels(s, b, mix);
		}
	}
	return result;
}

} // namespace

Raster Blend(const Raster& top, const Raster& backdrop, BlendMode mode, const Box& area, const Alarm& alarm) noexcept
{
	const auto number = static_cast<std::size_t>(mode);
	if (number == 0 || number >= kSeparable.size() + kNotSeparable.size())
		return Composite(top, backdrop, CompositeOperator::over, area, alarm);
	if (number >= kSeparable.size())
		return BlendWith(top, backdrop, area, alarm, kNotSeparable[number - kSeparable.size()]);
	const Separable separable = kSeparable[number];
	const auto mix = [separable](const Color& b, const Color& s)
	{
		return Color{separable(b.red, s.red), separable(b.green, s.green), separable(b.blue, s.blue)};
	};
	return BlendWith(top, backdrop, area, alarm, mix);
}

} // namespace orvan::filters
