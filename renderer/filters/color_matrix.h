// SPDX-License-Identifier: MIT
/// feColorMatrix, and the filter functions that are such matrices.
#pragma once

#include "raster.h"

#include <array>

namespace orvan::filters
{

/// Four rows, for red, green, blue and alpha, of factors for these four and what is added, 1 for full.
using ColorMatrix = std::array<float, 20>;

inline constexpr ColorMatrix kIdentityColors = {1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0};

ColorMatrix SaturationMatrix(float amount) noexcept;
ColorMatrix HueRotationMatrix(float degrees) noexcept;
ColorMatrix LuminanceToAlphaMatrix() noexcept;
/// What the functions of the same names do with 0 for unchanged and 1 for all of it.
ColorMatrix GrayscaleMatrix(float amount) noexcept;
ColorMatrix SepiaMatrix(float amount) noexcept;
/// Each colour as `slope` · colour + `intercept`, alpha times `opacity`.
ColorMatrix LinearMatrix(float slope, float intercept, float opacity) noexcept;

/// The colours of `input`, alpha not multiplied in, put through a matrix.
Raster ApplyColorMatrix(const Raster& input, const ColorMatrix& matrix, const Box& area, const Alarm& alarm) noexcept;

} // namespace orvan::filters
