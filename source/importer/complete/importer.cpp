// SPDX-License-Identifier: MIT
#include "importer/complete/importer.h"

#include "elements/element_classes.h"
#include "grammar.h"

#include <algorithm>

namespace orvan::svg::complete
{

using grammar::Source;
using grammar::complete::CssWideKeyword;

namespace
{

/// Most values can be told from "inherit", "initial", "unset" and "revert" by their first character.
bool MayBeWide(std::string_view text) noexcept
{
	for (const char character : text)
	{
		switch (character)
		{
		case ' ':
		case '\t':
		case '\r':
		case '\n':
		case '\f':
			continue;
		case 'i':
		case 'I':
		case 'u':
		case 'U':
		case 'r':
		case 'R':
		case '/':
			return true;
		default:
			return false;
		}
	}
	return false;
}

/// Takes the parent's value of a property that is not inherited by itself.
Result<void> TakeFromParent(ElementBase& element, SVGImportAttribute number) noexcept
{
	const ElementBase* const parent = AsElement(element.Parent());
	if (parent == nullptr || !parent->HasAttribute(number))
		return element.Unset(number);
	const Data value = ORVAN_TRY(parent->Attributes().GetData(static_cast<std::int32_t>(number)));
	return element.SetAttribute(number, value);
}

} // namespace

Result<Reading> Importer::ReadWide(const Application& application, CssWideKeyword keyword)
{
	const Rule& rule = application.rule;
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
		ORVAN_TRY(element.Unset(rule.number));
	if (rule.number == SVGImportAttribute::fontWeight)
		ORVAN_TRY(element.Unset(SVGImportAttribute::fontWeightNumber));
	return Reading::applied;
}

Result<Reading> Importer::Read(const Application& application)
{
	if (!application.rule.tags.Has(application.tag))
		return Reading::applied;
	if (IsProperty(application.rule) && MayBeWide(application.text))
	{
		const CssWideKeyword keyword = grammar::complete::ParseCssWide(application.text);
		if (keyword != CssWideKeyword::none)
			return ReadWide(application, keyword);
	}
	faultOffset = 0;
	return application.rule.read(application);
}

/// The place of a fault within a value, where the value stands in the text as it was read.
ValuePlace Importer::PlaceOfFault(const ValuePlace& place, std::string_view text) const noexcept
{
	return place.where == text.data() ? ValuePlace{place.where + std::min(faultOffset, text.size()), place.elementTag}
									  : place;
}

Result<void> Importer::Apply(const Rule& rule, ElementBase& element, Tag tag, std::string_view text, Source source,
							 const ValuePlace& place)
{
	const Reading reading = ORVAN_TRY(Read({*this, element, tag, rule, text, source}));
	if (reading == Reading::applied) [[likely]]
		return {};
	if (reading == Reading::refused && !_options.isTolerant)
	{
		refusedAt = place;
		refusedElementId = element.GetId();
		refusedAttribute = rule.name;
		grammar::RaiseInvalidValue(rule.name.data(), text);
	}
	return Warn(&element, PlaceOfFault(place, text), rule.name,
				ORVAN_TRY(DescribeRefusedValue(rule.name, text)).View());
}

Result<bool> Importer::ApplyDeclaration(const Rule& rule, ElementBase& element, Tag tag, std::string_view text,
										Source source, const ValuePlace& place)
{
	const Reading reading = ORVAN_TRY(Read({*this, element, tag, rule, text, source}));
	if (reading == Reading::applied) [[likely]]
		return false;
	ORVAN_TRY(
		Warn(&element, PlaceOfFault(place, text), rule.name, ORVAN_TRY(DescribeRefusedValue(rule.name, text)).View()));
	return true;
}

Result<void> Importer::Warn(const ElementBase* element, const ValuePlace& place, std::string_view attribute,
							std::string_view message) noexcept
{
	return _findings.Add(SVGFindingLevel::warning,
						 {place.where, place.elementTag, element != nullptr ? element->GetId() : String(), attribute},
						 message);
}

Result<void> Importer::RegisterId(ElementBase& element, String id) noexcept
{
	ORVAN_TRY(_elementsById.Insert(std::move(id), SVGElementRef::From(&element)));
	return {};
}

} // namespace orvan::svg::complete
