// SPDX-License-Identifier: MIT
#include "complete/value_cursor.h"

#include "complete/calculations.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <numbers>

namespace orvan::grammar::complete
{
namespace
{
struct NamedUnit
{
	std::string_view name;
	LengthUnit unit;
};

// The most frequent first. The units of the small, large and dynamic viewport, and those along the text's axes, are
// those of the one viewport that there is.
constexpr std::array kUnits{
	NamedUnit{"px", LengthUnit::px},      NamedUnit{"pt", LengthUnit::pt},      NamedUnit{"mm", LengthUnit::mm},
	NamedUnit{"em", LengthUnit::em},      NamedUnit{"ex", LengthUnit::ex},      NamedUnit{"cm", LengthUnit::cm},
	NamedUnit{"in", LengthUnit::in},      NamedUnit{"pc", LengthUnit::pc},      NamedUnit{"q", LengthUnit::q},
	NamedUnit{"rem", LengthUnit::rem},    NamedUnit{"ch", LengthUnit::ch},      NamedUnit{"vw", LengthUnit::vw},
	NamedUnit{"vh", LengthUnit::vh},      NamedUnit{"vmin", LengthUnit::vmin},  NamedUnit{"vmax", LengthUnit::vmax},
	NamedUnit{"svw", LengthUnit::vw},     NamedUnit{"svh", LengthUnit::vh},     NamedUnit{"svmin", LengthUnit::vmin},
	NamedUnit{"svmax", LengthUnit::vmax}, NamedUnit{"lvw", LengthUnit::vw},     NamedUnit{"lvh", LengthUnit::vh},
	NamedUnit{"lvmin", LengthUnit::vmin}, NamedUnit{"lvmax", LengthUnit::vmax}, NamedUnit{"dvw", LengthUnit::vw},
	NamedUnit{"dvh", LengthUnit::vh},     NamedUnit{"dvmin", LengthUnit::vmin}, NamedUnit{"dvmax", LengthUnit::vmax},
	NamedUnit{"vi", LengthUnit::vw},      NamedUnit{"vb", LengthUnit::vh},      NamedUnit{"cap", LengthUnit::cap},
	NamedUnit{"ic", LengthUnit::ic},      NamedUnit{"lh", LengthUnit::lh},      NamedUnit{"rlh", LengthUnit::rlh},
};

struct AngleUnit
{
	std::string_view name;
	double degrees;
};

constexpr std::array kAngleUnits{
	AngleUnit{"deg", 1},
	AngleUnit{"grad", 0.9},
	AngleUnit{"rad", 180 / std::numbers::pi},
	AngleUnit{"turn", 360},
};

const char* SkipDigits(const char* at, const char* end) noexcept
{
	while (at != end && IsDigit(*at))
		++at;
	return at;
}

/// The exponent at `at`, with its "e", or null.
const char* SkipExponent(const char* at, const char* end) noexcept
{
	if (at == end || (*at != 'e' && *at != 'E'))
		return nullptr;
	++at;
	if (at != end && (*at == '+' || *at == '-'))
		++at;
	const char* const after = SkipDigits(at, end);
	return after != at ? after : nullptr;
}

/// Whether a number out of the range of doubles is too small rather than too large, by the place of its first digit
/// that is not zero.
bool IsTiny(const char* first, const char* point, const char* exponent, const char* end) noexcept
{
	constexpr double kMost = 1e9;
	double power = 0;
	if (exponent != end)
	{
		const char* digits = exponent + 1;
		const bool isNegative = *digits == '-';
		digits += *digits == '-' || *digits == '+' ? 1 : 0;
		for (; digits != end; ++digits)
			power = std::min(power * 10 + (*digits - '0'), kMost);
		power = isNegative ? -power : power;
	}
	const char* const mostSignificant = std::find_if(first, exponent, [](char c) { return c != '0' && c != '.'; });
	const double place = static_cast<double>(point - mostSignificant);
	return place + power < 0;
}
} // namespace

bool ReadLongNumber(const char*& at, const char* end, bool mayEndWithPoint, double& number) noexcept
{
	const char* first = at;
	const bool isNegative = first != end && *first == '-';
	if (isNegative || (first != end && *first == '+'))
		++first;
	const char* const point = SkipDigits(first, end);
	const char* after = point;
	if (point != end && *point == '.')
	{
		after = SkipDigits(point + 1, end);
		const bool hasFraction = after != point + 1;
		if (!hasFraction && (point == first || !mayEndWithPoint))
			after = point;
	}
	if (after == first)
		return false;
	const char* const mantissaEnd = after;
	if (const char* const exponentEnd = SkipExponent(after, end); exponentEnd != nullptr)
		after = exponentEnd;

	double magnitude = 0;
	const auto [read, error] = std::from_chars(first, after, magnitude);
	if (error != std::errc() || !std::isfinite(magnitude))
	{
		if (error == std::errc::invalid_argument || !IsTiny(first, point, mantissaEnd, after))
			return false;
		magnitude = 0;
	}
	number = isNegative ? -magnitude : magnitude;
	at = after;
	return true;
}

bool ValueCursor::TakeLength(Length& length) noexcept
{
	if (!TakeNumber(length.value))
		return false;
	if (IsAtEnd() || (!IsLetter(*_at) && *_at != '%'))
	{
		length.unit = LengthUnit::number;
		return !HasUnit();
	}
	if (Take('%'))
	{
		length.value /= 100;
		length.unit = LengthUnit::percent;
		return true;
	}
	const std::string_view name = PeekWord();
	for (const NamedUnit& candidate : kUnits)
	{
		if (EqualsIgnoreCase(name, candidate.name))
		{
			length.unit = candidate.unit;
			_at += name.size();
			return true;
		}
	}
	return false;
}

bool ValueCursor::Calculate(double& number, bool& isPercentage) noexcept
{
	Quantity quantity;
	if (!TakeCalculation(*this, quantity))
		return false;
	isPercentage = quantity.kind == Quantity::Kind::percentage;
	number = quantity.value;
	return isPercentage || quantity.kind == Quantity::Kind::number;
}

/// What a function comes to is brought into the range, where a number that is written is refused.
bool ValueCursor::Calculate(Range range, bool mayBePlain, Length& length) noexcept
{
	Quantity quantity;
	if (!TakeCalculation(*this, quantity))
		return false;
	switch (quantity.kind)
	{
	case Quantity::Kind::angle:
		return false;
	case Quantity::Kind::number:
		length.unit = LengthUnit::number;
		break;
	case Quantity::Kind::percentage:
		length.unit = LengthUnit::percent;
		break;
	case Quantity::Kind::length:
		length.unit = quantity.unit;
		break;
	}
	length.value = range == Range::notNegative ? std::max(quantity.value, 0.0) : quantity.value;
	return quantity.kind != Quantity::Kind::number || mayBePlain;
}

bool ValueCursor::TakeAngle(bool mayBePlain, double& degrees) noexcept
{
	if (Quantity quantity; MayCalculate())
	{
		if (!TakeCalculation(*this, quantity) || quantity.kind != Quantity::Kind::angle)
			return false;
		degrees = quantity.value;
		return true;
	}
	double number;
	if (!TakeNumber(number))
		return false;
	if (!HasUnit())
	{
		degrees = number;
		return mayBePlain || number == 0;
	}
	const std::string_view name = PeekWord();
	for (const AngleUnit& candidate : kAngleUnits)
	{
		if (EqualsIgnoreCase(name, candidate.name))
		{
			degrees = number * candidate.degrees;
			_at += name.size();
			return std::isfinite(degrees);
		}
	}
	return false;
}

bool ValueCursor::TakeString(std::string_view& string, bool& hasEscapes) noexcept
{
	const char quote = Peek();
	if (quote != '"' && quote != '\'')
		return false;
	const char* at = _at + 1;
	bool escapes = false;
	while (at != _end && *at != quote)
	{
		// A string ends at a line break that is not escaped, as a bad one.
		if (*at == '\n' || *at == '\r' || *at == '\f')
			return false;
		if (*at == '\\')
		{
			escapes = true;
			++at;
		}
		at += at != _end ? 1 : 0;
	}
	string = {_at + 1, static_cast<std::size_t>(at - _at - 1)};
	hasEscapes = escapes;
	_at = at != _end ? at + 1 : at;
	SkipSpaces();
	return true;
}

bool ValueCursor::TakeUrl(std::string_view& url, bool& hasEscapes) noexcept
{
	constexpr std::string_view kName = "url";
	if (!TakeFunctionName(kName))
		return false;
	// There are no comments inside.
	while (_at != _end && IsSpace(*_at))
		++_at;
	if (Peek() == '"' || Peek() == '\'')
		return TakeString(url, hasEscapes) && TakeClose();
	const char* at = _at;
	bool escapes = false;
	while (at != _end && *at != ')' && !IsSpace(*at))
	{
		if (*at == '"' || *at == '\'' || *at == '(' || static_cast<unsigned char>(*at) < ' ' || *at == 0x7f)
			return false;
		if (*at == '\\')
		{
			escapes = true;
			++at;
			if (at == _end || *at == '\n' || *at == '\r' || *at == '\f')
				return false;
		}
		++at;
	}
	url = {_at, static_cast<std::size_t>(at - _at)};
	hasEscapes = escapes;
	while (at != _end && IsSpace(*at))
		++at;
	if (at != _end && *at != ')')
		return false;
	_at = at != _end ? at + 1 : at;
	SkipSpaces();
	return true;
}

void ValueCursor::SkipComment() noexcept
{
	const std::string_view rest(_at + 2, static_cast<std::size_t>(_end - _at - 2));
	const std::size_t close = rest.find("*/");
	_at = close != rest.npos ? rest.data() + close + 2 : _end;
}
} // namespace orvan::grammar::complete
