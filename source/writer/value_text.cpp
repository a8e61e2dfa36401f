// SPDX-License-Identifier: MIT
#include "writer/value_text.h"

#include "grammar.h"
#include "importer/complete/value_readers.h"
#include "shared/color_keywords.h"

#include <array>
#include <cmath>
#include <iterator>
#include <string_view>

namespace orvan::svg
{

using complete::Reader;
using complete::Rule;
using complete::Tag;
using complete::TagOf;
using Kind = SVGImportElementKind;
using Number = SVGImportAttribute;

namespace
{

/// What a formatter works on.
struct Value
{
	const DataDictionary& values;
	const Rule& rule;
	Tag tag;
	const ValueStyle& style;

	template <typename T>
	const T* Find() const noexcept
	{
		return Find<T>(rule.number);
	}

	template <typename T>
	const T* Find(Number number) const noexcept
	{
		return values.Find<T>(static_cast<std::int32_t>(number));
	}
};

/// Appends a value that is there; false when it has no text.
using Formatter = bool (*)(std::string& text, const Value& value);

// Texts and keywords -------------------------------------------------------------------------------------------------

bool FormatText(std::string& text, const Value& value)
{
	const auto* string = value.Find<String>();
	if (string == nullptr)
		return false;
	text += string->View();
	return true;
}

/// What stands in the tree does not tell an id from a whole IRI; this is how they look. What begins with "#" or a blank
/// can only be an id.
bool LooksLikeIri(std::string_view reference) noexcept
{
	if (reference.empty() || reference[0] == '#' || static_cast<unsigned char>(reference[0]) <= ' ')
		return false;
	return reference.find('#') != reference.npos || reference.find("://") != reference.npos ||
		   reference.starts_with("data:");
}

/// Appends a reference in "url()". The id is quoted where it has characters that would end it.
void AppendReference(std::string& text, std::string_view reference)
{
	const bool isIri = LooksLikeIri(reference);
	const bool needsQuotes = reference.find_first_of(" \t\r\n\f\"'()\\") != reference.npos;
	text += needsQuotes ? "url('" : "url(";
	if (!isIri)
		text += '#';
	for (const char c : reference)
	{
		if (needsQuotes && (c == '\'' || c == '\\'))
			text += '\\';
		if (c == '\n' || c == '\r' || c == '\f') // Nothing else ends a string.
			text += c == '\n' ? "\\a " : c == '\r' ? "\\d " : "\\c ";
		else
			text += c;
	}
	text += needsQuotes ? "')" : ")";
}

bool FormatReference(std::string& text, const Value& value)
{
	const auto* id = value.Find<String>();
	if (id == nullptr)
		return false;
	if (id->IsEmpty())
		text += "none";
	else
		AppendReference(text, id->View());
	return true;
}

/// The tables have properties in lower case, because they match in any. This is how they are written.
struct WrittenKeyword
{
	std::string_view lowerCase;
	std::string_view written;
};

constexpr WrittenKeyword kWrittenKeywords[] = {
	{"optimizespeed", "optimizeSpeed"},
	{"crispedges", "crispEdges"},
	{"geometricprecision", "geometricPrecision"},
	{"optimizelegibility", "optimizeLegibility"},
	{"optimizequality", "optimizeQuality"},
	{"srgb", "sRGB"},
	{"linearrgb", "linearRGB"},
	{"visiblepainted", "visiblePainted"},
	{"visiblefill", "visibleFill"},
	{"visiblestroke", "visibleStroke"},
};

bool AppendKeyword(std::string& text, std::span<const grammar::complete::Keyword> keywords, const std::int32_t* number)
{
	for (const grammar::complete::Keyword& keyword : keywords)
	{
		if (number == nullptr || keyword.value != *number)
			continue;
		std::string_view name = keyword.name;
		for (const WrittenKeyword& known : kWrittenKeywords)
		{
			if (known.lowerCase == name)
				name = known.written;
		}
		text += name;
		return true;
	}
	return false;
}

bool FormatKeyword(std::string& text, const Value& value)
{
	return AppendKeyword(text, value.rule.keywords, value.Find<std::int32_t>());
}

/// One of the names that stand for 0, 1, 2 …
bool AppendName(std::string& text, std::span<const std::string_view> names, const std::int32_t* number)
{
	if (number == nullptr || *number < 0 || static_cast<std::size_t>(*number) >= names.size())
		return false;
	text += names[static_cast<std::size_t>(*number)];
	return true;
}

bool FormatDisplay(std::string& text, const Value& value)
{
	static constexpr std::string_view kNames[] = {"inline", "inline", "none"};
	return AppendName(text, kNames, value.Find<std::int32_t>());
}

bool FormatFontStyle(std::string& text, const Value& value)
{
	static constexpr std::string_view kNames[] = {"normal", "italic", "oblique"};
	return AppendName(text, kNames, value.Find<std::int32_t>());
}

bool FormatType(std::string& text, const Value& value)
{
	static constexpr std::string_view kColorMatrix[] = {"matrix", "saturate", "hueRotate", "luminanceToAlpha"};
	static constexpr std::string_view kTransfer[] = {"identity", "table", "discrete", "linear", "gamma"};
	static constexpr std::string_view kTurbulence[] = {"turbulence", "fractalNoise"};
	const auto* number = value.Find<std::int32_t>();
	if (value.tag == TagOf(Kind::feColorMatrix))
		return AppendName(text, kColorMatrix, number);
	return value.tag == TagOf(Kind::feTurbulence) ? AppendName(text, kTurbulence, number)
												  : AppendName(text, kTransfer, number);
}

bool FormatOperator(std::string& text, const Value& value)
{
	static constexpr std::string_view kComposite[] = {"over", "in", "out", "atop", "xor", "arithmetic", "lighter"};
	static constexpr std::string_view kMorphology[] = {"erode", "dilate"};
	const auto* number = value.Find<std::int32_t>();
	return value.tag == TagOf(Kind::feComposite) ? AppendName(text, kComposite, number)
												 : AppendName(text, kMorphology, number);
}

bool FormatPaintOrder(std::string& text, const Value& value)
{
	static constexpr std::string_view kNames[] = {"normal",         "fill markers", "stroke",
												  "stroke markers", "markers",      "markers stroke"};
	return AppendName(text, kNames, value.Find<std::int32_t>());
}

bool FormatTextDecoration(std::string& text, const Value& value)
{
	static constexpr std::string_view kLines[] = {"underline", "overline", "line-through"};
	const auto* lines = value.Find<std::int32_t>();
	if (lines == nullptr || *lines < 0 || *lines >= 1 << std::size(kLines))
		return false;
	if (*lines == 0)
		text += "none";
	bool isFirst = true;
	for (std::size_t i = 0; i < std::size(kLines); i++)
	{
		if ((*lines >> i & 1) == 0)
			continue;
		if (!std::exchange(isFirst, false))
			text += ' ';
		text += kLines[i];
	}
	return true;
}

// Numbers and lengths ------------------------------------------------------------------------------------------------

bool FormatNumber(std::string& text, const Value& value)
{
	const auto* number = value.Find<Float>();
	return number != nullptr && AppendNumber(text, *number, value.style.numbers);
}

bool FormatLength(std::string& text, const Value& value)
{
	const auto* length = value.Find<SVGLength>();
	return length != nullptr && AppendLength(text, *length, value.style.numbers);
}

/// Items of a list with blanks between them.
template <typename Item, typename Append>
bool AppendList(std::string& text, const BaseArray<Item>* items, Append append)
{
	if (items == nullptr)
		return false;
	bool isFirst = true;
	for (const Item& item : *items)
	{
		if (!std::exchange(isFirst, false))
			text += ' ';
		if (!append(item))
			return false;
	}
	return true;
}

bool AppendLengths(std::string& text, const BaseArray<SVGLength>* lengths, const ValueStyle& style)
{
	return AppendList(text, lengths,
					  [&](const SVGLength& length) { return AppendLength(text, length, style.numbers); });
}

bool FormatNumbers(std::string& text, const Value& value)
{
	return AppendList(text, value.Find<BaseArray<Float>>(),
					  [&](Float number) { return AppendNumber(text, number, value.style.numbers); });
}

/// One number stands for two that are the same.
bool FormatNumberPair(std::string& text, const Value& value)
{
	const auto* pair = value.Find<BaseArray<Float>>();
	if (pair == nullptr || pair->GetCount() != 2)
		return false;
	const NumberStyle& style = value.style.numbers;
	if (!AppendNumber(text, (*pair)[0], style))
		return false;
	if ((*pair)[0] == (*pair)[1])
		return true;
	text += ' ';
	return AppendNumber(text, (*pair)[1], style);
}

bool FormatDashArray(std::string& text, const Value& value)
{
	const auto* dashes = value.Find<BaseArray<SVGLength>>();
	if (dashes != nullptr && dashes->IsEmpty())
	{
		text += "none";
		return true;
	}
	return AppendLengths(text, dashes, value.style);
}

/// A list where there is one, otherwise the single length.
bool FormatPosition(std::string& text, const Value& value, Number list)
{
	const auto* positions = value.Find<BaseArray<SVGLength>>(list);
	return positions != nullptr ? AppendLengths(text, positions, value.style) : FormatLength(text, value);
}

bool FormatX(std::string& text, const Value& value)
{
	return FormatPosition(text, value, Number::xList);
}

bool FormatY(std::string& text, const Value& value)
{
	return FormatPosition(text, value, Number::yList);
}

bool FormatShift(std::string& text, const Value& value)
{
	const auto* shifts = value.Find<BaseArray<SVGLength>>();
	return shifts != nullptr ? AppendLengths(text, shifts, value.style) : FormatNumber(text, value);
}

bool FormatOrient(std::string& text, const Value& value)
{
	const auto* orient = value.Find<SVGOrient>();
	if (orient == nullptr)
		return false;
	if (orient->type == SVGOrientType::angle)
		return AppendNumber(text, orient->angle, value.style.numbers);
	text += orient->type == SVGOrientType::automatic ? "auto" : "auto-start-reverse";
	return true;
}

bool FormatBaselineShift(std::string& text, const Value& value)
{
	static constexpr std::string_view kNames[] = {"baseline", "sub", "super"};
	const auto* shift = value.Find<SVGBaselineShift>();
	if (shift == nullptr)
		return false;
	if (shift->type == SVGBaselineShiftType::length)
		return AppendLength(text, shift->length, value.style.numbers);
	const auto type = static_cast<std::int32_t>(shift->type);
	return AppendName(text, kNames, &type);
}

bool FormatFontWeight(std::string& text, const Value& value)
{
	if (const auto* number = value.Find<Float>(Number::fontWeightNumber))
	{
		if (*number < 0.0)
		{
			text += *number == -1.0 ? "lighter" : "bolder";
			return true;
		}
		return AppendNumber(text, *number, value.style.numbers);
	}
	static constexpr std::string_view kNames[] = {"normal", "bold"};
	return AppendName(text, kNames, value.Find<std::int32_t>());
}

bool FormatFontStretch(std::string& text, const Value& value)
{
	const auto* stretch = value.Find<Float>();
	if (stretch != nullptr && *stretch == 1.0)
	{
		text += "normal";
		return true;
	}
	return stretch != nullptr && AppendPercentage(text, *stretch, value.style.numbers);
}

// Geometry -----------------------------------------------------------------------------------------------------------

bool FormatMatrix(std::string& text, const Value& value)
{
	const auto* matrix = value.Find<Matrix2d>();
	return matrix != nullptr && AppendMatrix(text, *matrix, value.style);
}

bool FormatTransformOrigin(std::string& text, const Value& value)
{
	const auto* origin = value.Find<SVGLength2d>();
	if (origin == nullptr || !AppendLength(text, origin->x, value.style.numbers))
		return false;
	text += ' ';
	return AppendLength(text, origin->y, value.style.numbers);
}

bool FormatViewBox(std::string& text, const Value& value)
{
	const auto* box = value.Find<SVGViewbox>();
	if (box == nullptr)
		return false;
	bool isFirst = true;
	for (const SVGLength* side : {&box->x, &box->y, &box->width, &box->height})
	{
		if (!std::exchange(isFirst, false))
			text += ' ';
		if (!AppendNumber(text, side->value, value.style.numbers))
			return false;
	}
	return true;
}

bool FormatAspectRatio(std::string& text, const Value& value)
{
	static constexpr std::string_view kAligns[] = {"xMidYMid", "none",     "xMinYMin", "xMidYMin", "xMaxYMin",
												   "xMinYMid", "xMaxYMid", "xMinYMax", "xMidYMax", "xMaxYMax"};
	const auto* ratio = value.Find<SVGPreserveAspectRatio>();
	if (ratio == nullptr)
		return false;
	const auto align = static_cast<std::int32_t>(ratio->align);
	if (!AppendName(text, kAligns, &align))
		return false;
	if (ratio->meetOrSlice == SVGMeetOrSlice::slice)
		text += " slice";
	return true;
}

// Paint --------------------------------------------------------------------------------------------------------------

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

/// Appends a colour; exactly where that is possible.
bool AppendColor(std::string& text, const Color& color, Float alpha, const ValueStyle& style)
{
	if (!std::isfinite(color.red) || !std::isfinite(color.green) || !std::isfinite(color.blue) || !std::isfinite(alpha))
		return false;
	const unsigned bytes[] = {ToByte(color.red), ToByte(color.green), ToByte(color.blue), ToByte(alpha)};
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
	// Channels are kept in 256 steps where nobody needs more.
	const bool isRounded = style.isPlain || style.numbers.precision != NumberStyle::kExact;
	const Color inSteps{bytes[0] / 255.0, bytes[1] / 255.0, bytes[2] / 255.0};
	ShortestColor best(isRounded ? inSteps : color, isRounded ? 1.0 : alpha);
	constexpr std::size_t kOpaque = 7;
	constexpr std::size_t kWhole = 9;
	best.Try(hex.substr(0, kOpaque));
	best.Try(shortHex(kOpaque));
	if (!best.Get().empty())
	{
		const unsigned packed = bytes[0] << 16 | bytes[1] << 8 | bytes[2];
		for (const NamedColor& named : NamedColors())
		{
			if (named.packed == packed && named.name.size() < best.Get().size())
				best.Try(named.name);
		}
	}
	else
	{
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

bool FormatPaint(std::string& text, const Value& value)
{
	if (const auto* color = value.Find<Color>())
		return AppendColor(text, *color, 1.0, value.style);
	const auto* paint = value.Find<SVGPaint>();
	return paint != nullptr && AppendPaint(text, *paint, value.style);
}

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

bool FormatFilter(std::string& text, const Value& value)
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

// The table ----------------------------------------------------------------------------------------------------------

struct FormatterRow
{
	Reader read;
	Formatter format;
};

/// What each form of value is written by.
constexpr FormatterRow kFormatters[] = {
	{&complete::ReadText, &FormatText},
	{&complete::ReadRawText, &FormatText},
	{&complete::ReadReference, &FormatReference},
	{&complete::ReadKeyword, &FormatKeyword},
	{&complete::ReadExactKeyword, &FormatKeyword},
	{&complete::ReadDisplay, &FormatDisplay},
	{&complete::ReadType, &FormatType},
	{&complete::ReadOperator, &FormatOperator},
	{&complete::ReadNumber, &FormatNumber},
	{&complete::ReadNotNegativeNumber, &FormatNumber},
	{&complete::ReadNumbers, &FormatNumbers},
	{&complete::ReadNumberPair, &FormatNumberPair},
	{&complete::ReadAlpha, &FormatNumber},
	{&complete::ReadOffset, &FormatNumber},
	{&complete::ReadLength, &FormatLength},
	{&complete::ReadNotNegativeLength, &FormatLength},
	{&complete::ReadSize, &FormatLength},
	{&complete::ReadRadius, &FormatLength},
	{&complete::ReadX, &FormatX},
	{&complete::ReadY, &FormatY},
	{&complete::ReadShift, &FormatShift},
	{&complete::ReadSpacing, &FormatLength},
	{&complete::ReadReferencePoint, &FormatLength},
	{&complete::ReadDashArray, &FormatDashArray},
	{&complete::ReadOrient, &FormatOrient},
	{&complete::ReadBaselineShift, &FormatBaselineShift},
	{&complete::ReadMatrix, &FormatMatrix},
	{&complete::ReadTransformOrigin, &FormatTransformOrigin},
	{&complete::ReadViewBox, &FormatViewBox},
	{&complete::ReadAspectRatio, &FormatAspectRatio},
	{&complete::ReadPaint, &FormatPaint},
	{&complete::ReadColor, &FormatPaint},
	{&complete::ReadStopColor, &FormatPaint},
	{&complete::ReadPaintOrder, &FormatPaintOrder},
	{&complete::ReadFilter, &FormatFilter},
	{&complete::ReadFontSize, &FormatLength},
	{&complete::ReadFontFamily, &FormatText},
	{&complete::ReadFontStyle, &FormatFontStyle},
	{&complete::ReadFontWeight, &FormatFontWeight},
	{&complete::ReadFontStretch, &FormatFontStretch},
	{&complete::ReadTextDecoration, &FormatTextDecoration},
};

Formatter FindFormatter(Reader read) noexcept
{
	for (const FormatterRow& row : kFormatters)
	{
		if (row.read == read)
			return row.format;
	}
	return nullptr;
}

} // namespace

Number WrittenAs(Number key) noexcept
{
	switch (key)
	{
	case Number::xList:
		return Number::x;
	case Number::yList:
		return Number::y;
	case Number::fontWeightNumber:
		return Number::fontWeight;
	case Number::link:
		return Number::href;
	case Number::points:
		return Number::d;
	default:
		return key;
	}
}

const Rule* FindWritingRule(Number number) noexcept
{
	const auto index = static_cast<std::size_t>(number);
	if (index == 0 || index >= kSVGAttributeNames.size())
		return nullptr;
	const Rule* const rule = complete::FindRule(kSVGAttributeNames[index]);
	return rule != nullptr && (rule->number == number || number == Number::link) ? rule : nullptr;
}

bool HasFormatter(const Rule& rule) noexcept
{
	// These stand outside of the dictionary, and shorthands are written by what they stand for.
	for (const Reader elsewhere : {&complete::ReadId, &complete::ReadLink, &complete::ReadTransform,
								   &complete::ReadPathData, &complete::ReadPoints, &complete::ReadNothing,
								   &complete::ReadMarkers, &complete::ReadFont, &complete::ReadXmlSpace})
	{
		if (rule.read == elsewhere)
			return true;
	}
	return FindFormatter(rule.read) != nullptr;
}

Formatted FormatEntry(std::string& text, const DataDictionary& values, const Rule& rule, Tag tag,
					  const ValueStyle& style)
{
	if (rule.number == Number::href)
	{
		const auto* link = values.Find<String>(static_cast<std::int32_t>(Number::link));
		if (link == nullptr)
			return Formatted::absent;
		AppendLink(text, link->View(), tag, false);
		return Formatted::text;
	}
	const auto has = [&](Number number)
	{
		return values.Has(static_cast<std::int32_t>(number));
	};
	const bool isThere = has(rule.number) || (rule.number == Number::fontWeight && has(Number::fontWeightNumber)) ||
						 (rule.number == Number::x && has(Number::xList)) ||
						 (rule.number == Number::y && has(Number::yList));
	if (!isThere)
		return Formatted::absent;
	const Formatter format = FindFormatter(rule.read);
	return format != nullptr && format(text, {values, rule, tag, style}) ? Formatted::text : Formatted::impossible;
}

bool AppendMatrix(std::string& text, const Matrix2d& matrix, const ValueStyle& style)
{
	const bool isShift =
		matrix.axis1.x == 1.0 && matrix.axis1.y == 0.0 && matrix.axis2.x == 0.0 && matrix.axis2.y == 1.0;
	const bool isIdentity = isShift && matrix.offset.x == 0.0 && matrix.offset.y == 0.0;
	if (isIdentity)
	{
		text += style.isDeclaration ? "none" : "";
		return true;
	}
	const auto append = [&](std::string_view name, std::initializer_list<Float> numbers)
	{
		text += name;
		bool isFirst = true;
		for (const Float number : numbers)
		{
			if (!std::exchange(isFirst, false))
				text += ',';
			if (!AppendNumber(text, number, style.numbers))
				return false;
		}
		text += ')';
		return true;
	};
	const bool isScale =
		matrix.axis1.y == 0.0 && matrix.axis2.x == 0.0 && matrix.offset.x == 0.0 && matrix.offset.y == 0.0;
	if (isShift && !style.isDeclaration)
	{
		return matrix.offset.y == 0.0 ? append("translate(", {matrix.offset.x})
									  : append("translate(", {matrix.offset.x, matrix.offset.y});
	}
	if (isScale)
	{
		return matrix.axis1.x == matrix.axis2.y ? append("scale(", {matrix.axis1.x})
												: append("scale(", {matrix.axis1.x, matrix.axis2.y});
	}
	return append("matrix(",
				  {matrix.axis1.x, matrix.axis1.y, matrix.axis2.x, matrix.axis2.y, matrix.offset.x, matrix.offset.y});
}

void AppendLink(std::string& text, std::string_view link, Tag tag, bool isId)
{
	// Those of images and anchors are rarely ids.
	static constexpr complete::TagSet kLeadingOut{Kind::image, Kind::feImage, Kind::anchor};
	const bool mayLeadOut = !link.empty() && link[0] != '#' && static_cast<unsigned char>(link[0]) > ' ';
	const bool isIri = link.empty() || LooksLikeIri(link) || (mayLeadOut && kLeadingOut.Has(tag));
	if (isId || !isIri)
		text += '#';
	text += link;
}

} // namespace orvan::svg
