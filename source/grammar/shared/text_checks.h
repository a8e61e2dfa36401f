// SPDX-License-Identifier: MIT
#pragma once

/// Kinds of characters, and checks of a text for what the grammar library must not be given.

#include <algorithm>
#include <string_view>

namespace orvan::grammar
{
/// Whether all bytes are below 0x80. The library looks others up in tables of 128 entries and hands them to the C
/// library's character functions, whose answers hang on the locale.
inline bool IsAscii(std::string_view text)
{
	// All characters are looked at, which the compiler does many at a time.
	unsigned bits = 0;
	for (const char c : text)
		bits |= static_cast<unsigned char>(c);
	return bits < 0x80;
}

inline bool IsDigit(char c)
{
	return c >= '0' && c <= '9';
}

inline bool IsLetter(char c)
{
	return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Blanks as the library has them: the C library's, whatever the locale.
inline bool IsSpace(char c)
{
	return c == ' ' || (c >= '\t' && c <= '\r');
}

/// Whether some number has an exponent of more than nine digits, leading zeros aside. No such number is finite and
/// none is a value, yet the library adds exponents up in an int that may overflow.
inline bool HasRunawayExponent(std::string_view text)
{
	constexpr std::ptrdiff_t kMostDigits = 9;
	for (auto it = text.begin(); it != text.end(); ++it)
	{
		if (*it != 'e' && *it != 'E')
			continue;
		auto digit = it + 1;
		if (digit != text.end() && (*digit == '+' || *digit == '-'))
			++digit;
		digit = std::find_if(digit, text.end(), [](char c) { return c != '0'; });
		if (std::find_if_not(digit, text.end(), IsDigit) - digit > kMostDigits)
			return true;
	}
	return false;
}
} // namespace orvan::grammar
