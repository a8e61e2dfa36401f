// SPDX-License-Identifier: MIT
/// The formatters: one for each form of value, as the importer's readers are. Which attribute has which form is said in
/// `attribute_rules.cpp`, which reader goes with which formatter in `value_text.cpp`.
#pragma once

#include "writer/value_text.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace orvan::svg
{

/// What a formatter works on.
struct WrittenValue
{
	const DataDictionary& values;
	const complete::Rule& rule;
	complete::Tag tag;
	const ValueStyle& style;

	template <typename T>
	const T* Find() const noexcept
	{
		return Find<T>(rule.number);
	}

	template <typename T>
	const T* Find(SVGImportAttribute number) const noexcept
	{
		return values.Find<T>(static_cast<std::int32_t>(number));
	}
};

/// Appends a value that is there; false when it has no text.
using Formatter = bool (*)(std::string& text, const WrittenValue& value);

// Texts and keywords.
bool FormatText(std::string& text, const WrittenValue& value);
bool FormatReference(std::string& text, const WrittenValue& value);
bool FormatMask(std::string& text, const WrittenValue& value);
bool FormatKeyword(std::string& text, const WrittenValue& value);
bool FormatDisplay(std::string& text, const WrittenValue& value);
bool FormatFontStyle(std::string& text, const WrittenValue& value);
bool FormatType(std::string& text, const WrittenValue& value);
bool FormatOperator(std::string& text, const WrittenValue& value);
bool FormatPaintOrder(std::string& text, const WrittenValue& value);
bool FormatTextDecoration(std::string& text, const WrittenValue& value);

// Numbers, lengths and geometry.
bool FormatNumber(std::string& text, const WrittenValue& value);
bool FormatLength(std::string& text, const WrittenValue& value);
bool FormatNumbers(std::string& text, const WrittenValue& value);
bool FormatNumberPair(std::string& text, const WrittenValue& value);
bool FormatDashArray(std::string& text, const WrittenValue& value);
bool FormatX(std::string& text, const WrittenValue& value);
bool FormatY(std::string& text, const WrittenValue& value);
bool FormatShift(std::string& text, const WrittenValue& value);
bool FormatOrient(std::string& text, const WrittenValue& value);
bool FormatBaselineShift(std::string& text, const WrittenValue& value);
bool FormatFontWeight(std::string& text, const WrittenValue& value);
bool FormatFontStretch(std::string& text, const WrittenValue& value);
bool FormatFontSizeAdjust(std::string& text, const WrittenValue& value);
bool FormatMatrix(std::string& text, const WrittenValue& value);
bool FormatTransformOrigin(std::string& text, const WrittenValue& value);
bool FormatViewBox(std::string& text, const WrittenValue& value);
bool FormatAspectRatio(std::string& text, const WrittenValue& value);

bool FormatTextPathData(std::string& text, const WrittenValue& value);

// Paint and effects.
bool FormatClipPath(std::string& text, const WrittenValue& value);
bool FormatPaint(std::string& text, const WrittenValue& value);
bool FormatFilter(std::string& text, const WrittenValue& value);

/// Appends one of the names that stand for 0, 1, 2 …; false for a number that has none.
bool AppendName(std::string& text, std::span<const std::string_view> names, const std::int32_t* number);

/// What stands in the tree does not tell an id from a whole IRI; this is how they look. What begins with "#" or a blank
/// can only be an id.
bool LooksLikeIri(std::string_view reference) noexcept;

/// Appends a reference in "url()". The id is quoted where it has characters that would end it.
void AppendReference(std::string& text, std::string_view reference);

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

} // namespace orvan::svg
