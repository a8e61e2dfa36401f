// SPDX-License-Identifier: MIT
/// What the document's `SVGDocumentSourceInterface` does with attributes as texts: those of elements, unknown ones
/// included, and values by themselves.
#include "css/declarations.h"
#include "elements/complete_classes.h"
#include "importer/xml/xml_guard.h"
#include "svg_document.h"
#include "svg_edit.h"
#include "writer/element_text.h"
#include "writer/guarded.h"
#include "writer/xml_text.h"

#include <string>

namespace orvan::svg
{

using complete::FindRule;
using complete::IsShorthand;
using complete::Rule;
using complete::Tag;
using complete::TagOf;
using Kind = SVGImportElementKind;
using Number = SVGImportAttribute;

namespace
{

/// An element with its record, if it has one.
struct Place
{
	ElementBase* element;
	const SourceElement* record;
	Tag tag;
	bool isForeign = false; ///< None of SVG's: nothing but its id is known.
};

Result<Place> FindPlace(const SVGElementRef& reference, const DocumentSource* source)
{
	ElementBase* const element = reference ? ElementOf(reference) : nullptr;
	if (element == nullptr)
		return NullReferenceError("There is no element of the document.");
	const SourceElement* record = nullptr;
	if (source != nullptr)
	{
		const std::uint32_t number = RecordFinder(*source).Find(*element);
		record = number != kNoRecord ? &source->elements[number] : nullptr;
	}
	const bool isForeign = record != nullptr && source->isComplete && ClassKindOf(*element) == Kind::unknown &&
						   source->IsForeign(static_cast<std::uint32_t>(record - source->elements.begin()));
	return Place{element, record, TagOfElement(*element, source, record), isForeign};
}

const SourceAttribute* FindAttribute(const DocumentSource* source, const SourceElement* record,
									 std::string_view name) noexcept
{
	for (std::uint32_t i = 0; record != nullptr && i < record->attributeCount; i++)
	{
		const SourceAttribute& attribute = source->attributes[record->firstAttribute + i];
		if (source->NameOf(attribute) == name)
			return &attribute;
	}
	return nullptr;
}

/// The rule that an attribute's name is about; null for names that only the source knows.
const Rule* RuleOfName(std::string_view name, const Place& place) noexcept
{
	const Rule* const rule = FindRule(name);
	if (rule == nullptr || rule->number == Number::style || (place.isForeign && rule->number != Number::id))
		return nullptr;
	return rule;
}

/// Whether a rule is about path data where an element has points, or the other way around: both stand in one place.
bool IsOtherOutline(const Rule& rule, const Place& place) noexcept
{
	return WrittenAs(rule.number) == Number::d && !rule.tags.Has(place.tag);
}

/// Gives an element what another one has under the numbers that a rule writes.
Result<void> TakeOver(ElementBase& element, const ElementBase& from, const Rule& rule)
{
	const SVGElementRef target = SVGElementRef::From(&element);
	switch (rule.number)
	{
	case Number::id:
		return target->SetId(from.GetId());
	case Number::transform:
		return target->SetLocalTransform(from.GetLocalTransform());
	case Number::d:
	case Number::points:
	{
		const auto path = Cast<SVGPathEditInterface>(target);
		if (!path)
			return {};
		return path->SetPath(ORVAN_TRY(static_cast<const PathElement&>(from).GetPath()));
	}
	case Number::href:
		if (const auto use = Cast<SVGUseElementInterface>(target))
			return use->SetLink(static_cast<const UseElement&>(from).GetLink());
		break;
	default:
		break;
	}
	const auto concerns = [&](const DataDictionary::Entry& entry)
	{
		return IsShorthand(rule) || WrittenAs(static_cast<Number>(entry.key)) == WrittenAs(rule.number);
	};
	const DataDictionary before = element.Attributes();
	for (const DataDictionary::Entry& entry : before)
	{
		if (concerns(entry) && !IsShorthand(rule) && !from.Attributes().Has(entry.key))
			ORVAN_TRY(Cast<SVGElementEditInterface>(target)->RemoveAttribute(static_cast<Number>(entry.key)));
	}
	for (const DataDictionary::Entry& entry : from.Attributes())
	{
		if (concerns(entry))
			ORVAN_TRY(
				target->SetAttribute(static_cast<Number>(entry.key), ORVAN_TRY(from.Attributes().GetData(entry.key))));
	}
	return {};
}

/// Takes away what a rule writes.
Result<void> Clear(ElementBase& element, const Rule& rule)
{
	const auto edit = Cast<SVGElementEditInterface>(SVGElementRef::From(&element));
	const bool isAside = rule.number == Number::id || rule.number == Number::transform ||
						 WrittenAs(rule.number) == Number::d ||
						 (rule.number == Number::href && ClassKindOf(element) == Kind::use);
	if (isAside)
		return edit->RemoveAttribute(rule.number);
	const DataDictionary before = element.Attributes();
	for (const DataDictionary::Entry& entry : before)
	{
		if (WrittenAs(static_cast<Number>(entry.key)) == WrittenAs(rule.number))
			ORVAN_TRY(edit->RemoveAttribute(static_cast<Number>(entry.key)));
	}
	return {};
}

Result<std::string> DecodedValue(const DocumentSource& source, const SourceAttribute& attribute)
{
	const std::string_view raw = source.RawValueOf(attribute);
	std::string value(raw.size(), '\0');
	value.resize(static_cast<std::size_t>(DecodeReferences(raw, value.data()) - value.data()));
	return value;
}

} // namespace

// Of elements ------------------------------------------------------------------------------------------------------

Result<String> Document::GetTag(const SVGElementRef& element) const noexcept
{
	return Guarded(
		[&]() -> Result<String>
		{
			const Place place = ORVAN_TRY(FindPlace(element, _source.get()));
			return String::Create(place.record != nullptr ? _source->NameOf(*place.record)
														  : complete::TagName(place.tag));
		});
}

Result<BaseArray<String>> Document::GetAttributeNames(const SVGElementRef& element) const noexcept
{
	return Guarded(
		[&]() -> Result<BaseArray<String>>
		{
			const Place place = ORVAN_TRY(FindPlace(element, _source.get()));
			BaseArray<String> names;
			for (std::uint32_t i = 0; place.record != nullptr && i < place.record->attributeCount; i++)
			{
				const SourceAttribute& attribute = _source->attributes[place.record->firstAttribute + i];
				ORVAN_TRY(names.Append(ORVAN_TRY(String::Create(_source->NameOf(attribute)))));
			}
			return names;
		});
}

Result<String> Document::GetRawAttribute(const SVGElementRef& element, const String& name) const noexcept
{
	return Guarded(
		[&]() -> Result<String>
		{
			const Place place = ORVAN_TRY(FindPlace(element, _source.get()));
			const SourceAttribute* const attribute = FindAttribute(_source.get(), place.record, name.View());
			if (attribute == nullptr)
				return NotFoundError("The source has no attribute '@' there.", name);
			return String::Create(_source->RawValueOf(*attribute));
		});
}

SourceOverride* Document::FindOverride(const SVGElementRef& element, std::string_view name) noexcept
{
	for (SourceOverride& entry : _source->overrides)
	{
		if (entry.element == element && entry.name.View() == name)
			return &entry;
	}
	return nullptr;
}

Result<String> Document::GetAttributeText(const SVGElementRef& element, const String& name) const noexcept
{
	return Guarded(
		[&]() -> Result<String>
		{
			const Place place = ORVAN_TRY(FindPlace(element, _source.get()));
			if (const Rule* const known = RuleOfName(name.View(), place))
			{
				const Rule* const rule =
					WrittenAs(known->number) == Number::d ? known : FindWritingRule(WrittenAs(known->number));
				std::string text;
				if (rule == nullptr || IsShorthand(*known))
					return NotFoundError("'@' has no value of its own.", name);
				if (IsOtherOutline(*known, place))
					return NotFoundError("The element says nothing about '@'.", name);
				switch (FormatAttribute(text, *place.element, *rule, place.tag, {}))
				{
				case Formatted::text:
					return String::Create(text);
				case Formatted::absent:
					return NotFoundError("The element says nothing about '@'.", name);
				case Formatted::impossible:
					break;
				}
				return IllegalArgumentError("The value of '@' has no text.", name);
			}
			if (_source)
			{
				for (const SourceOverride& entry : _source->overrides)
				{
					if (entry.element == element && entry.name == name && !entry.isRemoved)
						return entry.text;
					if (entry.element == element && entry.name == name)
						return NotFoundError("The element says nothing about '@'.", name);
				}
				if (const SourceAttribute* attribute = FindAttribute(_source.get(), place.record, name.View()))
					return String::Create(ORVAN_TRY(DecodedValue(*_source, *attribute)));
			}
			return NotFoundError("The element says nothing about '@'.", name);
		});
}

Result<void> Document::SetAttributeText(const SVGElementRef& element, const String& name, const String& text) noexcept
{
	return Guarded(
		[&]() -> Result<void>
		{
			const Place place = ORVAN_TRY(FindPlace(element, _source.get()));
			if (name == "style" && !place.isForeign)
			{
				// Each property by itself.
				css::Arena arena;
				std::pmr::vector<css::Declaration> declarations;
				css::ReadDeclarations(text.View(), {.arena = arena}, declarations);
				for (const css::Declaration& declaration : declarations)
				{
					ORVAN_TRY(SetAttributeText(element, ORVAN_TRY(String::Create(declaration.name)),
											   ORVAN_TRY(String::Create(declaration.value))));
				}
				return {};
			}
			const Rule* const rule = RuleOfName(name.View(), place);
			if (rule != nullptr)
			{
				if (!rule->tags.Has(place.tag))
					return IllegalArgumentError("'@' does not count on '@'.", name, complete::TagName(place.tag));
				const bool isDeclaration = rule->role == complete::Role::declaration;
				const SVGElementRef read =
					ORVAN_TRY(ReadIntoNew(*rule, place.tag, text.View(),
										  isDeclaration ? grammar::Source::style : grammar::Source::attribute));
				if (!read)
					return IllegalArgumentError("'@' is no value of '@'.", text, name);
				ORVAN_TRY(TakeOver(*place.element, *ElementOf(read), *rule));
			}
			else if (!_source)
				return IllegalArgumentError("Without a source there is no place for an attribute '@'.", name);
			else if (!IsXmlName(name.View()))
				return IllegalArgumentError("'@' is no name of an attribute.", name);
			if (!_source)
				return {};
			if (rule == nullptr)
			{
				std::string ignored; // XML must have a way to write it.
				AppendAttributeValue(ignored, text.View(), '"');
			}
			if (SourceOverride* known = FindOverride(element, name.View()))
			{
				known->text = text;
				known->isRemoved = false;
				return {};
			}
			return _source->overrides.Append({element, name, text});
		});
}

Result<void> Document::RemoveAttributeText(const SVGElementRef& element, const String& name) noexcept
{
	return Guarded(
		[&]() -> Result<void>
		{
			const Place place = ORVAN_TRY(FindPlace(element, _source.get()));
			const Rule* const rule = RuleOfName(name.View(), place);
			if (rule != nullptr)
				return IsOtherOutline(*rule, place) ? Result<void>() : Clear(*place.element, *rule);
			if (!_source)
				return {};
			if (SourceOverride* known = FindOverride(element, name.View()))
			{
				known->isRemoved = true;
				return {};
			}
			return _source->overrides.Append({element, name, {}, true});
		});
}

// Values -------------------------------------------------------------------------------------------------------------

Result<String> Document::FormatValue(Kind kind, Number attribute, const Data& value) const noexcept
{
	return Guarded(
		[&]() -> Result<String>
		{
			std::string text;
			bool isWritten = false;
			const Tag tag = TagOf(kind);
			if (attribute == Number::id)
			{
				const auto* id = value.Get<String>();
				isWritten = id != nullptr;
				text = isWritten ? id->View() : std::string_view();
			}
			else if (attribute == Number::transform)
			{
				const auto* matrix = value.Get<Matrix2d>();
				isWritten = matrix != nullptr && AppendMatrix(text, *matrix, {});
			}
			else if (attribute == Number::d || attribute == Number::points)
			{
				const auto* path = value.Get<BaseArray<SVGPathCommand>>();
				const bool isClosed =
					path != nullptr && !path->IsEmpty() && path->end()[-1].type == SVGPathCommandType::close;
				isWritten = path != nullptr && (attribute == Number::d ? AppendPath(text, *path, {})
																	   : AppendPoints(text, *path, isClosed, {}));
			}
			else if (attribute == Number::href || attribute == Number::link)
			{
				const auto* link = value.Get<String>();
				isWritten = link != nullptr;
				if (isWritten)
					AppendLink(text, link->View(), tag, false);
			}
			else if (const Rule* rule = FindWritingRule(WrittenAs(attribute)))
			{
				DataDictionary values;
				ORVAN_TRY(values.SetData(static_cast<std::int32_t>(attribute), value));
				isWritten = FormatEntry(text, values, *rule, tag, {}) == Formatted::text;
			}
			if (!isWritten)
				return IllegalArgumentError("The value has no text as attribute number @.",
											static_cast<std::int32_t>(attribute));
			return String::Create(text);
		});
}

Result<BaseArray<SVGEnumerator>> Document::GetEnumerators(Kind kind, Number attribute) const noexcept
{
	constexpr std::int32_t kMost = 64; // No enumeration has as many.
	BaseArray<SVGEnumerator> enumerators;
	for (std::int32_t number = 0; number < kMost; number++)
	{
		Result<String> name = FormatValue(kind, attribute, ORVAN_TRY(Data::Create(number)));
		if (name.IsOk())
			ORVAN_TRY(enumerators.Append({number, std::move(name).GetValue()}));
		else if (name.GetError().GetClass() != ErrorClass::illegalArgument)
			return name.GetError();
	}
	return enumerators;
}

Result<String> Document::GetKindName(Kind kind) const noexcept
{
	const bool isKind = kind > Kind::unknown && kind <= Kind::textRun;
	const std::string_view name = isKind ? complete::TagName(TagOf(kind)) : std::string_view();
	if (name.empty())
		return IllegalArgumentError("Elements of kind @ have no tag.", static_cast<std::int32_t>(kind));
	return String::Create(name);
}

Result<Kind> Document::FindKind(const String& tag) const noexcept
{
	const Tag found = complete::FindTag(tag.View());
	if (found == Tag::unknown)
		return NotFoundError("There is no tag '@'.", tag);
	return complete::KindOf(found);
}

Result<Data> Document::ParseValue(Kind kind, Number attribute, const String& text) const noexcept
{
	return Guarded(
		[&]() -> Result<Data>
		{
			Tag tag = TagOf(kind);
			if (attribute == Number::points)
				tag = Tag::polygon;
			else if (attribute == Number::rx || attribute == Number::ry)
				tag = kind == Kind::circle ? Tag::ellipse : tag;
			const Rule* const rule = FindWritingRule(attribute == Number::points ? attribute : WrittenAs(attribute));
			if (rule == nullptr || !rule->tags.Has(tag))
				return IllegalArgumentError("Attribute number @ does not count there.",
											static_cast<std::int32_t>(attribute));
			const bool isDeclaration = rule->role == complete::Role::declaration;
			const SVGElementRef read = ORVAN_TRY(ReadIntoNew(
				*rule, tag, text.View(), isDeclaration ? grammar::Source::style : grammar::Source::attribute));
			if (!read)
				return IllegalArgumentError("'@' is no value of '@'.", text, rule->name);
			const ElementBase& element = *ElementOf(read);
			switch (attribute)
			{
			case Number::id:
				return Data::Create(element.GetId());
			case Number::transform:
				return Data::Create(element.GetLocalTransform());
			case Number::d:
			case Number::points:
				return Data::Create(ORVAN_TRY(static_cast<const PathElement&>(element).GetPath()));
			case Number::href:
				if (kind == Kind::use)
					return Data::Create(static_cast<const UseElement&>(element).GetLink());
				attribute = Number::link;
				break;
			default:
				break;
			}
			if (!element.HasAttribute(attribute))
				return Data();
			return element.Attributes().GetData(static_cast<std::int32_t>(attribute));
		});
}

} // namespace orvan::svg
