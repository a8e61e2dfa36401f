// SPDX-License-Identifier: MIT
/// Readers of fonts and of what belongs to text.
#include "importer/complete/importer.h"
#include "importer/complete/value_readers.h"
#include "importer/grammar_values.h"

#include <string>

namespace orvan::svg::complete
{

using grammar::Parsed;
using Number = SVGImportAttribute;

namespace
{

Result<void> StoreSize(ElementBase& element, const grammar::complete::FontSize& size) noexcept
{
	// The step that browsers take from the parent's size.
	constexpr Float kStep = 1.2;
	SVGLength length{size.size.value, size.size.unit};
	if (size.kind == grammar::complete::FontSizeKind::larger)
		length = {kStep, SVGLengthUnit::em};
	else if (size.kind == grammar::complete::FontSizeKind::smaller)
		length = {1.0 / kStep, SVGLengthUnit::em};
	return element.Store(Number::fontSize, length);
}

/// Bold or not stands where it always did; the exact number beside it.
Result<void> StoreWeight(ElementBase& element, const grammar::complete::FontWeight& weight) noexcept
{
	using grammar::complete::FontWeightKind;
	constexpr Float kLighter = -1.0;
	constexpr Float kBolder = -2.0;
	constexpr Float kBold = 600.0;
	const bool isBold =
		weight.kind == FontWeightKind::bolder || (weight.kind == FontWeightKind::weight && weight.weight >= kBold);
	ORVAN_TRY(element.Store(Number::fontWeight,
							static_cast<std::int32_t>(isBold ? SVGFontWeight::bold : SVGFontWeight::normal)));
	return element.Store(Number::fontWeightNumber, weight.kind == FontWeightKind::weight   ? weight.weight
												   : weight.kind == FontWeightKind::bolder ? kBolder
																						   : kLighter);
}

Result<void> StoreFamily(ElementBase& element, const grammar::complete::FontFamily& family)
{
	return element.Store(Number::fontFamily,
						 ORVAN_TRY(family.hasComments ? String::Create(grammar::complete::RemoveComments(family.list))
													  : String::Create(family.list)));
}

Result<void> StoreStyle(ElementBase& element, grammar::complete::FontStyle style) noexcept
{
	return element.Store(Number::fontStyle, static_cast<std::int32_t>(style));
}

} // namespace

Result<Reading> ReadFontSize(const Application& application)
{
	grammar::complete::FontSize size;
	if (grammar::complete::ParseFontSize(application.text, application.source, size) != Parsed::value)
		return Reading::refused;
	ORVAN_TRY(StoreSize(application.element, size));
	return Reading::applied;
}

Result<Reading> ReadFontFamily(const Application& application)
{
	grammar::complete::FontFamily family;
	if (grammar::complete::ParseFontFamily(application.text, family) != Parsed::value)
		return Reading::refused;
	ORVAN_TRY(StoreFamily(application.element, family));
	return Reading::applied;
}

Result<Reading> ReadFontStyle(const Application& application)
{
	grammar::complete::FontStyle style{};
	if (grammar::complete::ParseFontStyle(application.text, style) != Parsed::value)
		return Reading::refused;
	ORVAN_TRY(StoreStyle(application.element, style));
	return Reading::applied;
}

Result<Reading> ReadFontWeight(const Application& application)
{
	grammar::complete::FontWeight weight;
	if (grammar::complete::ParseFontWeight(application.text, weight) != Parsed::value)
		return Reading::refused;
	ORVAN_TRY(StoreWeight(application.element, weight));
	return Reading::applied;
}

Result<Reading> ReadFontStretch(const Application& application)
{
	double stretch = 1.0;
	if (grammar::complete::ParseFontStretch(application.text, stretch) != Parsed::value)
		return Reading::refused;
	ORVAN_TRY(application.element.Store(Number::fontStretch, stretch));
	return Reading::applied;
}

Result<Reading> ReadFont(const Application& application)
{
	grammar::complete::Font font;
	switch (grammar::complete::ParseFont(application.text, application.source, font))
	{
	case Parsed::refused:
		return Reading::refused;
	case Parsed::nothing: // A font of the system's.
		return Reading::applied;
	case Parsed::value:
		break;
	}
	ElementBase& element = application.element;
	ORVAN_TRY(StoreStyle(element, font.style));
	ORVAN_TRY(element.Store(Number::fontVariant, static_cast<std::int32_t>(font.isSmallCaps ? SVGFontVariant::smallCaps
																							: SVGFontVariant::normal)));
	ORVAN_TRY(StoreWeight(element, font.weight));
	ORVAN_TRY(element.Store(Number::fontStretch, font.stretch));
	ORVAN_TRY(StoreSize(element, font.size));
	ORVAN_TRY(StoreFamily(element, font.family));
	return Reading::applied;
}

Result<Reading> ReadTextDecoration(const Application& application)
{
	grammar::complete::TextDecoration decoration;
	if (grammar::complete::ParseTextDecoration(application.text, application.source, decoration) != Parsed::value)
		return Reading::refused;
	constexpr std::uint32_t kLines =
		grammar::complete::kUnderline | grammar::complete::kOverline | grammar::complete::kLineThrough;
	ElementBase& element = application.element;
	ORVAN_TRY(element.Store(Number::textDecoration, static_cast<std::int32_t>(decoration.lines & kLines)));
	if (application.rule.name != kSVGAttributeNames[static_cast<std::size_t>(Number::textDecoration)])
		return Reading::applied;
	// The shorthand says all that there is to say.
	if (decoration.style == grammar::complete::TextDecorationStyle::solid)
		ORVAN_TRY(element.Unset(Number::textDecorationStyle));
	else
		ORVAN_TRY(element.Store(Number::textDecorationStyle, static_cast<std::int32_t>(decoration.style)));
	if (decoration.hasThickness)
		ORVAN_TRY(element.Store(Number::textDecorationThickness, ToLength(decoration.thickness)));
	else
		ORVAN_TRY(element.Unset(Number::textDecorationThickness));
	return Reading::applied;
}

Result<Reading> ReadThickness(const Application& application)
{
	constexpr grammar::complete::Keyword kOfTheFont[] = {{"auto", 0}, {"from-font", 0}};
	std::int32_t keyword = 0;
	grammar::Length length;
	if (grammar::complete::ParseKeyword(application.text, kOfTheFont, keyword) == Parsed::value)
		ORVAN_TRY(application.element.Unset(application.rule.number));
	else if (grammar::complete::ParseLength(application.text, application.source, grammar::complete::Range::any,
											length) == Parsed::value)
		ORVAN_TRY(application.element.Store(application.rule.number, ToLength(length)));
	else
		return Reading::refused;
	return Reading::applied;
}

Result<Reading> ReadFontSizeAdjust(const Application& application)
{
	constexpr grammar::complete::Keyword kNone[] = {{"none", 0}};
	constexpr std::string_view kBasis = "ex-height ";
	std::int32_t keyword = 0;
	Float adjustment = -1.0;
	std::string_view text = application.text;
	if (text.starts_with(kBasis))
		text.remove_prefix(kBasis.size());
	if (grammar::complete::ParseKeyword(application.text, kNone, keyword) != Parsed::value &&
		grammar::complete::ParseNumber(text, application.source, grammar::complete::Range::notNegative, adjustment) !=
			Parsed::value)
		return Reading::refused;
	ORVAN_TRY(application.element.Store(application.rule.number, adjustment));
	return Reading::applied;
}

} // namespace orvan::svg::complete
