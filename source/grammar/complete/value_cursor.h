// SPDX-License-Identifier: MIT
#pragma once

/// Walks over one value as CSS sees it: blanks and comments, words, numbers with units, functions.

#include "complete/numbers.h"
#include "shared/decimal.h"
#include "shared/text_checks.h"

#include <limits>
#include <string_view>

namespace orvan::grammar::complete
{
/// Reads a number of any length at `at`, which moves behind it: as `ReadDecimal`, but with a sign, and without bounds
/// on digits and exponents. With `mayEndWithPoint`, "13." is a number. False, with `at` left alone, when there is none
/// or when it overflows.
bool ReadLongNumber(const char*& at, const char* end, bool mayEndWithPoint, double& number) noexcept;

/// Whether a character may stand inside a word of CSS.
inline bool IsNameCharacter(char c) noexcept
{
	return IsLetter(c) || IsDigit(c) || c == '-' || c == '_' || c == '\\' || static_cast<unsigned char>(c) >= 0x80;
}

inline char ToLower(char c) noexcept
{
	return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
}

/// Reads a number at the start of a text that is nothing but digits and a point behind at most one minus, as nearly all
/// are, and is told at once; false, with `at` left alone, for all others.
inline bool ReadUsualNumber(const char*& at, const char* end, double& number) noexcept
{
	const char* const digits = at + (at != end && *at == '-' ? 1 : 0);
	const char* after = digits;
	double magnitude;
	if (!ReadDecimal(after, end, false, magnitude) || !HasFewDigits(digits, after))
		return false;
	number = digits != at ? -magnitude : magnitude;
	at = after;
	return true;
}

/// Whether a text is nothing but such a number.
inline bool IsUsualNumber(std::string_view text, double& number) noexcept
{
	const char* at = text.data();
	const char* const end = at + text.size();
	return ReadUsualNumber(at, end, number) && at == end;
}

/// Whether comments count as blanks: in values of properties they do, in other attributes they do not.
enum class Comments
{
	skipped,
	refused
};

class ValueCursor
{
public:
	explicit ValueCursor(std::string_view text, Source source = Source::style,
						 Comments comments = Comments::skipped) noexcept
		: _begin(text.data()), _at(text.data()), _end(text.data() + text.size()), _source(source), _comments(comments)
	{
		SkipSpaces();
	}

	bool IsAtEnd() const noexcept
	{
		return _at == _end;
	}

	/// The next character; zero at the end.
	char Peek() const noexcept
	{
		return _at != _end ? *_at : '\0';
	}

	Source GetSource() const noexcept
	{
		return _source;
	}

	const char* At() const noexcept
	{
		return _at;
	}

	const char* End() const noexcept
	{
		return _end;
	}

	std::size_t Offset() const noexcept
	{
		return static_cast<std::size_t>(_at - _begin);
	}

	void MoveTo(const char* at) noexcept
	{
		_at = at;
	}

	/// Skips blanks, and comments where they count as such; whether there were any. A comment that is not closed goes
	/// on to the end.
	bool SkipSpaces() noexcept
	{
		const char* const before = _at;
		while (_at != _end)
		{
			if (IsSpace(*_at))
				++_at;
			else if (*_at == '/' && _comments == Comments::skipped && _end - _at > 1 && _at[1] == '*')
				SkipComment();
			else
				break;
		}
		return _at != before;
	}

	bool Take(char c) noexcept
	{
		if (_at == _end || *_at != c)
			return false;
		++_at;
		return true;
	}

	/// A character with the blanks behind it.
	bool TakeMark(char c) noexcept
	{
		if (!Take(c))
			return false;
		SkipSpaces();
		return true;
	}

	/// A comma among blanks.
	bool TakeComma() noexcept
	{
		SkipSpaces();
		return TakeMark(',');
	}

	/// Blanks, a comma, or both. True when there was something.
	bool TakeSeparator() noexcept
	{
		const bool hasSpaces = SkipSpaces();
		return TakeMark(',') || hasSpaces;
	}

	/// The word that starts here; empty when none does. Nothing is taken.
	std::string_view PeekWord() const noexcept
	{
		const char* at = _at;
		while (at != _end && IsNameCharacter(*at))
			++at;
		return {_at, static_cast<std::size_t>(at - _at)};
	}

	/// Takes a word that is no function's name, in lower case here and in any case in the text, and the blanks behind.
	bool TakeWord(std::string_view word) noexcept
	{
		const std::string_view here = PeekWord();
		if (!EqualsIgnoreCase(here, word) || IsFunctionName(here))
			return false;
		SkipWord(here);
		return true;
	}

	/// Takes one of the words of a table.
	template <typename Table, typename Value>
	bool TakeKeyword(const Table& table, Value& value) noexcept
	{
		const std::string_view here = PeekWord();
		for (const auto& row : table)
		{
			if (EqualsIgnoreCase(here, row.name))
			{
				if (IsFunctionName(here))
					return false;
				value = row.value;
				SkipWord(here);
				return true;
			}
		}
		return false;
	}

	/// Takes a function's name and its parenthesis.
	bool TakeFunctionName(std::string_view name) noexcept
	{
		const auto length = static_cast<std::ptrdiff_t>(name.size());
		if (_end - _at <= length || _at[length] != '(' || !EqualsIgnoreCase({_at, name.size()}, name))
			return false;
		_at += length + 1;
		return true;
	}

	/// Takes a function's name, its parenthesis and the blanks behind it.
	bool TakeFunction(std::string_view name) noexcept
	{
		if (!TakeFunctionName(name))
			return false;
		SkipSpaces();
		return true;
	}

	/// Takes the end of a function, which the end of the text is as well, and the blanks around it.
	bool TakeClose() noexcept
	{
		SkipSpaces();
		if (IsAtEnd())
			return true;
		return TakeMark(')');
	}

	/// Reads a number with or without a sign. What follows is left alone.
	[[gnu::always_inline]] bool TakeNumber(double& number) noexcept
	{
		const bool isNegative = Peek() == '-';
		const char* at = _at;
		if (isNegative || Peek() == '+')
			++at;
		// An "e" behind a number may be an exponent or a unit, and a point may end it.
		const char* const digits = at;
		if (double magnitude;
			ReadDecimal(at, _end, false, magnitude) && HasFewDigits(digits, at) && (at == _end || !MayContinue(*at)))
		{
			number = isNegative ? -magnitude : magnitude;
			_at = at;
			return true;
		}
		return ReadLongNumber(_at, _end, _source == Source::attribute, number);
	}

	/// Reads a number, or a percentage as its fraction. Here and below, a math function of CSS counts as what it comes
	/// to.
	bool TakeNumberOrPercentage(double& number, bool& isPercentage) noexcept
	{
		if (MayCalculate())
			return Calculate(number, isPercentage);
		if (!TakeNumber(number))
			return false;
		isPercentage = Take('%');
		if (isPercentage)
			number /= 100;
		return isPercentage || !HasUnit();
	}

	/// Reads a number without a unit.
	bool TakePlainNumber(double& number) noexcept
	{
		if (bool isPercentage; MayCalculate())
			return Calculate(number, isPercentage) && !isPercentage;
		return TakeNumber(number) && !HasUnit();
	}

	/// Reads an angle in degrees; a number without a unit only when it is zero or `mayBePlain`.
	bool TakeAngle(bool mayBePlain, double& degrees) noexcept;

	/// Reads a number with a unit, a percentage, or a number alone, whose unit is `none`, but no math function. Whether
	/// any of these is right is the caller's business.
	bool TakeLength(Length& length) noexcept;

	/// Reads a length or a percentage where a plain number other than zero needs `mayBePlain`.
	bool TakeLength(Range range, bool mayBePlain, Length& length) noexcept
	{
		if (MayCalculate())
			return Calculate(range, mayBePlain, length);
		return TakeLength(length) && (length.unit != LengthUnit::number || mayBePlain || length.value == 0) &&
			   (range == Range::any || length.value >= 0);
	}

	/// Reads a text in quotes; the view is what stands between them. A quote that is not closed is by the end.
	bool TakeString(std::string_view& string, bool& hasEscapes) noexcept;

	/// Reads "url(…)" with or without quotes.
	bool TakeUrl(std::string_view& url, bool& hasEscapes) noexcept;

private:
	/// Whether there may be a math function: those count in values of properties alone.
	bool MayCalculate() const noexcept
	{
		return IsLetter(Peek()) && _comments == Comments::skipped;
	}

	bool Calculate(double& number, bool& isPercentage) noexcept;
	bool Calculate(Range range, bool mayBePlain, Length& length) noexcept;

	/// Whether a word that starts here is followed by a parenthesis.
	bool IsFunctionName(std::string_view here) const noexcept
	{
		const char* const after = here.data() + here.size();
		return after != _end && *after == '(';
	}

	void SkipWord(std::string_view here) noexcept
	{
		_at = here.data() + here.size();
		SkipSpaces();
	}

	static bool MayContinue(char c) noexcept
	{
		return c == 'e' || c == 'E' || c == '.';
	}

	/// Whether a unit or a percent sign follows.
	bool HasUnit() const noexcept
	{
		return _at != _end && (IsNameCharacter(*_at) || *_at == '%') && *_at != '-' && !IsDigit(*_at);
	}

	void SkipComment() noexcept;

	const char* _begin;
	const char* _at;
	const char* _end;
	Source _source;
	Comments _comments;
};

/// Ends the reading of a value: it counts when all of it was read.
inline Parsed Finish(ValueCursor& cursor) noexcept
{
	cursor.SkipSpaces();
	return cursor.IsAtEnd() ? Parsed::value : Parsed::refused;
}
} // namespace orvan::grammar::complete
