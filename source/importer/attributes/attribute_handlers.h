// SPDX-License-Identifier: MIT
/// The handlers of the attributes: what each does to the element at hand.
///
/// A handler reads the value's text, refuses it by an exception (`Value::Accept`), and hands what it read to the
/// element. Errors that it returns end the import.
#pragma once

#include "importer/attributes/attribute_value.h"

namespace orvan::svg
{

// Identity, links and structure.
Result<void> ImportId(const Value& value);
Result<void> ImportLink(const Value& value);
Result<void> ImportTransform(const Value& value);
Result<void> ImportStyle(const Value& value);

// Geometry.
Result<void> ImportPlainLength(const Value& value);
Result<void> ImportRadius(const Value& value);
Result<void> ImportPathData(const Value& value);
Result<void> ImportPoints(const Value& value);
Result<void> ImportViewBox(const Value& value);
Result<void> ImportPreserveAspectRatio(const Value& value);

// Presentation. Opacities and the miter limit are kept as written: they do not pass through the setters, which clamp.
Result<void> ImportNumber(const Value& value);
Result<void> ImportLength(const Value& value);
Result<void> ImportPaint(const Value& value);
Result<void> ImportReference(const Value& value);
Result<void> ImportDashArray(const Value& value);

// Gradients and stops; on other elements their values are checked and dropped.
Result<void> ImportOffset(const Value& value);
Result<void> ImportStopColor(const Value& value);
Result<void> ImportStopOpacity(const Value& value);

// Fonts, to the setters of a text element; other elements keep them for texts below to inherit.
Result<void> ImportFontSize(const Value& value);
Result<void> ImportFontFamily(const Value& value);
Result<void> ImportFontStyle(const Value& value);
Result<void> ImportFontWeight(const Value& value);

bool IsGradient(const SVGElementRef& element) noexcept;

// Handlers that differ only in the grammar.

/// The enumeration that a function of the grammar fills.
template <typename Keyword>
Keyword KeywordOf(grammar::Parsed (*parse)(std::string_view, Keyword&));

/// An attribute whose value is one of some keywords, which `parse` knows.
template <auto parse>
Result<void> ImportKeyword(const Value& value)
{
	decltype(KeywordOf(parse)) keyword{};
	if (!value.Accept(parse(value.text, keyword)))
		return {};
	return value.Store(static_cast<std::int32_t>(keyword));
}

template <auto parse>
Result<void> ImportGradientKeyword(const Value& value)
{
	decltype(KeywordOf(parse)) keyword{};
	if (!value.Accept(parse(value.text, keyword)) || !IsGradient(value.Element()))
		return {};
	return value.Store(static_cast<std::int32_t>(keyword));
}

} // namespace orvan::svg
