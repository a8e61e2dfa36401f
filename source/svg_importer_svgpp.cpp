// SPDX-License-Identifier: MIT
/// The importer: the driver that parses the XML, and the builder that walks it.
#include "import.h"

#include "importer/parse_context.h"
#include "importer/tags.h"
#include "importer/xml/xml_guard.h"
#include "importer/xml/xml_memory.h"
#include "importer/xml/xml_parser.h"
#include "orvan/diagnostics.h"
#include "registration.h"

#include <algorithm>
#include <array>
#include <exception>
#include <new>
#include <optional>

namespace orvan::svg
{
namespace
{

using XmlDocument = xml::xml_document<char>;
using XmlNode = xml::xml_node<char>;
using XmlAttribute = xml::xml_attribute<char>;

// Names --------------------------------------------------------------------------------------------------------------

constexpr std::string_view kSvgNamespace = "http://www.w3.org/2000/svg";
constexpr std::string_view kXlinkNamespace = "http://www.w3.org/1999/xlink";

template <typename Node>
std::string_view NameOf(const Node& node) noexcept
{
	return {node.name(), node.name_size()};
}

template <typename Node>
std::string_view LocalNameOf(const Node& node) noexcept
{
	return {node.local_name(), node.local_name_size()};
}

template <typename Node>
std::string_view NamespaceOf(const Node& node) noexcept
{
	return {node.namespace_uri(), node.namespace_uri_size()};
}

std::string_view ValueOf(const xml::xml_base<char>& node) noexcept
{
	return {node.value(), node.value_size()};
}

/// The tag's name without the prefix when that is bound to the SVG namespace, as written otherwise.
std::string_view TagNameOf(const XmlNode& node) noexcept
{
	return node.prefix_size() != 0 && NamespaceOf(node) == kSvgNamespace ? LocalNameOf(node) : NameOf(node);
}

SVGImportAttribute NumberOf(const XmlAttribute& attribute) noexcept
{
	if (attribute.prefix_size() == 0)
		return FindAttribute(NameOf(attribute));
	if (const SVGImportAttribute asWritten = FindAttribute(NameOf(attribute)); asWritten != SVGImportAttribute::unknown)
		return asWritten;
	const std::string_view space = NamespaceOf(attribute);
	if (space == kSvgNamespace)
		return FindAttribute(LocalNameOf(attribute));
	if (space == kXlinkNamespace && LocalNameOf(attribute) == "href")
		return SVGImportAttribute::href;
	return SVGImportAttribute::unknown;
}

// Building -----------------------------------------------------------------------------------------------------------

/// Walks the XML tree and makes the elements. The recursion is as deep as the elements are nested, which `GuardXml`
/// bounds.
class TreeBuilder
{
public:
	TreeBuilder(SVGParseContext& context, XmlMemory& memory, bool hasReferences) noexcept
		: _context(context), _memory(memory), _hasReferences(hasReferences)
	{
	}

	/// Builds an element and everything below it as the last child of `parent`, which is null for the root. Of the XML
	/// tree, nothing is read any more that comes before `node`.
	Result<SVGElementRef> Build(const XmlNode& node, const HierarchyObjectRef& parent)
	{
		_memory.ReleaseBefore(&node);
		const std::string_view name = TagNameOf(node);
		const SVGImportElementKind kind = KindOfTag(name);
		const ObjectFactory& factory = kElementFactories[static_cast<std::size_t>(kind)];
		SVGElementRef element = ORVAN_TRY(factory.Create<SVGElementInterface>());
		if (parent)
			ORVAN_TRY(Borrowed<HierarchyObjectInterface>(element)->InsertAsLastChildOf(parent, {}));
		const SVGElementRef* const outerElement = std::exchange(_context.element, &element);
		_context.ownElement = AsElement(static_cast<HierarchyObject*>(element.GetObject()));
		_context.isPolygon = name == "polygon";
		_context.elementName = NameOf(node);
		ORVAN_TRY(SetAttributes(node));
		if (kind == SVGImportElementKind::text)
			ORVAN_TRY(SetText(node, element));
		else if (node.first_node() != nullptr)
			ORVAN_TRY(BuildChildren(node, Cast<HierarchyObjectInterface>(element)));
		_context.element = outerElement;
		return element;
	}

private:
	Result<void> SetAttributes(const XmlNode& node)
	{
		for (const XmlAttribute* attribute = node.first_attribute(); attribute != nullptr;
			 attribute = attribute->next_attribute())
		{
			const SVGImportAttribute number = NumberOf(*attribute);
			if (number == SVGImportAttribute::unknown)
				continue;
			_context.rawValue = ValueOf(*attribute);
			const std::string_view text = ORVAN_TRY(Decode(_context.rawValue));
			ORVAN_TRY(DispatchAttribute(_context, number, text, grammar::Source::attribute));
		}
		return {};
	}

	/// The text is that of the first child, which has none when it is an element.
	Result<void> SetText(const XmlNode& node, const SVGElementRef& element)
	{
		std::string_view text;
		if (const XmlNode* first = node.first_node())
			text = first->type() == xml::node_data ? ORVAN_TRY(Decode(ValueOf(*first))) : ValueOf(*first);
		return Borrowed<SVGTextElementInterface>(element)->SetText(ORVAN_TRY(String::Create(text)));
	}

	Result<void> BuildChildren(const XmlNode& node, const HierarchyObjectRef& parent)
	{
		for (const XmlNode *child = node.first_node(), *next = nullptr; child != nullptr; child = next)
		{
			next = child->next_sibling(); // While it is still there.
			if (child->type() == xml::node_element)
				ORVAN_TRY(Build(*child, parent));
		}
		return {};
	}

	/// The text with its references replaced; good until the next call.
	Result<std::string_view> Decode(std::string_view text)
	{
		if (!_hasReferences || text.find('&') == text.npos)
			return text;
		ORVAN_TRY(_decoded.ResizeUninitialized(text.size()));
		return std::string_view(_decoded.begin(), DecodeReferences(text, _decoded.begin()));
	}

	SVGParseContext& _context;
	XmlMemory& _memory;
	bool _hasReferences;
	BaseArray<char> _decoded;
};

// Driving ------------------------------------------------------------------------------------------------------------

/// One import of one text.
class ImportDriver
{
public:
	explicit ImportDriver(std::string_view text) noexcept : _text(text)
	{
	}

	/// `text` is the driver's text, terminated by a zero.
	Result<ImportResult> Run(char* text)
	{
		const bool hasReferences = GuardXml(_text);
		XmlMemory memory;
		// Never destroyed: its pool would go through its blocks, of which most have been given back by then.
		alignas(XmlDocument) unsigned char storage[sizeof(XmlDocument)];
		XmlDocument& document = *new (storage) XmlDocument;
		document.set_allocator(&XmlMemory::Allocate, nullptr);
		document.parse<kXmlParseFlags>(text);
		for (const XmlNode* node = document.first_node(); node != nullptr; node = node->next_sibling())
		{
			if (node->type() != xml::node_element || TagNameOf(*node) != "svg")
				continue;
			SVGElementRef root = ORVAN_TRY(TreeBuilder(_context, memory, hasReferences).Build(*node, {}));
			return ImportResult{std::move(root), std::move(_context.elementsById)};
		}
		return ImportResult();
	}

	/// The place in the text that an exception is about.
	DocumentPosition PositionOf(const std::exception& exception) const noexcept
	{
		DocumentPosition position;
		const char* where = _context.refusedAt;
		if (const auto* syntaxError = dynamic_cast<const xml::parse_error*>(&exception))
			where = syntaxError->where<char>();
		else if (const auto* xmlError = dynamic_cast<const XmlError*>(&exception))
			where = xmlError->GetWhere();
		else
		{
			position.elementName = _context.refusedElementName;
			position.elementId = _context.refusedElementId;
		}
		if (where == nullptr)
			return position;
		const std::string_view before = _text.substr(0, static_cast<std::size_t>(where - _text.data()));
		position.line = 1 + std::count(before.begin(), before.end(), '\n');
		// Without a line break before it, npos + 1 is 0: the column counts from the start of the text.
		position.column = static_cast<std::int64_t>(before.size() - (before.rfind('\n') + 1)) + 1;
		return position;
	}

private:
	std::string_view _text;
	SVGParseContext _context;
};

} // namespace

Result<ImportResult> Import(char* text, std::int64_t count) noexcept
{
	if (count < 1)
		return ImportResult();
	ImportDriver driver({text, static_cast<std::size_t>(count) - 1});
	try
	{
		return driver.Run(text);
	}
	catch (const std::bad_alloc&)
	{
		return OutOfMemoryError();
	}
	catch (const std::exception& exception)
	{
		const DocumentPosition position = driver.PositionOf(exception);
		CriticalOutput(&position, "Exception parsing svg file. @", exception.what());
	}
	catch (...)
	{
		CriticalOutput(nullptr, "Exception parsing svg file. Exception @", "of an unknown type");
	}
	return ImportResult();
}

namespace
{

constexpr UseDeclaration kUses[] = {
	{"svg_importer_svgpp", "SVGElementInterface", "svg_elements"},
	{"svg_importer_svgpp", "HierarchyObjectInterface", "hierarchy"},
	{"svg_importer_svgpp", "CriticalOutput", "diagnostics"},
};

ORVAN_REGISTER(ORVAN_ORDER_IMPORTER, entries)
[] = {
	{Kind::unit, "svg_importer_svgpp"},
	kUses[0],
	kUses[1],
	kUses[2],
};

} // namespace
} // namespace orvan::svg
