// SPDX-License-Identifier: MIT
#include "xml_guard.h"

#include <cstdint>
#include <cstring>

namespace orvan::svg
{
namespace
{

/// The value of a hexadecimal digit, or -1. Decimal references take them too: the XML parser does not tell them apart.
constexpr int DigitValue(char c) noexcept
{
	if (c >= '0' && c <= '9')
		return c - '0';
	if (c >= 'a' && c <= 'f')
		return c - 'a' + 10;
	if (c >= 'A' && c <= 'F')
		return c - 'A' + 10;
	return -1;
}

/// A character as UTF-8; surrogates are encoded as they are.
char* PutCharacter(std::uint64_t code, char* target) noexcept
{
	const auto put = [&](std::uint64_t byte)
	{
		*target++ = static_cast<char>(byte);
	};
	if (code < 0x80)
		put(code);
	else if (code < 0x800)
	{
		put(0xc0 | code >> 6);
		put(0x80 | (code & 0x3f));
	}
	else if (code < 0x10000)
	{
		put(0xe0 | code >> 12);
		put(0x80 | (code >> 6 & 0x3f));
		put(0x80 | (code & 0x3f));
	}
	else
	{
		put(0xf0 | code >> 18);
		put(0x80 | (code >> 12 & 0x3f));
		put(0x80 | (code >> 6 & 0x3f));
		put(0x80 | (code & 0x3f));
	}
	return target;
}

struct Character
{
	std::uint64_t code;
	const char* end; ///< Behind the semicolon.
};

/// Whether XML has this character.
constexpr bool IsLegal(std::uint64_t code) noexcept
{
	if (code < 0x20)
		return code == '\t' || code == '\n' || code == '\r';
	return code < 0xd800 || (code >= 0xe000 && code != 0xfffe && code != 0xffff);
}

/// Reads "&#…;" at `at`.
Character ReadNumericReference(const char* at, const char* end, XmlReferences accepted)
{
	const bool isStrict = accepted == XmlReferences::legal;
	const bool isHexadecimal = at + 2 < end && at[2] == 'x';
	const char* digit = at + (isHexadecimal ? 3 : 2);
	std::uint64_t code = 0;
	const char* const first = digit;
	for (; digit < end && DigitValue(*digit) >= 0 && (!isStrict || isHexadecimal || *digit <= '9'); digit++)
	{
		code = code * (isHexadecimal ? 16 : 10) + static_cast<std::uint64_t>(DigitValue(*digit));
		if (code > 0x10ffff)
			throw XmlError("invalid numeric character entity", at);
	}
	if (digit == end || *digit != ';')
		throw XmlError("expected ;", digit);
	if (isStrict && (digit == first || !IsLegal(code)))
		throw XmlError("invalid numeric character entity", at);
	return {code, digit + 1};
}

/// Reads a document's markup in the steps of the XML parser.
class Guard
{
public:
	Guard(std::string_view text, XmlReferences accepted) noexcept
		: _at(text.data()), _end(text.data() + text.size()), _reference(FindReference(_at)), _accepted(accepted)
	{
		if (text.starts_with("\xef\xbb\xbf"))
			_at += 3;
	}

	void Run()
	{
		while (SkipToMarkup() && ReadMarkup())
		{
		}
	}

private:
	static bool IsSpace(char c) noexcept
	{
		return c == ' ' || c == '\n' || c == '\t' || c == '\r';
	}

	void SkipSpace() noexcept
	{
		while (_at < _end && IsSpace(*_at))
			_at++;
	}

	bool StartsWith(std::string_view text) const noexcept
	{
		return std::string_view(_at, _end).starts_with(text);
	}

	/// Moves behind the next `mark`; false when there is none.
	bool SkipPast(std::string_view mark) noexcept
	{
		const void* found = memmem(_at, static_cast<std::size_t>(_end - _at), mark.data(), mark.size());
		if (found == nullptr)
			return false;
		_at = static_cast<const char*>(found) + mark.size();
		return true;
	}

	/// The next "&", or the end of the text.
	const char* FindReference(const char* from) const noexcept
	{
		const void* found = std::memchr(from, '&', static_cast<std::size_t>(_end - from));
		return found != nullptr ? static_cast<const char*>(found) : _end;
	}

	/// The next "&" is remembered, so that values without one cost no search.
	void CheckReferences(const char* from, const char* to)
	{
		if (_reference < from)
			_reference = FindReference(from);
		while (_reference < to)
		{
			const bool isNumeric = to - _reference > 1 && _reference[1] == '#';
			_reference =
				FindReference(isNumeric ? ReadNumericReference(_reference, to, _accepted).end : _reference + 1);
		}
	}

	/// Moves over character data to the next "<"; false at the end of the text.
	bool SkipToMarkup()
	{
		const void* found = std::memchr(_at, '<', static_cast<std::size_t>(_end - _at));
		const char* markup = found != nullptr ? static_cast<const char*>(found) : _end;
		if (_depth > 0)
			CheckReferences(_at, markup);
		else
		{
			SkipSpace();
			if (_at != markup)
				return false; // Text outside of the root: a syntax error.
		}
		_at = markup;
		return found != nullptr;
	}

	/// Reads what begins with the "<" at hand; false when the parser would stop here.
	bool ReadMarkup()
	{
		_at++;
		if (_at == _end)
			return false;
		switch (*_at)
		{
		case '/':
			// Outside of every element this is an element whose name is missing.
			return _depth-- > 0 && SkipPast(">");
		case '?':
			_at++; // The question mark may not serve twice, as in "<?>".
			return SkipPast("?>");
		case '!':
			if (StartsWith("!--"))
			{
				_at += 3;
				return SkipPast("-->");
			}
			if (StartsWith("![CDATA["))
				return SkipPast("]]>");
			if (StartsWith("!DOCTYPE") && _at + 8 < _end && IsSpace(_at[8]))
				return SkipDocumentType();
			return SkipPast(">");
		default:
			return ReadStartTag();
		}
	}

	/// The internal subset is skipped by counting brackets.
	bool SkipDocumentType() noexcept
	{
		int brackets = 0;
		for (_at += 9; _at < _end; _at++)
		{
			if (*_at == '[')
				brackets++;
			else if (*_at == ']' && brackets > 0)
				brackets--;
			else if (*_at == '>' && brackets == 0)
			{
				_at++;
				return true;
			}
		}
		return false;
	}

	/// Quotes mean something only as the delimiters of attribute values: a name may hold them.
	bool ReadStartTag()
	{
		while (_at < _end && !IsSpace(*_at) && *_at != '/' && *_at != '>' && *_at != '?')
			_at++;
		for (SkipSpace(); _at < _end && *_at != '>' && *_at != '/'; SkipSpace())
		{
			if (!ReadAttribute())
				return false;
		}
		if (_depth == kMaxDepth || _at == _end)
			return false;
		if (*_at++ == '/')
			return _at < _end && *_at++ == '>';
		_depth++;
		return true;
	}

	bool ReadAttribute()
	{
		while (_at < _end && !EndsAttributeName(*_at))
			_at++;
		SkipSpace();
		if (_at == _end || *_at != '=')
			return false;
		_at++;
		SkipSpace();
		if (_at == _end || (*_at != '"' && *_at != '\''))
			return false;
		const char* value = _at + 1;
		const void* quote = std::memchr(value, *_at, static_cast<std::size_t>(_end - value));
		if (quote == nullptr)
			return false;
		CheckReferences(value, static_cast<const char*>(quote));
		_at = static_cast<const char*>(quote) + 1;
		return true;
	}

	static bool EndsAttributeName(char c) noexcept
	{
		return c == '=' || IsSpace(c) || c == '>' || c == '/';
	}

	const char* _at;
	const char* _end;
	const char* _reference; ///< The next "&" from some place on that is not behind the current one.
	XmlReferences _accepted;
	int _depth = 0;
};

} // namespace

bool GuardXml(std::string_view text, XmlReferences accepted)
{
	// So much at a time that the second search finds in the processor's caches what the first one has read.
	constexpr std::size_t kBlock = 16384;
	bool hasReferences = false;
	bool hasNumeric = false; // Only these can be malformed.
	for (std::size_t from = 0; from < text.size(); from += kBlock)
	{
		const std::string_view block = text.substr(from, kBlock);
		if (const std::size_t zero = block.find('\0'); zero != block.npos)
			throw XmlError("unexpected zero byte", block.data() + zero);
		for (std::size_t at = 0; !hasNumeric && (at = block.find('&', at)) != block.npos; at++)
		{
			hasReferences = true;
			hasNumeric = text.substr(from + at).starts_with("&#");
		}
	}
	if (hasNumeric)
		Guard(text, accepted).Run();
	return hasReferences;
}

char* DecodeReferences(std::string_view text, char* target, XmlReferences accepted)
{
	struct Entity
	{
		std::string_view name;
		char character;
	};
	static constexpr Entity kEntities[] = {
		{"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}};

	const char* end = text.data() + text.size();
	for (const char* at = text.data(); at < end;)
	{
		if (*at == '&')
		{
			if (end - at > 1 && at[1] == '#')
			{
				const Character character = ReadNumericReference(at, end, accepted);
				target = PutCharacter(character.code, target);
				at = character.end;
				continue;
			}
			const Entity* known = nullptr;
			for (const Entity& entity : kEntities)
			{
				if (std::string_view(at, end).starts_with(entity.name))
					known = &entity;
			}
			if (known != nullptr)
			{
				*target++ = known->character;
				at += known->name.size();
				continue;
			}
		}
		*target++ = *at++;
	}
	return target;
}

} // namespace orvan::svg
