// SPDX-License-Identifier: MIT
#include "value_scanner.h"

#include "text.h"

namespace orvan::css
{
void ValueScanner::TakeComponent(Tokenizer& tokens)
{
	do
	{
		const Token& token = tokens.Current();
		char closer = '\0';
		bool isCloser = false;
		switch (token.type)
		{
		case TokenType::end:
			return;
		case TokenType::function:
			_hasVariables =
				_hasVariables || EqualsIgnoringCase(token.text, "var(") || EqualsIgnoringCase(token.text, "env(");
			[[fallthrough]];
		case TokenType::openRound:
			closer = ')';
			break;
		case TokenType::openSquare:
			closer = ']';
			break;
		case TokenType::openCurly:
			closer = '}';
			break;
		case TokenType::closeRound:
		case TokenType::closeSquare:
		case TokenType::closeCurly:
			isCloser = true;
			break;
		case TokenType::badString:
		case TokenType::badUrl:
			_hasBadToken = true;
			break;
		case TokenType::string:
		case TokenType::url:
			if (!token.isClosed)
				_cutQuote = token.type == TokenType::url ? ')' : token.text[0];
			break;
		default:
			break;
		}
		_hasEscapes = _hasEscapes || !token.isPlain;
		_end = token.End();
		if (isCloser)
		{
			if (_openBeyond > 0)
				_openBeyond--;
			else if (_open > 0 && _closers[static_cast<std::size_t>(_open - 1)] == token.text[0])
				_open--;
			else
				_hasBadToken = true;
		}
		else if (closer != '\0' && (_openBeyond > 0 || _open == kMaxBrackets))
		{
			_isTooDeep = true;
			_openBeyond++;
		}
		else if (closer != '\0')
			_closers[static_cast<std::size_t>(_open++)] = closer;
		tokens.Advance();
	} while (_open > 0);
}

std::string_view ValueScanner::Missing()
{
	auto count = static_cast<std::size_t>(_open);
	if (_cutQuote != '\0')
		_closers[count++] = _cutQuote;
	return {_closers.data(), count};
}

void SkipStatement(Tokenizer& tokens, bool isInBraces, bool mayEndInBlock)
{
	ValueScanner scanner;
	for (;;)
	{
		switch (tokens.Current().type)
		{
		case TokenType::end:
			return;
		case TokenType::semicolon:
			return tokens.Advance();
		case TokenType::openCurly:
			scanner.TakeComponent(tokens);
			if (mayEndInBlock)
				return;
			break;
		case TokenType::closeCurly:
			if (isInBraces)
				return;
			[[fallthrough]];
		default:
			scanner.TakeComponent(tokens);
		}
	}
}
} // namespace orvan::css
