// SPDX-License-Identifier: MIT
#include "media.h"

#include "text.h"
#include "value_scanner.h"

namespace orvan::css
{
namespace
{
bool IsAtEnd(const Tokenizer& tokens)
{
	const TokenType type = tokens.Current().type;
	return type == TokenType::end || type == TokenType::semicolon || type == TokenType::openCurly ||
		   type == TokenType::closeCurly;
}

/// Passes the word when it is the next one.
bool TakeWord(Tokenizer& tokens, std::string_view word)
{
	if (tokens.Current().type != TokenType::ident || !EqualsIgnoringCase(tokens.Current().text, word))
		return false;
	tokens.Advance();
	tokens.SkipWhitespace();
	return true;
}

/// Reads "(prefers-color-scheme: light)"; false when it is anything else.
bool ReadFeature(Tokenizer& tokens)
{
	if (tokens.Current().type != TokenType::openRound)
		return false;
	tokens.Advance();
	tokens.SkipWhitespace();
	if (!TakeWord(tokens, "prefers-color-scheme") || tokens.Current().type != TokenType::colon)
		return false;
	tokens.Advance();
	tokens.SkipWhitespace();
	if (!TakeWord(tokens, "light") || tokens.Current().type != TokenType::closeRound)
		return false;
	tokens.Advance();
	tokens.SkipWhitespace();
	return true;
}

/// Reads a query up to its end, if it holds; else to anywhere.
bool ReadQuery(Tokenizer& tokens)
{
	const auto isAtEnd = [&tokens]
	{
		return tokens.Current().type == TokenType::comma || IsAtEnd(tokens);
	};
	if (tokens.Current().type == TokenType::ident)
	{
		const bool isNegated = TakeWord(tokens, "not");
		if (!isNegated)
			TakeWord(tokens, "only");
		if (tokens.Current().type != TokenType::ident)
			return false;
		const bool isShown = TakeWord(tokens, "all") || TakeWord(tokens, "screen");
		if (!isShown)
		{
			for (const char* word : {"not", "only", "and", "or", "layer"})
			{
				if (TakeWord(tokens, word))
					return false;
			}
			tokens.Advance();
			tokens.SkipWhitespace();
		}
		if (isNegated)
			return !isShown && isAtEnd();
		if (!isShown || isAtEnd())
			return isShown;
		if (!TakeWord(tokens, "and"))
			return false;
	}
	while (ReadFeature(tokens))
	{
		if (isAtEnd())
			return true;
		if (!TakeWord(tokens, "and"))
			return false;
	}
	return false;
}
} // namespace

bool ReadMediaCondition(Tokenizer& tokens)
{
	tokens.SkipWhitespace();
	bool holds = IsAtEnd(tokens);
	while (!IsAtEnd(tokens))
	{
		Tokenizer query = tokens;
		holds = ReadQuery(query) || holds;
		for (ValueScanner scanner; !IsAtEnd(tokens) && tokens.Current().type != TokenType::comma;)
			scanner.TakeComponent(tokens);
		if (tokens.Current().type == TokenType::comma)
			tokens.Advance();
		tokens.SkipWhitespace();
	}
	return holds;
}
} // namespace orvan::css
