// SPDX-License-Identifier: MIT
#include "selector_parser.h"

#include "bounds.h"
#include "specificity.h"
#include "value_scanner.h"

namespace orvan::css
{
namespace
{
struct AttributeOperator
{
	char sign; ///< In front of "=".
	AttributeTest test;
};

constexpr AttributeOperator kOperators[]{
	{'~', AttributeTest::hasWord},  {'|', AttributeTest::hasDashed}, {'^', AttributeTest::startsWith},
	{'$', AttributeTest::endsWith}, {'*', AttributeTest::contains},
};
} // namespace

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
	return ParseList(stop, false, _context.parents ? Beginning::inRule : Beginning::plain);
}

const Selector* SelectorParser::ParseList(TokenType stop, bool isForgiving, Beginning beginning)
{
	const Selector* first = nullptr;
	const Selector** end = &first;
	for (;;)
	{
		const Tokenizer start = _tokens;
		_tokens.SkipWhitespace();
		const Selector* selector = ParseSelector(stop, beginning);
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

const Selector* SelectorParser::ParseNestedList(bool isForgiving, Beginning beginning)
{
	if (_nesting == kMaxSelectorNesting)
	{
		Fail(kTooLong);
		return nullptr;
	}
	_nesting++;
	const Selector* list = ParseList(TokenType::closeRound, isForgiving, beginning);
	_nesting--;
	return list;
}

/// A compound for the rule around: its own, where it has one selector, so that chains stay chains.
const Compound* SelectorParser::MakeParent()
{
	if (!_context.parents->next)
		return _context.parents->subject;
	auto* const compound = New<Compound>();
	auto* const simple = New<Simple>();
	simple->kind = SimpleKind::isAnyOf;
	simple->list = _context.parents;
	compound->first = simple;
	return compound;
}

/// True for a "&" by itself.
bool SelectorParser::IsParent(const Compound& compound) const
{
	return _context.parents && compound.first && !compound.first->next && compound.first->list == _context.parents;
}

/// Adds what "&" stands for: the rule around, or the root where there is none.
void SelectorParser::AddParent(Draft& draft)
{
	_parentCount++;
	if (_context.parents)
		Add(draft, SimpleKind::isAnyOf, FindHighest(_context.parents)).list = _context.parents;
	else
		Add(draft, SimpleKind::root, 0);
}

/// Takes ">", "+" or "~" with the blanks behind it; none when there is no such.
Combinator SelectorParser::TakeCombinator()
{
	const Token& token = _tokens.Current();
	const Combinator combinator = token.IsDelimiter('>')   ? Combinator::child
								  : token.IsDelimiter('+') ? Combinator::nextSibling
								  : token.IsDelimiter('~') ? Combinator::laterSibling
														   : Combinator::none;
	if (combinator != Combinator::none)
	{
		_tokens.Advance();
		_tokens.SkipWhitespace();
	}
	return combinator;
}

/// What stands at the left of the first compound, and how it is joined; null when nothing does.
const Compound* SelectorParser::BeginWith(Beginning beginning, Combinator& combinator, Specificity& specificity)
{
	if (beginning == Beginning::plain)
		return nullptr;
	combinator = TakeCombinator();
	if (beginning == Beginning::inRule)
	{
		if (combinator == Combinator::none)
			return nullptr;
		specificity = FindHighest(_context.parents);
		return MakeParent();
	}
	if (combinator == Combinator::none)
		combinator = Combinator::descendant;
	auto* const simple = New<Simple>();
	simple->kind = SimpleKind::anchor;
	auto* const compound = New<Compound>();
	compound->first = simple;
	return compound;
}

const Selector* SelectorParser::ParseSelector(TokenType stop, Beginning beginning)
{
	auto* const selector = New<Selector>();
	auto combinator = Combinator::none;
	const Compound* left = BeginWith(beginning, combinator, selector->specificity);
	const bool isRelative = left;
	const std::size_t parentCount = _parentCount;
	Compound* first = nullptr;
	for (std::size_t count = 1;; count++)
	{
		Draft draft{New<Compound>(), nullptr, 0, false};
		draft.end = &draft.compound->first;
		if (!ParseCompound(draft))
			return nullptr;
		draft.compound->left = left;
		draft.compound->combinator = combinator;
		selector->specificity = Sum(selector->specificity, draft.specificity);
		first = first ? first : draft.compound;
		left = !draft.compound->left && IsParent(*draft.compound) ? MakeParent() : draft.compound;
		selector->subject = left;

		const bool hasSpace = _tokens.Current().type == TokenType::whitespace;
		_tokens.SkipWhitespace();
		if (IsAtEnd(stop) || _tokens.Current().type == TokenType::comma)
			break;
		combinator = TakeCombinator();
		if (combinator == Combinator::none && hasSpace)
			combinator = Combinator::descendant;
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
	}
	if (beginning == Beginning::inRule && !isRelative && _parentCount == parentCount)
	{
		first->left = MakeParent();
		first->combinator = Combinator::descendant;
		selector->specificity = Sum(selector->specificity, FindHighest(_context.parents));
	}
	return selector;
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
		const bool isParent = token.IsDelimiter('&');
		const bool isSimple = isPseudo || isParent || token.type == TokenType::hash ||
							  token.type == TokenType::openSquare || token.IsDelimiter('.');
		if (!isSimple)
			return token.Begin() != start || Fail(kUnexpected);
		if (draft.hasPseudoElement && !isPseudo)
			return Fail(kUnexpected);
		if (isPseudo)
		{
			if (!ParsePseudo(draft))
				return false;
		}
		else if (isParent)
		{
			AddParent(draft);
			_tokens.Advance();
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
bool SelectorParser::ParsePrefix(Prefix& prefix)
{
	Tokenizer ahead = _tokens;
	prefix = Prefix::none;
	const Token word = ahead.Current();
	const bool isAny = word.IsDelimiter('*');
	const bool isName = word.type == TokenType::ident;
	if (isAny || isName)
		ahead.Advance();
	if (!ahead.Current().IsDelimiter('|'))
		return true;
	ahead.Advance();
	if (ahead.Current().type != TokenType::ident && !ahead.Current().IsDelimiter('*'))
		return true;
	prefix = isAny ? Prefix::any : Prefix::empty;
	if (isName)
	{
		using Space = Namespaces::Space;
		const Space space =
			_context.namespaces ? _context.namespaces->Find(Unescape(word.text, _arena)) : Space::undeclared;
		if (space == Space::undeclared)
			return Fail("The selector names a namespace that is not known.");
		prefix = space == Space::ofDrawings ? Prefix::ofDrawings : Prefix::other;
	}
	_tokens = ahead;
	return true;
}

bool SelectorParser::ParseType(Draft& draft)
{
	const Token& token = _tokens.Current();
	if (token.type != TokenType::ident && !token.IsDelimiter('*') && !token.IsDelimiter('|'))
		return true;
	Prefix prefix;
	if (!ParsePrefix(prefix))
		return false;
	const bool isOfOther =
		prefix == Prefix::none && _context.namespaces && _context.namespaces->Find({}) == Namespaces::Space::other;
	// Every element of a drawing has a namespace.
	if (prefix == Prefix::empty || prefix == Prefix::other || isOfOther)
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
	Prefix prefix;
	if (!ParsePrefix(prefix))
		return false;
	if (_tokens.Current().type != TokenType::ident)
		return Fail("The selector asks for an attribute without a name.");
	// The attributes of drawings themselves have no namespace.
	if (prefix == Prefix::ofDrawings)
		Add(draft, SimpleKind::never, 0);
	Simple& simple = Add(draft, SimpleKind::attribute, kOfClass);
	simple.isAnyNamespace = prefix == Prefix::any || prefix == Prefix::other;
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
} // namespace orvan::css
