// SPDX-License-Identifier: MIT
/// Pixels to image files.
#pragma once

#include <cstddef>
#include <cstdio>

namespace orvan::images
{

/// A picture in memory: rows of 32-bit words, from the highest byte on alpha, red, green and blue, the colours
/// multiplied by alpha. `stride` is the number of bytes from a row to the next; it may be negative.
struct PixelRows
{
	const unsigned char* first;
	int width;
	int height;
	std::ptrdiff_t stride;
};

/// Writes the picture as a PNG file, without an alpha channel where all of it is opaque. False when the file takes no
/// more, or there is no memory, as `errno` tells; what was written until then is of no use. `file` stays open.
bool WritePng(std::FILE* file, const PixelRows& picture) noexcept;

} // namespace orvan::images
