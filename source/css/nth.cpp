// SPDX-License-Identifier: MIT
#include "nth.h"

#include "characters.h"

#include <algorithm>

namespace orvan::css
{
namespace
{
bool HasSign(const Token& token)
{
	return token.text[0] == '+' || token.text[0] == '-';
}

/// What stands behind the n: nothing, "-" with the digits in another token, or "-" and digits.
bool ReadStart(std::string_view rest, Tokenizer& tokens, Nth& nth)
{
	if (rest.size() > 1 && rest[0] == '-')
	{
		std::int64_t digits = 0;
		for (const char c : rest.substr(1))
		{
			if (!Is(c, kDigitKind))
				return false;
			digits = std::min<std::int64_t>(digits * 10 + (c - '0'), INT32_MAX);
		}
		nth.start = static_cast<std::int32_t>(-digits);
		return true;
	}
	if (!rest.empty() && rest != "-")
		return false;
	tokens.SkipWhitespace();
	bool isNegative = rest == "-";
	bool needsDigits = isNegative;
	if (!needsDigits && (tokens.Current().IsDelimiter('+') || tokens.Current().IsDelimiter('-')))
	{
		isNegative = tokens.Current().IsDelimiter('-');
		needsDigits = true;
		tokens.Advance();
		tokens.SkipWhitespace();
	}
	const Token& token = tokens.Current();
	const bool isInteger = token.type == TokenType::number && token.isInteger;
	if (!isInteger || HasSign(token) == needsDigits)
		return !needsDigits && !isInteger;
	nth.start = isNegative ? -token.Integer() : token.Integer();
	tokens.Advance();
	return true;
}
} // namespace

bool ReadNth(Tokenizer& tokens, Arena& arena, Nth& nth)
{
	nth = {};
	tokens.SkipWhitespace();
	const bool hasPlus = tokens.Current().IsDelimiter('+');
	if (hasPlus)
		tokens.Advance();
	const Token token = tokens.Current();
	std::string_view rest;
	if (token.type == TokenType::ident)
	{
		rest = FoldCase(Unescape(token.text, arena), arena);
		if (!hasPlus && (rest == "odd" || rest == "even"))
		{
			nth = {2, rest == "odd" ? 1 : 0};
			tokens.Advance();
			tokens.SkipWhitespace();
			return true;
		}
		nth.step = 1;
		if (!hasPlus && rest.starts_with('-'))
		{
			nth.step = -1;
			rest.remove_prefix(1);
		}
	}
	else if (hasPlus || !token.isInteger)
		return false;
	else if (token.type == TokenType::number)
	{
		nth.start = token.Integer();
		tokens.Advance();
		tokens.SkipWhitespace();
		return true;
	}
	else
	{
		nth.step = token.Integer();
		rest = FoldCase(Unescape(token.Name(), arena), arena);
	}
	if (!rest.starts_with('n'))
		return false;
	tokens.Advance();
	if (!ReadStart(rest.substr(1), tokens, nth))
		return false;
	tokens.SkipWhitespace();
	return true;
}
} // namespace orvan::css
