// SPDX-License-Identifier: MIT
#include "length_scanner.h"

#include <array>
#include <cstdint>

namespace orvan::svg
{
namespace
{

struct Unit
{
	std::string_view suffix;
	SVGLengthUnit unit;
};

/// In the order in which they are tried.
constexpr Unit kUnits[] = {
	{"px", SVGLengthUnit::px}, {"em", SVGLengthUnit::em}, {"%", SVGLengthUnit::percent},
	{"cm", SVGLengthUnit::cm}, {"mm", SVGLengthUnit::mm}, {"in", SVGLengthUnit::in},
	{"pt", SVGLengthUnit::pt}, {"pc", SVGLengthUnit::pc}, {"ex", SVGLengthUnit::ex},
};

constexpr bool IsDigit(char c) noexcept
{
	return c >= '0' && c <= '9';
}

/// Reads the run of digits at `at` into a number, which wraps around when there are too many.
const char* ReadDigits(const char* at, const char* end, std::uint64_t& number) noexcept
{
	for (; at != end; at++)
	{
		const unsigned digit = static_cast<unsigned char>(*at) - unsigned{'0'};
		if (digit > 9)
			break;
		number = number * 10 + digit;
	}
	return at;
}

/// As many digits as a double always holds exactly.
constexpr std::size_t kMostDigits = 15;
constexpr std::array<Float, kMostDigits + 1> kPowers = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
														1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

/// A number at the start of a text.
struct Number
{
	const char* end; ///< The start of the text when a decimal point lacks its digits.
	/// Whether it has digits, but so few that it is exactly a quotient of two exact doubles; that is, nearly always.
	bool isShort = false;
	Float value = 0.0; ///< When it is short.
};

Number ReadNumber(const char* at, const char* const end) noexcept
{
	const char* const start = at;
	const bool isNegative = at != end && *at == '-';
	at += isNegative || (at != end && *at == '+');
	const char* const begin = at;
	std::uint64_t digits = 0;
	at = ReadDigits(at, end, digits);
	auto count = static_cast<std::size_t>(at - begin);
	std::size_t decimals = 0;
	if (at != end && *at == '.')
	{
		const char* const fraction = at + 1;
		at = ReadDigits(fraction, end, digits);
		decimals = static_cast<std::size_t>(at - fraction);
		if (decimals == 0)
			return {start};
		count += decimals;
	}
	if (end - at > 1 && (*at == 'e' || *at == 'E') && IsDigit(at[1]))
		return {ReadDigits(at + 1, end, digits)};
	if (count == 0 || count > kMostDigits)
		return {at};
	const Float magnitude = static_cast<Float>(static_cast<std::int64_t>(digits)) / kPowers[decimals];
	return {at, true, isNegative ? -magnitude : magnitude};
}

/// Makes a length of a number and what follows it.
[[gnu::noinline]] SVGLength MakeLength(std::string_view text, const Number& number) noexcept
{
	SVGLength length;
	const std::string_view suffix = text.substr(static_cast<std::size_t>(number.end - text.data()));
	length.unit = SVGLengthUnit::number;
	if (!suffix.empty())
	{
		const Unit* known = nullptr;
		for (const Unit& unit : kUnits)
		{
			if (suffix.starts_with(unit.suffix))
			{
				known = &unit;
				break;
			}
		}
		if (known == nullptr)
			return {};
		length.unit = known->unit;
	}
	length.value = number.value;
	if (!number.isShort && !Host().parseFloat(text.data(), number.end, &length.value))
		return {};
	if (length.unit == SVGLengthUnit::percent)
		length.value /= 100.0;
	return length;
}

} // namespace

SVGLength ScanLength(std::string_view text) noexcept
{
	const char* const end = text.data() + text.size();
	const Number number = ReadNumber(text.data(), end);
	if (number.isShort && number.end == end)
		return {number.value, SVGLengthUnit::number};
	return MakeLength(text, number);
}

} // namespace orvan::svg
