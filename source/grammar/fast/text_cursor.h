// SPDX-License-Identifier: MIT
#pragma once

#include "shared/decimal.h"
#include "shared/text_checks.h"

#include <string_view>

namespace orvan::grammar
{
/// Walks over a short value, character by character.
class TextCursor
{
public:
	explicit TextCursor(std::string_view text) : _at(text.data()), _end(text.data() + text.size())
	{
	}

	bool IsAtEnd() const
	{
		return _at == _end;
	}

	/// What is left.
	std::string_view Rest() const
	{
		return {_at, static_cast<std::size_t>(_end - _at)};
	}

	/// The next character; zero at the end.
	char Peek() const
	{
		return _at != _end ? *_at : '\0';
	}

	bool Take(char c)
	{
		if (_at == _end || *_at != c)
			return false;
		++_at;
		return true;
	}

	bool Take(std::string_view word)
	{
		if (!Rest().starts_with(word))
			return false;
		_at += word.size();
		return true;
	}

	bool TakeSpaces()
	{
		const char* const before = _at;
		while (_at != _end && IsSpace(*_at))
			++_at;
		return _at != before;
	}

	/// What separates the items of a list: blanks, a comma, or a comma among blanks.
	bool TakeSeparator()
	{
		const bool hasSpaces = TakeSpaces();
		const bool hasComma = Take(',');
		if (hasComma)
			TakeSpaces();
		return hasSpaces || hasComma;
	}

	/// Reads a number with or without a sign; false when it takes the library to tell, or when there is none.
	bool TakeNumber(bool mayHaveExponent, double& number)
	{
		const bool isNegative = Peek() == '-';
		const char* first = _at;
		if (isNegative || Peek() == '+')
			++first;
		double magnitude;
		if (!ReadDecimal(first, _end, mayHaveExponent, magnitude))
			return false;
		number = isNegative ? -magnitude : magnitude;
		_at = first;
		return true;
	}

private:
	const char* _at;
	const char* _end;
};
} // namespace orvan::grammar
