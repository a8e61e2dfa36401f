// SPDX-License-Identifier: MIT
#pragma once

/// The colour spaces of CSS, and what they have to do with sRGB.

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

namespace orvan::grammar::complete
{
/// Three components of a colour in some space.
using Components = std::array<double, 3>;

/// A space that colours are written or mixed in. Hues are in degrees; saturation, lightness, whiteness and blackness of
/// hsl and hwb, and the lightness of oklab and oklch, lie in 0 … 1, that of lab and lch in 0 … 100.
struct ColorSpace
{
	static constexpr std::size_t kNoHue = 3;

	std::string_view name;
	Components (*toSrgb)(const Components&) noexcept;
	Components (*fromSrgb)(const Components&) noexcept;
	/// The names of the components in relative colours.
	std::array<std::string_view, 3> channels{"r", "g", "b"};
	std::size_t hue = kNoHue; ///< Which component is the hue.
	/// Whether the hue of a colour in a space with hues says nothing, because it is a grey.
	bool (*isGrey)(const Components&) noexcept = nullptr;
};

/// All spaces; those that "color()" names come first.
std::span<const ColorSpace> GetColorSpaces() noexcept;
std::span<const ColorSpace> GetColorFunctionSpaces() noexcept;

/// The space of a name in small letters, which must be one.
const ColorSpace& GetColorSpace(std::string_view name) noexcept;
} // namespace orvan::grammar::complete
