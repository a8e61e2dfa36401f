// SPDX-License-Identifier: MIT
#include "writer/source_sheets.h"

#include "complete/calculations.h"
#include "elements/complete_classes.h"
#include "importer/complete/property_test.h"
#include "importer/complete/single_transforms.h"
#include "importer/complete/style_sheets.h"
#include "importer/xml/xml_guard.h"
#include "writer/element_text.h"
#include "writer/style_editor.h"
#include "writer/value_text.h"
#include "writer/xml_text.h"

#include <algorithm>

namespace orvan::svg
{

using Kind = SVGImportElementKind;

/// How selectors see the records of a source: as they see the nodes of the XML library during the import.
class SourceSheets::View final : public css::ElementView
{
public:
	View(const DocumentSource& source, css::Arena& arena) noexcept : _source(source), _arena(arena)
	{
	}

	css::Element ElementAt(std::uint32_t record) const noexcept
	{
		return record == kNoRecord ? nullptr : &_source.elements[record];
	}

	/// Lets selectors see an element that is not in the source, as long as they look neither around nor at attributes.
	css::Element ShowNew(const ElementBase& element, complete::Tag tag)
	{
		_new = &element;
		_newId = element.GetId();
		const auto* const classes = element.Find<String>(SVGImportAttribute::classList);
		_newNames = {complete::TagName(tag), _newId.View(), classes != nullptr ? classes->View() : std::string_view()};
		return _new;
	}

	css::ElementNames GetNames(css::Element element) const override
	{
		if (element == _new)
			return _newNames;
		const SourceElement& at = RecordOf(element);
		return {WithoutPrefix(_source.NameOf(at)), Decode(LastValueOf(at, "id")), Decode(LastValueOf(at, "class"))};
	}

	bool GetAttribute(css::Element element, std::string_view name, std::string_view& value) const override
	{
		const SourceAttribute* const attribute = FindAttribute(RecordOf(element), name);
		if (attribute == nullptr)
			return false;
		value = Decode(_source.RawValueOf(*attribute));
		return true;
	}

	bool GetPrefixedAttribute(css::Element element, std::string_view localName, std::size_t index,
							  std::string_view& value) const override
	{
		const SourceElement& at = RecordOf(element);
		for (std::uint32_t i = 0; i < at.attributeCount; i++)
		{
			const SourceAttribute& attribute = _source.attributes[at.firstAttribute + i];
			if (WithoutPrefix(_source.NameOf(attribute)) != localName || index-- != 0)
				continue;
			value = Decode(_source.RawValueOf(attribute));
			return true;
		}
		return false;
	}

	css::Element GetParent(css::Element element) const override
	{
		return element == _new ? ElementAt(0) : ElementAt(RecordOf(element).parent);
	}

	css::Element GetPrevious(css::Element element) const override
	{
		return ElementAt(Siblings()[NumberOf(element)].previous);
	}

	css::Element GetNext(css::Element element) const override
	{
		return ElementAt(Siblings()[NumberOf(element)].next);
	}

	/// Not asked, and neither is the next: see `NoteCondition`.
	css::Element GetFirstChild(css::Element) const override
	{
		return nullptr;
	}

	bool IsEmpty(css::Element) const override
	{
		return false;
	}

	bool IsLink(css::Element element) const override
	{
		std::string_view link;
		return WithoutPrefix(_source.NameOf(RecordOf(element))) == "a" &&
			   GetPrefixedAttribute(element, "href", 0, link);
	}

	/// The value of an attribute as it is written; empty when there is none.
	std::string_view ValueOf(const SourceElement& element, std::string_view name) const noexcept
	{
		const SourceAttribute* const attribute = FindAttribute(element, name);
		return attribute != nullptr ? _source.RawValueOf(*attribute) : std::string_view();
	}

private:
	struct Sibling
	{
		std::uint32_t previous = kNoRecord;
		std::uint32_t next = kNoRecord;
	};

	static const SourceElement& RecordOf(css::Element element) noexcept
	{
		return *static_cast<const SourceElement*>(element);
	}

	std::size_t NumberOf(css::Element element) const noexcept
	{
		return static_cast<std::size_t>(&RecordOf(element) - _source.elements.begin());
	}

	const SourceAttribute* FindAttribute(const SourceElement& element, std::string_view name) const noexcept
	{
		for (std::uint32_t i = 0; i < element.attributeCount; i++)
		{
			const SourceAttribute& attribute = _source.attributes[element.firstAttribute + i];
			if (_source.NameOf(attribute) == name)
				return &attribute;
		}
		return nullptr;
	}

	/// Of an id and of classes that the XML library lets pass twice, the import takes the last.
	std::string_view LastValueOf(const SourceElement& element, std::string_view name) const noexcept
	{
		for (std::uint32_t i = element.attributeCount; i-- > 0;)
		{
			const SourceAttribute& attribute = _source.attributes[element.firstAttribute + i];
			if (_source.NameOf(attribute) == name)
				return _source.RawValueOf(attribute);
		}
		return {};
	}

	std::string_view Decode(std::string_view value) const
	{
		if (value.find('&') == value.npos)
			return value;
		auto* const text = static_cast<char*>(_arena.allocate(value.size(), 1));
		return {text, static_cast<std::size_t>(DecodeReferences(value, text) - text)};
	}

	/// Few sheets ask for siblings, so that the list is made for the first that does.
	const std::vector<Sibling>& Siblings() const
	{
		const auto count = static_cast<std::uint32_t>(_source.elements.GetCount());
		if (!_siblings.empty())
			return _siblings;
		std::vector<std::uint32_t> last(count, kNoRecord); // The last child so far.
		_siblings.resize(count);
		for (std::uint32_t number = 1; number < count; number++)
		{
			const SourceElement& record = _source.elements[number];
			if (record.IsRun())
				continue;
			const std::uint32_t previous = std::exchange(last[record.parent], number);
			_siblings[number].previous = previous;
			if (previous != kNoRecord)
				_siblings[previous].next = number;
		}
		return _siblings;
	}

	const DocumentSource& _source;
	css::Arena& _arena; ///< For values with references.
	mutable std::vector<Sibling> _siblings;
	const ElementBase* _new = nullptr;
	css::ElementNames _newNames;
	String _newId;
};

SourceSheets::SourceSheets(const DocumentSource& source, std::string_view clientSheet)
	: _source(source), _sheet(&_memory), _view(std::make_unique<View>(source, _sheet.Memory()))
{
	CollectSheets(clientSheet);
	if (_sheet.IsEmpty())
		return;
	_cascade.emplace(_sheet, *_view, &_memory);
	for (const css::Rule& rule : _sheet.Rules())
		NoteSelectors(rule.selector);
}

SourceSheets::~SourceSheets() = default;

void SourceSheets::CollectSheets(std::string_view clientSheet)
{
	complete::PropertyTest properties;
	for (std::size_t number = 0; number < _source.elements.GetCount(); number++)
	{
		const SourceElement& record = _source.elements[number];
		if (record.IsRun() || WithoutPrefix(_source.NameOf(record)) != "style")
			continue;
		const LoadedElement& loaded = _source.loaded[number];
		const bool hasElements =
			number + 1 < _source.elements.GetCount() && _source.elements[number + 1].parent == number;
		const bool isPlain = loaded.element && ClassKindOf(*ElementOf(loaded.element)) == Kind::style && !hasElements;
		_isSure = _isSure && isPlain;
		if (isPlain && complete::IsSheetForScreens(_view->ValueOf(record, "type"), _view->ValueOf(record, "media")))
			_sheet.Add(loaded.text.View(), {.features = &properties});
	}
	if (!clientSheet.empty())
		_sheet.Add(clientSheet, {.features = &properties});
}

void SourceSheets::NoteSelectors(const css::Selector* selector)
{
	for (; selector != nullptr; selector = selector->next)
	{
		for (const css::Compound* compound = selector->subject; compound != nullptr; compound = compound->left)
		{
			_lookAround |= compound->left != nullptr;
			for (const css::Simple* condition = compound->first; condition != nullptr; condition = condition->next)
				NoteCondition(*condition);
		}
	}
}

void SourceSheets::NoteCondition(const css::Simple& condition)
{
	const auto note = [this](std::string_view attribute)
	{
		if (!LookAt(attribute))
			_attributes.push_back(attribute);
	};
	switch (condition.kind)
	{
	case css::SimpleKind::never:
	case css::SimpleKind::always:
	case css::SimpleKind::type:
	case css::SimpleKind::root:
		break;
	case css::SimpleKind::id:
		note("id");
		break;
	case css::SimpleKind::className:
		note("class");
		break;
	case css::SimpleKind::attribute:
		note(WithoutPrefix(condition.name));
		_lookAtValues = true;
		break;
	case css::SimpleKind::link:
		note("href");
		break;
	case css::SimpleKind::language:
		note("lang");
		_lookAround = true;
		break;
	case css::SimpleKind::empty: // What the XML parser makes a node of is not in the records.
	case css::SimpleKind::has:
		_isSure = false;
		break;
	default:
		_lookAround |= condition.kind != css::SimpleKind::isAnyOf && condition.kind != css::SimpleKind::isNoneOf;
		NoteSelectors(condition.list);
		break;
	}
}

bool SourceSheets::LookAt(std::string_view attribute) const noexcept
{
	return std::find(_attributes.begin(), _attributes.end(), WithoutPrefix(attribute)) != _attributes.end();
}

/// What a declaration makes of an element; null for one that says nothing.
SVGElementRef SourceSheets::Read(const css::Declaration& declaration, const complete::Rule& rule, complete::Tag tag)
{
	if (!rule.tags.Has(tag))
		return {};
	// What custom properties come to is the import's to say.
	_isSure = _isSure && !declaration.hasEscapes && !declaration.hasVariables;
	if (declaration.hasVariables)
		return {};
	Result<SVGElementRef> read = ReadIntoNew(rule, tag, declaration.value, grammar::Source::sheet);
	if (!read.IsOk())
		throw std::bad_alloc();
	// Nor what it calculates from what is around the element.
	_isSure = _isSure && (read.GetValue() || !grammar::complete::MayHaveCalculations(declaration.value));
	return std::move(read).GetValue();
}

SourceSheets::Saying SourceSheets::Find(std::uint32_t record, complete::Tag tag, const complete::Rule& rule)
{
	Saying saying = Saying::nothing;
	const complete::Rule* const property = complete::PropertyOf(rule);
	if (!_cascade || property == nullptr)
		return saying;
	for (const css::Declaration* declaration : _cascade->Collect(_view->ElementAt(record)))
	{
		const bool isSingle =
			rule.number == SVGImportAttribute::transform && complete::SingleTransforms::IsName(declaration->name);
		_isSure = _isSure && !declaration->isCustom && !isSingle && declaration->name != "all";
		if (declaration->name != "all" &&
			SayingOf(*declaration, WrittenAs(property->number)) != StyleEditor::Saying::nothing &&
			Read(*declaration, *complete::FindRule(declaration->name), tag))
			saying = declaration->isImportant ? Saying::important : std::max(saying, Saying::something);
	}
	return saying;
}

std::vector<ForcedProperty> SourceSheets::FindDifferences(const ElementBase& element, const DataDictionary& attributes,
														  complete::Tag tag)
{
	std::vector<ForcedProperty> differences;
	if (!_cascade)
		return differences;
	const auto isName = [](std::string_view attribute)
	{
		return attribute == "id" || attribute == "class";
	};
	_isSure = _isSure && !_lookAround && !_lookAtValues && std::all_of(_attributes.begin(), _attributes.end(), isName);
	if (!_isSure)
		return differences;
	for (const css::Declaration* declaration : _cascade->Collect(_view->ShowNew(element, tag)))
	{
		const complete::Rule* const rule = declaration->isCustom ? nullptr : complete::FindRule(declaration->name);
		_isSure = _isSure && !declaration->isCustom && declaration->name != "all" &&
				  !complete::SingleTransforms::IsName(declaration->name);
		if (rule == nullptr || !complete::IsProperty(*rule))
			continue;
		const complete::Rule* const written = FindWritingRule(WrittenAs(complete::KeptAs(*rule, tag)));
		// What a shorthand says, and what is taken from the parent, is the import's to read.
		_isSure = _isSure && written != nullptr &&
				  SayingOf(*declaration, WrittenAs(rule->number)) == StyleEditor::Saying::byItself &&
				  !MayMention(declaration->value, "inherit");
		const SVGElementRef read = _isSure ? Read(*declaration, *rule, tag) : SVGElementRef();
		if (!read)
			continue;
		std::string wanted;
		std::string found;
		const bool differs = FormatAttribute(wanted, element, attributes, *written, tag, {}) !=
								 FormatAttribute(found, *ElementOf(read), *written, tag, {}) ||
							 wanted != found;
		std::erase_if(differences, [&](const ForcedProperty& property) { return property.number == written->number; });
		if (differs)
			differences.push_back({written->number, declaration->isImportant});
	}
	return differences;
}

} // namespace orvan::svg
