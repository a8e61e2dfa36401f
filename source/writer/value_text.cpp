// SPDX-License-Identifier: MIT
#include "writer/value_text.h"

#include "css/text.h"
#include "importer/complete/value_readers.h"
#include "writer/value_formatters.h"

#include <array>
#include <cmath>
#include <iterator>
#include <string_view>

namespace orvan::svg
{

using complete::Reader;
using complete::Rule;
using complete::Tag;
using Kind = SVGImportElementKind;
using Number = SVGImportAttribute;

namespace
{

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
	{&complete::ReadMask, &FormatMask},
	{&complete::ReadClipPath, &FormatClipPath},
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
	{&complete::ReadTextPathData, &FormatTextPathData},
	{&complete::ReadTransformOrigin, &FormatTransformOrigin},
	{&complete::ReadViewBox, &FormatViewBox},
	{&complete::ReadAspectRatio, &FormatAspectRatio},
	{&complete::ReadPaint, &FormatPaint},
	{&complete::ReadColor, &FormatPaint},
	{&complete::ReadBackground, &FormatPaint},
	{&complete::ReadStopColor, &FormatPaint},
	{&complete::ReadPaintOrder, &FormatPaintOrder},
	{&complete::ReadFilter, &FormatFilter},
	{&complete::ReadFontSize, &FormatLength},
	{&complete::ReadFontFamily, &FormatText},
	{&complete::ReadFontStyle, &FormatFontStyle},
	{&complete::ReadFontWeight, &FormatFontWeight},
	{&complete::ReadFontStretch, &FormatFontStretch},
	{&complete::ReadFontSizeAdjust, &FormatFontSizeAdjust},
	{&complete::ReadTextDecoration, &FormatTextDecoration},
	{&complete::ReadThickness, &FormatLength},
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
	case Number::link:
		return Number::href;
	case Number::points:
		return Number::d;
	default:
		return GetAttributeOf(key);
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
	if (!has(rule.number) && !has(GetCompanionOf(rule.number)))
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
	// Those of images and anchors are rarely ids; those of filter primitives mostly are.
	static constexpr complete::TagSet kLeadingOut{Kind::image, Kind::anchor};
	const bool mayLeadOut = !link.empty() && link[0] != '#' && static_cast<unsigned char>(link[0]) > ' ';
	const bool isIri = link.empty() || LooksLikeIri(link) || (mayLeadOut && kLeadingOut.Has(tag));
	if (isId || !isIri)
		text += '#';
	text += link;
}

bool MayMention(std::string_view text, std::string_view keyword) noexcept
{
	const char first = keyword.front();
	const char starts[] = {first, static_cast<char>(first - 'a' + 'A'), '\\'};
	for (std::size_t at = 0; (at = text.find_first_of({starts, sizeof starts}, at)) != text.npos; at++)
	{
		if (text[at] == '\\' || css::EqualsIgnoringCase(text.substr(at, keyword.size()), keyword))
			return true;
	}
	return false;
}

} // namespace orvan::svg
