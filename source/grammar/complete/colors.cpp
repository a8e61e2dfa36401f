// SPDX-License-Identifier: MIT
#include "complete/colors.h"

#include "complete/color_functions.h"
#include "complete/color_reader.h"
#include "shared/color_keywords.h"
#include "shared/hex_digits.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace orvan::grammar::complete
{
namespace
{
constexpr double kMostChannel = 255;

/// A name beyond the 147 colours: system colours as a browser has them on a light page.
struct NamedColor
{
	std::string_view name;
	std::uint32_t rgba;
};

constexpr NamedColor kMoreColors[]{
	{"transparent", 0x00000000},
	{"rebeccapurple", 0x663399ff},
	{"accentcolor", 0x0075ffff},
	{"accentcolortext", 0xffffffff},
	{"activetext", 0xff0000ff},
	{"buttonborder", 0x000000ff},
	{"buttonface", 0xefefefff},
	{"buttontext", 0x000000ff},
	{"canvas", 0xffffffff},
	{"canvastext", 0x000000ff},
	{"field", 0xffffffff},
	{"fieldtext", 0x000000ff},
	{"graytext", 0x808080ff},
	{"highlight", 0x0041c6cc},
	{"highlighttext", 0xffffffff},
	{"linktext", 0x0000eeff},
	{"mark", 0xffff00ff},
	{"marktext", 0x000000ff},
	{"selecteditem", 0x1967d2ff},
	{"selecteditemtext", 0xffffffff},
	{"visitedtext", 0x551a8bff},
	{"activeborder", 0x000000ff},
	{"activecaption", 0xffffffff},
	{"appworkspace", 0xffffffff},
	{"background", 0xffffffff},
	{"buttonhighlight", 0xefefefff},
	{"buttonshadow", 0xefefefff},
	{"captiontext", 0x000000ff},
	{"inactiveborder", 0x000000ff},
	{"inactivecaption", 0xffffffff},
	{"inactivecaptiontext", 0x808080ff},
	{"infobackground", 0xffffffff},
	{"infotext", 0x000000ff},
	{"menu", 0xffffffff},
	{"menutext", 0x000000ff},
	{"scrollbar", 0xffffffff},
	{"threeddarkshadow", 0x000000ff},
	{"threedface", 0xefefefff},
	{"threedhighlight", 0x000000ff},
	{"threedlightshadow", 0x000000ff},
	{"threedshadow", 0x000000ff},
	{"window", 0xffffffff},
	{"windowframe", 0x000000ff},
	{"windowtext", 0x000000ff},
	{"-webkit-activelink", 0xff0000ff},
	{"-webkit-link", 0x0000eeff},
};

Color FromPacked(std::uint32_t rgba) noexcept
{
	const auto channel = [rgba](int shift)
	{
		return (rgba >> shift & 0xff) / kMostChannel;
	};
	return {ColorKind::color, channel(24), channel(16), channel(8), channel(0)};
}

/// The digits behind "#".
bool ReadHex(std::string_view digits, Color& color) noexcept
{
	const std::size_t count = digits.size();
	if (count != 3 && count != 4 && count != 6 && count != 8)
		return false;
	std::uint32_t packed = 0;
	unsigned bad = 0;
	for (char c : digits)
	{
		const unsigned digit = kHexDigits[static_cast<unsigned char>(c)];
		bad |= digit & 16;
		// Each digit of the short forms stands for two.
		packed = count < 6 ? packed << 8 | digit * 17 : packed << 4 | digit;
	}
	if (bad != 0)
		return false;
	color = FromPacked(count % 4 == 0 ? packed : packed << 8 | 0xff);
	return true;
}

bool TakeNamed(ValueCursor& cursor, std::string_view word, Color& color) noexcept
{
	if (PackedColor packed; FindColorKeyword(word, packed))
	{
		color = FromPacked(packed << 8 | 0xff);
		cursor.MoveTo(word.data() + word.size());
		cursor.SkipSpaces();
		return true;
	}
	if (cursor.TakeWord("currentcolor"))
	{
		color = Color{.kind = ColorKind::currentColor};
		return true;
	}
	for (const NamedColor& row : kMoreColors)
	{
		if (cursor.TakeWord(row.name))
		{
			color = FromPacked(row.rgba);
			return true;
		}
	}
	return false;
}

} // namespace

bool TakeWrittenColor(ValueCursor& cursor, int nesting, WrittenColor& color) noexcept
{
	if (cursor.Take('#'))
	{
		const std::string_view digits = cursor.PeekWord();
		cursor.MoveTo(digits.data() + digits.size());
		cursor.SkipSpaces();
		return ReadHex(digits, color);
	}
	const std::string_view word = cursor.PeekWord();
	const bool isFunction =
		!word.empty() && cursor.At() + word.size() != cursor.End() && word.data()[word.size()] == '(';
	return isFunction ? TakeColorFunction(cursor, nesting, color) : TakeNamed(cursor, word, color);
}

bool IsUsualColor(std::string_view text, Color& color) noexcept
{
	constexpr std::size_t kSize = 7;
	return text.size() == kSize && text[0] == '#' && ReadHex(text.substr(1), color);
}

bool TakeColor(ValueCursor& cursor, Color& color) noexcept
{
	WrittenColor written;
	if (!TakeWrittenColor(cursor, 0, written))
		return false;
	color = written;
	for (double* channel : {&color.red, &color.green, &color.blue})
		*channel = std::isfinite(*channel) ? std::clamp(*channel, 0.0, 1.0) : 0.0;
	if (cursor.IsAtEnd() || !cursor.TakeFunction("icc-color"))
		return true;
	while (!cursor.IsAtEnd() && cursor.Peek() != ')')
		cursor.MoveTo(cursor.At() + 1);
	return cursor.TakeClose();
}

Parsed ParseColor(std::string_view text, Color& color) noexcept
{
	if (IsUsualColor(text, color))
		return Parsed::value;
	ValueCursor cursor(text);
	Color result;
	if (!TakeColor(cursor, result) || !cursor.IsAtEnd())
		return Parsed::refused;
	color = result;
	return Parsed::value;
}
} // namespace orvan::grammar::complete
