// SPDX-License-Identifier: MIT
#pragma once

/// The tokens of CSS Syntax Level 3.
///
///     Tokenizer tokens("fill: url(#a) ");
///     for (; tokens.Current().type != TokenType::end; tokens.Advance())
///         Use(tokens.Current());
///
/// Tokens are views into the text, which is never copied: escapes and zero bytes stand in them as written, see
/// `Token::isPlain` and `Unescape` in `text.h`. Comments are left out. Nothing here allocates or throws.

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace orvan::css
{
enum class TokenType : std::uint8_t
{
	end,
	whitespace,
	ident,
	function, ///< A name and its "(".
	atKeyword,
	hash,
	string,
	badString, ///< A string that a line end breaks; the line end is not part of it.
	url,       ///< url(…) without quotes. One with quotes is a function and a string.
	badUrl,
	number,
	percentage,
	dimension,
	delimiter, ///< Any other single byte.
	cdo,       ///< "<!--"
	cdc,       ///< "-->"
	colon,
	semicolon,
	comma,
	openSquare,
	closeSquare,
	openRound,
	closeRound,
	openCurly,
	closeCurly
};

struct Token
{
	TokenType type = TokenType::end;
	bool isPlain = true;     ///< The name or content needs no unescaping: it holds no backslash and no zero byte.
	bool isId = false;       ///< A hash that is a valid id selector.
	bool isInteger = false;  ///< A number or dimension without point and exponent.
	bool isClosed = true;    ///< False for a string or url that the end of the text has cut off.
	std::uint32_t split = 0; ///< The bytes of a dimension that are its number.
	std::string_view text;   ///< All of the token.

	const char* Begin() const
	{
		return text.data();
	}

	const char* End() const
	{
		return text.data() + text.size();
	}

	/// The name of an ident, function, at-keyword or hash, the content of a string or url, or the unit of a dimension,
	/// as written.
	std::string_view Name() const;

	/// True for this delimiter.
	bool IsDelimiter(char c) const
	{
		return type == TokenType::delimiter && text[0] == c;
	}

	/// The value of an integer, held within 32 bits.
	std::int32_t Integer() const;
};

/// Stands on one token of a text at a time.
class Tokenizer
{
public:
	/// Stands on the first token, or on the first one from a place on. The text may have any bytes; the caller keeps it
	/// alive. A copy goes on by itself.
	explicit Tokenizer(std::string_view text, std::size_t start = 0);

	/// The token it stands on; `end` behind the last one.
	const Token& Current() const
	{
		return _current;
	}

	/// Goes to the next token.
	void Advance();

	/// Goes to the next token that is no whitespace, or stays.
	void SkipWhitespace()
	{
		while (_current.type == TokenType::whitespace)
			Advance();
	}

	/// The place of the current token in the text.
	std::size_t Offset() const
	{
		return static_cast<std::size_t>(_current.text.data() - _begin);
	}

	/// The first byte of the text.
	const char* Begin() const
	{
		return _begin;
	}

	/// Comments that were passed so far.
	std::size_t CommentCount() const
	{
		return _commentCount;
	}

	/// True when the end of the text has cut a comment off.
	bool HasOpenComment() const
	{
		return _hasOpenComment;
	}

private:
	bool SkipComments();
	bool IsAt(const char* at, char c) const;
	bool StartsEscape(const char* at) const;
	bool StartsName(const char* at) const;
	bool StartsNumber(const char* at) const;
	void TakeEscape();
	void TakeName();
	void TakeSpaces();
	void ReadString(char quote);
	void ReadNumber();
	void ReadNameOrFunction();
	void ReadUrl();
	void ReadRestOfBadUrl();
	TokenType ReadPunctuation(char c);

	const char* _begin;
	const char* _end;
	const char* _at;
	Token _current;
	std::size_t _commentCount = 0;
	bool _hasOpenComment = false;
};
} // namespace orvan::css
