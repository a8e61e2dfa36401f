// SPDX-License-Identifier: MIT
#include "complete/value_cursor.h"

#include <algorithm>

namespace orvan::grammar::complete
{
namespace
{
struct WideRow
{
	std::string_view name;
	CssWideKeyword value;
};

constexpr WideRow kWideKeywords[]{
	{"inherit", CssWideKeyword::inherit}, {"initial", CssWideKeyword::initial},    {"unset", CssWideKeyword::unset},
	{"revert", CssWideKeyword::unset},    {"revert-layer", CssWideKeyword::unset},
};

void AppendUtf8(std::string& text, std::uint32_t c)
{
	constexpr std::uint32_t kReplacement = 0xfffd;
	if (c == 0 || c > 0x10ffff || (c >= 0xd800 && c < 0xe000))
		c = kReplacement;
	const auto add = [&text](std::uint32_t byte)
	{
		text += static_cast<char>(static_cast<unsigned char>(byte));
	};
	if (c < 0x80)
		add(c);
	else if (c < 0x800)
	{
		add(0xc0 | c >> 6);
		add(0x80 | (c & 0x3f));
	}
	else if (c < 0x10000)
	{
		add(0xe0 | c >> 12);
		add(0x80 | (c >> 6 & 0x3f));
		add(0x80 | (c & 0x3f));
	}
	else
	{
		add(0xf0 | c >> 18);
		add(0x80 | (c >> 12 & 0x3f));
		add(0x80 | (c >> 6 & 0x3f));
		add(0x80 | (c & 0x3f));
	}
}

/// The value of a hexadecimal digit; sixteen for anything else.
unsigned HexValue(char c) noexcept
{
	if (IsDigit(c))
		return static_cast<unsigned>(c - '0');
	const char lower = ToLower(c);
	return lower >= 'a' && lower <= 'f' ? static_cast<unsigned>(lower - 'a' + 10) : 16;
}

/// Takes one line break off the front.
bool TakeLineBreak(std::string_view& text) noexcept
{
	if (text.empty() || (text[0] != '\n' && text[0] != '\r' && text[0] != '\f'))
		return false;
	text.remove_prefix(text.starts_with("\r\n") ? 2 : 1);
	return true;
}
} // namespace

bool detail::AreEqualIgnoringCase(const char* text, const char* lowerCase, std::size_t size) noexcept
{
	return std::equal(text, text + size, lowerCase, [](char a, char b) { return ToLower(a) == b; });
}

CssWideKeyword ParseCssWide(std::string_view text) noexcept
{
	// Most values are none of these, and are done with after a look or two.
	constexpr std::size_t kShortest = 5;
	if (text.size() < kShortest)
		return CssWideKeyword::none;
	ValueCursor cursor(text);
	const char first = ToLower(cursor.Peek());
	CssWideKeyword keyword;
	if ((first != 'i' && first != 'u' && first != 'r') || !cursor.TakeKeyword(kWideKeywords, keyword) ||
		!cursor.IsAtEnd())
		return CssWideKeyword::none;
	return keyword;
}

std::string_view TrimCss(std::string_view text) noexcept
{
	ValueCursor cursor(text);
	const char* const begin = cursor.At();
	const char* end = begin;
	const char* const last = text.data() + text.size();
	while (cursor.At() != last)
	{
		// Quotes hide what looks like a comment.
		std::string_view string;
		bool hasEscapes;
		if (cursor.TakeString(string, hasEscapes))
		{
			const char* const close = string.data() + string.size();
			end = close != last ? close + 1 : close;
			continue;
		}
		end = cursor.At() + 1;
		cursor.MoveTo(end);
		cursor.SkipSpaces();
	}
	return {begin, static_cast<std::size_t>(end - begin)};
}

std::string RemoveComments(std::string_view text)
{
	std::string result;
	result.reserve(text.size());
	char quote = 0;
	for (std::size_t i = 0; i < text.size(); ++i)
	{
		const char c = text[i];
		if (quote == 0 && c == '/' && i + 1 < text.size() && text[i + 1] == '*')
		{
			const std::size_t close = text.find("*/", i + 2);
			const std::size_t after = close != text.npos ? close + 2 : text.size();
			if (!result.empty() && IsNameCharacter(result.back()) && after < text.size() &&
				IsNameCharacter(text[after]))
				result += ' ';
			i = after - 1;
			continue;
		}
		result += c;
		if (c == '\\' && i + 1 < text.size())
			result += text[++i];
		else if (quote != 0)
			quote = c == quote ? '\0' : quote;
		else if (c == '"' || c == '\'')
			quote = c;
	}
	return result;
}

std::string ResolveEscapes(std::string_view text)
{
	constexpr int kMostDigits = 6;
	std::string result;
	result.reserve(text.size());
	while (!text.empty())
	{
		if (text[0] != '\\')
		{
			result += text[0];
			text.remove_prefix(1);
			continue;
		}
		text.remove_prefix(1);
		// An escaped line break continues a string and stands for nothing.
		if (text.empty() || TakeLineBreak(text))
			continue;
		std::uint32_t code = 0;
		int digits = 0;
		for (; digits != kMostDigits && !text.empty() && HexValue(text[0]) < 16; ++digits)
		{
			code = code << 4 | HexValue(text[0]);
			text.remove_prefix(1);
		}
		if (digits == 0)
		{
			result += text[0];
			text.remove_prefix(1);
			continue;
		}
		AppendUtf8(result, code);
		// One blank ends the digits and belongs to them.
		if (!TakeLineBreak(text) && !text.empty() && (text[0] == ' ' || text[0] == '\t'))
			text.remove_prefix(1);
	}
	return result;
}

Parsed ParseKeyword(std::string_view text, std::span<const Keyword> keywords, std::int32_t& value) noexcept
{
	// Most are written as they stand in the table.
	if (ParseExactKeyword(text, keywords, value) == Parsed::value)
		return Parsed::value;
	ValueCursor cursor(text);
	std::int32_t result;
	if (!cursor.TakeKeyword(keywords, result) || !cursor.IsAtEnd())
		return Parsed::refused;
	value = result;
	return Parsed::value;
}

Parsed ParseExactKeyword(std::string_view text, std::span<const Keyword> keywords, std::int32_t& value) noexcept
{
	for (const Keyword& keyword : keywords)
	{
		if (keyword.name == text)
		{
			value = keyword.value;
			return Parsed::value;
		}
	}
	return Parsed::refused;
}

Parsed ParseBoolean(std::string_view text, bool& isTrue) noexcept
{
	if (text != "true" && text != "false")
		return Parsed::refused;
	isTrue = text == "true";
	return Parsed::value;
}
} // namespace orvan::grammar::complete
