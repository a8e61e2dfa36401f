// SPDX-License-Identifier: MIT
#include "importer/complete/sheet_overlay.h"

#include "complete/numbers.h"
#include "css/cascade.h"
#include "css/style_sheet.h"
#include "css/variables.h"
#include "importer/complete/attribute_rules.h"
#include "importer/complete/host_memory.h"
#include "importer/complete/importer.h"
#include "importer/complete/property_test.h"

#include <array>
#include <list>
#include <memory_resource>
#include <string>
#include <vector>

namespace orvan::svg::complete
{
namespace
{

constexpr std::size_t kKindCount = CompleteElementClasses::kKindCount;

/// The first tag of each kind.
constexpr std::array<std::string_view, kKindCount> ListTypes() noexcept
{
	std::array<std::string_view, kKindCount> types;
	const auto take = [&types](std::string_view tags, SVGImportElementKind kind)
	{
		std::size_t length = 0;
		while (length < tags.size() && tags[length] != ' ')
			length++;
		types[static_cast<std::size_t>(kind)] = tags.substr(0, length);
	};
	ElementClasses::VisitTags(take);
	CompleteElementClasses::VisitTags(take);
	return types;
}

constexpr std::array kTypes = ListTypes();

/// The tag of an element; `unknown` also where a client has set a type that is none.
Tag TagOfElement(const ElementBase& element) noexcept
{
	const auto kind = static_cast<std::size_t>(element.GetElementType());
	return kind < kKindCount ? static_cast<Tag>(kind) : Tag::unknown;
}

/// How selectors see the elements of a tree. Runs of text are no elements to them, nor is what other modules have.
class TreeView final : public css::ElementView
{
public:
	static ElementBase* AsStyled(HierarchyObject* object) noexcept
	{
		ElementBase* element = AsElement(object);
		return element != nullptr && element->GetElementType() != SVGImportElementKind::textRun ? element : nullptr;
	}

	css::ElementNames GetNames(css::Element element) const override
	{
		const ElementBase& own = Of(element);
		css::ElementNames names;
		names.type = kTypes[static_cast<std::size_t>(TagOfElement(own))];
		names.id = own.GetId().View(); // The element holds the text, too.
		if (const String* classes = own.Find<String>(SVGImportAttribute::classList))
			names.classes = classes->View();
		return names;
	}

	bool GetAttribute(css::Element, std::string_view, std::string_view&) const override
	{
		return false;
	}

	css::Element GetParent(css::Element element) const override
	{
		return AsElement(Of(element).Parent());
	}

	css::Element GetPrevious(css::Element element) const override
	{
		HierarchyObject* at = Of(element).PreviousSibling();
		while (at != nullptr && AsStyled(at) == nullptr)
			at = at->PreviousSibling();
		return at != nullptr ? AsStyled(at) : nullptr;
	}

	css::Element GetNext(css::Element element) const override
	{
		HierarchyObject* at = Of(element).NextSibling();
		while (at != nullptr && AsStyled(at) == nullptr)
			at = at->NextSibling();
		return at != nullptr ? AsStyled(at) : nullptr;
	}

	css::Element GetFirstChild(css::Element element) const override
	{
		HierarchyObject* at = Of(element).FirstChild();
		while (at != nullptr && AsStyled(at) == nullptr)
			at = at->NextSibling();
		return at != nullptr ? AsStyled(at) : nullptr;
	}

	bool IsEmpty(css::Element element) const override
	{
		return Of(element).FirstChild() == nullptr;
	}

	bool IsLink(css::Element element) const override
	{
		return Of(element).GetElementType() == SVGImportElementKind::anchor &&
			   Of(element).HasAttribute(SVGImportAttribute::link);
	}

private:
	static const ElementBase& Of(css::Element element) noexcept
	{
		return *static_cast<const ElementBase*>(element);
	}
};

/// Reads declarations into the dictionary of an element that is of no tree.
class OverlayReader
{
public:
	explicit OverlayReader(ElementBase& scratch) noexcept : _scratch(scratch)
	{
	}

	/// Custom properties are those that the sheet itself declares.
	Result<DataDictionary> Read(Tag tag, std::span<const css::Declaration* const> declarations,
								css::Variables& variables)
	{
		_scratch.ReplaceAttributes({});
		for (const css::Declaration* declaration : declarations)
		{
			const Rule* const rule = declaration->isCustom ? nullptr : FindRule(declaration->name);
			if (rule == nullptr || !IsProperty(*rule) || rule->number == SVGImportAttribute::transform ||
				rule->number == SVGImportAttribute::d)
				continue;
			std::string resolved;
			std::string_view value = declaration->value;
			if (declaration->hasEscapes)
				value = resolved = grammar::complete::ResolveEscapes(value);
			if (declaration->hasVariables)
			{
				if (variables.Substitute(value, resolved) != css::Substitution::done)
					continue;
				value = resolved;
			}
			ORVAN_TRY(_importer.Read({_importer, _scratch, tag, *rule, value, grammar::Source::sheet}));
		}
		return _scratch.GetAttributeDictionary();
	}

private:
	SVGImportOptions _options{true, true, false, {}};
	Importer _importer{_options};
	ElementBase& _scratch;
};

/// The custom properties of the elements around, down to the one at hand.
class Scopes
{
public:
	explicit Scopes(HostMemory& memory) : _memory(memory), _scopes(&memory)
	{
		_scopes.emplace_back(nullptr, _budget, &_memory);
		_owners.push_back(nullptr);
	}

	void Enter(const ElementBase& element, std::span<const css::Declaration* const> declarations)
	{
		for (const css::Declaration* declaration : declarations)
		{
			if (!declaration->isCustom)
				continue;
			if (_owners.back() != &element)
			{
				_scopes.emplace_back(&_scopes.back(), _budget, &_memory);
				_owners.push_back(&element);
			}
			_scopes.back().Set(declaration->name, declaration->value);
		}
	}

	void Leave(const HierarchyObject* object)
	{
		if (_owners.back() != object)
			return;
		_scopes.pop_back();
		_owners.pop_back();
	}

	css::Variables& Innermost()
	{
		return _scopes.back();
	}

private:
	HostMemory& _memory;
	css::VariableBudget _budget;
	std::pmr::list<css::Variables> _scopes;
	std::vector<const HierarchyObject*> _owners; ///< Of the scopes; the outermost has none.
};

Result<BaseArray<SheetOverlay>> Match(ElementBase& root, std::string_view text)
{
	BaseArray<SheetOverlay> overlays;
	HostMemory memory;
	css::StyleSheet sheet(&memory);
	PropertyTest properties;
	sheet.Add(text, {.features = &properties});
	if (sheet.IsEmpty())
		return overlays;
	const TreeView view;
	css::Cascade cascade(sheet, view, &memory);
	const auto scratch = ORVAN_TRY(CreateObject<SVGElementInterface>(kSVGElementClass));
	OverlayReader reader(static_cast<ElementBase&>(*scratch.GetObject()));
	Scopes scopes(memory);
	for (HierarchyObject* at = &root; at != nullptr;)
	{
		if (ElementBase* element = TreeView::AsStyled(at))
		{
			const auto declarations = cascade.Collect(element);
			if (!declarations.empty())
			{
				scopes.Enter(*element, declarations);
				DataDictionary values =
					ORVAN_TRY(reader.Read(TagOfElement(*element), declarations, scopes.Innermost()));
				if (values.GetCount() != 0)
					ORVAN_TRY(overlays.Append({SVGElementRef::From(element), std::move(values)}));
			}
		}
		if (at->FirstChild() != nullptr)
		{
			at = at->FirstChild();
			continue;
		}
		while (at != &root && at->NextSibling() == nullptr)
		{
			scopes.Leave(at);
			at = at->Parent();
		}
		scopes.Leave(at);
		at = at != &root ? at->NextSibling() : nullptr;
	}
	return overlays;
}

} // namespace

Result<BaseArray<SheetOverlay>> MatchSheet(ElementBase& root, std::string_view sheet) noexcept
{
	try
	{
		return Match(root, sheet);
	}
	catch (const std::bad_alloc&)
	{
		return OutOfMemoryError();
	}
}

} // namespace orvan::svg::complete
