// SPDX-License-Identifier: MIT
#pragma once

#include "tokenizer.h"

#include <cstdint>
#include <string_view>

namespace orvan::css
{
/// What a condition comes to. What is not understood is neither: "not" leaves it so.
enum class Truth : std::uint8_t
{
	no,
	yes,
	unknown
};

/// What may stand in the parentheses of a condition.
class ConditionTest
{
public:
	/// Reads a test whose "(" or function the tokens stand on, to anywhere. False when it is none: then it is a
	/// condition in parentheses, or not understood.
	virtual bool Test(Tokenizer& tokens, Truth& truth) = 0;

	/// What counts for what is not understood.
	virtual Truth WhenNotUnderstood() const = 0;

protected:
	~ConditionTest() = default;
};

/// Passes the word, in any case, and the blanks behind it, when it is the next one.
bool TakeWord(Tokenizer& tokens, std::string_view word);

/// Reads the conditions that at-rules share: tests, "not", "and", "or" and parentheses. Stands behind the condition
/// then, where anything may follow. False when it is malformed.
bool ReadCondition(Tokenizer& tokens, ConditionTest& test, Truth& truth, bool mayHaveOr = true);
} // namespace orvan::css
