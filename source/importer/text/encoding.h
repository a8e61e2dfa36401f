// SPDX-License-Identifier: MIT
#pragma once

#include "orvan/array.h"
#include "orvan/result.h"

#include <string_view>

namespace orvan::svg
{

/// How the characters of a file are written.
enum class Encoding
{
	utf8,
	utf16LittleEndian,
	utf16BigEndian,
	windows1252, ///< Also what calls itself Latin-1 or ASCII: browsers read both as this.
	windows1250,
	windows1251,
	windows1253,
	windows1254, ///< Also what calls itself Latin-5.
	iso88592,
	iso88595,
	iso88597,
	iso885915,
	koi8r,
	koi8u,
	unknown, ///< The XML declaration names something else.
};

/// The encoding of an XML text, by its mark or its XML declaration.
Encoding FindEncoding(std::string_view bytes) noexcept;

/// Whether a text is well-formed UTF-8.
bool IsUtf8(std::string_view text) noexcept;

/// The text in UTF-8, without a mark; what is broken becomes U+FFFD. Not for `Encoding::unknown`.
Result<BaseArray<char>> ToUtf8(std::string_view bytes, Encoding encoding) noexcept;

/// Whether the XML declaration says that the text is in ASCII, of which `FindEncoding` makes Windows-1252.
bool NamesAscii(std::string_view bytes) noexcept;

/// One character of a text, and the bytes that it takes there and in UTF-8.
struct EncodedCharacter
{
	char32_t character;
	std::size_t size;
	std::size_t utf8Size;
};

/// The character at the start of a text that is not empty, as `ToUtf8` reads it. Not for `Encoding::unknown`.
EncodedCharacter ReadCharacter(std::string_view bytes, Encoding encoding) noexcept;

/// Appends a character as UTF-8; what is no character becomes U+FFFD.
Result<void> AppendUtf8(BaseArray<char>& target, char32_t character) noexcept;

} // namespace orvan::svg
