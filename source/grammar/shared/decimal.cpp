// SPDX-License-Identifier: MIT
#include "shared/decimal.h"

#include "shared/text_checks.h"

namespace orvan::grammar
{
namespace
{
// Beyond these the library leaves digits out.
constexpr std::ptrdiff_t kMostIntegerDigits = 17;
constexpr std::ptrdiff_t kMostDigits = 19;

constexpr int kMostExponentDigits = 3;
constexpr int kMostExponent = static_cast<int>(kPowersOfTen.size()) - 1;

const char* ReadRun(const char* at, const char* end, std::uint64_t& mantissa)
{
	for (; at != end; ++at)
	{
		const unsigned digit = static_cast<unsigned char>(*at) - unsigned{'0'};
		if (digit > 9)
			break;
		mantissa = mantissa * 10 + digit;
	}
	return at;
}

/// Reads what follows the "e". Returns null when that is no short exponent.
const char* ReadExponent(const char* at, const char* end, int& exponent)
{
	const bool isNegative = at != end && *at == '-';
	if (at != end && (*at == '-' || *at == '+'))
		++at;
	std::uint64_t magnitude = 0;
	const char* const after = ReadRun(at, end, magnitude);
	if (after == at || after - at > kMostExponentDigits)
		return nullptr;
	exponent = isNegative ? -static_cast<int>(magnitude) : static_cast<int>(magnitude);
	return after;
}
} // namespace

bool ReadDecimal(const char*& at, const char* end, bool mayHaveExponent, double& number)
{
	// A mantissa of too many digits wraps around; it is thrown away when the digits have been counted.
	std::uint64_t mantissa = 0;
	const char* after = ReadRun(at, end, mantissa);
	std::ptrdiff_t digits = after - at;
	if (digits > kMostIntegerDigits)
		return false;

	int exponent = 0;
	if (after != end && *after == '.')
	{
		const char* const fraction = after + 1;
		after = ReadRun(fraction, end, mantissa);
		const std::ptrdiff_t fractionDigits = after - fraction;
		digits += fractionDigits;
		if (fractionDigits == 0 || digits > kMostDigits)
			return false;
		exponent = -static_cast<int>(fractionDigits);
	}
	if (digits == 0)
		return false;

	if (mayHaveExponent && after != end && (*after == 'e' || *after == 'E'))
	{
		int written;
		after = ReadExponent(after + 1, end, written);
		if (after == nullptr)
			return false;
		exponent += written;
	}
	if (exponent < -kMostExponent || exponent > kMostExponent)
		return false;
	number = Scale(mantissa, exponent);
	at = after;
	return true;
}
} // namespace orvan::grammar
