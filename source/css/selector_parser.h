// SPDX-License-Identifier: MIT
#pragma once

#include "namespaces.h"
#include "pseudo_classes.h"
#include "selector.h"
#include "text.h"
#include "tokenizer.h"

#include <cstddef>
#include <new>
#include <string_view>

namespace orvan::css
{
/// What is known where selectors stand.
struct SelectorContext
{
	const Selector* parents = nullptr; ///< The selectors of the rule around.
	const Namespaces* namespaces = nullptr;
};

/// Compiles selectors off a tokenizer, as Selectors Level 4 has them, into an arena.
///
/// Element and attribute names, ids and classes respect case, as in XML. Of a namespace only counts whether it is that
/// of drawings: `*|rect` and `rect` are the same, `|rect` never matches, and a prefix that the sheet does not declare
/// makes the selector invalid. Unknown pseudo-classes and pseudo-elements make it invalid as well, but within ":is()"
/// and
/// ":where()" only that one of the list. In a rule within another one "&" stands for the selectors of that, selectors
/// may begin with a combinator, and those without "&" are about descendants.
class SelectorParser
{
public:
	SelectorParser(Tokenizer& tokens, Arena& arena, const SelectorContext& context = {})
		: _tokens(tokens), _arena(arena), _context(context)
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

	/// What may stand in front of the first compound of a selector.
	enum class Beginning
	{
		plain,
		inRule, ///< A combinator; what is at its left is the rule around.
		inHas,  ///< The same; at its left is the element that ":has()" asks about.
	};

	/// What the prefix of a name says.
	enum class Prefix
	{
		none,
		any,   ///< "*|"
		empty, ///< "|"
		ofDrawings,
		other,
	};

	const Selector* ParseNestedList(bool isForgiving, Beginning beginning = Beginning::plain);
	const Selector* ParseList(TokenType stop, bool isForgiving, Beginning beginning);
	const Selector* ParseSelector(TokenType stop, Beginning beginning);
	const Compound* BeginWith(Beginning beginning, Combinator& combinator, Specificity& specificity);
	const Compound* MakeParent();
	bool IsParent(const Compound& compound) const;
	Combinator TakeCombinator();
	bool ParseCompound(Draft& draft);
	bool ParseType(Draft& draft);
	bool ParsePrefix(Prefix& prefix);
	bool ParseAttribute(Draft& draft);
	bool ParseAttributeTest(Simple& simple);
	bool ParsePseudo(Draft& draft);
	bool ParsePseudoFunction(Draft& draft, PseudoFunction function);
	bool ParseNth(Draft& draft, SimpleKind kind);
	bool ParseLanguages(Draft& draft);
	bool ParseHas(Draft& draft);
	bool ParseWord(Draft& draft, PseudoFunction function);
	void AddParent(Draft& draft);
	bool CloseFunction();
	void AddPseudoClass(Draft& draft, PseudoClass pseudoClass);
	Simple& Add(Draft& draft, SimpleKind kind, Specificity specificity);
	bool Fail(std::string_view error);
	bool IsAtEnd(TokenType stop) const;
	std::string_view Name() const;

	template <typename T>
	T* New()
	{
		return new (_arena.allocate(sizeof(T), alignof(T))) T();
	}

	static constexpr std::string_view kUnexpected = "The selector has something unexpected.";
	static constexpr std::string_view kUnknownPseudo = "The selector has an unknown pseudo-class or pseudo-element.";
	static constexpr std::string_view kTooLong = "The selector is too long, or nested too deep.";

	Tokenizer& _tokens;
	Arena& _arena;
	const SelectorContext _context;
	std::string_view _error;
	std::size_t _errorOffset = 0;
	int _nesting = 0;
	bool _isInHas = false;
	std::size_t _parentCount = 0; ///< How often "&" was met.
};
} // namespace orvan::css
