// SPDX-License-Identifier: MIT
#pragma once

#include "declarations.h"
#include "tokenizer.h"

namespace orvan::css
{
/// Says for @supports which declarations whoever reads them understands.
class FeatureTest
{
public:
	/// Whether the declaration, which is no custom property, has an effect somewhere, or would in a browser.
	virtual bool Understands(const Declaration& declaration) = 0;

protected:
	~FeatureTest() = default;
};

/// Reads the condition of an @supports rule and stands behind it. True when it holds; false also when it is malformed.
/// Declarations are asked of `features`, of which there may be none; selector() and at-rule() are known here.
bool ReadSupportsCondition(Tokenizer& tokens, const ReadOptions& options, FeatureTest* features);

/// True for an at-rule that is read.
bool IsKnownAtRule(std::string_view name);
} // namespace orvan::css
