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

/// The end of the run of digits at `at`.
std::size_t SkipDigits(std::string_view text, std::size_t at) noexcept
{
	while (at < text.size() && IsDigit(text[at]))
		at++;
	return at;
}

/// The end of the number at the start of the text; 0 when a point lacks its digits.
std::size_t FindNumberEnd(std::string_view text) noexcept
{
	std::size_t end = SkipDigits(text, text.starts_with('-') || text.starts_with('+') ? 1 : 0);
	if (end < text.size() && text[end] == '.')
	{
		const std::size_t fraction = end + 1;
		end = SkipDigits(text, fraction);
		if (end == fraction)
			return 0;
	}
	if (end + 1 < text.size() && (text[end] == 'e' || text[end] == 'E') && IsDigit(text[end + 1]))
		end = SkipDigits(text, end + 1);
	return end;
}

/// The number in a text of digits with at most one point, when it has so few digits that it is exactly a quotient of
/// two exact doubles; that is, nearly always. The text may begin with a sign.
bool ConvertShortNumber(std::string_view text, Float& number) noexcept
{
	constexpr std::size_t kMostDigits = 15;
	constexpr std::array<Float, kMostDigits + 1> kPowers = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
															1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
	const bool isNegative = text.starts_with('-');
	if (isNegative || text.starts_with('+'))
		text.remove_prefix(1);
	if (text.empty() || text.size() > kMostDigits + 1)
		return false;
	std::uint64_t digits = 0;
	std::size_t decimals = 0;
	for (std::size_t i = 0; i < text.size(); i++)
	{
		if (IsDigit(text[i]))
			digits = digits * 10 + static_cast<std::uint64_t>(text[i] - '0');
		else if (text[i] == '.')
			decimals = text.size() - i - 1;
		else
			return false;
	}
	if (digits >= 1'000'000'000'000'000)
		return false;
	const Float magnitude = static_cast<Float>(digits) / kPowers[decimals];
	number = isNegative ? -magnitude : magnitude;
	return true;
}

} // namespace

SVGLength ScanLength(std::string_view text) noexcept
{
	SVGLength length;
	const std::size_t end = FindNumberEnd(text);
	const std::string_view suffix = text.substr(end);
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
	if (!ConvertShortNumber(text.substr(0, end), length.value) &&
		!Host().parseFloat(text.data(), text.data() + end, &length.value))
		return {};
	if (length.unit == SVGLengthUnit::percent)
		length.value /= 100.0;
	return length;
}

} // namespace orvan::svg
