// SPDX-License-Identifier: MIT
#include "complete/colors.h"

#include "complete/color_reader.h"
#include "complete/color_spaces.h"
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

/// A component as written.
struct Component
{
	double value = 0; ///< A fraction when it is a percentage.
	bool isPercentage = false;
	bool isNone = false;
};

/// How the components of a function are written.
struct Notation
{
	bool hasCommas = false;
	std::array<Component, 3> components;
	double alpha = 1;
};

/// Where the hue stands among the components.
constexpr std::size_t kNoHue = 3;

bool TakeComponent(ValueCursor& cursor, bool isHue, Component& component) noexcept
{
	component.isNone = cursor.TakeWord("none");
	if (component.isNone)
		return true;
	if (isHue)
		return cursor.TakeAngle(true, component.value);
	return cursor.TakeNumberOrPercentage(component.value, component.isPercentage);
}

/// Reads what stands behind the parenthesis of a function, to its end: three components and an alpha, all parted by
/// commas where these are allowed, or by blanks and a slash.
bool TakeNotation(ValueCursor& cursor, bool mayHaveCommas, std::size_t hue, Notation& notation) noexcept
{
	for (std::size_t i = 0; i != notation.components.size(); ++i)
	{
		if (i == 1)
			notation.hasCommas = mayHaveCommas && cursor.TakeComma();
		else if (i == 2 && notation.hasCommas && !cursor.TakeComma())
			return false;
		cursor.SkipSpaces();
		if (!TakeComponent(cursor, i == hue, notation.components[i]))
			return false;
	}
	cursor.SkipSpaces();
	if (notation.hasCommas ? cursor.TakeMark(',') : cursor.TakeMark('/'))
	{
		Component alpha;
		if (!TakeComponent(cursor, false, alpha))
			return false;
		notation.alpha = std::clamp(alpha.value, 0.0, 1.0);
		if (alpha.isNone && notation.hasCommas)
			return false;
	}
	if (notation.hasCommas && std::ranges::any_of(notation.components, &Component::isNone))
		return false;
	return cursor.TakeClose();
}

/// A component whose percentage is of `whole`.
double Resolve(const Component& component, double whole) noexcept
{
	return component.isPercentage ? component.value * whole : component.value;
}

Color Opaque(const Components& rgb, double alpha) noexcept
{
	const auto clamp = [](double value)
	{
		return std::isfinite(value) ? std::clamp(value, 0.0, 1.0) : 0.0;
	};
	return {ColorKind::color, clamp(rgb[0]), clamp(rgb[1]), clamp(rgb[2]), alpha};
}

/// As above, in 256 steps a channel.
Color Rounded(const Components& rgb, double alpha) noexcept
{
	Color color = Opaque(rgb, alpha);
	for (double* channel : {&color.red, &color.green, &color.blue})
	{
		// Single precision, as browsers have it, so that halves come out on the same side.
		const float scaled = static_cast<float>(*channel) * static_cast<float>(kMostChannel);
		*channel = std::round(scaled) / kMostChannel;
	}
	return color;
}

bool TakeRgb(ValueCursor& cursor, Color& color) noexcept
{
	Notation notation;
	if (!TakeNotation(cursor, true, kNoHue, notation))
		return false;
	const auto& [red, green, blue] = notation.components;
	const bool isMixed = red.isPercentage != green.isPercentage || red.isPercentage != blue.isPercentage;
	if (notation.hasCommas && isMixed)
		return false;
	const auto fraction = [](const Component& component)
	{
		return component.isPercentage ? component.value : component.value / kMostChannel;
	};
	color = Rounded({fraction(red), fraction(green), fraction(blue)}, notation.alpha);
	return true;
}

/// A percentage, or a number that means one.
double ClampedPercentage(const Component& component) noexcept
{
	return std::clamp(component.isPercentage ? component.value : component.value / 100, 0.0, 1.0);
}

template <Components (*toSrgb)(const Components&) noexcept, bool mayHaveCommas>
bool TakeHued(ValueCursor& cursor, Color& color) noexcept
{
	Notation notation;
	if (!TakeNotation(cursor, mayHaveCommas, 0, notation))
		return false;
	const auto& [hue, second, third] = notation.components;
	if (notation.hasCommas && (!second.isPercentage || !third.isPercentage))
		return false;
	color = Rounded(toSrgb({std::fmod(hue.value, 360), ClampedPercentage(second), ClampedPercentage(third)}),
					notation.alpha);
	return true;
}

/// Lab and Oklab: lightness and two axes, of which 100% is `kWhole` and `kAxis`.
template <Components (*toSrgb)(const Components&) noexcept, int kWhole, int kAxisHundredths>
bool TakeAxes(ValueCursor& cursor, Color& color) noexcept
{
	constexpr double kAxis = kAxisHundredths / 100.0;
	Notation notation;
	if (!TakeNotation(cursor, false, kNoHue, notation))
		return false;
	const auto& [lightness, a, b] = notation.components;
	color = Opaque(
		toSrgb({std::clamp<double>(Resolve(lightness, kWhole), 0, kWhole), Resolve(a, kAxis), Resolve(b, kAxis)}),
		notation.alpha);
	return true;
}

/// The same with chroma and hue instead of axes.
template <Components (*toSrgb)(const Components&) noexcept, int kWhole, int kChromaHundredths>
bool TakePolar(ValueCursor& cursor, Color& color) noexcept
{
	constexpr double kChroma = kChromaHundredths / 100.0;
	Notation notation;
	if (!TakeNotation(cursor, false, 2, notation))
		return false;
	const auto& [lightness, chroma, hue] = notation.components;
	color = Opaque(toSrgb(PolarToAxes({std::clamp<double>(Resolve(lightness, kWhole), 0, kWhole),
									   std::max(Resolve(chroma, kChroma), 0.0), hue.value})),
				   notation.alpha);
	return true;
}

bool TakeColorFunction(ValueCursor& cursor, Color& color) noexcept
{
	for (const ColorSpace& space : GetColorSpaces())
	{
		if (!cursor.TakeWord(space.name))
			continue;
		Notation notation;
		if (!TakeNotation(cursor, false, kNoHue, notation))
			return false;
		const auto& [first, second, third] = notation.components;
		color = Opaque(space.toSrgb({first.value, second.value, third.value}), notation.alpha);
		return true;
	}
	return false;
}

struct FunctionRow
{
	std::string_view name;
	bool (*take)(ValueCursor&, Color&) noexcept;
};

constexpr FunctionRow kFunctions[]{
	{"rgb", &TakeRgb},
	{"rgba", &TakeRgb},
	{"hsl", &TakeHued<&HslToSrgb, true>},
	{"hsla", &TakeHued<&HslToSrgb, true>},
	{"hwb", &TakeHued<&HwbToSrgb, false>},
	{"lab", &TakeAxes<&LabToSrgb, 100, 12500>},
	{"lch", &TakePolar<&LabToSrgb, 100, 15000>},
	{"oklab", &TakeAxes<&OklabToSrgb, 1, 40>},
	{"oklch", &TakePolar<&OklabToSrgb, 1, 40>},
	{"color", &TakeColorFunction},
};

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

/// Takes a colour without what may follow it.
bool TakeBareColor(ValueCursor& cursor, Color& color) noexcept
{
	if (cursor.Take('#'))
	{
		const std::string_view digits = cursor.PeekWord();
		cursor.MoveTo(digits.data() + digits.size());
		cursor.SkipSpaces();
		return ReadHex(digits, color);
	}
	const std::string_view word = cursor.PeekWord();
	for (const FunctionRow& row : kFunctions)
	{
		if (row.name.size() == word.size() && cursor.TakeFunction(row.name))
			return row.take(cursor, color);
	}
	return TakeNamed(cursor, word, color);
}
} // namespace

bool IsUsualColor(std::string_view text, Color& color) noexcept
{
	constexpr std::size_t kSize = 7;
	return text.size() == kSize && text[0] == '#' && ReadHex(text.substr(1), color);
}

bool TakeColor(ValueCursor& cursor, Color& color) noexcept
{
	if (!TakeBareColor(cursor, color))
		return false;
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
