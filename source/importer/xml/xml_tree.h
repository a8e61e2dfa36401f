// SPDX-License-Identifier: MIT
/// One parsed text: what owns the XML library's tree, and how the importers see its nodes.
///
///     XmlTree tree(text);
///     if (const XmlNode* root = tree.FindRoot(…)) …
///     // The walk goes in document order and gives back what lies behind it:
///     tree.ReleaseBefore(node);
#pragma once

#include "importer/names.h"
#include "importer/xml/xml_guard.h"
#include "importer/xml/xml_memory.h"
#include "importer/xml/xml_names.h"
#include "importer/xml/xml_namespaces.h"
#include "importer/xml/xml_parser.h"
#include "orvan/array.h"
#include "orvan/result.h"

#include <new>
#include <string_view>

namespace orvan::svg
{

using XmlDocument = xml::xml_document<char>;
using XmlNode = xml::xml_node<char>;
using XmlAttribute = xml::xml_attribute<char>;

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

inline std::string_view ValueOf(const xml::xml_base<char>& node) noexcept
{
	return {node.value(), node.value_size()};
}

/// The tree of one text. Its nodes point into the text, which must stay in place.
class XmlTree
{
public:
	/// Parses `text`, which was guarded, and behind which a zero and then `kTextPadding` of them stand. Throws an
	/// `XmlError` or the parser's error for a text that is refused, and std::bad_alloc.
	explicit XmlTree(char* text) : _document(*new (_storage) XmlDocument)
	{
		_document.set_allocator(&XmlMemory::Allocate, nullptr);
		_document.parse_ns<kXmlParseFlags, XmlNamespaces>(text);
	}

	XmlTree(const XmlTree&) = delete;

	const XmlNode* FirstNode() const noexcept
	{
		return _document.first_node();
	}

	/// Gives the memory of all nodes before this one back. They must not be looked at any more.
	void ReleaseBefore(const XmlNode& node) noexcept
	{
		_memory.ReleaseBefore(&node);
	}

private:
	XmlMemory _memory;
	// Never destroyed: its pool would go through its blocks, of which most have been given back by then.
	alignas(XmlDocument) unsigned char _storage[sizeof(XmlDocument)];
	XmlDocument& _document;
};

/// Replaces the references of values where they are used.
class ReferenceDecoder
{
public:
	/// `hasReferences` tells whether there is anything to do at all.
	explicit ReferenceDecoder(bool hasReferences) noexcept : _hasReferences(hasReferences)
	{
	}

	/// The text with its references replaced; good until the next call. Names in it can be read as words, as those in
	/// texts of files can.
	Result<std::string_view> Decode(std::string_view text)
	{
		if (!_hasReferences || text.find('&') == text.npos)
			return text;
		ORVAN_TRY(_decoded.Reserve(text.size() + NameWords::kLongest));
		ORVAN_TRY(_decoded.ResizeUninitialized(text.size()));
		return std::string_view(_decoded.begin(),
								static_cast<std::size_t>(DecodeReferences(text, _decoded.begin()) - _decoded.begin()));
	}

private:
	bool _hasReferences;
	BaseArray<char> _decoded;
};

} // namespace orvan::svg
