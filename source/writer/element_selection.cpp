// SPDX-License-Identifier: MIT
#include "writer/element_selection.h"

#include "css/matcher.h"
#include "css/selector_list.h"
#include "importer/xml/xml_guard.h"
#include "writer/element_text.h"
#include "writer/guarded.h"
#include "writer/xml_text.h"

#include <optional>
#include <string>

namespace orvan::svg
{
namespace
{

using complete::Rule;
using complete::Tag;
using Kind = SVGImportElementKind;

const ElementBase& ElementAt(css::Element element) noexcept
{
	return *static_cast<const ElementBase*>(element);
}

/// An object as an element that selectors see; null for others and for runs of characters.
const ElementBase* AsVisible(HierarchyObject* object) noexcept
{
	const ElementBase* const element = AsElement(object);
	return element != nullptr && ClassKindOf(*element) != Kind::textRun ? element : nullptr;
}

/// How selectors see the tree. Attributes are those of the text, as long as they say what the tree says.
class TreeView final : public css::ElementView
{
public:
	TreeView(const ElementBase& root, const DocumentSource* source) : _root(root), _source(source)
	{
		if (source != nullptr)
			_finder.emplace(*source);
	}

	css::ElementNames GetNames(css::Element element) const override
	{
		const ElementBase& at = ElementAt(element);
		css::ElementNames names{{}, at.GetId().View(), {}}; // The element keeps its id.
		const SourceElement* const record = FindRecord(at);
		names.type = record != nullptr ? WithoutPrefix(_source->NameOf(*record))
									   : complete::TagName(TagOfElement(at, _source, nullptr));
		if (const auto* classes = at.Find<String>(SVGImportAttribute::classList))
			names.classes = classes->View();
		else if (record != nullptr && !_source->isComplete)
		{
			if (const SourceAttribute* attribute = FindAttribute(*record, "class"))
				names.classes = _source->RawValueOf(*attribute);
		}
		return names;
	}

	bool GetAttribute(css::Element element, std::string_view name, std::string_view& value) const override
	{
		const ElementBase& at = ElementAt(element);
		const SourceElement* const record = FindRecord(at);
		const Rule* const known = complete::FindRule(name);
		const Rule* const rule = known != nullptr ? FindWritingRule(WrittenAs(known->number)) : nullptr;
		_value.clear();
		if (FindOverride(at, name, rule, value))
			return true;
		if (record != nullptr && (rule == nullptr || IsAsLoaded(at, *record, *rule)))
		{
			const SourceAttribute* const attribute = FindAttribute(*record, name);
			if (attribute == nullptr)
				return false;
			const std::string_view raw = _source->RawValueOf(*attribute);
			_value.resize(raw.size());
			_value.resize(static_cast<std::size_t>(DecodeReferences(raw, _value.data()) - _value.data()));
		}
		else if (rule == nullptr ||
				 FormatAttribute(_value, at, *rule, TagOfElement(at, _source, record), {}) != Formatted::text)
			return false;
		value = _value;
		return true;
	}

	css::Element GetParent(css::Element element) const override
	{
		return element == &_root ? nullptr : AsVisible(ElementAt(element).Parent());
	}

	css::Element GetPrevious(css::Element element) const override
	{
		if (element == &_root)
			return nullptr;
		HierarchyObject* at = ElementAt(element).PreviousSibling();
		while (at != nullptr && AsVisible(at) == nullptr)
			at = at->PreviousSibling();
		return AsVisible(at);
	}

	css::Element GetNext(css::Element element) const override
	{
		if (element == &_root)
			return nullptr;
		HierarchyObject* at = ElementAt(element).NextSibling();
		while (at != nullptr && AsVisible(at) == nullptr)
			at = at->NextSibling();
		return AsVisible(at);
	}

	css::Element GetFirstChild(css::Element element) const override
	{
		HierarchyObject* at = ElementAt(element).FirstChild();
		while (at != nullptr && AsVisible(at) == nullptr)
			at = at->NextSibling();
		return at != nullptr ? AsVisible(at) : nullptr;
	}

	bool IsEmpty(css::Element element) const override
	{
		const ElementBase& at = ElementAt(element);
		return at.FirstChild() == nullptr && (ClassKindOf(at) == Kind::use || OwnTextOf(at).IsEmpty());
	}

	bool IsLink(css::Element element) const override
	{
		return ClassKindOf(ElementAt(element)) == Kind::anchor &&
			   ElementAt(element).HasAttribute(SVGImportAttribute::link);
	}

private:
	const SourceElement* FindRecord(const ElementBase& element) const
	{
		const std::uint32_t number = _finder ? _finder->Find(element) : kNoRecord;
		return number == kNoRecord ? nullptr : &_source->elements[number];
	}

	const SourceAttribute* FindAttribute(const SourceElement& record, std::string_view name) const noexcept
	{
		for (std::uint32_t i = 0; i < record.attributeCount; i++)
		{
			const SourceAttribute& attribute = _source->attributes[record.firstAttribute + i];
			if (_source->NameOf(attribute) == name)
				return &attribute;
		}
		return nullptr;
	}

	/// What a client has set as text, as long as the element says so.
	bool FindOverride(const ElementBase& element, std::string_view name, const Rule* rule,
					  std::string_view& value) const
	{
		if (_source == nullptr)
			return false;
		for (const SourceOverride& entry : _source->overrides)
		{
			if (ElementOf(entry.element) != &element || entry.name.View() != name || entry.isRemoved)
				continue;
			const Tag tag = TagOfElement(element, _source, FindRecord(element));
			std::string now;
			value = entry.text.View();
			return rule == nullptr || (FormatAttribute(now, element, *rule, tag, {}) == Formatted::text &&
									   ReadsAs(*rule, tag, value, grammar::Source::attribute, now));
		}
		return false;
	}

	/// Whether a property is what it was when it was loaded.
	bool IsAsLoaded(const ElementBase& element, const SourceElement& record, const Rule& rule) const
	{
		const LoadedElement& loaded = _source->loaded[static_cast<std::size_t>(&record - _source->elements.begin())];
		switch (rule.number)
		{
		case SVGImportAttribute::id:
			return loaded.id == element.GetId();
		case SVGImportAttribute::transform:
			return loaded.transform == HashTransform(element);
		case SVGImportAttribute::d:
			return loaded.path == HashPath(element);
		default:
			break;
		}
		if (ClassKindOf(element) == Kind::use && rule.number == SVGImportAttribute::href)
			return loaded.text == OwnTextOf(element);
		if (loaded.attributes.IsSameObject(element.Attributes()))
			return true;
		const Tag tag = TagOfElement(element, _source, &record);
		std::string before;
		std::string after;
		return FormatEntry(before, loaded.attributes, rule, tag, {}) ==
				   FormatEntry(after, element.Attributes(), rule, tag, {}) &&
			   before == after;
	}

	const ElementBase& _root;
	const DocumentSource* _source;
	mutable std::optional<RecordFinder> _finder;
	mutable std::string _value;
};

Result<BaseArray<SVGElementRef>> Select(const ElementBase& root, const DocumentSource* source, std::string_view text)
{
	const css::SelectorList selectors(text);
	if (!selectors.IsValid())
		return IllegalArgumentError("'@' is no list of selectors.", text);
	BaseArray<SVGElementRef> found;
	const TreeView view(root, source);
	css::Matcher matcher(view);
	const ElementBase* at = &root;
	while (at != nullptr)
	{
		if (ClassKindOf(*at) != Kind::textRun && matcher.MatchesAny(selectors.First(), at))
			ORVAN_TRY(found.Append(SVGElementRef::From(const_cast<ElementBase*>(at))));
		const HierarchyObject* next = at->FirstChild();
		for (const HierarchyObject* up = at; next == nullptr && up != &root; up = up->Parent())
			next = up->NextSibling();
		while (next != nullptr && AsElement(const_cast<HierarchyObject*>(next)) == nullptr)
			next = next->NextSibling();
		at = next != nullptr ? AsElement(const_cast<HierarchyObject*>(next)) : nullptr;
	}
	if (matcher.IsBudgetExceeded())
		return IllegalArgumentError("The selectors '@' take too long to match.", text);
	return found;
}

} // namespace

Result<BaseArray<SVGElementRef>> SelectElements(const SVGElementRef& root, const DocumentSource* source,
												std::string_view selectors) noexcept
{
	const ElementBase* const element = root ? ElementOf(root) : nullptr;
	if (element == nullptr)
		return BaseArray<SVGElementRef>();
	return Guarded([&] { return Select(*element, source, selectors); });
}

} // namespace orvan::svg
