// SPDX-License-Identifier: MIT
#include "writer/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

namespace orvan::svg
{
namespace
{

// The longest plain notation: 309 digits, or as many zeros and 17 digits.
constexpr std::size_t kLongestNumber = 400;

/// Takes zeros away that say nothing: those at the end of a fraction, and the one before the decimal point.
std::string_view Shorten(char* begin, char* end) noexcept
{
	if (std::find(begin, end, '.') != end)
	{
		while (end[-1] == '0')
			end--;
		if (end[-1] == '.')
			end--;
	}
	const bool isNegative = *begin == '-';
	char* const digits = begin + (isNegative ? 1 : 0);
	if (end - digits > 1 && digits[0] == '0' && digits[1] == '.')
	{
		if (isNegative)
			*digits = '-';
		begin++;
	}
	const std::string_view number(begin, static_cast<std::size_t>(end - begin));
	return number == "-0" ? number.substr(1) : number;
}

/// "1e-09" becomes "1e-9", "1e+21" becomes "1e21".
void AppendWithExponent(std::string& text, Float number)
{
	char buffer[kLongestNumber];
	const auto written = std::to_chars(buffer, buffer + sizeof buffer, number, std::chars_format::scientific);
	const std::string_view whole(buffer, static_cast<std::size_t>(written.ptr - buffer));
	const std::size_t mark = whole.find('e');
	text += whole.substr(0, mark + 1);
	std::string_view exponent = whole.substr(mark + 1);
	if (exponent[0] == '-')
		text += '-';
	exponent.remove_prefix(1);
	text += exponent.substr(std::min(exponent.find_first_not_of('0'), exponent.size() - 1));
}

Float Read(std::string_view number) noexcept
{
	Float value = 0.0;
	std::from_chars(number.data(), number.data() + number.size(), value);
	return value;
}

constexpr std::string_view kUnits[] = {"em",  "ex", "px", "in", "cm",   "mm",   "pt",  "pc", "%",  "",   "q",
									   "rem", "ch", "vw", "vh", "vmin", "vmax", "cap", "ic", "lh", "rlh"};

/// Puts numbers behind each other with a blank where they would run together.
class NumberList
{
public:
	NumberList(std::string& text, NumberStyle style) noexcept : _text(text), _style(style)
	{
	}

	/// A letter, behind which a number needs no blank.
	void Command(char letter)
	{
		_text += letter;
		_isFirst = true;
	}

	bool Append(Float number)
	{
		const std::size_t start = _text.size();
		if (!AppendNumber(_text, number, _style))
			return false;
		const bool isParted = _text[start] == '-';
		if (!_isFirst && !isParted)
			_text.insert(start, 1, ' ');
		_isFirst = false;
		return true;
	}

	bool Append(const Vector2d& point)
	{
		return Append(point.x) && Append(point.y);
	}

private:
	std::string& _text;
	NumberStyle _style;
	bool _isFirst = true;
};

} // namespace

bool AppendNumber(std::string& text, Float number, NumberStyle style)
{
	if (!std::isfinite(number))
		return false;
	constexpr Float kSmall = 1e-7;
	constexpr Float kLarge = 1e21;
	const Float magnitude = std::abs(number);
	const bool isExact = style.precision == NumberStyle::kExact;
	if (style.takesExponents && (magnitude >= kLarge || (isExact && magnitude > 0.0 && magnitude < kSmall)))
	{
		AppendWithExponent(text, number);
		return true;
	}
	char buffer[kLongestNumber];
	char* const end = buffer + sizeof buffer;
	const auto written = isExact ? std::to_chars(buffer, end, number, std::chars_format::fixed)
								 : std::to_chars(buffer, end, number, std::chars_format::fixed, style.precision);
	text += Shorten(buffer, written.ptr);
	return true;
}

bool AppendPercentage(std::string& text, Float fraction, NumberStyle style)
{
	if (!std::isfinite(fraction * 100.0))
		return false;
	// Dividing by a hundred rounds, so that the product need not lead back. A neighbour does.
	const Float nearest = fraction * 100.0;
	Float best = nearest;
	if (style.precision == NumberStyle::kExact)
	{
		Float above = nearest;
		Float below = nearest;
		constexpr int kNeighbours = 8;
		for (int i = 0; i < kNeighbours && best / 100.0 != fraction; i++)
		{
			above = std::nextafter(above, INFINITY);
			below = std::nextafter(below, -INFINITY);
			best = below / 100.0 == fraction ? below : above;
		}
		// No number leads to every fraction; then the nearest one that there is stands for it.
		if (best / 100.0 != fraction)
		{
			best = nearest;
			fraction = nearest / 100.0;
		}
		// Among the numbers that lead back there may be one of fewer digits.
		for (int digits = 0; digits < 17; digits++)
		{
			char buffer[kLongestNumber];
			const auto written =
				std::to_chars(buffer, buffer + sizeof buffer, best, std::chars_format::scientific, digits);
			const Float rounded = Read({buffer, static_cast<std::size_t>(written.ptr - buffer)});
			if (rounded / 100.0 == fraction)
			{
				best = rounded;
				break;
			}
		}
	}
	style.takesExponents = false;
	if (!AppendNumber(text, best, style))
		return false;
	text += '%';
	return true;
}

bool AppendLength(std::string& text, const SVGLength& length, NumberStyle style)
{
	const auto unit = static_cast<std::size_t>(length.unit);
	if (unit >= std::size(kUnits))
		return false;
	if (length.unit == SVGLengthUnit::percent)
		return AppendPercentage(text, length.value, style);
	// An exponent before a unit could be taken for a part of it.
	style.takesExponents &= length.unit == SVGLengthUnit::number;
	if (!AppendNumber(text, length.value, style))
		return false;
	text += kUnits[unit];
	return true;
}

bool AppendPath(std::string& text, std::span<const SVGPathCommand> commands, NumberStyle style)
{
	NumberList numbers(text, style);
	bool isFirst = true;
	SVGPathCommandType last = SVGPathCommandType::close;
	for (const SVGPathCommand& command : commands)
	{
		// Behind a move, pairs without a letter would be lines.
		const bool needsLetter = isFirst || command.type != last || command.type == SVGPathCommandType::move;
		isFirst = false;
		last = command.type;
		bool isWritten = true;
		switch (command.type)
		{
		case SVGPathCommandType::close:
			text += 'Z';
			last = SVGPathCommandType::close;
			isFirst = true;
			continue;
		case SVGPathCommandType::move:
			numbers.Command('M');
			break;
		case SVGPathCommandType::line:
			if (needsLetter)
				numbers.Command('L');
			break;
		case SVGPathCommandType::cubic:
			if (needsLetter)
				numbers.Command('C');
			isWritten = numbers.Append(command.points[0]) && numbers.Append(command.points[1]);
			break;
		default:
			return false;
		}
		if (!isWritten || !numbers.Append(command.points[2]))
			return false;
	}
	return true;
}

bool AppendPoints(std::string& text, std::span<const SVGPathCommand> commands, bool isPolygon, NumberStyle style)
{
	// A polygon is closed as soon as it has a line.
	if (isPolygon && commands.size() > 1)
	{
		if (commands.size() == 2 || commands.back().type != SVGPathCommandType::close)
			return false;
		commands = commands.first(commands.size() - 1);
	}
	NumberList numbers(text, style);
	for (std::size_t i = 0; i < commands.size(); i++)
	{
		const auto expected = i == 0 ? SVGPathCommandType::move : SVGPathCommandType::line;
		if (commands[i].type != expected || !numbers.Append(commands[i].points[2]))
			return false;
	}
	return true;
}

} // namespace orvan::svg
