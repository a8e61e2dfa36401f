// SPDX-License-Identifier: MIT
#include "shared/decimal_text.h"

#include "grammar.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string_view>

namespace orvan::grammar
{
namespace
{
constexpr int kShortest = -1;

/// Powers of ten of the first digit between which numbers are written without an exponent.
constexpr int kLeastPlain = -7;
constexpr int kMostPlain = 20;

/// The text of a number with so many digits behind the first one, or with as few as lead back to it.
std::string TextOf(double number, int digitsBehind, bool mayHaveExponent)
{
	char buffer[40];
	char* const limit = buffer + sizeof buffer;
	const auto written = digitsBehind == kShortest
							 ? std::to_chars(buffer, limit, number, std::chars_format::scientific)
							 : std::to_chars(buffer, limit, number, std::chars_format::scientific, digitsBehind);
	std::string_view whole(buffer, static_cast<std::size_t>(written.ptr - buffer));
	std::string text;
	if (whole.front() == '-')
	{
		text += '-';
		whole.remove_prefix(1);
	}
	const std::size_t mark = whole.find('e');
	int power = 0;
	const std::size_t sign = whole[mark + 1] == '+' ? 1 : 0; // Which from_chars does not take.
	std::from_chars(whole.data() + mark + 1 + sign, whole.data() + whole.size(), power);
	std::string digits(whole.substr(0, mark));
	if (digits.size() > 1)
		digits.erase(1, 1); // The point.
	if (digits.find_first_not_of('0') == std::string::npos)
		return "0";
	if (digitsBehind == kShortest)
		digits.erase(digits.find_last_not_of('0') + 1);
	if (mayHaveExponent && (power < kLeastPlain || power > kMostPlain))
	{
		text += digits[0];
		if (digits.size() > 1)
			text.append(1, '.').append(digits, 1);
		return text + 'e' + std::to_string(power);
	}
	const int integerDigits = power + 1;
	const int count = static_cast<int>(digits.size());
	if (integerDigits <= 0)
		return text + '.' + std::string(static_cast<std::size_t>(-integerDigits), '0') + digits;
	if (integerDigits >= count)
		return text + digits + std::string(static_cast<std::size_t>(integerDigits - count), '0');
	return text + digits.insert(static_cast<std::size_t>(integerDigits), 1, '.');
}

bool LeadsBack(const std::string& text, double number, Source source)
{
	double read = 0.0;
	return ParseNumber(text, source, read) == Parsed::value && read == number;
}
} // namespace

void AppendDecimal(std::string& text, double number, bool mayHaveExponent)
{
	const Source source = mayHaveExponent ? Source::attribute : Source::style;
	std::string shortest = TextOf(number, kShortest, mayHaveExponent);
	if (LeadsBack(shortest, number, source))
	{
		text += shortest;
		return;
	}
	// Reading rounds twice. The text of a number nearby, or one of more digits, makes up for it.
	constexpr int kFarthest = 8;
	double above = number;
	double below = number;
	for (int distance = 0; distance <= kFarthest; distance++)
	{
		for (const double candidate : {above, below})
		{
			for (const int digitsBehind : {kShortest, 16, 17, 18})
			{
				const std::string other = TextOf(candidate, digitsBehind, mayHaveExponent);
				if (LeadsBack(other, number, source))
				{
					text += other;
					return;
				}
			}
		}
		above = std::nextafter(above, std::numeric_limits<double>::infinity());
		below = std::nextafter(below, -std::numeric_limits<double>::infinity());
	}
	text += shortest;
}
} // namespace orvan::grammar
