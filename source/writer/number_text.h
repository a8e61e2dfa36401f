// SPDX-License-Identifier: MIT
/// Numbers, lengths and paths as text: the shortest that reads back the same.
#pragma once

#include "svg_types.h"

#include <span>
#include <string>

namespace orvan::svg
{

/// How numbers are written.
struct NumberStyle
{
	static constexpr int kExact = -1;

	int precision = kExact;     ///< Digits behind the decimal point at most, or all that it takes.
	bool takesExponents = true; ///< Declarations of the plain import take none.
};

/// Appends a number in the fewest digits that read back as the same double, without a zero before the decimal point:
/// "-.5". Exponents are used where plain notation would be long: below 10⁻⁷ and from 10²¹ on. False, with nothing
/// appended, when it is not finite.
bool AppendNumber(std::string& text, Float number, NumberStyle style);

/// Appends a fraction as a percentage, in the fewest digits that read back as the same fraction.
bool AppendPercentage(std::string& text, Float fraction, NumberStyle style);

/// Appends a length with its unit. False when it is not finite or of no unit.
bool AppendLength(std::string& text, const SVGLength& length, NumberStyle style);

/// Appends path data: absolute commands, each number as short as it can be, and blanks only where two numbers need one.
/// False when a coordinate is not finite.
bool AppendPath(std::string& text, std::span<const SVGPathCommand> commands, NumberStyle style);

/// Appends the points of a polygon or polyline. False when the commands are no such thing: one move and lines, closed
/// at the end when it is a polygon.
bool AppendPoints(std::string& text, std::span<const SVGPathCommand> commands, bool isPolygon, NumberStyle style);

} // namespace orvan::svg
