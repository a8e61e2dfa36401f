// SPDX-License-Identifier: MIT
#include "importer/text/encoding.h"

#include "importer/text/code_pages.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>

namespace orvan::svg
{
namespace
{

constexpr char32_t kReplacement = 0xfffd;

/// Length of the UTF-8 sequence at the start of a text, 0 when it is broken.
std::size_t SequenceLength(std::string_view text) noexcept
{
	const auto at = [&](std::size_t i)
	{
		return static_cast<unsigned char>(text[i]);
	};
	const auto continues = [&](std::size_t count)
	{
		if (text.size() <= count)
			return false;
		for (std::size_t i = 1; i <= count; i++)
		{
			if ((at(i) & 0xc0) != 0x80)
				return false;
		}
		return true;
	};
	const unsigned char first = at(0);
	if (first < 0x80)
		return 1;
	if (first >= 0xc2 && first < 0xe0)
		return continues(1) ? 2 : 0;
	if (first >= 0xe0 && first < 0xf0)
	{
		if (!continues(2) || (first == 0xe0 && at(1) < 0xa0) || (first == 0xed && at(1) >= 0xa0))
			return 0; // Written longer than needed, or half of a surrogate pair.
		return 3;
	}
	if (first >= 0xf0 && first < 0xf5)
	{
		if (!continues(3) || (first == 0xf0 && at(1) < 0x90) || (first == 0xf4 && at(1) >= 0x90))
			return 0;
		return 4;
	}
	return 0;
}

/// Characters at the start of a text that are ASCII. Most files are nothing else, so that many are looked at together.
std::size_t CountAscii(std::string_view text) noexcept
{
	constexpr std::size_t kWords = 8;
	constexpr std::size_t kBlock = kWords * sizeof(std::uint64_t);
	constexpr std::uint64_t kHighBits = 0x8080808080808080;
	const auto word = [&](std::size_t at)
	{
		std::uint64_t value;
		std::memcpy(&value, text.data() + at, sizeof value);
		return value;
	};
	std::size_t i = 0;
	for (; i + kBlock <= text.size(); i += kBlock)
	{
		std::uint64_t bits = 0;
		for (std::size_t k = 0; k < kWords; k++)
			bits |= word(i + k * sizeof bits);
		if ((bits & kHighBits) != 0)
			break;
	}
	while (i + sizeof(std::uint64_t) <= text.size() && (word(i) & kHighBits) == 0)
		i += sizeof(std::uint64_t);
	while (i < text.size() && static_cast<unsigned char>(text[i]) < 0x80)
		i++;
	return i;
}

/// The value of "encoding" in the XML declaration at the start of a text; empty when there is none.
std::string_view DeclaredEncoding(std::string_view text) noexcept
{
	if (!text.starts_with("<?xml"))
		return {};
	text = text.substr(0, text.find("?>"));
	std::size_t at = text.find("encoding");
	if (at == text.npos)
		return {};
	at = text.find_first_of("\"'", at);
	if (at == text.npos)
		return {};
	const std::size_t end = text.find(text[at], at + 1);
	return end == text.npos ? std::string_view() : text.substr(at + 1, end - at - 1);
}

/// A character of one or two units of UTF-16, of which the first is there; and the bytes that it takes.
std::pair<char32_t, std::size_t> ReadUtf16(std::string_view bytes, bool isBigEndian) noexcept
{
	constexpr std::size_t kUnit = 2;
	const auto unit = [&](std::size_t i)
	{
		const auto low = static_cast<unsigned char>(bytes[i + (isBigEndian ? 1 : 0)]);
		const auto high = static_cast<unsigned char>(bytes[i + (isBigEndian ? 0 : 1)]);
		return static_cast<char32_t>(low | high << 8);
	};
	const char32_t character = unit(0);
	if (character < 0xd800 || character >= 0xe000)
		return {character, kUnit};
	const char32_t second = character < 0xdc00 && bytes.size() >= 2 * kUnit ? unit(kUnit) : 0;
	if (second < 0xdc00 || second >= 0xe000)
		return {kReplacement, kUnit};
	return {0x10000 + ((character - 0xd800) << 10) + (second - 0xdc00), 2 * kUnit};
}

Result<BaseArray<char>> FromUtf16(std::string_view bytes, bool isBigEndian) noexcept
{
	BaseArray<char> text;
	ORVAN_TRY(text.Reserve(bytes.size() / 2 + 1));
	while (bytes.size() >= 2)
	{
		const auto [character, size] = ReadUtf16(bytes, isBigEndian);
		ORVAN_TRY(AppendUtf8(text, character));
		bytes.remove_prefix(size);
	}
	return text;
}

Result<BaseArray<char>> FromCodePage(std::string_view bytes, Encoding encoding) noexcept
{
	BaseArray<char> text;
	ORVAN_TRY(text.Reserve(bytes.size() + bytes.size() / 8 + 1));
	while (!bytes.empty())
	{
		const std::size_t count = CountAscii(bytes);
		ORVAN_TRY(text.AppendAll(bytes.data(), count));
		if (count < bytes.size())
			ORVAN_TRY(AppendUtf8(text, ReadByte(static_cast<unsigned char>(bytes[count]), encoding)));
		bytes.remove_prefix(std::min(count + 1, bytes.size()));
	}
	return text;
}

Result<BaseArray<char>> MendUtf8(std::string_view bytes) noexcept
{
	BaseArray<char> text;
	ORVAN_TRY(text.Reserve(bytes.size() + 16));
	while (!bytes.empty())
	{
		const std::size_t length = std::max(SequenceLength(bytes), CountAscii(bytes));
		if (length == 0)
			ORVAN_TRY(AppendUtf8(text, kReplacement));
		for (const char c : bytes.substr(0, length))
			ORVAN_TRY(text.Append(c));
		bytes.remove_prefix(std::max<std::size_t>(length, 1));
	}
	return text;
}

} // namespace

Result<void> AppendUtf8(BaseArray<char>& target, char32_t character) noexcept
{
	if (character > 0x10ffff || (character >= 0xd800 && character < 0xe000))
		character = kReplacement;
	const auto put = [&](char32_t byte)
	{
		return target.Append(static_cast<char>(byte));
	};
	if (character < 0x80)
		return put(character);
	if (character < 0x800)
		ORVAN_TRY(put(0xc0 | character >> 6));
	else if (character < 0x10000)
	{
		ORVAN_TRY(put(0xe0 | character >> 12));
		ORVAN_TRY(put(0x80 | (character >> 6 & 0x3f)));
	}
	else
	{
		ORVAN_TRY(put(0xf0 | character >> 18));
		ORVAN_TRY(put(0x80 | (character >> 12 & 0x3f)));
		ORVAN_TRY(put(0x80 | (character >> 6 & 0x3f)));
	}
	return put(0x80 | (character & 0x3f));
}

Encoding FindEncoding(std::string_view bytes) noexcept
{
	using namespace std::string_view_literals;
	if (bytes.starts_with("\xff\xfe"sv) || bytes.starts_with("<\0?\0"sv))
		return Encoding::utf16LittleEndian;
	if (bytes.starts_with("\xfe\xff"sv) || bytes.starts_with("\0<\0?"sv))
		return Encoding::utf16BigEndian;
	if (bytes.starts_with("\xef\xbb\xbf"sv))
		return Encoding::utf8;
	const std::string_view declared = DeclaredEncoding(bytes);
	const auto is = [&](std::string_view name)
	{
		return declared.size() == name.size() &&
			   std::equal(name.begin(), name.end(), declared.begin(),
						  [](char a, char b) { return a == (b >= 'A' && b <= 'Z' ? b + ('a' - 'A') : b); });
	};
	if (declared.empty() || is("utf-8") || is("utf8"))
		return Encoding::utf8;
	return FindCodePage(declared);
}

bool IsUtf8(std::string_view text) noexcept
{
	while (true)
	{
		text.remove_prefix(CountAscii(text));
		if (text.empty())
			return true;
		const std::size_t length = SequenceLength(text);
		if (length == 0)
			return false;
		text.remove_prefix(length);
	}
}

bool NamesAscii(std::string_view bytes) noexcept
{
	const std::string_view declared = DeclaredEncoding(bytes);
	return declared.size() >= 5 && (declared.ends_with("ascii") || declared.ends_with("ASCII"));
}

EncodedCharacter ReadCharacter(std::string_view bytes, Encoding encoding) noexcept
{
	const auto utf8Size = [](char32_t character) -> std::size_t
	{
		return character < 0x80 ? 1 : character < 0x800 ? 2 : character < 0x10000 ? 3 : 4;
	};
	switch (encoding)
	{
	case Encoding::utf16LittleEndian:
	case Encoding::utf16BigEndian:
	{
		if (bytes.size() < 2)
			return {kReplacement, bytes.size(), 0};
		const auto [character, size] = ReadUtf16(bytes, encoding == Encoding::utf16BigEndian);
		return {character, size, utf8Size(character)};
	}
	case Encoding::utf8:
	case Encoding::unknown:
		break;
	default:
	{
		const char32_t character = ReadByte(static_cast<unsigned char>(bytes[0]), encoding);
		return {character, 1, utf8Size(character)};
	}
	}
	const std::size_t size = SequenceLength(bytes);
	if (size == 0)
		return {kReplacement, 1, utf8Size(kReplacement)};
	constexpr unsigned char kFirstBits[] = {0, 0x7f, 0x1f, 0x0f, 0x07};
	char32_t character = static_cast<unsigned char>(bytes[0]) & kFirstBits[size];
	for (std::size_t i = 1; i < size; i++)
		character = character << 6 | (static_cast<unsigned char>(bytes[i]) & 0x3f);
	return {character, size, size};
}

Result<BaseArray<char>> ToUtf8(std::string_view bytes, Encoding encoding) noexcept
{
	switch (encoding)
	{
	case Encoding::utf16LittleEndian:
	case Encoding::utf16BigEndian:
	{
		const bool isBigEndian = encoding == Encoding::utf16BigEndian;
		if (bytes.starts_with("\xff\xfe") || bytes.starts_with("\xfe\xff"))
			bytes.remove_prefix(2);
		return FromUtf16(bytes, isBigEndian);
	}
	case Encoding::utf8:
	case Encoding::unknown:
		break;
	default:
		return FromCodePage(bytes, encoding);
	}
	return MendUtf8(bytes);
}

} // namespace orvan::svg
