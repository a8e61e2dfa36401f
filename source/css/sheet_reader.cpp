// SPDX-License-Identifier: MIT
#include "sheet_reader.h"

#include "bounds.h"
#include "media.h"
#include "selector_parser.h"
#include "value_scanner.h"

namespace orvan::css
{
void SheetReader::ReadRules(const Place& place)
{
	for (;;)
	{
		switch (_tokens.Current().type)
		{
		case TokenType::end:
			return;
		case TokenType::whitespace:
			_tokens.Advance();
			break;
		case TokenType::cdo:
		case TokenType::cdc:
			// Outside of blocks they mean nothing; they hid sheets from readers that knew none.
			if (place.nesting == 0)
				_tokens.Advance();
			else
				ReadQualifiedRule(place);
			break;
		case TokenType::atKeyword:
			ReadAtRule(place);
			break;
		case TokenType::closeCurly:
			if (place.nesting > 0)
				return;
			[[fallthrough]];
		default:
			_hasRules = true;
			ReadQualifiedRule(place);
		}
	}
}

/// Reads a block from behind its "{" to behind its "}".
void SheetReader::ReadBlock(const Place& place, std::size_t offset)
{
	if (place.parents)
		ReadContent(place, offset);
	else
		ReadRules(place);
	if (_tokens.Current().type == TokenType::closeCurly)
		_tokens.Advance();
}

/// Reads what stands in a rule: declarations, of which those between two rules are a rule of their own, and rules.
void SheetReader::ReadContent(const Place& place, std::size_t offset)
{
	std::size_t firstDeclaration = _declarations.size();
	for (;;)
	{
		const Tokenizer start = _tokens;
		switch (_tokens.Current().type)
		{
		case TokenType::end:
		case TokenType::closeCurly:
			return Append(place, firstDeclaration, offset);
		case TokenType::whitespace:
		case TokenType::semicolon:
			_tokens.Advance();
			continue;
		case TokenType::atKeyword:
			Append(place, firstDeclaration, offset);
			ReadAtRule(place);
			break;
		default:
			if (_declarationReader.ReadInBlock())
				continue;
			Append(place, firstDeclaration, offset);
			_tokens = start;
			if (!ReadQualifiedRule(place))
				Report(start.Offset(), "A declaration needs a name and a colon.");
		}
		firstDeclaration = _declarations.size();
	}
}

void SheetReader::ReadAtRule(const Place& place)
{
	const std::size_t offset = _tokens.Offset();
	const bool isInBraces = place.nesting > 0;
	const std::string_view name = Unescape(_tokens.Current().Name(), _options.arena);
	const auto is = [name](std::string_view word)
	{
		return EqualsIgnoringCase(name, word);
	};
	Place inner = place;
	inner.nesting++;
	bool holds = false;
	if (is("namespace") && !isInBraces && !_hasRules)
		ReadNamespace();
	else if (!IsKnownAtRule(name) || is("namespace"))
		Report(offset, "This at-rule is not read.");
	else if (!is("charset"))
	{
		_tokens.Advance();
		_tokens.SkipWhitespace();
		holds = is("media")      ? ReadMediaCondition(_tokens)
				: is("supports") ? ReadSupportsCondition(_tokens, _options, _features)
								 : ReadLayers(place, inner);
		_hasRules = _hasRules || _tokens.Current().type == TokenType::openCurly;
	}
	const bool isTooDeep = place.nesting == kMaxRuleNesting;
	if (isTooDeep)
		Report(offset, "At-rules are nested too deep.");
	if (!holds || isTooDeep || _tokens.Current().type != TokenType::openCurly)
		return SkipStatement(_tokens, isInBraces, true);
	_tokens.Advance();
	ReadBlock(inner, offset);
}

/// Reads "a.b, c;" and "a.b {", up to the mark at the end. True in front of a block, which stands in the inner place.
bool SheetReader::ReadLayers(const Place& place, Place& inner)
{
	if (_tokens.Current().type == TokenType::openCurly)
	{
		inner.layer = _layers.Enter(place.layer, {});
		return true;
	}
	// A statement that is malformed names nothing.
	Tokenizer ahead = _tokens;
	for (const bool enters : {false, true})
	{
		Tokenizer& tokens = enters ? _tokens : ahead;
		std::size_t count = 0;
		do
		{
			if (count++ != 0)
				tokens.Advance();
			tokens.SkipWhitespace();
			inner.layer = place.layer;
			if (!ReadLayerName(tokens, inner.layer, enters))
				return false;
		} while (tokens.Current().type == TokenType::comma);
		const TokenType type = tokens.Current().type;
		if (type == TokenType::openCurly && count == 1)
			continue;
		if (type != TokenType::semicolon && type != TokenType::end && type != TokenType::closeCurly)
			return false;
	}
	return _tokens.Current().type == TokenType::openCurly;
}

bool SheetReader::ReadLayerName(Tokenizer& tokens, LayerNumber& layer, bool enters)
{
	for (;;)
	{
		if (tokens.Current().type != TokenType::ident)
			return false;
		if (enters)
			layer = _layers.Enter(layer, Unescape(tokens.Current().text, _options.arena));
		tokens.Advance();
		if (!tokens.Current().IsDelimiter('.'))
			break;
		tokens.Advance();
	}
	tokens.SkipWhitespace();
	return true;
}

/// Reads "@namespace prefix url(name)" up to its semicolon.
void SheetReader::ReadNamespace()
{
	_tokens.Advance();
	_tokens.SkipWhitespace();
	std::string_view prefix;
	if (_tokens.Current().type == TokenType::ident)
	{
		prefix = Unescape(_tokens.Current().text, _options.arena);
		_tokens.Advance();
		_tokens.SkipWhitespace();
	}
	const char* const begin = _tokens.Current().Begin();
	ValueScanner scanner;
	scanner.TakeComponent(_tokens);
	_tokens.SkipWhitespace();
	std::string_view name;
	if (scanner.End() && (_tokens.Current().type == TokenType::semicolon || _tokens.Current().type == TokenType::end) &&
		ReadStringOrUrl({begin, static_cast<std::size_t>(scanner.End() - begin)}, _options.arena, name))
		_namespaces.Declare(prefix, name);
}

const Selector* SheetReader::ReadSelectors(const Place& place, std::string_view& error, std::size_t& errorOffset)
{
	// What begins like a custom property is none of a type selector and a pseudo-class.
	if (_tokens.Current().type == TokenType::ident &&
		Unescape(_tokens.Current().text, _options.arena).starts_with("--"))
	{
		Tokenizer ahead = _tokens;
		ahead.Advance();
		ahead.SkipWhitespace();
		if (ahead.Current().type == TokenType::colon)
		{
			error = "A custom property needs a rule around it.";
			errorOffset = _tokens.Offset();
			return nullptr;
		}
	}
	SelectorParser parser(_tokens, _options.arena, {place.parents, &_namespaces});
	const Selector* const list = parser.ParseList(TokenType::openCurly);
	error = parser.Error();
	errorOffset = parser.ErrorOffset();
	if (list && _tokens.Current().type == TokenType::openCurly)
		return list;
	if (list)
	{
		error = "A rule has no block.";
		errorOffset = _tokens.Offset();
	}
	return nullptr;
}

/// Reads a rule, or skips it with a report. False, without a report, in a rule when there is no block in front of the
/// next semicolon: then it was no rule.
bool SheetReader::ReadQualifiedRule(const Place& place)
{
	const Tokenizer start = _tokens;
	std::string_view error;
	std::size_t errorOffset = 0;
	Place inner = place;
	inner.nesting++;
	const Selector* const list = ReadSelectors(place, error, errorOffset);
	if (!list || place.nesting == kMaxRuleNesting)
	{
		_tokens = start;
		const bool hasBlock = SkipQualifiedRule(place);
		if (place.parents && !hasBlock)
			return false;
		Report(list ? start.Offset() : errorOffset, list ? "Rules are nested too deep." : error);
		return true;
	}
	_tokens.Advance();
	inner.parents = list;
	ReadBlock(inner, start.Offset());
	return true;
}

/// True when it has skipped a block.
bool SheetReader::SkipQualifiedRule(const Place& place)
{
	ValueScanner scanner;
	for (;;)
	{
		const TokenType type = _tokens.Current().type;
		if (type == TokenType::end || (type == TokenType::closeCurly && place.nesting > 0))
			return false;
		scanner.TakeComponent(_tokens);
		if (type == TokenType::openCurly)
			return true;
		if (type == TokenType::semicolon && place.parents)
			return false;
	}
}

/// Appends a rule for each selector around, with the declarations from the first one on.
void SheetReader::Append(const Place& place, std::size_t firstDeclaration, std::size_t offset)
{
	const std::size_t count = _declarations.size() - firstDeclaration;
	if (count == 0)
		return;
	for (const Selector* selector = place.parents; selector; selector = selector->next)
	{
		if (_rules.size() == kMaxRules)
		{
			if (!_isFull)
				Report(offset, "There are too many rules; the rest is left out.");
			_isFull = true;
			return;
		}
		_rules.push_back(
			{selector, static_cast<std::uint32_t>(firstDeclaration), static_cast<std::uint32_t>(count), place.layer});
	}
}

void SheetReader::Report(std::size_t offset, std::string_view message) const
{
	if (_options.report)
		_options.report->Report({_options.source, offset, message});
}
} // namespace orvan::css
