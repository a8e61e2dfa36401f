// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace orvan::css
{
/// What a pseudo-class without parentheses asks for.
enum class PseudoClass
{
	unknown,
	never, ///< Valid, but of states that a drawing is never in.
	always,
	root,
	empty,
	link,
	firstChild,
	lastChild,
	onlyChild,
	firstOfType,
	lastOfType,
	onlyOfType
};

/// What a pseudo-class with parentheses asks for.
enum class PseudoFunction
{
	unknown,
	never, ///< Valid, but of what a drawing does not have.
	direction,
	is,
	where,
	isNot,
	nthChild,
	nthLastChild,
	nthOfType,
	nthLastOfType,
	language,
	has,
	ofHost ///< Valid with selectors, and never matches.
};

/// Names are matched in any case.
PseudoClass FindPseudoClass(std::string_view name);
PseudoFunction FindPseudoFunction(std::string_view name);

/// True for a pseudo-element without parentheses. Those of old may have a single colon.
bool IsPseudoElement(std::string_view name, bool hasSingleColon);

/// True for a pseudo-element with parentheses.
bool IsPseudoElementFunction(std::string_view name);
} // namespace orvan::css
