// SPDX-License-Identifier: MIT
#include "fast/text_cursor.h"
#include "grammar.h"
#include "shared/color_keywords.h"
#include "shared/hex_digits.h"
#include "svgpp/library.h"

#include <algorithm>

namespace orvan::grammar
{
namespace
{
constexpr std::string_view kNone = "none";
constexpr std::string_view kInherit = "inherit";
constexpr std::string_view kCurrentColor = "currentColor";

/// Reads that many digits, each of which stands for `factor` times its value.
template <std::size_t count, unsigned factor>
bool ReadHexDigits(const char* digits, PackedColor& color)
{
	constexpr unsigned kBits = 24 / count;
	PackedColor packed = 0;
	unsigned any = 0;
	for (std::size_t i = 0; i != count; ++i)
	{
		const unsigned digit = kHexDigits[static_cast<unsigned char>(digits[i])];
		any |= digit;
		packed = packed << kBits | digit * factor;
	}
	if (any > 15)
		return false;
	color = packed;
	return true;
}

bool ReadHexColor(std::string_view digits, PackedColor& color)
{
	if (digits.size() == 6)
		return ReadHexDigits<6, 1>(digits.data(), color);
	// Each digit of the short form stands for two.
	return digits.size() == 3 && ReadHexDigits<3, 17>(digits.data(), color);
}

bool TakeComponent(TextCursor& cursor, PackedColor& color)
{
	unsigned component = 0;
	const std::string_view rest = cursor.Rest();
	const auto digits = std::find_if_not(rest.begin(), rest.end(), IsDigit) - rest.begin();
	if (digits == 0 || digits > 3)
		return false;
	for (char c : rest.substr(0, static_cast<std::size_t>(digits)))
	{
		component = component * 10 + static_cast<unsigned>(c - '0');
		cursor.Take(c);
	}
	color = color << 8 | component;
	return component <= 255;
}

bool TakeComma(TextCursor& cursor)
{
	cursor.TakeSpaces();
	const bool isComma = cursor.Take(',');
	cursor.TakeSpaces();
	return isComma;
}

/// Reads what follows "rgb(", if it is three whole numbers.
bool ReadComponents(std::string_view text, PackedColor& color)
{
	TextCursor cursor(text);
	PackedColor packed = 0;
	cursor.TakeSpaces();
	if (!TakeComponent(cursor, packed) || !TakeComma(cursor) || !TakeComponent(cursor, packed) || !TakeComma(cursor) ||
		!TakeComponent(cursor, packed))
		return false;
	cursor.TakeSpaces();
	if (!cursor.Take(')') || !cursor.IsAtEnd())
		return false;
	color = packed;
	return true;
}

/// Reads a text that is just a colour, unless it has percentages.
bool ReadColor(std::string_view text, PackedColor& color)
{
	if (text.starts_with('#'))
		return ReadHexColor(text.substr(1), color);
	if (text.starts_with("rgb("))
		return ReadComponents(text.substr(4), color);
	return FindColorKeyword(text, color);
}

/// The library takes any run of ASCII without a closing parenthesis for an IRI, quotes, blanks and all.
bool ReadIri(std::string_view text, Reference& reference)
{
	if (text.empty() || !IsAscii(text) || text.find(')') != text.npos)
		return false;
	reference.isLocal = text.front() == '#';
	reference.text = reference.isLocal ? text.substr(1) : text;
	return true;
}

/// Reads a text that is just "url(" IRI ")".
bool ReadFuncIri(std::string_view text, Reference& reference)
{
	constexpr std::string_view kStart = "url(";
	return text.starts_with(kStart) && text.ends_with(')') &&
		   ReadIri(text.substr(kStart.size(), text.size() - kStart.size() - 1), reference);
}
} // namespace

Parsed ParseColor(std::string_view text, PackedColor& color)
{
	PackedColor result;
	if (ReadColor(text, result))
	{
		color = result;
		return Parsed::value;
	}
	return library::ParseColor(text, color);
}

Parsed ParsePaint(std::string_view text, Paint& paint)
{
	Paint result;
	if (text == kNone)
		result.kind = PaintKind::none;
	else if (text == kCurrentColor)
		result.kind = PaintKind::currentColor;
	else if (text == kInherit)
		result.kind = PaintKind::inherit;
	else if (ReadFuncIri(text, result.reference))
		result.kind = PaintKind::reference;
	else if (ReadColor(text, result.color)) // Last, since looking a word up takes longest.
		result.kind = PaintKind::color;
	else
		return library::ParsePaint(text, paint);
	paint = result;
	return Parsed::value;
}

Parsed ParseIri(std::string_view text, Reference& reference)
{
	return ReadIri(text, reference) ? Parsed::value : library::ParseIri(text, reference);
}

Parsed ParseMaskReference(std::string_view text, std::string_view& id)
{
	Reference reference;
	if (ReadFuncIri(text, reference) && reference.isLocal)
	{
		id = reference.text;
		return Parsed::value;
	}
	return library::ParseMaskReference(text, id);
}
} // namespace orvan::grammar
