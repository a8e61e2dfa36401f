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
std::size_t ReadDigits(std::string_view text, std::size_t at, std::uint64_t& number) noexcept
{
	for (; at < text.size() && IsDigit(text[at]); at++)
		number = number * 10 + static_cast<std::uint64_t>(text[at] - '0');
	return at;
}

/// As many digits as a double always holds exactly.
constexpr std::size_t kMostDigits = 15;
constexpr std::array<Float, kMostDigits + 1> kPowers = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
														1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

/// A number at the start of a text.
struct Number
{
	std::size_t end; ///< 0 when a decimal point lacks its digits.
	/// Whether it has digits, but so few that it is exactly a quotient of two exact doubles; that is, nearly always.
	bool isShort = false;
	Float value = 0.0; ///< When it is short.
};

Number ReadNumber(std::string_view text) noexcept
{
	const bool isNegative = text.starts_with('-');
	const std::size_t begin = isNegative || text.starts_with('+') ? 1 : 0;
	std::uint64_t digits = 0;
	std::size_t end = ReadDigits(text, begin, digits);
	std::size_t count = end - begin;
	std::size_t decimals = 0;
	if (end < text.size() && text[end] == '.')
	{
		const std::size_t fraction = end + 1;
		end = ReadDigits(text, fraction, digits);
		decimals = end - fraction;
		if (decimals == 0)
			return {0};
		count += decimals;
	}
	if (end + 1 < text.size() && (text[end] == 'e' || text[end] == 'E') && IsDigit(text[end + 1]))
		return {ReadDigits(text, end + 1, digits)};
	if (count == 0 || count > kMostDigits)
		return {end};
	const Float magnitude = static_cast<Float>(digits) / kPowers[decimals];
	return {end, true, isNegative ? -magnitude : magnitude};
}

} // namespace

SVGLength ScanLength(std::string_view text) noexcept
{
	SVGLength length;
	const Number number = ReadNumber(text);
	const std::string_view suffix = text.substr(number.end);
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
	if (!number.isShort && !Host().parseFloat(text.data(), text.data() + number.end, &length.value))
		return {};
	if (length.unit == SVGLengthUnit::percent)
		length.value /= 100.0;
	return length;
}

} // namespace orvan::svg
