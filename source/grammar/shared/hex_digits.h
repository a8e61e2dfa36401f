// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>

namespace orvan::grammar
{
/// The values of hexadecimal digits; sixteen for anything else. Letters and figures alternate without a rule, so that
/// telling them apart by comparing would mean branch mispredictions.
inline constexpr auto kHexDigits = []
{
	std::array<std::uint8_t, 256> values;
	values.fill(16);
	for (std::uint8_t i = 0; i != 10; ++i)
		values['0' + i] = i;
	for (std::uint8_t i = 0; i != 6; ++i)
		values['a' + i] = values['A' + i] = static_cast<std::uint8_t>(10 + i);
	return values;
}();
} // namespace orvan::grammar
