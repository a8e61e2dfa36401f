// SPDX-License-Identifier: MIT
#include "tokenizer.h"

#include "characters.h"
#include "text.h"

#include <algorithm>

namespace orvan::css
{
namespace
{
/// True when an unescaped name says "url". The name is a few bytes long, or it is something else.
bool IsUrl(std::string_view name, bool isPlain)
{
	if (isPlain)
		return EqualsIgnoringCase(name, "url");
	// For each letter a backslash, six digits and a line end of two bytes; what is no letter takes more room.
	constexpr std::size_t kLongest = 27;
	char room[3 * kLongest];
	Arena arena(room, sizeof room, std::pmr::null_memory_resource());
	return name.size() <= kLongest && EqualsIgnoringCase(Unescape(name, arena), "url");
}
} // namespace

std::string_view Token::Name() const
{
	switch (type)
	{
	case TokenType::function:
		return text.substr(0, text.size() - 1);
	case TokenType::atKeyword:
	case TokenType::hash:
		return text.substr(1);
	case TokenType::string:
	{
		std::string_view content = text.substr(1, text.size() - (isClosed ? 2 : 1));
		// A backslash at the end of the text means nothing.
		if (!isClosed && EndsInEscape(content))
			content.remove_suffix(1);
		return content;
	}
	case TokenType::url:
	{
		std::string_view content = text.substr(text.find('(') + 1);
		if (isClosed)
			content.remove_suffix(1);
		while (!content.empty() && Is(content.front(), kSpaceKind))
			content.remove_prefix(1);
		// The blank behind an escape's digits is lost with the others, and the escape means the same without it. A
		// blank that is itself escaped stays.
		while (!content.empty() && Is(content.back(), kSpaceKind) &&
			   !EndsInEscape(content.substr(0, content.size() - 1)))
			content.remove_suffix(1);
		return content;
	}
	case TokenType::dimension:
		return text.substr(split);
	default:
		return text;
	}
}

std::int32_t Token::Integer() const
{
	std::int64_t value = 0;
	const bool isNegative = text[0] == '-';
	for (const char c : text.substr(0, split))
	{
		if (Is(c, kDigitKind))
			value = std::min<std::int64_t>(value * 10 + (c - '0'), INT32_MAX);
	}
	return static_cast<std::int32_t>(isNegative ? -value : value);
}

Tokenizer::Tokenizer(std::string_view text, std::size_t start)
	: _begin(text.data()), _end(text.data() + text.size()), _at(_begin + start)
{
	Advance();
}

bool Tokenizer::IsAt(const char* at, char c) const
{
	return at < _end && *at == c;
}

bool Tokenizer::StartsEscape(const char* at) const
{
	return IsAt(at, '\\') && (at + 1 == _end || !Is(at[1], kNewlineKind));
}

bool Tokenizer::StartsName(const char* at) const
{
	if (at >= _end)
		return false;
	if (*at == '-')
		return at + 1 < _end && (Is(at[1], kNameStartKind) || at[1] == '-' || StartsEscape(at + 1));
	return Is(*at, kNameStartKind) || StartsEscape(at);
}

bool Tokenizer::StartsNumber(const char* at) const
{
	if (at < _end && (*at == '+' || *at == '-'))
		at++;
	if (IsAt(at, '.'))
		at++;
	return at < _end && Is(*at, kDigitKind);
}

void Tokenizer::TakeEscape()
{
	_current.isPlain = false;
	_at++;
	int digits = 0;
	for (; digits < 6 && _at < _end && Is(*_at, kHexKind); digits++)
		_at++;
	if (_at == _end)
		return;
	if (digits != 0 && *_at == '\r' && IsAt(_at + 1, '\n'))
		_at += 2;
	else if (digits == 0 || Is(*_at, kSpaceKind))
		_at++; // Without digits the first byte of a character; further ones stand in names by themselves.
}

void Tokenizer::TakeName()
{
	for (; _at < _end;)
	{
		if (Is(*_at, kNameKind))
		{
			if (*_at == '\0')
				_current.isPlain = false;
			_at++;
		}
		else if (StartsEscape(_at))
			TakeEscape();
		else
			return;
	}
}

void Tokenizer::TakeSpaces()
{
	while (_at < _end && Is(*_at, kSpaceKind))
		_at++;
}

bool Tokenizer::SkipComments()
{
	while (IsAt(_at, '/') && IsAt(_at + 1, '*'))
	{
		_commentCount++;
		const std::string_view rest(_at + 2, static_cast<std::size_t>(_end - _at - 2));
		const std::size_t close = rest.find("*/");
		if (close == rest.npos)
		{
			_hasOpenComment = true;
			_at = _end;
		}
		else
			_at = rest.data() + close + 2;
	}
	return _at < _end;
}

void Tokenizer::Advance()
{
	_current = Token();
	if (!SkipComments())
	{
		_current.text = std::string_view(_end, _end);
		return;
	}
	const char* const start = _at;
	const char c = *_at;
	if (Is(c, kSpaceKind))
	{
		TakeSpaces();
		_current.type = TokenType::whitespace;
	}
	else if (Is(c, kNameStartKind))
		ReadNameOrFunction();
	else if (Is(c, kDigitKind))
		ReadNumber();
	else
		_current.type = ReadPunctuation(c);
	_current.text = {start, static_cast<std::size_t>(_at - start)};
}

TokenType Tokenizer::ReadPunctuation(char c)
{
	switch (c)
	{
	case '"':
	case '\'':
		ReadString(c);
		return _current.type;
	case '#':
		if (_at + 1 == _end || !(Is(_at[1], kNameKind) || StartsEscape(_at + 1)))
			break;
		_at++;
		_current.isId = StartsName(_at);
		TakeName();
		return TokenType::hash;
	case '+':
	case '.':
		if (!StartsNumber(_at))
			break;
		ReadNumber();
		return _current.type;
	case '-':
		if (StartsNumber(_at))
		{
			ReadNumber();
			return _current.type;
		}
		if (IsAt(_at + 1, '-') && IsAt(_at + 2, '>'))
		{
			_at += 3;
			return TokenType::cdc;
		}
		[[fallthrough]];
	case '\\':
		if (!StartsName(_at))
			break;
		ReadNameOrFunction();
		return _current.type;
	case '<':
		if (std::string_view(_at, static_cast<std::size_t>(_end - _at)).starts_with("<!--"))
		{
			_at += 4;
			return TokenType::cdo;
		}
		break;
	case '@':
		if (!StartsName(_at + 1))
			break;
		_at++;
		TakeName();
		return TokenType::atKeyword;
	default:
		break;
	}
	_at++;
	switch (c)
	{
	case ':':
		return TokenType::colon;
	case ';':
		return TokenType::semicolon;
	case ',':
		return TokenType::comma;
	case '[':
		return TokenType::openSquare;
	case ']':
		return TokenType::closeSquare;
	case '(':
		return TokenType::openRound;
	case ')':
		return TokenType::closeRound;
	case '{':
		return TokenType::openCurly;
	case '}':
		return TokenType::closeCurly;
	default:
		return TokenType::delimiter;
	}
}

void Tokenizer::ReadString(char quote)
{
	_current.type = TokenType::string;
	for (_at++; _at < _end;)
	{
		const char c = *_at;
		if (c == quote)
		{
			_at++;
			return;
		}
		if (Is(c, kNewlineKind))
		{
			_current.type = TokenType::badString;
			return;
		}
		if (c == '\\')
		{
			// An escaped line end continues the string; a backslash at the very end means nothing.
			_current.isPlain = false;
			if (_at + 1 == _end)
				_at++;
			else if (_at[1] == '\r' && IsAt(_at + 2, '\n'))
				_at += 3;
			else if (Is(_at[1], kNewlineKind))
				_at += 2;
			else
				TakeEscape();
			continue;
		}
		if (c == '\0')
			_current.isPlain = false;
		_at++;
	}
	_current.isClosed = false;
}

void Tokenizer::ReadNumber()
{
	const char* const start = _at;
	const auto takeDigits = [this]
	{
		while (_at < _end && Is(*_at, kDigitKind))
			_at++;
	};
	_current.isInteger = true;
	if (*_at == '+' || *_at == '-')
		_at++;
	takeDigits();
	if (IsAt(_at, '.') && _at + 1 < _end && Is(_at[1], kDigitKind))
	{
		_current.isInteger = false;
		_at++;
		takeDigits();
	}
	if (IsAt(_at, 'e') || IsAt(_at, 'E'))
	{
		const char* const digits = _at + (IsAt(_at + 1, '+') || IsAt(_at + 1, '-') ? 2 : 1);
		if (digits < _end && Is(*digits, kDigitKind))
		{
			_current.isInteger = false;
			_at = digits;
			takeDigits();
		}
	}
	_current.split = static_cast<std::uint32_t>(_at - start);
	_current.type = TokenType::number;
	if (StartsName(_at))
	{
		_current.type = TokenType::dimension;
		TakeName();
	}
	else if (IsAt(_at, '%'))
	{
		_current.type = TokenType::percentage;
		_at++;
	}
}

void Tokenizer::ReadNameOrFunction()
{
	const char* const start = _at;
	TakeName();
	_current.type = TokenType::ident;
	if (!IsAt(_at, '('))
		return;
	const std::string_view name(start, static_cast<std::size_t>(_at - start));
	_at++;
	_current.type = TokenType::function;
	if (!IsUrl(name, _current.isPlain))
		return;
	const char* content = _at;
	while (content < _end && Is(*content, kSpaceKind))
		content++;
	if (!IsAt(content, '"') && !IsAt(content, '\''))
		ReadUrl();
}

void Tokenizer::ReadUrl()
{
	_current.type = TokenType::url;
	TakeSpaces();
	while (_at < _end)
	{
		const char c = *_at;
		if (c == ')')
		{
			_at++;
			return;
		}
		if (Is(c, kSpaceKind))
		{
			TakeSpaces();
			if (_at == _end || *_at == ')')
				continue;
			return ReadRestOfBadUrl();
		}
		if (c == '\\' && StartsEscape(_at))
		{
			TakeEscape();
			continue;
		}
		if (c == '"' || c == '\'' || c == '(' || c == '\\' || Is(c, kUnprintableKind))
			return ReadRestOfBadUrl();
		if (c == '\0')
			_current.isPlain = false;
		_at++;
	}
	_current.isClosed = false;
}

void Tokenizer::ReadRestOfBadUrl()
{
	_current.type = TokenType::badUrl;
	while (_at < _end)
	{
		if (StartsEscape(_at))
			TakeEscape();
		else if (*_at++ == ')')
			return;
	}
}
} // namespace orvan::css
