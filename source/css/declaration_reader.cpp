// SPDX-License-Identifier: MIT
#include "declaration_reader.h"

#include "bounds.h"
#include "simple_declarations.h"
#include "value_scanner.h"

#include <algorithm>

namespace orvan::css
{
namespace
{
constexpr const char* kNoName = "A declaration needs a name and a colon.";
constexpr const char* kBlock = "A block is no value.";

/// The value with what the end of the text has cut off.
std::string_view Complete(std::string_view value, std::string_view missing, Arena& arena)
{
	// A backslash at the end must not escape what is put behind it. In a string it means nothing, in a name U+FFFD.
	std::string_view joint;
	if (EndsInEscape(value))
	{
		value.remove_suffix(1);
		joint = missing.back() == '"' || missing.back() == '\'' ? "" : "\xef\xbf\xbd";
	}
	const std::size_t size = value.size() + joint.size() + missing.size();
	const auto text = static_cast<char*>(arena.allocate(size, 1));
	char* const end = std::copy(joint.begin(), joint.end(), std::copy(value.begin(), value.end(), text));
	std::reverse_copy(missing.begin(), missing.end(), end);
	return {text, size};
}
} // namespace

void DeclarationReader::Read()
{
	for (;;)
	{
		switch (_tokens.Current().type)
		{
		case TokenType::end:
			return;
		case TokenType::whitespace:
		case TokenType::semicolon:
			_tokens.Advance();
			break;
		case TokenType::atKeyword:
			Report(_tokens.Offset(), "An at-rule among declarations is skipped.");
			SkipStatement(_tokens, false, true);
			break;
		default:
			ReadDeclaration(false);
		}
	}
}

bool DeclarationReader::IsAtStop(bool isInBraces) const
{
	const TokenType type = _tokens.Current().type;
	return type == TokenType::end || type == TokenType::semicolon || (type == TokenType::closeCurly && isInBraces);
}

bool DeclarationReader::ReadDeclaration(bool isInBraces)
{
	Declaration declaration;
	declaration.source = _options.source;
	declaration.offset = static_cast<std::uint32_t>(_tokens.Offset());
	const char* message = kNoName;
	if (ReadName(declaration))
		message = ReadValue(declaration, isInBraces);
	else if (!isInBraces)
		SkipStatement(_tokens, false, false);
	if (isInBraces && (message == kNoName || message == kBlock))
		return false;
	if (message)
		Report(declaration.offset, message);
	else
		Append(declaration);
	return true;
}

bool DeclarationReader::ReadName(Declaration& declaration)
{
	const Token& token = _tokens.Current();
	if (token.type != TokenType::ident)
		return false;
	declaration.name = token.isPlain ? token.text : Unescape(token.text, _options.arena);
	declaration.isCustom = declaration.name.starts_with("--");
	if (!declaration.isCustom)
		declaration.name = FoldCase(declaration.name, _options.arena);
	_tokens.Advance();
	_tokens.SkipWhitespace();
	if (_tokens.Current().type != TokenType::colon)
		return false;
	_tokens.Advance();
	_tokens.SkipWhitespace();
	return true;
}

const char* DeclarationReader::ReadValue(Declaration& declaration, bool isInBraces)
{
	const std::size_t comments = _tokens.CommentCount();
	declaration.valueOffset = static_cast<std::uint32_t>(_tokens.Offset());
	const char* const begin = _tokens.Current().Begin();
	const char* end = begin;
	bool hasStrayMark = false;
	ValueScanner scanner;
	while (!IsAtStop(isInBraces))
	{
		const Token& token = _tokens.Current();
		if (token.type == TokenType::whitespace)
		{
			_tokens.Advance();
			continue;
		}
		if (token.type == TokenType::openCurly && !declaration.isCustom)
		{
			if (!isInBraces)
				SkipStatement(_tokens, false, false);
			return kBlock;
		}
		if (token.IsDelimiter('!'))
		{
			_tokens.Advance();
			_tokens.SkipWhitespace();
			const Token word = _tokens.Current();
			if (word.type == TokenType::ident && EqualsIgnoringCase(Unescape(word.text, _options.arena), "important"))
			{
				_tokens.Advance();
				_tokens.SkipWhitespace();
				declaration.isImportant = IsAtStop(isInBraces);
			}
			hasStrayMark = hasStrayMark || !declaration.isImportant;
			continue;
		}
		scanner.TakeComponent(_tokens);
		end = scanner.End();
	}
	if (hasStrayMark)
		return "\"!\" stands only before \"important\" at the end of a value.";
	if (!scanner.IsSound())
		return "A string, a url or a bracket in the value is broken.";
	if (scanner.IsTooDeep())
		return "There are too many open brackets in the value.";
	if (end == begin && !declaration.isCustom)
		return "The value is missing.";
	declaration.value = {begin, static_cast<std::size_t>(end - begin)};
	if (const std::string_view missing = scanner.Missing(); !missing.empty())
		declaration.value = Complete(declaration.value, missing, _options.arena);
	if (_tokens.CommentCount() != comments)
		declaration.value = StripComments(declaration.value, _options.arena);
	declaration.hasEscapes = scanner.HasEscapes();
	declaration.hasVariables = scanner.HasVariables();
	return nullptr;
}

void DeclarationReader::Append(const Declaration& declaration)
{
	if (_declarations.size() < _room)
		return _declarations.push_back(declaration);
	if (!_isFull)
		Report(declaration.offset, "There are too many declarations; the rest is left out.");
	_isFull = true;
}

void DeclarationReader::Report(std::size_t offset, std::string_view message) const
{
	if (_options.report)
		_options.report->Report({_options.source, offset, message});
}

void ReadDeclarations(std::string_view text, const ReadOptions& options, std::pmr::vector<Declaration>& declarations)
{
	if (text.size() > kMaxTextSize)
	{
		if (options.report)
			options.report->Report({options.source, 0, "The style attribute is too long."});
		return;
	}
	const std::size_t room = declarations.size() + kMaxDeclarations;
	SimpleDeclarations simple(text, options.start);
	while (declarations.size() < room && simple.Next())
	{
		if (!simple.HasPlainName())
		{
			simple.PutBack();
			break;
		}
		Declaration& declaration = declarations.emplace_back();
		declaration.name = simple.Name();
		declaration.value = simple.Value();
		declaration.source = options.source;
		declaration.offset = static_cast<std::uint32_t>(declaration.name.data() - text.data());
		declaration.valueOffset = static_cast<std::uint32_t>(declaration.value.data() - text.data());
	}
	if (simple.IsAtEnd())
		return;
	Tokenizer tokens(text, simple.Offset());
	DeclarationReader(tokens, options, room, declarations).Read();
}
} // namespace orvan::css
