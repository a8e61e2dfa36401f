// SPDX-License-Identifier: MIT
/// Single pixels: their channels, and how these are multiplied by alpha.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace orvan::filters
{

/// The channels of a pixel, or what is done to them, in the order in which they stand in one.
struct Channels
{
	int blue;
	int green;
	int red;
	int alpha;
};

constexpr Channels Split(std::uint32_t pixel) noexcept
{
	return {static_cast<int>(pixel & 255), static_cast<int>(pixel >> 8 & 255), static_cast<int>(pixel >> 16 & 255),
			static_cast<int>(pixel >> 24)};
}

constexpr std::uint32_t Join(const Channels& c) noexcept
{
	return static_cast<std::uint32_t>(c.alpha) << 24 | static_cast<std::uint32_t>(c.red) << 16 |
		   static_cast<std::uint32_t>(c.green) << 8 | static_cast<std::uint32_t>(c.blue);
}

/// The product of two values of 0 to 255, where 255 stands for 1.
constexpr int Multiply(int a, int b) noexcept
{
	const int product = a * b + 128;
	return (product + (product >> 8)) >> 8;
}

/// `value` limited to 0 … 255 and rounded; 0 when it is not a number.
inline int ToByte(float value) noexcept
{
	constexpr float kMost = 255.0F + 0.5F;
	return value > 0.0F ? static_cast<int>(std::min(value + 0.5F, kMost)) : 0;
}

/// A pixel whose colour is not multiplied by its alpha.
constexpr Channels Unmultiply(std::uint32_t pixel) noexcept
{
	const Channels c = Split(pixel);
	if (c.alpha == 255)
		return c;
	if (c.alpha == 0)
		return {0, 0, 0, 0};
	const auto divide = [&](int value)
	{
		return std::min((value * 255 + c.alpha / 2) / c.alpha, 255);
	};
	return {divide(c.blue), divide(c.green), divide(c.red), c.alpha};
}

/// The pixel of a colour that is not multiplied by its alpha.
constexpr std::uint32_t MultiplyByAlpha(const Channels& c) noexcept
{
	return Join({Multiply(c.blue, c.alpha), Multiply(c.green, c.alpha), Multiply(c.red, c.alpha), c.alpha});
}

} // namespace orvan::filters
