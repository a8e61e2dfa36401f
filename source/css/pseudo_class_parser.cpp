// SPDX-License-Identifier: MIT
// What stands behind the colons of a selector.
#include "bounds.h"
#include "nth.h"
#include "selector_parser.h"
#include "specificity.h"
#include "value_scanner.h"

namespace orvan::css
{
bool SelectorParser::ParsePseudo(Draft& draft)
{
	_tokens.Advance();
	const bool hasSingleColon = _tokens.Current().type != TokenType::colon;
	if (!hasSingleColon)
		_tokens.Advance();
	const bool isFunction = _tokens.Current().type == TokenType::function;
	if (!isFunction && _tokens.Current().type != TokenType::ident)
		return Fail(kUnknownPseudo);
	const std::string_view name = Name();
	if (isFunction && hasSingleColon)
	{
		const PseudoFunction function = FindPseudoFunction(name);
		if (function == PseudoFunction::unknown || draft.hasPseudoElement)
			return Fail(kUnknownPseudo);
		_tokens.Advance();
		return ParsePseudoFunction(draft, function);
	}
	const PseudoClass pseudoClass =
		hasSingleColon && !draft.hasPseudoElement ? FindPseudoClass(name) : PseudoClass::unknown;
	if (pseudoClass != PseudoClass::unknown)
	{
		AddPseudoClass(draft, pseudoClass);
		_tokens.Advance();
		return true;
	}
	// A pseudo-element cannot be told from its element by what contains both.
	const bool isKnown = isFunction ? IsPseudoElementFunction(name) : IsPseudoElement(name, hasSingleColon);
	if (_nesting > 0 || draft.hasPseudoElement || !isKnown)
		return Fail(kUnknownPseudo);
	Add(draft, SimpleKind::never, kOfType);
	draft.hasPseudoElement = true;
	if (isFunction)
		ValueScanner().TakeComponent(_tokens);
	else
		_tokens.Advance();
	return true;
}

void SelectorParser::AddPseudoClass(Draft& draft, PseudoClass pseudoClass)
{
	const auto addFirst = [&](SimpleKind kind, Specificity specificity)
	{
		Add(draft, kind, specificity).start = 1;
	};
	switch (pseudoClass)
	{
	case PseudoClass::unknown:
	case PseudoClass::never:
		Add(draft, SimpleKind::never, kOfClass);
		break;
	case PseudoClass::always:
		Add(draft, SimpleKind::always, kOfClass);
		break;
	case PseudoClass::root:
		Add(draft, SimpleKind::root, kOfClass);
		break;
	case PseudoClass::empty:
		Add(draft, SimpleKind::empty, kOfClass);
		break;
	case PseudoClass::link:
		Add(draft, SimpleKind::link, kOfClass);
		break;
	case PseudoClass::firstChild:
		Add(draft, SimpleKind::firstChild, kOfClass);
		break;
	case PseudoClass::lastChild:
		Add(draft, SimpleKind::lastChild, kOfClass);
		break;
	case PseudoClass::onlyChild:
		Add(draft, SimpleKind::firstChild, kOfClass);
		Add(draft, SimpleKind::lastChild, 0);
		break;
	case PseudoClass::firstOfType:
		addFirst(SimpleKind::nthOfType, kOfClass);
		break;
	case PseudoClass::lastOfType:
		addFirst(SimpleKind::nthLastOfType, kOfClass);
		break;
	case PseudoClass::onlyOfType:
		addFirst(SimpleKind::nthOfType, kOfClass);
		addFirst(SimpleKind::nthLastOfType, 0);
		break;
	}
}

bool SelectorParser::CloseFunction()
{
	if (!IsAtEnd(TokenType::closeRound))
		return Fail(kUnexpected);
	_tokens.Advance();
	return true;
}

bool SelectorParser::ParsePseudoFunction(Draft& draft, PseudoFunction function)
{
	switch (function)
	{
	case PseudoFunction::is:
	case PseudoFunction::where:
	{
		if (_nesting == kMaxSelectorNesting)
			return Fail(kTooLong);
		// Nothing in the parentheses matches nothing, and is valid.
		const Selector* const list = ParseNestedList(true);
		const bool counts = function == PseudoFunction::is;
		Add(draft, SimpleKind::isAnyOf, counts ? FindHighest(list) : 0).list = list;
		return CloseFunction();
	}
	case PseudoFunction::isNot:
	{
		const Selector* const list = ParseNestedList(false);
		if (!list)
			return false;
		Add(draft, SimpleKind::isNoneOf, FindHighest(list)).list = list;
		return CloseFunction();
	}
	case PseudoFunction::nthChild:
		return ParseNth(draft, SimpleKind::nthChild);
	case PseudoFunction::nthLastChild:
		return ParseNth(draft, SimpleKind::nthLastChild);
	case PseudoFunction::nthOfType:
		return ParseNth(draft, SimpleKind::nthOfType);
	case PseudoFunction::nthLastOfType:
		return ParseNth(draft, SimpleKind::nthLastOfType);
	case PseudoFunction::language:
		return ParseLanguages(draft);
	case PseudoFunction::has:
		return ParseHas(draft);
	case PseudoFunction::ofHost:
		if (!ParseNestedList(false))
			return false;
		Add(draft, SimpleKind::never, kOfClass);
		return CloseFunction();
	case PseudoFunction::never:
	case PseudoFunction::direction:
	case PseudoFunction::unknown:
		break;
	}
	return ParseWord(draft, function);
}

/// Reads the one word that stands in the parentheses.
bool SelectorParser::ParseWord(Draft& draft, PseudoFunction function)
{
	_tokens.SkipWhitespace();
	if (_tokens.Current().type != TokenType::ident)
		return Fail(kUnexpected);
	// As in browsers, where no attribute of a drawing turns it.
	const bool matches = function == PseudoFunction::direction && EqualsIgnoringCase(Name(), "ltr");
	Add(draft, matches ? SimpleKind::always : SimpleKind::never, kOfClass);
	_tokens.Advance();
	_tokens.SkipWhitespace();
	return CloseFunction();
}

bool SelectorParser::ParseHas(Draft& draft)
{
	// What an element has is not asked about what it has.
	if (_isInHas)
		return Fail(kUnexpected);
	_isInHas = true;
	const Selector* const list = ParseNestedList(false, Beginning::inHas);
	_isInHas = false;
	if (!list)
		return false;
	Add(draft, SimpleKind::has, FindHighest(list)).list = list;
	return CloseFunction();
}

bool SelectorParser::ParseNth(Draft& draft, SimpleKind kind)
{
	Nth nth;
	if (!ReadNth(_tokens, _arena, nth))
		return Fail("The place among siblings is not of the form an+b.");
	Simple& simple = Add(draft, kind, kOfClass);
	simple.step = nth.step;
	simple.start = nth.start;
	const bool mayHaveList = kind == SimpleKind::nthChild || kind == SimpleKind::nthLastChild;
	if (mayHaveList && _tokens.Current().type == TokenType::ident && EqualsIgnoringCase(Name(), "of"))
	{
		_tokens.Advance();
		simple.list = ParseNestedList(false);
		if (!simple.list)
			return false;
		draft.specificity = Sum(draft.specificity, FindHighest(simple.list));
	}
	return CloseFunction();
}

/// Each language becomes a selector of its own, as if ":is()" stood around them.
bool SelectorParser::ParseLanguages(Draft& draft)
{
	const Selector** end = &Add(draft, SimpleKind::isAnyOf, kOfClass).list;
	for (;;)
	{
		_tokens.SkipWhitespace();
		if (_tokens.Current().type != TokenType::ident && _tokens.Current().type != TokenType::string)
			return Fail(kUnexpected);
		if (Name().empty() || Name().find('*') != std::string_view::npos)
			return Fail("A language needs a name.");
		auto* const simple = New<Simple>();
		simple->kind = SimpleKind::language;
		simple->name = Name();
		auto* const compound = New<Compound>();
		compound->first = simple;
		auto* const selector = New<Selector>();
		selector->subject = compound;
		*end = selector;
		end = &selector->next;
		_tokens.Advance();
		_tokens.SkipWhitespace();
		if (_tokens.Current().type != TokenType::comma)
			return CloseFunction();
		_tokens.Advance();
	}
}
} // namespace orvan::css
