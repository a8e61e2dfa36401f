// SPDX-License-Identifier: MIT
#include "sheet_reader.h"

#include "bounds.h"
#include "declaration_reader.h"
#include "media.h"
#include "selector_parser.h"
#include "value_scanner.h"

namespace orvan::css
{
void SheetReader::ReadRules(int mediaNesting)
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
			if (mediaNesting == 0)
				_tokens.Advance();
			else
				ReadQualifiedRule(mediaNesting);
			break;
		case TokenType::atKeyword:
			ReadAtRule(mediaNesting);
			break;
		case TokenType::closeCurly:
			if (mediaNesting > 0)
				return;
			[[fallthrough]];
		default:
			ReadQualifiedRule(mediaNesting);
		}
	}
}

void SheetReader::ReadAtRule(int mediaNesting)
{
	const std::size_t offset = _tokens.Offset();
	const bool isInBraces = mediaNesting > 0;
	const std::string_view name = Unescape(_tokens.Current().Name(), _options.arena);
	if (!EqualsIgnoringCase(name, "media"))
	{
		if (!EqualsIgnoringCase(name, "charset"))
			Report(offset, "Of the at-rules only @media is read.");
		return SkipStatement(_tokens, isInBraces, true);
	}
	_tokens.Advance();
	const bool holds = ReadMediaCondition(_tokens);
	const bool isTooDeep = mediaNesting == kMaxMediaNesting;
	if (isTooDeep)
		Report(offset, "@media is nested too deep.");
	if (!holds || isTooDeep || _tokens.Current().type != TokenType::openCurly)
		return SkipStatement(_tokens, isInBraces, true);
	_tokens.Advance();
	ReadRules(mediaNesting + 1);
	if (_tokens.Current().type == TokenType::closeCurly)
		_tokens.Advance();
}

const Selector* SheetReader::ReadSelectors(std::string_view& error, std::size_t& errorOffset)
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
	SelectorParser parser(_tokens, _options.arena);
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

void SheetReader::ReadQualifiedRule(int mediaNesting)
{
	const Tokenizer start = _tokens;
	std::string_view error;
	std::size_t errorOffset = 0;
	const Selector* const list = ReadSelectors(error, errorOffset);
	if (!list)
	{
		Report(errorOffset, error);
		_tokens = start;
		return SkipQualifiedRule(mediaNesting);
	}
	_tokens.Advance();
	const auto firstDeclaration = static_cast<std::uint32_t>(_declarations.size());
	DeclarationReader(_tokens, _options, kMaxDeclarations, _declarations).Read(true);
	if (_tokens.Current().type == TokenType::closeCurly)
		_tokens.Advance();
	Append(list, firstDeclaration, start.Offset());
}

void SheetReader::SkipQualifiedRule(int mediaNesting)
{
	ValueScanner scanner;
	for (;;)
	{
		const TokenType type = _tokens.Current().type;
		if (type == TokenType::end || (type == TokenType::closeCurly && mediaNesting > 0))
			return;
		scanner.TakeComponent(_tokens);
		if (type == TokenType::openCurly)
			return;
	}
}

void SheetReader::Append(const Selector* list, std::uint32_t firstDeclaration, std::size_t offset)
{
	const std::size_t count = _declarations.size() - firstDeclaration;
	if (count == 0)
		return;
	for (; list; list = list->next)
	{
		if (_rules.size() == kMaxRules)
		{
			if (!_isFull)
				Report(offset, "There are too many rules; the rest is left out.");
			_isFull = true;
			return;
		}
		_rules.push_back({list, firstDeclaration, static_cast<std::uint32_t>(count), _layer});
	}
}

void SheetReader::Report(std::size_t offset, std::string_view message) const
{
	if (_options.report)
		_options.report->Report({_options.source, offset, message});
}
} // namespace orvan::css
