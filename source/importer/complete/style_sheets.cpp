// SPDX-License-Identifier: MIT
#include "importer/complete/style_sheets.h"

#include "css/media.h"
#include "importer/complete/property_test.h"

#include <algorithm>

namespace orvan::svg::complete
{
namespace
{

const XmlNode& NodeOf(css::Element element) noexcept
{
	return *static_cast<const XmlNode*>(element);
}

bool IsElement(const XmlNode* node) noexcept
{
	return node->type() == xml::node_element;
}

std::string_view AttributeOf(const XmlNode& node, std::string_view name) noexcept
{
	for (const XmlAttribute* attribute = node.first_attribute(); attribute != nullptr;
		 attribute = attribute->next_attribute())
	{
		if (NameOf(*attribute) == name)
			return ValueOf(*attribute);
	}
	return {};
}

bool IsStyle(const XmlNode& node) noexcept
{
	if (LocalNameOf(node) != "style")
		return false;
	const std::string_view space = NamespaceOf(node);
	return space == kSvgNamespace || space.empty();
}

} // namespace

bool IsSheetForScreens(std::string_view type, std::string_view media) noexcept
{
	constexpr std::string_view kCss = "text/css";
	const bool isCss = type.empty() || css::EqualsIgnoringCase(type, kCss);
	return isCss && css::HoldsForMedia(media);
}

// XmlElementView -----------------------------------------------------------------------------------------------------

std::string_view XmlElementView::Decode(std::string_view value) const
{
	if (value.find('&') == value.npos)
		return value;
	auto* const text = static_cast<char*>(_arena.allocate(value.size(), 1));
	return {text, static_cast<std::size_t>(DecodeReferences(value, text) - text)};
}

css::ElementNames XmlElementView::GetNames(css::Element element) const
{
	css::ElementNames names{LocalNameOf(NodeOf(element)), {}, {}};
	for (const XmlAttribute* attribute = NodeOf(element).first_attribute(); attribute != nullptr;
		 attribute = attribute->next_attribute())
	{
		const std::string_view name = NameOf(*attribute);
		if (name == "id")
			names.id = Decode(ValueOf(*attribute));
		else if (name == "class")
			names.classes = Decode(ValueOf(*attribute));
	}
	return names;
}

bool XmlElementView::GetAttribute(css::Element element, std::string_view name, std::string_view& value) const
{
	for (const XmlAttribute* attribute = NodeOf(element).first_attribute(); attribute != nullptr;
		 attribute = attribute->next_attribute())
	{
		if (attribute->prefix_size() != 0 || NameOf(*attribute) != name)
			continue;
		value = Decode(ValueOf(*attribute));
		return true;
	}
	return false;
}

bool XmlElementView::GetPrefixedAttribute(css::Element element, std::string_view localName, std::size_t index,
										  std::string_view& value) const
{
	for (const XmlAttribute* attribute = NodeOf(element).first_attribute(); attribute != nullptr;
		 attribute = attribute->next_attribute())
	{
		if (LocalNameOf(*attribute) != localName || index-- != 0)
			continue;
		value = Decode(ValueOf(*attribute));
		return true;
	}
	return false;
}

css::Element XmlElementView::GetParent(css::Element element) const
{
	const XmlNode* const parent = NodeOf(element).parent();
	return parent != nullptr && IsElement(parent) ? parent : nullptr;
}

css::Element XmlElementView::GetPrevious(css::Element element) const
{
	const XmlNode* node = &NodeOf(element);
	if (node->parent() == nullptr)
		return nullptr;
	do
		node = node->previous_sibling();
	while (node != nullptr && !IsElement(node));
	return node;
}

css::Element XmlElementView::GetNext(css::Element element) const
{
	const XmlNode* node = &NodeOf(element);
	if (node->parent() == nullptr)
		return nullptr;
	do
		node = node->next_sibling();
	while (node != nullptr && !IsElement(node));
	return node;
}

css::Element XmlElementView::GetFirstChild(css::Element element) const
{
	const XmlNode* node = NodeOf(element).first_node();
	while (node != nullptr && !IsElement(node))
		node = node->next_sibling();
	return node;
}

bool XmlElementView::IsEmpty(css::Element element) const
{
	return NodeOf(element).first_node() == nullptr;
}

bool XmlElementView::IsLink(css::Element element) const
{
	std::string_view link;
	return LocalNameOf(NodeOf(element)) == "a" &&
		   (GetAttribute(element, "href", link) || GetPrefixedAttribute(element, "href", 0, link));
}

// StyleSheets --------------------------------------------------------------------------------------------------------

/// Turns what the sheets' reader has to say into findings.
class StyleSheets::Problems final : public css::ReportSink
{
public:
	Problems(Importer& importer, std::string_view text, bool isInPlace) noexcept
		: _importer(importer), _text(text), _isInPlace(isInPlace)
	{
	}

	void Report(const css::Problem& problem) override
	{
		const char* const where = _isInPlace ? _text.data() + std::min(problem.offset, _text.size()) : nullptr;
		if (!_importer.Warn(nullptr, {where, "style"}, {}, problem.message).IsOk())
			throw std::bad_alloc();
	}

private:
	Importer& _importer;
	std::string_view _text;
	bool _isInPlace;
};

StyleSheets::StyleSheets(Importer& importer, std::pmr::memory_resource& memory)
	: _importer(importer), _arena(&memory), _sheet(&memory), _view(_arena), _sources(&memory)
{
}

Result<void> StyleSheets::Collect(const XmlNode& root, std::string_view clientSheet)
{
	// In document order, without recursion.
	const XmlNode* at = &root;
	while (at != nullptr)
	{
		const XmlNode* next = nullptr;
		if (IsElement(at))
		{
			if (IsStyle(*at))
				ORVAN_TRY(AddElement(*at));
			else
				next = at->first_node();
		}
		while (next == nullptr && at != &root)
		{
			next = at->next_sibling();
			if (next == nullptr)
				at = at->parent();
		}
		at = next;
	}
	if (!clientSheet.empty())
		Add(clientSheet, false);
	if (!_sheet.IsEmpty())
		_cascade.emplace(_sheet, _view, _arena.upstream_resource());
	return {};
}

/// The text of a style element is that of all character data in it.
Result<void> StyleSheets::AddElement(const XmlNode& style)
{
	if (!IsSheetForScreens(AttributeOf(style, "type"), AttributeOf(style, "media")) || style.first_node() == nullptr)
		return {};
	const auto isText = [](const XmlNode& node)
	{
		return node.type() == xml::node_data || node.type() == xml::node_cdata;
	};
	const XmlNode* const first = style.first_node();
	const bool isSingle = isText(*first) && first->next_sibling() == nullptr;
	if (isSingle && (first->type() == xml::node_cdata || ValueOf(*first).find('&') == std::string_view::npos))
	{
		Add(ValueOf(*first), true);
		return {};
	}
	std::size_t size = 0;
	for (const XmlNode* node = first; node != nullptr; node = node->next_sibling())
		size += isText(*node) ? node->value_size() : 0;
	auto* const text = static_cast<char*>(_arena.allocate(std::max<std::size_t>(size, 1), 1));
	char* end = text;
	for (const XmlNode* node = first; node != nullptr; node = node->next_sibling())
	{
		if (node->type() == xml::node_data)
			end = DecodeReferences(ValueOf(*node), end);
		else if (node->type() == xml::node_cdata)
			end = std::copy_n(node->value(), node->value_size(), end);
	}
	Add({text, static_cast<std::size_t>(end - text)}, false);
	return {};
}

void StyleSheets::Add(std::string_view text, bool isInPlace)
{
	Problems problems(_importer, text, isInPlace);
	PropertyTest properties;
	const auto number = static_cast<std::uint32_t>(_sources.size());
	_sources.push_back({text.data(), isInPlace});
	_sheet.Add(text, {.source = number, .report = &problems, .features = &properties});
}

std::span<const css::Declaration* const> StyleSheets::DeclarationsFor(const XmlNode& node,
																	  std::span<const css::Declaration> inlineStyle)
{
	return _cascade->Collect(&node, inlineStyle);
}

const char* StyleSheets::PlaceOf(const css::Declaration& declaration) const noexcept
{
	const Source& source = _sources[declaration.source];
	return source.isInPlace ? source.text + declaration.valueOffset : nullptr;
}

Result<void> StyleSheets::ReportBudget() noexcept
{
	if (_isBudgetReported || !_cascade || !_cascade->IsBudgetExceeded())
		return {};
	_isBudgetReported = true;
	return _importer.Warn(nullptr, {nullptr, "style"}, {},
						  "The style sheets take too long to match: from here on their rules are left out.");
}

} // namespace orvan::svg::complete
