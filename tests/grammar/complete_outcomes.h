// SPDX-License-Identifier: MIT
/// What the readers of the complete import make of a text, as a text that a test names.
#pragma once

#include "complete/values.h"

#include <gtest/gtest.h>

#include <array>
#include <charconv>
#include <cmath>
#include <initializer_list>
#include <string>
#include <string_view>

namespace orvan::grammar::complete
{

inline const std::string kRefused = "refused";

inline std::string Text(double number)
{
	std::array<char, 32> buffer;
	return {buffer.data(),
			std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::general, 6).ptr};
}

inline std::string Text(const Length& length)
{
	static constexpr std::array kUnits{"em",  "ex", "px", "in", "cm",   "mm",   "pt",  "pc", "%",  "",   "q",
									   "rem", "ch", "vw", "vh", "vmin", "vmax", "cap", "ic", "lh", "rlh"};
	const double shown = length.unit == LengthUnit::percent ? length.value * 100 : length.value;
	return Text(shown) + kUnits[static_cast<std::size_t>(length.unit)];
}

/// Channels in 0 … 255.
inline std::string Text(const Color& color)
{
	if (color.kind == ColorKind::currentColor)
		return "currentColor";
	std::string text;
	for (double channel : {color.red, color.green, color.blue})
		text += Text(std::round(channel * 25500) / 100) + " ";
	return text + "/ " + Text(color.alpha);
}

inline std::string Text(const Reference& reference)
{
	return (reference.isLocal ? "#" : "") +
		   (reference.hasEscapes ? ResolveEscapes(reference.text) : std::string(reference.text));
}

inline std::string Text(const Matrix& m)
{
	std::string text;
	for (double number : {m.a, m.b, m.c, m.d, m.e, m.f})
		text += (text.empty() ? "" : " ") + Text(std::fabs(number) < 1e-12 ? 0 : number);
	return text;
}

inline std::string Text(const FontSize& size)
{
	return size.kind == FontSizeKind::larger    ? "larger"
		   : size.kind == FontSizeKind::smaller ? "smaller"
												: Text(size.size);
}

inline std::string Text(const FontWeight& weight)
{
	return weight.kind == FontWeightKind::bolder    ? "bolder"
		   : weight.kind == FontWeightKind::lighter ? "lighter"
													: Text(weight.weight);
}

inline std::string Text(FontStyle style)
{
	return std::array{"normal", "italic", "oblique"}[static_cast<std::size_t>(style)];
}

inline std::string Text(const FontFamily& family)
{
	return family.hasComments ? RemoveComments(family.list) : std::string(family.list);
}

inline std::string Text(const Font& font)
{
	return Text(font.style) + (font.isSmallCaps ? " caps " : " - ") + Text(font.weight) + " " + Text(font.stretch) +
		   " " + Text(font.size) + "/" + (font.hasLineHeight ? Text(font.lineHeight) : "normal") + " " +
		   Text(font.family);
}

/// What a function makes of a text: "refused", "nothing", or the value as `Text` has it.
template <typename Value, typename Function, typename... Arguments>
inline std::string Outcome(Function parse, std::string_view text, Arguments... arguments)
{
	Value value{};
	switch (parse(text, arguments..., value))
	{
	case Parsed::refused:
		return kRefused;
	case Parsed::nothing:
		return "nothing";
	case Parsed::value:
		break;
	}
	return Text(value);
}

struct Sink final : LengthSink, NumberSink, FilterSink
{
	void Append(const Length& length) override
	{
		text += Text(length) + ";";
	}

	void Append(double number) override
	{
		text += Text(number) + ";";
	}

	void Append(const FilterFunction& function) override
	{
		text += std::to_string(static_cast<int>(function.kind)) + " " + Text(function.amount) + " " +
				Text(function.deviation) + " " + Text(function.offsetX) + " " + Text(function.offsetY) + " " +
				(function.hasColor ? Text(function.color) : "-") + " " + Text(function.reference) + ";";
	}

	std::string text;
};

inline std::string Outcome(const Sink& sink, const Progress& progress)
{
	return progress.isWhole ? sink.text : sink.text + "!" + std::to_string(progress.offset);
}

inline void ExpectAll(std::string (*function)(std::string_view), std::initializer_list<std::string_view> texts,
					  std::string_view expected)
{
	for (std::string_view text : texts)
		EXPECT_EQ(function(text), expected) << text;
}

inline std::string ColorOf(std::string_view text)
{
	return Outcome<Color>(ParseColor, text);
}

inline std::string AttributeTransform(std::string_view text)
{
	return Outcome<Matrix>(ParseTransformAttribute, text);
}

/// In a box of 200 by 100.
inline std::string PropertyTransform(std::string_view text)
{
	Transform transform;
	if (ParseTransformProperty(text, RelativeUnits{.viewportWidth = 800, .viewportHeight = 600}, transform) !=
		Parsed::value)
		return kRefused;
	return Text(transform.For(200, 100));
}

} // namespace orvan::grammar::complete
