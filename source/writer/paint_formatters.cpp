// SPDX-License-Identifier: MIT
#include "writer/value_formatters.h"

#include "grammar.h"
#include "shared/color_keywords.h"

#include <array>
#include <cmath>
#include <iterator>

namespace orvan::svg
{

namespace
{

/// Colours whose names are shorter than their digits.
constexpr std::string_view kShortNames[] = {
	"red",   "tan",    "aqua",   "azure",  "beige",  "bisque", "brown", "coral", "cyan",   "gold",   "gray",
	"green", "indigo", "ivory",  "khaki",  "linen",  "maroon", "navy",  "olive", "orange", "orchid", "peru",
	"pink",  "plum",   "purple", "salmon", "sienna", "silver", "snow",  "teal",  "tomato", "violet", "wheat",
};

struct NamedColor
{
	std::string_view name;
	grammar::PackedColor packed;
};

/// The short names with their colours, looked up once.
const auto& NamedColors()
{
	static const auto colors = []
	{
		std::array<NamedColor, std::size(kShortNames)> found{};
		for (std::size_t i = 0; i < found.size(); i++)
		{
			found[i].name = kShortNames[i];
			grammar::FindColorKeyword(found[i].name, found[i].packed);
		}
		return found;
	}();
	return colors;
}

/// Keeps the shortest text that reads as a colour.
class ShortestColor
{
public:
	ShortestColor(const Color& color, Float alpha) noexcept : _color(color), _alpha(alpha)
	{
	}

	void Try(std::string_view candidate)
	{
		grammar::complete::Color read;
		if ((_best.empty() || candidate.size() < _best.size()) &&
			grammar::complete::ParseColor(candidate, read) == grammar::Parsed::value &&
			read.kind == grammar::complete::ColorKind::color && read.red == _color.red && read.green == _color.green &&
			read.blue == _color.blue && read.alpha == _alpha)
			_best = candidate;
	}

	const std::string& Get() const noexcept
	{
		return _best;
	}

private:
	const Color& _color;
	Float _alpha;
	std::string _best;
};

unsigned ToByte(Float channel) noexcept
{
	constexpr Float kMost = 255.0;
	return static_cast<unsigned>(std::lround(channel > 0.0 ? std::min(channel, 1.0) * kMost : 0.0));
}

void AppendHex(std::string& text, unsigned byte)
{
	constexpr char kHex[] = "0123456789abcdef";
	text += kHex[byte >> 4];
	text += kHex[byte & 15];
}

/// Appends an opaque colour in 256 steps, whose forms are known to read as it.
void AppendInSteps(std::string& text, const unsigned* bytes)
{
	const unsigned packed = bytes[0] << 16 | bytes[1] << 8 | bytes[2];
	const bool isShort = (packed & 0xf0f0f0) >> 4 == (packed & 0x0f0f0f);
	std::size_t size = isShort ? 4 : 7;
	const NamedColor* best = nullptr;
	for (const NamedColor& named : NamedColors())
	{
		if (named.packed == packed && named.name.size() < size)
		{
			best = &named;
			size = named.name.size();
		}
	}
	if (best != nullptr)
	{
		text += best->name;
		return;
	}
	text += '#';
	for (int i = 0; i < 3; i++)
	{
		AppendHex(text, bytes[i]);
		if (isShort)
			text.pop_back();
	}
}

/// Appends a colour; exactly where that is possible.
bool AppendColor(std::string& text, const Color& color, Float alpha, const ValueStyle& style)
{
	if (!std::isfinite(color.red) || !std::isfinite(color.green) || !std::isfinite(color.blue) || !std::isfinite(alpha))
		return false;
	const unsigned bytes[] = {ToByte(color.red), ToByte(color.green), ToByte(color.blue), ToByte(alpha)};
	// Channels are kept in 256 steps where nobody needs more.
	const bool isRounded = style.isPlain || style.numbers.precision != NumberStyle::kExact;
	const Color inSteps{bytes[0] / 255.0, bytes[1] / 255.0, bytes[2] / 255.0};
	if (isRounded || (color == inSteps && alpha == 1.0))
	{
		AppendInSteps(text, bytes);
		return true;
	}
	ShortestColor best(color, alpha);
	std::string hex = "#";
	for (const unsigned byte : bytes)
		AppendHex(hex, byte);
	const auto shortHex = [&hex](std::size_t digits)
	{
		std::string shorter = "#";
		for (std::size_t i = 1; i < digits; i += 2)
		{
			if (hex[i] != hex[i + 1])
				return std::string();
			shorter += hex[i];
		}
		return shorter;
	};
	constexpr std::size_t kWhole = 9;
	best.Try(hex.substr(0, kWhole));
	best.Try(shortHex(kWhole));
	if (best.Get().empty())
	{
		std::string exact = "color(srgb";
		for (const Float channel : {color.red, color.green, color.blue})
		{
			exact += ' ';
			AppendNumber(exact, channel, {.takesExponents = false});
		}
		if (alpha != 1.0)
		{
			exact += "/";
			AppendNumber(exact, alpha, {.takesExponents = false});
		}
		best.Try(exact + ')');
	}
	text += best.Get();
	return !best.Get().empty();
}

bool AppendPaint(std::string& text, const SVGPaint& paint, const ValueStyle& style)
{
	switch (paint.type)
	{
	case SVGPaintType::none:
		text += "none";
		return true;
	case SVGPaintType::color:
		return AppendColor(text, paint.color, paint.alpha, style);
	case SVGPaintType::currentColor:
		text += "currentColor";
		return true;
	case SVGPaintType::contextFill:
		text += "context-fill";
		return true;
	case SVGPaintType::contextStroke:
		text += "context-stroke";
		return true;
	case SVGPaintType::reference:
		break;
	default:
		return false;
	}
	AppendReference(text, paint.reference.View());
	switch (paint.fallback)
	{
	case SVGPaintFallback::absent:
		return true;
	case SVGPaintFallback::none:
		text += " none";
		return true;
	case SVGPaintFallback::currentColor:
		text += " currentColor";
		return true;
	case SVGPaintFallback::color:
		text += ' ';
		return AppendColor(text, paint.color, paint.alpha, style);
	}
	return false;
}

} // namespace

bool FormatPaint(std::string& text, const WrittenValue& value)
{
	if (const auto* color = value.Find<Color>())
		return AppendColor(text, *color, 1.0, value.style);
	const auto* paint = value.Find<SVGPaint>();
	return paint != nullptr && AppendPaint(text, *paint, value.style);
}

namespace
{

bool AppendFilterFunction(std::string& text, const SVGFilterFunction& function, const ValueStyle& style)
{
	static constexpr std::string_view kNames[] = {"",          "blur",       "brightness", "contrast", "drop-shadow",
												  "grayscale", "hue-rotate", "invert",     "opacity",  "saturate",
												  "sepia"};
	const auto type = static_cast<std::size_t>(function.type);
	if (type >= std::size(kNames))
		return false;
	if (function.type == SVGFilterFunctionType::reference)
	{
		AppendReference(text, function.reference.View());
		return true;
	}
	text += kNames[type];
	text += '(';
	NumberStyle numbers = style.numbers;
	numbers.takesExponents = false;
	bool isWritten = true;
	switch (function.type)
	{
	case SVGFilterFunctionType::blur:
		isWritten = AppendLength(text, function.deviation, numbers);
		break;
	case SVGFilterFunctionType::dropShadow:
		for (const SVGLength* length : {&function.x, &function.y, &function.deviation})
		{
			isWritten = isWritten && AppendLength(text, *length, numbers);
			text += ' ';
		}
		isWritten = isWritten && AppendPaint(text, function.color, style);
		break;
	case SVGFilterFunctionType::hueRotate:
		isWritten = AppendNumber(text, function.amount, numbers);
		text += "deg";
		break;
	default:
		isWritten = AppendNumber(text, function.amount, numbers);
		break;
	}
	text += ')';
	return isWritten;
}

} // namespace

bool FormatFilter(std::string& text, const WrittenValue& value)
{
	const auto* functions = value.Find<BaseArray<SVGFilterFunction>>();
	if (functions != nullptr && functions->IsEmpty())
	{
		text += "none";
		return true;
	}
	return AppendList(text, functions,
					  [&](const SVGFilterFunction& function)
					  { return AppendFilterFunction(text, function, value.style); });
}

} // namespace orvan::svg
