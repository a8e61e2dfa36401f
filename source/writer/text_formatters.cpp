// SPDX-License-Identifier: MIT
#include "writer/value_formatters.h"

#include "grammar.h"
#include "importer/complete/value_readers.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace orvan::svg
{

using complete::TagOf;
using Kind = SVGImportElementKind;

bool FormatText(std::string& text, const WrittenValue& value)
{
	const auto* string = value.Find<String>();
	if (string == nullptr)
		return false;
	text += string->View();
	return true;
}

bool LooksLikeIri(std::string_view reference) noexcept
{
	if (reference.empty() || reference[0] == '#' || static_cast<unsigned char>(reference[0]) <= ' ')
		return false;
	return reference.find('#') != reference.npos || reference.find("://") != reference.npos ||
		   reference.starts_with("data:");
}

namespace
{

/// Blanks, control characters, and what has a meaning in an url() without quotes.
bool CannotStandUnquoted(char c) noexcept
{
	constexpr char kDelete = 0x7f;
	return static_cast<unsigned char>(c) <= ' ' || c == kDelete ||
		   std::string_view("\"'()\\").find(c) != std::string_view::npos;
}

} // namespace

void AppendReference(std::string& text, std::string_view reference)
{
	const bool isIri = LooksLikeIri(reference);
	const bool needsQuotes = std::any_of(reference.begin(), reference.end(), CannotStandUnquoted);
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

bool FormatReference(std::string& text, const WrittenValue& value)
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

bool FormatMask(std::string& text, const WrittenValue& value)
{
	const auto* ids = value.Find<String>(SVGImportAttribute::maskLayers);
	if (ids == nullptr)
		return FormatReference(text, value);
	for (std::string_view rest = ids->View(); !rest.empty();)
	{
		const std::size_t end = std::min(rest.find(' '), rest.size());
		AppendReference(text, rest.substr(0, end));
		rest.remove_prefix(std::min(end + 1, rest.size()));
		text += rest.empty() ? "" : ", ";
	}
	return true;
}

namespace
{

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

} // namespace

bool FormatKeyword(std::string& text, const WrittenValue& value)
{
	return AppendKeyword(text, value.rule.keywords, value.Find<std::int32_t>());
}

bool AppendName(std::string& text, std::span<const std::string_view> names, const std::int32_t* number)
{
	if (number == nullptr || *number < 0 || static_cast<std::size_t>(*number) >= names.size())
		return false;
	text += names[static_cast<std::size_t>(*number)];
	return true;
}

bool FormatDisplay(std::string& text, const WrittenValue& value)
{
	static constexpr std::string_view kNames[] = {"inline", "inline", "none"};
	return AppendName(text, kNames, value.Find<std::int32_t>());
}

bool FormatFontStyle(std::string& text, const WrittenValue& value)
{
	static constexpr std::string_view kNames[] = {"normal", "italic", "oblique"};
	return AppendName(text, kNames, value.Find<std::int32_t>());
}

bool FormatType(std::string& text, const WrittenValue& value)
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

bool FormatOperator(std::string& text, const WrittenValue& value)
{
	static constexpr std::string_view kComposite[] = {"over", "in", "out", "atop", "xor", "arithmetic", "lighter"};
	static constexpr std::string_view kMorphology[] = {"erode", "dilate"};
	const auto* number = value.Find<std::int32_t>();
	return value.tag == TagOf(Kind::feComposite) ? AppendName(text, kComposite, number)
												 : AppendName(text, kMorphology, number);
}

bool FormatPaintOrder(std::string& text, const WrittenValue& value)
{
	static constexpr std::string_view kNames[] = {"normal",         "fill markers", "stroke",
												  "stroke markers", "markers",      "markers stroke"};
	return AppendName(text, kNames, value.Find<std::int32_t>());
}

bool FormatTextDecoration(std::string& text, const WrittenValue& value)
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

} // namespace orvan::svg
