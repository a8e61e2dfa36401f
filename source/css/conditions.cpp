// SPDX-License-Identifier: MIT
#include "conditions.h"

#include "bounds.h"
#include "text.h"
#include "value_scanner.h"

namespace orvan::css
{
namespace
{
Truth Negate(Truth truth)
{
	return truth == Truth::unknown ? truth : truth == Truth::yes ? Truth::no : Truth::yes;
}

/// One that decides by itself does; else what is unknown keeps the whole unknown.
Truth Join(Truth left, Truth right, Truth deciding)
{
	if (left == deciding || right == deciding)
		return deciding;
	return left == Truth::unknown ? left : right;
}

class ConditionReader
{
public:
	ConditionReader(Tokenizer& tokens, ConditionTest& test, int nesting)
		: _tokens(tokens), _test(test), _nesting(nesting)
	{
	}

	bool Read(bool mayHaveOr, Truth& truth)
	{
		if (TakeWord(_tokens, "not"))
		{
			const bool isSound = ReadInParentheses(truth);
			truth = Negate(truth);
			return isSound;
		}
		if (!ReadInParentheses(truth))
			return false;
		const bool isAnd = TakeWord(_tokens, "and");
		if (!isAnd && (!mayHaveOr || !TakeWord(_tokens, "or")))
			return true;
		do
		{
			Truth next;
			if (!ReadInParentheses(next))
				return false;
			truth = Join(truth, next, isAnd ? Truth::no : Truth::yes);
		} while (TakeWord(_tokens, isAnd ? "and" : "or"));
		return true;
	}

private:
	bool ReadInParentheses(Truth& truth)
	{
		const bool isFunction = _tokens.Current().type == TokenType::function;
		if (!isFunction && _tokens.Current().type != TokenType::openRound)
			return false;
		Tokenizer inside = _tokens;
		if (!_test.Test(inside, truth))
		{
			inside = _tokens;
			inside.Advance();
			inside.SkipWhitespace();
			const bool isCondition =
				!isFunction && _nesting < kMaxConditionNesting &&
				ConditionReader(inside, _test, _nesting + 1).Read(true, truth) &&
				(inside.Current().type == TokenType::closeRound || inside.Current().type == TokenType::end);
			if (!isCondition)
				truth = _test.WhenNotUnderstood();
		}
		ValueScanner().TakeComponent(_tokens);
		_tokens.SkipWhitespace();
		return true;
	}

	Tokenizer& _tokens;
	ConditionTest& _test;
	const int _nesting;
};
} // namespace

bool TakeWord(Tokenizer& tokens, std::string_view word)
{
	if (tokens.Current().type != TokenType::ident || !EqualsIgnoringCase(tokens.Current().text, word))
		return false;
	tokens.Advance();
	tokens.SkipWhitespace();
	return true;
}

bool ReadCondition(Tokenizer& tokens, ConditionTest& test, Truth& truth, bool mayHaveOr)
{
	return ConditionReader(tokens, test, 0).Read(mayHaveOr, truth);
}
} // namespace orvan::css
