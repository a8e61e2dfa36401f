// SPDX-License-Identifier: MIT
#include "text.h"

#include "characters.h"
#include "tokenizer.h"

#include <algorithm>
#include <cstdint>

namespace orvan::css
{
namespace
{
/// Writes a text of a known greatest length into an arena.
class Writer
{
public:
	Writer(std::size_t most, Arena& arena) : _begin(static_cast<char*>(arena.allocate(most, 1))), _at(_begin)
	{
	}

	void Put(char c)
	{
		*_at++ = c;
	}

	void Put(std::string_view text)
	{
		_at = std::copy(text.begin(), text.end(), _at);
	}

	/// As UTF-8; U+FFFD for what is no character.
	void PutCharacter(std::uint32_t code)
	{
		if (code == 0 || code > 0x10ffff || (code >= 0xd800 && code < 0xe000))
			code = 0xfffd;
		if (code < 0x80)
			return Put(static_cast<char>(code));
		if (code < 0x800)
			Put(static_cast<char>(0xc0 | code >> 6));
		else
		{
			if (code < 0x10000)
				Put(static_cast<char>(0xe0 | code >> 12));
			else
			{
				Put(static_cast<char>(0xf0 | code >> 18));
				Put(static_cast<char>(0x80 | (code >> 12 & 0x3f)));
			}
			Put(static_cast<char>(0x80 | (code >> 6 & 0x3f)));
		}
		Put(static_cast<char>(0x80 | (code & 0x3f)));
	}

	std::string_view Text() const
	{
		return {_begin, static_cast<std::size_t>(_at - _begin)};
	}

private:
	char* const _begin;
	char* _at;
};

constexpr std::uint32_t HexValue(char c)
{
	return static_cast<std::uint32_t>(Is(c, kDigitKind) ? c - '0' : ToLower(c) - 'a' + 10);
}
} // namespace

bool EqualsIgnoringCase(std::string_view left, std::string_view right)
{
	return left.size() == right.size() &&
		   std::equal(left.begin(), left.end(), right.begin(), [](char a, char b) { return ToLower(a) == ToLower(b); });
}

bool EndsInEscape(std::string_view text)
{
	const std::size_t last = text.find_last_not_of('\\');
	return (text.size() - (last == text.npos ? 0 : last + 1)) % 2 != 0;
}

std::string_view Unescape(std::string_view text, Arena& arena)
{
	if (text.find('\\') == text.npos && text.find('\0') == text.npos)
		return text;
	// Three bytes for a zero byte, or for a backslash that ends the text.
	Writer writer(text.size() * 3, arena);
	for (std::size_t at = 0; at < text.size();)
	{
		const char c = text[at++];
		if (c == '\0' || (c == '\\' && at == text.size()))
			writer.PutCharacter(0);
		else if (c != '\\')
			writer.Put(c);
		else if (Is(text[at], kHexKind))
		{
			std::uint32_t code = 0;
			for (int digits = 0; digits < 6 && at < text.size() && Is(text[at], kHexKind); digits++)
				code = code * 16 + HexValue(text[at++]);
			writer.PutCharacter(code);
			if (text.substr(at).starts_with("\r\n"))
				at += 2;
			else if (at < text.size() && Is(text[at], kSpaceKind))
				at++;
		}
		else if (Is(text[at], kNewlineKind))
			at += text.substr(at).starts_with("\r\n") ? 2 : 1;
		else if (text[at] != '\0')
			writer.Put(text[at++]);
	}
	return writer.Text();
}

std::string_view FoldCase(std::string_view text, Arena& arena)
{
	if (std::none_of(text.begin(), text.end(), [](char c) { return Is(c, kUpperKind); }))
		return text;
	Writer writer(text.size(), arena);
	for (const char c : text)
		writer.Put(ToLower(c));
	return writer.Text();
}

std::string_view StripComments(std::string_view text, Arena& arena)
{
	if (text.find("/*") == text.npos)
		return text;
	Writer writer(text.size(), arena);
	Tokenizer tokens(text);
	std::size_t comments = 0;
	for (; tokens.Current().type != TokenType::end; tokens.Advance())
	{
		if (tokens.CommentCount() != comments && !writer.Text().empty())
			writer.Put(' ');
		comments = tokens.CommentCount();
		writer.Put(tokens.Current().text);
	}
	return writer.Text();
}

bool ReadStringOrUrl(std::string_view value, Arena& arena, std::string_view& content)
{
	Tokenizer tokens(value);
	tokens.SkipWhitespace();
	const bool isFunction = tokens.Current().type == TokenType::function;
	if (isFunction)
	{
		if (!EqualsIgnoringCase(Unescape(tokens.Current().Name(), arena), "url"))
			return false;
		tokens.Advance();
		tokens.SkipWhitespace();
	}
	const Token token = tokens.Current();
	if (token.type != TokenType::string && (isFunction || token.type != TokenType::url))
		return false;
	tokens.Advance();
	tokens.SkipWhitespace();
	if (isFunction && tokens.Current().type == TokenType::closeRound)
	{
		tokens.Advance();
		tokens.SkipWhitespace();
	}
	if (tokens.Current().type != TokenType::end)
		return false;
	content = Unescape(token.Name(), arena);
	return true;
}
} // namespace orvan::css
