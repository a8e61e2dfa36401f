// SPDX-License-Identifier: MIT
#include "selector_parser.h"

#include "bounds.h"
#include "nth.h"
#include "value_scanner.h"

#include <algorithm>
#include <new>

namespace orvan::css
{
namespace
{
constexpr int kDigits = 10;
constexpr Specificity kMost = (1U << kDigits) - 1;
constexpr Specificity kOfType = 1;
constexpr Specificity kOfClass = 1U << kDigits;
constexpr Specificity kOfId = 1U << (2 * kDigits);

/// Adds without letting many classes become an id.
Specificity Sum(Specificity left, Specificity right)
{
	Specificity sum = 0;
	for (int shift = 0; shift <= 2 * kDigits; shift += kDigits)
		sum |= std::min(kMost, (left >> shift & kMost) + (right >> shift & kMost)) << shift;
	return sum;
}

Specificity FindHighest(const Selector* list)
{
	Specificity highest = 0;
	for (; list; list = list->next)
		highest = std::max(highest, list->specificity);
	return highest;
}

struct AttributeOperator
{
	char sign; ///< In front of "=".
	AttributeTest test;
};

constexpr AttributeOperator kOperators[]{
	{'~', AttributeTest::hasWord},  {'|', AttributeTest::hasDashed}, {'^', AttributeTest::startsWith},
	{'$', AttributeTest::endsWith}, {'*', AttributeTest::contains},
};

constexpr std::string_view kUnexpected = "The selector has something unexpected.";
constexpr std::string_view kUnknownPseudo = "The selector has an unknown pseudo-class or pseudo-element.";
constexpr std::string_view kTooLong = "The selector is too long, or nested too deep.";
} // namespace

template <typename T>
T* SelectorParser::New()
{
	return new (_arena.allocate(sizeof(T), alignof(T))) T();
}

bool SelectorParser::Fail(std::string_view error)
{
	_error = error;
	_errorOffset = _tokens.Offset();
	return false;
}

/// The end of the text ends everything that is open.
bool SelectorParser::IsAtEnd(TokenType stop) const
{
	return _tokens.Current().type == stop || _tokens.Current().type == TokenType::end;
}

std::string_view SelectorParser::Name() const
{
	const Token& token = _tokens.Current();
	return token.isPlain ? token.Name() : Unescape(token.Name(), _arena);
}

Simple& SelectorParser::Add(Draft& draft, SimpleKind kind, Specificity specificity)
{
	auto* const simple = New<Simple>();
	simple->kind = kind;
	*draft.end = simple;
	draft.end = &simple->next;
	draft.specificity = Sum(draft.specificity, specificity);
	return *simple;
}

const Selector* SelectorParser::ParseList(TokenType stop)
{
	return ParseList(stop, false);
}

const Selector* SelectorParser::ParseList(TokenType stop, bool isForgiving)
{
	const Selector* first = nullptr;
	const Selector** end = &first;
	for (;;)
	{
		const Tokenizer start = _tokens;
		_tokens.SkipWhitespace();
		const Selector* selector = ParseSelector(stop);
		if (!selector)
		{
			if (!isForgiving)
				return nullptr;
			_tokens = start;
			for (ValueScanner scanner; !IsAtEnd(stop) && _tokens.Current().type != TokenType::comma;)
				scanner.TakeComponent(_tokens);
		}
		else
		{
			*end = selector;
			end = const_cast<const Selector**>(&selector->next);
		}
		if (_tokens.Current().type != TokenType::comma)
			return first;
		_tokens.Advance();
	}
}

const Selector* SelectorParser::ParseNestedList(bool isForgiving)
{
	if (_nesting == kMaxSelectorNesting)
	{
		Fail(kTooLong);
		return nullptr;
	}
	_nesting++;
	const Selector* list = ParseList(TokenType::closeRound, isForgiving);
	_nesting--;
	return list;
}

const Selector* SelectorParser::ParseSelector(TokenType stop)
{
	auto* const selector = New<Selector>();
	Compound* left = nullptr;
	auto combinator = Combinator::none;
	for (std::size_t count = 1;; count++)
	{
		Draft draft{New<Compound>(), nullptr, 0, false};
		draft.end = &draft.compound->first;
		if (!ParseCompound(draft))
			return nullptr;
		draft.compound->left = left;
		draft.compound->combinator = combinator;
		selector->specificity = Sum(selector->specificity, draft.specificity);
		selector->subject = left = draft.compound;

		const bool hasSpace = _tokens.Current().type == TokenType::whitespace;
		_tokens.SkipWhitespace();
		if (IsAtEnd(stop) || _tokens.Current().type == TokenType::comma)
			return selector;
		combinator = _tokens.Current().IsDelimiter('>')   ? Combinator::child
					 : _tokens.Current().IsDelimiter('+') ? Combinator::nextSibling
					 : _tokens.Current().IsDelimiter('~') ? Combinator::laterSibling
					 : hasSpace                           ? Combinator::descendant
														  : Combinator::none;
		if (combinator == Combinator::none || draft.hasPseudoElement)
		{
			Fail(kUnexpected);
			return nullptr;
		}
		if (count == kMaxCompounds)
		{
			Fail(kTooLong);
			return nullptr;
		}
		if (combinator != Combinator::descendant)
		{
			_tokens.Advance();
			_tokens.SkipWhitespace();
		}
	}
}

bool SelectorParser::ParseCompound(Draft& draft)
{
	const char* const start = _tokens.Current().Begin();
	if (!ParseType(draft))
		return false;
	for (;;)
	{
		const Token& token = _tokens.Current();
		const bool isPseudo = token.type == TokenType::colon;
		const bool isSimple =
			isPseudo || token.type == TokenType::hash || token.type == TokenType::openSquare || token.IsDelimiter('.');
		if (!isSimple)
			return token.Begin() != start || Fail(kUnexpected);
		if (draft.hasPseudoElement && !isPseudo)
			return Fail(kUnexpected);
		if (isPseudo)
		{
			if (!ParsePseudo(draft))
				return false;
		}
		else if (token.type == TokenType::openSquare)
		{
			if (!ParseAttribute(draft))
				return false;
		}
		else if (token.type == TokenType::hash)
		{
			if (!token.isId)
				return Fail("\"#\" without a name is no id.");
			Add(draft, SimpleKind::id, kOfId).name = Name();
			_tokens.Advance();
		}
		else
		{
			_tokens.Advance();
			if (_tokens.Current().type != TokenType::ident)
				return Fail("\".\" without a name is no class.");
			Add(draft, SimpleKind::className, kOfClass).name = Name();
			_tokens.Advance();
		}
	}
}

/// Passes "prefix|" when a name or "*" follows: "*", a name, or nothing may stand in front of the bar.
bool SelectorParser::ParsePrefix(std::string_view& prefix, bool& hasPrefix)
{
	Tokenizer ahead = _tokens;
	const bool hasWord = ahead.Current().type == TokenType::ident || ahead.Current().IsDelimiter('*');
	prefix = {};
	if (hasWord)
	{
		prefix = ahead.Current().text;
		ahead.Advance();
	}
	hasPrefix = ahead.Current().IsDelimiter('|');
	if (!hasPrefix)
		return true;
	ahead.Advance();
	hasPrefix = ahead.Current().type == TokenType::ident || ahead.Current().IsDelimiter('*');
	if (!hasPrefix)
		return true;
	if (hasWord && prefix != "*")
		return Fail("The selector names a namespace that is not known.");
	_tokens = ahead;
	return true;
}

bool SelectorParser::ParseType(Draft& draft)
{
	const Token& token = _tokens.Current();
	if (token.type != TokenType::ident && !token.IsDelimiter('*') && !token.IsDelimiter('|'))
		return true;
	std::string_view prefix;
	bool hasPrefix;
	if (!ParsePrefix(prefix, hasPrefix))
		return false;
	// Every element of a drawing has a namespace.
	if (hasPrefix && prefix.empty())
		Add(draft, SimpleKind::never, 0);
	if (_tokens.Current().type == TokenType::ident)
		Add(draft, SimpleKind::type, kOfType).name = Name();
	else if (!_tokens.Current().IsDelimiter('*'))
		return Fail(kUnexpected);
	_tokens.Advance();
	return true;
}

bool SelectorParser::ParseAttribute(Draft& draft)
{
	_tokens.Advance();
	_tokens.SkipWhitespace();
	std::string_view prefix;
	bool hasPrefix;
	if (!ParsePrefix(prefix, hasPrefix))
		return false;
	if (_tokens.Current().type != TokenType::ident)
		return Fail("The selector asks for an attribute without a name.");
	Simple& simple = Add(draft, SimpleKind::attribute, kOfClass);
	simple.isAnyNamespace = prefix == "*";
	simple.name = Name();
	_tokens.Advance();
	_tokens.SkipWhitespace();
	if (!IsAtEnd(TokenType::closeSquare) && !ParseAttributeTest(simple))
		return false;
	if (!IsAtEnd(TokenType::closeSquare))
		return Fail(kUnexpected);
	_tokens.Advance();
	return true;
}

bool SelectorParser::ParseAttributeTest(Simple& simple)
{
	simple.test = AttributeTest::equals;
	for (const AttributeOperator& op : kOperators)
	{
		if (!_tokens.Current().IsDelimiter(op.sign))
			continue;
		simple.test = op.test;
		const char* const end = _tokens.Current().End();
		_tokens.Advance();
		if (_tokens.Current().Begin() != end)
			return Fail(kUnexpected);
		break;
	}
	if (!_tokens.Current().IsDelimiter('='))
		return Fail(kUnexpected);
	_tokens.Advance();
	_tokens.SkipWhitespace();
	if (_tokens.Current().type != TokenType::ident && _tokens.Current().type != TokenType::string)
		return Fail("The value of an attribute needs quotes when it is not a name.");
	simple.value = Name();
	_tokens.Advance();
	_tokens.SkipWhitespace();
	if (_tokens.Current().type == TokenType::ident)
	{
		simple.ignoresCase = EqualsIgnoringCase(Name(), "i");
		if (!simple.ignoresCase && !EqualsIgnoringCase(Name(), "s"))
			return Fail(kUnexpected);
		_tokens.Advance();
		_tokens.SkipWhitespace();
	}
	return true;
}

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
	case PseudoFunction::never:
	case PseudoFunction::direction:
	case PseudoFunction::unknown:
		break;
	}
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
