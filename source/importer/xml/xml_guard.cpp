// SPDX-License-Identifier: MIT
#include "xml_guard.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

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

/// Reads "&#…;" at `at`.
Character ReadNumericReference(const char* at, const char* end)
{
	const bool isHexadecimal = at + 2 < end && at[2] == 'x';
	const char* digit = at + (isHexadecimal ? 3 : 2);
	std::uint64_t code = 0;
	for (; digit < end && DigitValue(*digit) >= 0; digit++)
	{
		code = code * (isHexadecimal ? 16 : 10) + static_cast<std::uint64_t>(DigitValue(*digit));
		if (code > 0x10ffff)
			throw XmlError("invalid numeric character entity", at);
	}
	if (digit == end || *digit != ';')
		throw XmlError("expected ;", digit);
	return {code, digit + 1};
}

/// Reads a document's markup in the steps of the XML parser.
class Guard
{
public:
	explicit Guard(std::string_view text) noexcept
		: _at(text.data()), _end(text.data() + text.size()), _reference(FindReference(_at))
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
			_reference = FindReference(isNumeric ? ReadNumericReference(_reference, to).end : _reference + 1);
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
		const char* start = _at++;
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
			return ReadStartTag(start);
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
	bool ReadStartTag(const char* start)
	{
		while (_at < _end && !IsSpace(*_at) && *_at != '/' && *_at != '>' && *_at != '?')
			_at++;
		for (SkipSpace(); _at < _end && *_at != '>' && *_at != '/'; SkipSpace())
		{
			if (!ReadAttribute())
				return false;
		}
		if (_depth == kMaxDepth)
			throw XmlError("elements are nested more than 1024 deep", start);
		if (_at == _end)
			return false;
		if (*_at++ == '/')
			return _at < _end && *_at++ == '>';
		_depth++;
		return true;
	}

	bool ReadAttribute()
	{
		const char* name = _at;
		SkipAttributeName();
		if (std::string_view(name, _at).starts_with("xmlns:") && ++_prefixes > kMaxNamespacePrefixes)
			throw XmlError("more than 256 namespace prefixes are declared", name);
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

	/// Nearly every name ends within the first sixteen characters, so SIMD compares these at once: most of the time of
	/// the guard goes into names, and a loop over single characters would pay a branch misprediction at each end.
	void SkipAttributeName() noexcept
	{
#if defined(__SSE2__)
		if (_end - _at >= 16)
		{
			const __m128i characters = _mm_loadu_si128(reinterpret_cast<const __m128i*>(_at));
			const auto isAny = [&](char c)
			{
				return _mm_cmpeq_epi8(characters, _mm_set1_epi8(c));
			};
			const __m128i ends = _mm_or_si128(_mm_or_si128(isAny('='), isAny('>')), isAny('/'));
			const __m128i spaces =
				_mm_or_si128(_mm_or_si128(isAny(' '), isAny('\n')), _mm_or_si128(isAny('\t'), isAny('\r')));
			const int mask = _mm_movemask_epi8(_mm_or_si128(ends, spaces));
			_at += mask != 0 ? std::countr_zero(static_cast<unsigned>(mask)) : 16;
		}
#endif
		while (_at < _end && !EndsAttributeName(*_at))
			_at++;
	}

	const char* _at;
	const char* _end;
	const char* _reference; ///< The next "&" from some place on that is not behind the current one.
	int _depth = 0;
	int _prefixes = 0;
};

/// Whether a look at the single characters leaves it open that the text exceeds a bound.
bool MayExceedBounds(std::string_view text) noexcept
{
	// Blocks so short that a byte can count what is in them: this way the compiler makes SIMD code of the loop.
	constexpr std::size_t kBlock = 240;
	std::size_t lessThans = 0;
	std::size_t prefixes = 0; // Places with the "xm" of "xmlns:".
	for (std::size_t from = 0; from + 1 < text.size(); from += kBlock)
	{
		const char* const block = text.data() + from;
		const std::size_t size = std::min(kBlock, text.size() - 1 - from);
		std::uint8_t lessThansInBlock = 0;
		std::uint8_t prefixesInBlock = 0;
		for (std::size_t i = 0; i < size; i++)
		{
			lessThansInBlock = static_cast<std::uint8_t>(lessThansInBlock + (block[i] == '<'));
			prefixesInBlock = static_cast<std::uint8_t>(prefixesInBlock + ((block[i] == 'x') & (block[i + 1] == 'm')));
		}
		lessThans += lessThansInBlock;
		prefixes += prefixesInBlock;
		if (lessThans > kMaxDepth || prefixes > kMaxNamespacePrefixes)
			return true;
	}
	return false;
}

} // namespace

bool GuardXml(std::string_view text)
{
	if (const std::size_t zero = text.find('\0'); zero != text.npos)
		throw XmlError("unexpected zero byte", text.data() + zero);
	const bool hasReferences = text.find('&') != text.npos;
	// Most files hold no reference that could be wrong and cannot exceed a bound. No element takes less than two
	// characters, no declaration of a prefix less than eight.
	constexpr std::size_t kHarmlessSize = 2 * std::size_t{kMaxDepth};
	static_assert(kHarmlessSize <= 8 * std::size_t{kMaxNamespacePrefixes});
	if (hasReferences || (text.size() > kHarmlessSize && MayExceedBounds(text)))
		Guard(text).Run();
	return hasReferences;
}

char* DecodeReferences(std::string_view text, char* target)
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
				const Character character = ReadNumericReference(at, end);
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
