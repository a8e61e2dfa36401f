// SPDX-License-Identifier: MIT
/// Values of the grammar as the tree has them.
#pragma once

#include "grammar.h"
#include "svg_types.h"

namespace orvan::svg
{

inline SVGLength ToLength(const grammar::Length& length) noexcept
{
	return {length.value, length.unit};
}

inline Matrix2d ToMatrix(const grammar::Matrix& m) noexcept
{
	return {{m.e, m.f}, {m.a, m.b}, {m.c, m.d}};
}

inline Color ToColor(grammar::PackedColor packed) noexcept
{
	return {(packed >> 16 & 0xff) / 255.0, (packed >> 8 & 0xff) / 255.0, (packed & 0xff) / 255.0};
}

} // namespace orvan::svg
