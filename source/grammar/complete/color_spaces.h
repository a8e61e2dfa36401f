// SPDX-License-Identifier: MIT
#pragma once

/// From the colour spaces of CSS to sRGB.

#include <array>
#include <span>
#include <string_view>

namespace orvan::grammar::complete
{
/// Three components of a colour in some space.
using Components = std::array<double, 3>;

/// Hue in degrees, saturation and lightness as fractions.
Components HslToSrgb(const Components& hsl) noexcept;
/// Hue in degrees, whiteness and blackness as fractions.
Components HwbToSrgb(const Components& hwb) noexcept;
/// Lightness in 0 … 100, and the two axes.
Components LabToSrgb(const Components& lab) noexcept;
/// Lightness in 0 … 1, and the two axes.
Components OklabToSrgb(const Components& lab) noexcept;

/// Lightness, chroma and hue in degrees as lightness and two axes.
Components PolarToAxes(const Components& lch) noexcept;

/// A space that "color()" names.
struct ColorSpace
{
	std::string_view name;
	Components (*toSrgb)(const Components&) noexcept;
};

std::span<const ColorSpace> GetColorSpaces() noexcept;
} // namespace orvan::grammar::complete
