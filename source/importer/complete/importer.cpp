// SPDX-License-Identifier: MIT
#include "importer/complete/importer.h"

#include "complete/calculations.h"
#include "elements/element_classes.h"
#include "grammar.h"
#include "importer/complete/value_readers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <span>
#include <string>

namespace orvan::svg::complete
{

using grammar::Source;
using grammar::complete::CssWideKeyword;

namespace
{

/// Takes the parent's value of a property that is not inherited by itself.
Result<void> TakeFromParent(ElementBase& element, SVGImportAttribute number) noexcept
{
	const ElementBase* const parent = AsElement(element.Parent());
	if (const SVGImportAttribute companion = GetCompanionOf(number); companion != SVGImportAttribute::unknown)
		ORVAN_TRY(TakeFromParent(element, companion));
	if (parent == nullptr || !parent->HasAttribute(number))
		return element.Unset(number);
	const Data value = ORVAN_TRY(parent->Attributes().GetData(static_cast<std::int32_t>(number)));
	return element.SetAttribute(number, value);
}

std::string ToText(double number)
{
	std::array<char, 32> digits;
	return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr};
}

/// The size of an element's font in pixels, as far as its attributes and those around it say it.
double FontSizeOf(const ElementBase* element) noexcept
{
	constexpr double kMedium = 16;
	double factor = 1;
	for (; element != nullptr; element = AsElement(element->Parent()))
	{
		const auto* const size = element->Find<SVGLength>(SVGImportAttribute::fontSize);
		if (size == nullptr)
			continue;
		switch (size->unit)
		{
		case SVGLengthUnit::em:
		case SVGLengthUnit::percent:
			factor *= size->value;
			break;
		case SVGLengthUnit::ex:
			factor *= size->value / 2;
			break;
		case SVGLengthUnit::px:
		case SVGLengthUnit::number:
			return factor * size->value;
		default:
			return 0; // What other units come to is the renderer's to say.
		}
	}
	return factor * kMedium;
}

/// A value with what currentColor stands for in its place. False when it is not there.
bool ResolveCurrentColor(const Application& application, std::string& text)
{
	constexpr std::string_view kWord = "currentcolor";
	const auto isSame = [](char a, char b)
	{
		return (static_cast<unsigned char>(a) | 0x20) == static_cast<unsigned char>(b);
	};
	const bool isOfParent = application.rule.number == SVGImportAttribute::color;
	const ElementBase* element = &application.element;
	const SVGPaint* paint = nullptr;
	for (element = isOfParent ? AsElement(element->Parent()) : element; element != nullptr && paint == nullptr;
		 element = AsElement(element->Parent()))
		paint = element->Find<SVGPaint>(SVGImportAttribute::color);
	std::string color = "black";
	if (paint != nullptr)
	{
		color = "color(srgb";
		for (const Float channel : {paint->color.red, paint->color.green, paint->color.blue})
			color += " " + ToText(channel);
		color += " / " + ToText(paint->alpha) + ")";
	}
	std::string result;
	auto copied = text.begin();
	for (auto at = copied;; copied = at += static_cast<std::ptrdiff_t>(kWord.size()))
	{
		at = std::search(at, text.end(), kWord.begin(), kWord.end(), isSame);
		if (at == text.end())
			break;
		result.append(copied, at).append(color);
	}
	if (copied == text.begin())
		return false;
	text = result.append(copied, text.end());
	return true;
}

/// What relative lengths in a value are of.
grammar::complete::LengthUnits UnitsOf(const Application& application, const Vector2d& viewport) noexcept
{
	using Number = SVGImportAttribute;
	static constexpr Number kAcross[] = {Number::x, Number::width, Number::cx, Number::rx};
	static constexpr Number kDown[] = {Number::y, Number::height, Number::cy, Number::ry};
	const auto isOneOf = [&application](std::span<const Number> numbers)
	{
		return std::find(numbers.begin(), numbers.end(), application.rule.number) != numbers.end();
	};
	const ElementBase* const parent = AsElement(application.element.Parent());
	const ElementBase* root = &application.element;
	while (const ElementBase* const outer = AsElement(root->Parent()))
		root = outer;
	const bool isFontSize = application.rule.number == Number::fontSize;
	grammar::complete::LengthUnits units;
	units.fontSize = FontSizeOf(isFontSize ? parent : &application.element);
	units.rootFontSize = FontSizeOf(root);
	units.whole = isFontSize         ? units.fontSize
				  : isOneOf(kAcross) ? viewport.x
				  : isOneOf(kDown)   ? viewport.y
									 : std::sqrt((viewport.x * viewport.x + viewport.y * viewport.y) / 2);
	return units;
}

/// Whether a keyword says the initial value of "overflow" of an element that cuts off where nothing is said.
bool IsOverflowInitial(const ElementBase& element, Tag tag, CssWideKeyword keyword) noexcept
{
	using Kind = SVGImportElementKind;
	static constexpr TagSet kViewports{Kind::svg, Kind::symbol, Kind::marker, Kind::pattern, Kind::image};
	const ElementBase* const parent = AsElement(element.Parent());
	const bool inherits =
		keyword == CssWideKeyword::inherit && parent != nullptr && parent->HasAttribute(SVGImportAttribute::overflow);
	return kViewports.Has(tag) && !inherits;
}

} // namespace

Result<Reading> Importer::ReadCalculated(const Application& application)
{
	if (!IsProperty(application.rule) || !grammar::complete::MayHaveCalculations(application.text))
		return Reading::refused;
	std::string resolved(application.text);
	const bool isCalculated =
		grammar::complete::ResolveCalculations(application.text, UnitsOf(application, viewport), resolved);
	if (!ResolveCurrentColor(application, resolved) && !isCalculated)
		return Reading::refused;
	Application calculated = application;
	calculated.text = resolved;
	return Read(calculated);
}

Result<Reading> Importer::ReadWide(const Application& application, CssWideKeyword keyword)
{
	const Rule& rule = application.rule;
	if (const std::span<const SVGImportAttribute> longhands = LonghandsOf(rule); !longhands.empty())
	{
		for (const SVGImportAttribute number : longhands)
		{
			const Rule& longhand = *FindRule(kSVGAttributeNames[static_cast<std::size_t>(number)]);
			ORVAN_TRY(
				ReadWide({*this, application.element, application.tag, longhand, {}, application.source}, keyword));
		}
		return Reading::applied;
	}
	ElementBase& element = application.element;
	const bool isInherited = rule.role == Role::inherited;
	if (rule.number == SVGImportAttribute::display)
		isDissolved = false;
	if (keyword == CssWideKeyword::unset)
		keyword = isInherited ? CssWideKeyword::inherit : CssWideKeyword::initial;
	if (rule.number == SVGImportAttribute::overflow && IsOverflowInitial(element, application.tag, keyword))
		return rule.read({*this, element, application.tag, rule, "visible", Source::attribute});
	if (keyword == CssWideKeyword::initial && !rule.initial.empty())
		return rule.read({*this, element, application.tag, rule, rule.initial, Source::attribute});
	// Where nothing is said, an inherited property has the parent's value, and any other its initial one.
	if (rule.number == SVGImportAttribute::transform)
	{
		const ElementBase* const parent = AsElement(element.Parent());
		ORVAN_TRY(ResetTransform(application, keyword == CssWideKeyword::inherit ? parent : nullptr));
	}
	else if (rule.number == SVGImportAttribute::d)
	{
		if (application.tag == TagOf(SVGImportElementKind::path))
			ORVAN_TRY(static_cast<PathElement&>(element).Clear());
	}
	else if (keyword == CssWideKeyword::inherit && !isInherited)
		ORVAN_TRY(TakeFromParent(element, rule.number));
	else
	{
		ORVAN_TRY(element.Unset(rule.number));
		ORVAN_TRY(element.Unset(GetCompanionOf(rule.number)));
	}
	return Reading::applied;
}

Result<Reading> Importer::ReadPerhapsWide(const Application& application)
{
	const CssWideKeyword keyword =
		IsProperty(application.rule) ? grammar::complete::ParseCssWide(application.text) : CssWideKeyword::none;
	return keyword == CssWideKeyword::none ? application.rule.read(application) : ReadWide(application, keyword);
}

/// The place of a fault within a value, where the value stands in the text as it was read.
ValuePlace Importer::PlaceOfFault(const ValuePlace& place, std::string_view text) const noexcept
{
	return place.where == text.data() ? ValuePlace{place.where + std::min(faultOffset, text.size()), place.elementTag}
									  : place;
}

Result<void> Importer::Refuse(const Application& application, const ValuePlace& place, Reading reading)
{
	const std::string_view name = application.rule.name;
	if (reading == Reading::refused && !_options.isTolerant)
	{
		refusedAt = place;
		refusedElementId = application.element.GetId();
		refusedAttribute = name;
		grammar::RaiseInvalidValue(name.data(), application.text);
	}
	return WarnOfValue(application, place);
}

Result<void> Importer::WarnOfValue(const Application& application, const ValuePlace& place)
{
	const std::string_view name = application.rule.name;
	return Warn(&application.element, PlaceOfFault(place, application.text), name,
				ORVAN_TRY(DescribeRefusedValue(name, application.text)).View());
}

Result<void> Importer::Warn(const ElementBase* element, const ValuePlace& place, std::string_view attribute,
							std::string_view message) noexcept
{
	return _findings.Add(SVGFindingLevel::warning,
						 {place.where, place.elementTag, element != nullptr ? element->GetId() : String(), attribute},
						 message);
}

} // namespace orvan::svg::complete
