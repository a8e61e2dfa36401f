// SPDX-License-Identifier: MIT
#include "fast/text_cursor.h"
#include "grammar.h"
#include "svgpp/library.h"

#include <array>

namespace orvan::grammar
{
namespace
{
constexpr std::string_view kInherit = "inherit";

struct NamedUnit
{
	std::string_view name;
	LengthUnit unit;
};

// The most frequent first. A declaration may write them in any case; the library reads what is not lower case.
constexpr std::array kUnits{
	NamedUnit{"px", LengthUnit::px}, NamedUnit{"pt", LengthUnit::pt}, NamedUnit{"mm", LengthUnit::mm},
	NamedUnit{"em", LengthUnit::em}, NamedUnit{"ex", LengthUnit::ex}, NamedUnit{"cm", LengthUnit::cm},
	NamedUnit{"in", LengthUnit::in}, NamedUnit{"pc", LengthUnit::pc},
};

/// Reads a length without an exponent and with its unit, if any, in lower case. What follows a length without a unit is
/// left to the caller, who must turn to the library over anything that does not end the length.
bool TakeLength(TextCursor& cursor, Length& length)
{
	if (!cursor.TakeNumber(false, length.value))
		return false;
	length.unit = LengthUnit::number;
	if (cursor.Take('%'))
	{
		length.value /= 100;
		length.unit = LengthUnit::percent;
	}
	else if (IsLetter(cursor.Peek()))
	{
		for (const NamedUnit& candidate : kUnits)
		{
			if (cursor.Take(candidate.name))
			{
				length.unit = candidate.unit;
				break;
			}
		}
	}
	return true;
}

/// Reads a text of up to `Lengths` lengths, all or none.
template <typename Lengths>
bool ReadLengths(std::string_view text, Lengths& lengths, std::size_t& count)
{
	TextCursor cursor(text);
	for (count = 0; count != lengths.size();)
	{
		if (!TakeLength(cursor, lengths[count]))
			return false;
		++count;
		if (cursor.IsAtEnd())
			return true;
		if (!cursor.TakeSeparator())
			return false;
	}
	return false;
}
} // namespace

Parsed ParseNumber(std::string_view text, Source source, double& number)
{
	// In a declaration an "e" is left over, and the library then refuses the text.
	TextCursor cursor(text);
	double result;
	if (cursor.TakeNumber(source == Source::attribute, result) && cursor.IsAtEnd())
	{
		number = result;
		return Parsed::value;
	}
	return library::ParseNumber(text, source, number);
}

Parsed ParseLength(std::string_view text, Source source, Length& length)
{
	if (text == kInherit)
		return Parsed::nothing;
	TextCursor cursor(text);
	Length result;
	if (TakeLength(cursor, result) && cursor.IsAtEnd())
	{
		length = result;
		return Parsed::value;
	}
	return library::ParseLength(text, source, length);
}

Parsed ParseFontSize(std::string_view text, Source source, Length& length)
{
	TextCursor cursor(text);
	Length result;
	if (TakeLength(cursor, result) && cursor.IsAtEnd())
	{
		length = result;
		return Parsed::value;
	}
	return library::ParseFontSize(text, source, length);
}

Parsed ParseDashArray(std::string_view text, Source source, LengthSink& sink)
{
	constexpr std::size_t kUsualMost = 16;

	if (text == "none")
		return Parsed::value;
	std::array<Length, kUsualMost> lengths;
	std::size_t count;
	// Nothing is delivered before all is read: the library would deliver it again.
	if (!ReadLengths(text, lengths, count))
		return library::ParseDashArray(text, source, sink);
	for (std::size_t i = 0; i != count; ++i)
		sink.Append(lengths[i]);
	return Parsed::value;
}

Parsed ParseOffset(std::string_view text, double& fraction)
{
	TextCursor cursor(text);
	double number;
	if (cursor.TakeNumber(true, number))
	{
		const bool isPercentage = cursor.Take('%');
		if (cursor.IsAtEnd())
		{
			fraction = isPercentage ? number / 100 : number;
			return Parsed::value;
		}
	}
	return library::ParseOffset(text, fraction);
}

Parsed ParseViewBox(std::string_view text, ViewBox& box)
{
	TextCursor cursor(text);
	ViewBox result;
	if (cursor.TakeNumber(true, result.x) && cursor.TakeSeparator() && cursor.TakeNumber(true, result.y) &&
		cursor.TakeSeparator() && cursor.TakeNumber(true, result.width) && cursor.TakeSeparator() &&
		cursor.TakeNumber(true, result.height) && cursor.IsAtEnd())
	{
		box = result;
		return Parsed::value;
	}
	return library::ParseViewBox(text, box);
}
} // namespace orvan::grammar
