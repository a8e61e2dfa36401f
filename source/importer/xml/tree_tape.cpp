// SPDX-License-Identifier: MIT
#include "tree_tape.h"

#include "importer/attributes/attribute_names.h"
#include "importer/tags.h"

namespace orvan::svg
{
namespace
{

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

/// The text is that of the first child, which has none when it is an element.
TapeEntry TextOf(const XmlNode& element) noexcept
{
	const XmlNode* const first = element.first_node();
	if (first == nullptr)
		return TapeEntry(TapeMark::text);
	return TapeEntry(first->type() == xml::node_cdata ? TapeMark::rawText : TapeMark::text, ValueOf(*first));
}

} // namespace

const XmlNode* FindRoot(const XmlTree& tree) noexcept
{
	const XmlNode* node = tree.FirstNode();
	while (node != nullptr && (node->type() != xml::node_element || TagNameOf(*node) != "svg"))
		node = node->next_sibling();
	return node;
}

/// The recursion is as deep as the elements are nested, which `XmlNamespaces` bounds.
void AppendTree(XmlTree& tree, const XmlNode& root, ElementTape& tape)
{
	tree.ReleaseBefore(root);
	const SVGImportElementKind kind = KindOfTag(TagNameOf(root));
	tape.Append(TapeEntry(TapeMark::element, NameOf(root), static_cast<std::uint8_t>(kind)));
	for (const XmlAttribute* at = root.first_attribute(); at != nullptr; at = at->next_attribute())
	{
		if (const SVGImportAttribute number = NumberOf(*at); number != SVGImportAttribute::unknown)
			tape.Append(TapeEntry(TapeMark::attribute, ValueOf(*at), static_cast<std::uint8_t>(number)));
	}
	if (kind == SVGImportElementKind::text)
		tape.Append(TextOf(root));
	for (const XmlNode *child = root.first_node(), *next = nullptr; child != nullptr; child = next)
	{
		next = child->next_sibling(); // While it is still there.
		if (child->type() == xml::node_element)
			AppendTree(tree, *child, tape);
	}
	tape.Append(TapeEntry(TapeMark::end));
}

} // namespace orvan::svg
