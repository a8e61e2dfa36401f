// SPDX-License-Identifier: MIT
#pragma once

/// Compiled selectors. They are made once by `ParseSelectors`, lie in the arena of whoever owns them, and are held
/// against elements by `Matcher`, from right to left.

#include <cstdint>
#include <string_view>

namespace orvan::css
{
/// What joins a compound with the one at its left.
enum class Combinator : std::uint8_t
{
	none, ///< There is nothing at its left.
	descendant,
	child,
	nextSibling,
	laterSibling
};

enum class SimpleKind : std::uint8_t
{
	never, ///< Valid, but no element ever matches: ":hover", "::before".
	always,
	type,
	id,
	className,
	attribute,
	root,
	empty,
	link,
	firstChild,
	lastChild,
	nthChild,
	nthLastChild,
	nthOfType,
	nthLastOfType,
	language,
	isAnyOf,  ///< ":is()" and ":where()"
	isNoneOf, ///< ":not()"
	has,      ///< ":has()"
	anchor    ///< The element that the ":has()" around asks about, at the left end of each selector of its list.
};

enum class AttributeTest : std::uint8_t
{
	isPresent,
	equals,    ///< [name=value]
	hasWord,   ///< [name~=value]
	hasDashed, ///< [name|=value]
	startsWith,
	endsWith,
	contains
};

struct Selector;

/// One condition of a compound.
struct Simple
{
	SimpleKind kind = SimpleKind::always;
	AttributeTest test = AttributeTest::isPresent;
	bool ignoresCase = false;       ///< Of the attribute's value.
	bool isAnyNamespace = false;    ///< [*|name]
	std::int32_t step = 0;          ///< a of an+b
	std::int32_t start = 0;         ///< b of an+b
	std::string_view name;          ///< Of a type, class, id, attribute or language.
	std::string_view value;         ///< Of an attribute.
	const Selector* list = nullptr; ///< What stands in the parentheses: of ":is()", ":not()", ":has()", behind "of".
	const Simple* next = nullptr;   ///< The next condition of the same compound.
};

/// Conditions on one element.
struct Compound
{
	const Simple* first = nullptr; ///< Null for "*".
	const Compound* left = nullptr;
	Combinator combinator = Combinator::none;
};

/// Weight of a selector, comparable as a number: ids, then classes and their like, then types, each up to 1023.
using Specificity = std::uint32_t;

/// A selector without commas, and the next one of its list.
struct Selector
{
	const Compound* subject = nullptr; ///< The rightmost compound.
	Specificity specificity = 0;
	const Selector* next = nullptr;
};
} // namespace orvan::css
