// SPDX-License-Identifier: MIT
#pragma once

#include "pseudo_classes.h"
#include "selector.h"
#include "text.h"
#include "tokenizer.h"

#include <cstddef>
#include <string_view>

namespace orvan::css
{
/// Compiles selectors off a tokenizer, as Selectors Level 4 has them, into an arena.
///
/// Element and attribute names, ids and classes respect case, as in XML. There are no namespaces but "any": `*|rect`
/// and `rect` are the same, `|rect` never matches, and any other prefix makes the selector invalid. Unknown
/// pseudo-classes and pseudo-elements make it invalid as well, but within ":is()" and ":where()" only that one of the
/// list. ":has()" is unknown.
class SelectorParser
{
public:
	SelectorParser(Tokenizer& tokens, Arena& arena) : _tokens(tokens), _arena(arena)
	{
	}

	/// Reads a list that ends at `stop` or at the end of the text, and stands on either; null when the list is invalid.
	/// Then it stands wherever it found out, and the error is set.
	const Selector* ParseList(TokenType stop);

	/// Why the last list is invalid: a literal.
	std::string_view Error() const
	{
		return _error;
	}

	/// The byte of the text where it is.
	std::size_t ErrorOffset() const
	{
		return _errorOffset;
	}

private:
	/// A compound that is being put together.
	struct Draft
	{
		Compound* compound;
		const Simple** end; ///< Where the next condition goes.
		Specificity specificity;
		bool hasPseudoElement;
	};

	const Selector* ParseNestedList(bool isForgiving);
	const Selector* ParseList(TokenType stop, bool isForgiving);
	const Selector* ParseSelector(TokenType stop);
	bool ParseCompound(Draft& draft);
	bool ParseType(Draft& draft);
	bool ParsePrefix(std::string_view& prefix, bool& hasPrefix);
	bool ParseAttribute(Draft& draft);
	bool ParseAttributeTest(Simple& simple);
	bool ParsePseudo(Draft& draft);
	bool ParsePseudoFunction(Draft& draft, PseudoFunction function);
	bool ParseNth(Draft& draft, SimpleKind kind);
	bool ParseLanguages(Draft& draft);
	bool CloseFunction();
	void AddPseudoClass(Draft& draft, PseudoClass pseudoClass);
	Simple& Add(Draft& draft, SimpleKind kind, Specificity specificity);
	bool Fail(std::string_view error);
	bool IsAtEnd(TokenType stop) const;
	std::string_view Name() const;

	template <typename T>
	T* New();

	Tokenizer& _tokens;
	Arena& _arena;
	std::string_view _error;
	std::size_t _errorOffset = 0;
	int _nesting = 0;
};
} // namespace orvan::css
