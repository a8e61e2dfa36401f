// SPDX-License-Identifier: MIT
/// The units of lengths, by themselves: what reads lengths needs no more of the value types than these.
#pragma once

#include <cstdint>

namespace orvan
{

/// The unit that a length was written in; the numbers are fixed.
enum class SVGLengthUnit : std::int32_t
{
	em = 0,
	ex = 1,
	px = 2,
	in = 3,
	cm = 4,
	mm = 5,
	pt = 6,
	pc = 7,
	percent = 8, ///< The value is a fraction: 0.5 is 50 %.
	number = 9,  ///< A plain number: user units.

	// Given by the complete import only.
	q = 10,   ///< A quarter of a millimetre.
	rem = 11, ///< The font size of the outermost element.
	ch = 12,  ///< The advance of "0".
	vw = 13,  ///< A hundredth of the width of the outermost viewport, as for the next three.
	vh = 14,
	vmin = 15, ///< The smaller of `vw` and `vh`.
	vmax = 16,
	cap = 17, ///< The height of capitals.
	ic = 18,  ///< The advance of an ideograph.
	lh = 19,  ///< The height of a line of text.
	rlh = 20, ///< The same for the font size of the outermost element.
};

} // namespace orvan
