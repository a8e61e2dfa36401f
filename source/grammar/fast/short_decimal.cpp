// SPDX-License-Identifier: MIT
#include "fast/short_decimal.h"

namespace orvan::grammar
{
bool ConvertLong(const ShortDecimal& number, double& value)
{
	if (number.digits <= ShortDecimal::kMostDigits)
	{
		value = Convert(number);
		return true;
	}
	const std::uint64_t fractionDigits = number.digits - number.integerDigits;
	if (number.integerDigits > ShortDecimal::kMostDigits || fractionDigits > ShortDecimal::kMostDigits)
		return false;

	// What stands before the point and what stands behind it are short numbers, and make one integer. Neither is empty:
	// there are nine digits or more.
	const char* const fraction = number.text + number.integerDigits + 1;
	const auto [whole, part] = Convert({number.text, number.integerDigits, 0, number.integerDigits, 0},
									   {fraction, fractionDigits, 0, fractionDigits, 0});
	const auto shift = static_cast<std::uint64_t>(kPowersOfTen[fractionDigits]);
	const std::uint64_t mantissa = static_cast<std::uint64_t>(whole) * shift + static_cast<std::uint64_t>(part);
	value = static_cast<double>(mantissa) / DivisorOf(number);
	return true;
}
} // namespace orvan::grammar
