#include "length_scanner.h"

#include <limits>

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
	if (!Host().parseFloat(text.data(), text.data() + end, &length.value))
		return {};
	if (length.unit == SVGLengthUnit::percent)
		length.value /= 100.0;
	return length;
}

} // namespace orvan::svg
