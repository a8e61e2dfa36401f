// SPDX-License-Identifier: MIT
#include "importer/complete/importer.h"

#include "elements/element_classes.h"
#include "grammar.h"

#include <algorithm>
#include <span>

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

} // namespace

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
	if (keyword == CssWideKeyword::unset)
		keyword = isInherited ? CssWideKeyword::inherit : CssWideKeyword::initial;
	if (keyword == CssWideKeyword::initial && !rule.initial.empty())
		return rule.read({*this, element, application.tag, rule, rule.initial, Source::attribute});
	// Where nothing is said, an inherited property has the parent's value, and any other its initial one.
	if (rule.number == SVGImportAttribute::transform)
		ORVAN_TRY(element.SetLocalTransform(Matrix2d()));
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
