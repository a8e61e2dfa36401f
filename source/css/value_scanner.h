// SPDX-License-Identifier: MIT
#pragma once

#include "bounds.h"
#include "tokenizer.h"

#include <array>

namespace orvan::css
{
/// Passes over component values: tokens, and brackets with everything up to those that close them. Remembers what was
/// wrong with them, and what the end of the text has cut off.
class ValueScanner
{
public:
	/// Passes the value that the tokenizer stands on; at the end of the text, none.
	void TakeComponent(Tokenizer& tokens);

	/// False when there was a broken string or url, or a closing bracket that nothing has opened.
	bool IsSound() const
	{
		return !_hasBadToken;
	}

	/// True when brackets were nested beyond the bound.
	bool IsTooDeep() const
	{
		return _isTooDeep;
	}

	/// True when a name, a string or a url had something to unescape.
	bool HasEscapes() const
	{
		return _hasEscapes;
	}

	/// True when there was a var() or an env().
	bool HasVariables() const
	{
		return _hasVariables;
	}

	/// Where the last token that was passed ended.
	const char* End() const
	{
		return _end;
	}

	/// What the text lacks at its end, the innermost last: closing brackets, and behind them a quote. Empty when
	/// nothing was cut off.
	std::string_view Missing();

private:
	std::array<char, kMaxBrackets + 1> _closers; ///< Of the brackets that are open; the spare place is for a quote.
	int _open = 0;
	int _openBeyond = 0; ///< Brackets beyond the bound, of any kind.
	const char* _end = nullptr;
	char _cutQuote = '\0';
	bool _hasBadToken = false;
	bool _isTooDeep = false;
	bool _hasEscapes = false;
	bool _hasVariables = false;
};

/// Passes everything up to and including the next semicolon that stands outside of brackets, or the next block if it
/// may end in one: what is left of an at-rule, and of a declaration that makes no sense. Stops in front of a "}" when
/// `isInBraces`.
void SkipStatement(Tokenizer& tokens, bool isInBraces, bool mayEndInBlock);
} // namespace orvan::css
