// SPDX-License-Identifier: MIT
#include "simple_declarations.h"

#include <array>
#include <bit>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace orvan::css
{
namespace
{
/// What a character may be part of.
enum Part : std::uint8_t
{
	kBlank = 1,
	kName = 2,
	kValue = 4,   ///< Anywhere in a value.
	kInUrl = 8,   ///< Inside url().
	kLetter = 16, ///< In the name of a function.
	kBetween = 32 ///< Between declarations.
};

constexpr std::array<std::uint8_t, 256> MakeParts()
{
	std::array<std::uint8_t, 256> parts{};
	const auto add = [&](std::string_view characters, int more)
	{
		for (const char character : characters)
			parts[static_cast<unsigned char>(character)] |= static_cast<std::uint8_t>(more);
	};
	add(" \t\r\n\f", kBlank | kValue | kBetween);
	add(";", kBetween);
	add("abcdefghijklmnopqrstuvwxyz", kName | kValue | kInUrl | kLetter);
	add("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_", kValue | kInUrl | kLetter);
	add("-", kName | kValue | kInUrl | kLetter);
	add("#./", kValue | kInUrl); // Of a comment, the asterisk tells.
	add(",+%", kValue);
	return parts;
}

constexpr std::array<std::uint8_t, 256> kParts = MakeParts();

bool Is(char c, unsigned parts) noexcept
{
	return (kParts[static_cast<unsigned char>(c)] & parts) != 0;
}

const char* Skip(const char* at, const char* end, Part part) noexcept
{
	while (at != end && Is(*at, part))
		at++;
	return at;
}

#if defined(__SSE2__)
constexpr std::ptrdiff_t kAtOnce = sizeof(__m128i);

/// One bit for each of the sixteen characters at `at`, the first one's lowest: whether it may stand anywhere in a value
/// and is no blank but a space.
unsigned FindPlain(const char* at) noexcept
{
	const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
	const auto isBetween = [](__m128i characters, char first, char last)
	{
		const __m128i offsets = _mm_sub_epi8(characters, _mm_set1_epi8(first));
		return _mm_cmpeq_epi8(_mm_min_epu8(offsets, _mm_set1_epi8(static_cast<char>(last - first))), offsets);
	};
	const auto is = [text](char c)
	{
		return _mm_cmpeq_epi8(text, _mm_set1_epi8(c));
	};
	const __m128i letter = isBetween(_mm_or_si128(text, _mm_set1_epi8('a' - 'A')), 'a', 'z');
	const __m128i number = isBetween(text, '+', '9');
	const __m128i mark = _mm_or_si128(_mm_or_si128(is(' '), is('#')), _mm_or_si128(is('%'), is('_')));
	return static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(_mm_or_si128(letter, number), mark)));
}
#endif

/// Behind the string whose quotation mark stands at `at`; null when it is not simple.
const char* SkipString(const char* at, const char* end) noexcept
{
	const char quote = *at++;
	while (at != end && *at != quote)
	{
		// Among the control characters are line ends, which break a string, and the zero.
		if (*at == '\\' || static_cast<unsigned char>(*at) < ' ')
			return nullptr;
		at++;
	}
	return at != end ? at + 1 : nullptr;
}

/// Behind the function whose bracket stands at `at`, in a value; null when it is not simple.
const char* SkipFunction(const char* value, const char* at, const char* end) noexcept
{
	const char* name = at;
	while (name != value && Is(name[-1], kLetter))
		name--;
	const std::string_view function(name, static_cast<std::size_t>(at - name));
	const bool isUrl = function == "url";
	if (!isUrl && function != "rgb" && function != "rgba")
		return nullptr;
	at = Skip(at + 1, end, isUrl ? kInUrl : kValue);
	return at != end && *at == ')' ? at + 1 : nullptr;
}

/// The text without the blanks at its end.
std::string_view TrimEnd(const char* begin, const char* end) noexcept
{
	while (end != begin && Is(end[-1], kBlank))
		end--;
	return {begin, static_cast<std::size_t>(end - begin)};
}
} // namespace

/// Looks at the characters from a place on; false when they are too few to be looked at together.
[[gnu::noinline]] bool SimpleDeclarations::LookAhead([[maybe_unused]] const char* at) noexcept
{
#if defined(__SSE2__)
	constexpr std::ptrdiff_t kMost = 64;
	if (_end - _begin < kAtOnce)
		return false;
	_seen = at;
	_marks = 0;
	for (; _end - at >= kAtOnce && at - _seen != kMost; at += kAtOnce)
		_marks |= std::uint64_t{~FindPlain(at) & 0xffff} << (at - _seen);
	if (at != _end && at - _seen != kMost)
	{
		// The last sixteen, without those that have been looked at.
		const std::uint64_t last = (~FindPlain(_end - kAtOnce) & 0xffff) >> (kAtOnce - (_end - at));
		_marks |= last << (at - _seen);
		at = _end;
	}
	_seenEnd = at;
	return true;
#else
	return false;
#endif
}

/// Skips what may stand anywhere in a value.
[[gnu::always_inline]] inline const char* SimpleDeclarations::SkipPlain(const char* at) noexcept
{
	while (at != _end)
	{
		if (at >= _seenEnd && !LookAhead(at))
			return Skip(at, _end, kValue);
		if (const std::uint64_t left = _marks >> (at - _seen); left != 0)
		{
			at += std::countr_zero(left);
			// Blanks but spaces are rare.
			if (!Is(*at, kValue)) [[likely]]
				return at;
			at++;
		}
		else
			at = _seenEnd;
	}
	return at;
}

bool SimpleDeclarations::Next() noexcept
{
	while (_at != _end && Is(*_at, kBetween))
		_at++;
	const char* at = SkipPlain(_at);
	if (at == _end || *at != ':')
		return false;
	_name = TrimEnd(_at, at);
	const char* const value = Skip(at + 1, _end, kBlank);
	for (at = SkipPlain(value); at != _end && *at != ';'; at = SkipPlain(at))
	{
		const bool isQuote = *at == '\'' || *at == '"';
		const char* const after = isQuote ? SkipString(at, _end) : *at == '(' ? SkipFunction(value, at, _end) : nullptr;
		if (after == nullptr)
			return false;
		at = after;
	}
	_value = TrimEnd(value, at);
	if (_value.empty())
		return false;
	_at = at;
	return true;
}

bool SimpleDeclarations::HasPlainName() const noexcept
{
	// A hyphen begins a name only before a letter.
	const bool isWord = !_name.empty() && (_name[0] != '-' || (_name.size() > 1 && _name[1] != '-'));
	const char* const end = _name.data() + _name.size();
	return isWord && Skip(_name.data(), end, kName) == end;
}
} // namespace orvan::css
