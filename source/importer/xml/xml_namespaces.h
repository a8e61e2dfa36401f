// SPDX-License-Identifier: MIT
/// What the XML parser does with namespaces, and how far it may go.
#pragma once

#include "importer/xml/xml_guard.h"
#include "importer/xml/xml_parser.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace orvan::svg
{

/// Takes the place of the parser's own namespace processor: gives nodes the same namespaces, in less time, and keeps
/// the parser from exhausting stack or day over a small hostile text.
///
/// The parser copies its scope for each element that it enters, and recurses only there; so the scope knows how deep
/// the element is.
class XmlNamespaces
{
	using Node = xml::xml_node<char>;
	using Attribute = xml::xml_attribute<char>;
	using Xml = xml::xml_namespace<char>;
	using Xmlns = xml::xmlns_namespace<char>;

public:
	/// The declarations that hold in one element.
	class scope // NOLINT(readability-identifier-naming): the parser's name for it.
	{
	public:
		/// Around the root.
		explicit scope(XmlNamespaces& namespaces) noexcept : _namespaces(namespaces), _outerCount(0)
		{
		}

		/// In an element of `outer`.
		scope(const scope& outer) noexcept
			: _namespaces(outer._namespaces), _default(outer._default), _outerCount(_namespaces._count),
			  _depth(outer._depth + 1)
		{
		}

		scope& operator=(const scope&) = delete;

		~scope()
		{
			_namespaces._count = _outerCount;
		}

		/// The parser has read an element's start tag and is about to read what is in it. Throws an `XmlError` when it
		/// must not, and the parser's error for a prefix that nothing declares.
		void process_element(Node* element) // NOLINT(readability-identifier-naming): likewise.
		{
			if (_depth > kMaxDepth) [[unlikely]]
				throw XmlError("elements are nested more than 1024 deep", element->name() - 1);
			Attribute* firstPrefixed = nullptr;
			for (Attribute* attribute = element->first_attribute(); attribute != nullptr;
				 attribute = attribute->next_attribute())
			{
				const std::size_t size = attribute->prefix_size();
				if (size == 0)
				{
					if (IsXmlns(attribute->name(), attribute->name_size())) [[unlikely]]
					{
						attribute->namespace_uri(Xmlns::uri(), Xmlns::uri_size);
						_default = attribute;
					}
				}
				else if (std::string_view(attribute->prefix(), size) == kXml)
					attribute->namespace_uri(Xml::uri(), Xml::uri_size);
				else if (IsXmlns(attribute->prefix(), size))
				{
					attribute->namespace_uri(Xmlns::uri(), Xmlns::uri_size);
					_namespaces.Declare(attribute);
				}
				else if (firstPrefixed == nullptr)
					firstPrefixed = attribute;
			}
			if (element->prefix_size() != 0)
				_namespaces.Resolve(*element);
			else if (_default != nullptr)
				element->namespace_uri(_default->value(), _default->value_size());
			for (; firstPrefixed != nullptr; firstPrefixed = firstPrefixed->next_attribute())
			{
				if (firstPrefixed->prefix_size() != 0 && firstPrefixed->namespace_uri_size() == 0)
					_namespaces.Resolve(*firstPrefixed);
			}
		}

	private:
		XmlNamespaces& _namespaces;
		const Attribute* _default = nullptr;
		std::size_t _outerCount; ///< Of the prefixes that are declared outside of the element.
		int _depth = 0;
	};

private:
	static constexpr std::string_view kXml = "xml";

	static bool IsXmlns(const char* name, std::size_t size) noexcept
	{
		return std::string_view(name, size) == "xmlns";
	}

	/// The last declaration of a prefix comes first.
	void Resolve(xml::xml_base<char>& node) const
	{
		const std::string_view prefix(node.prefix(), node.prefix_size());
		for (std::size_t i = _count; i-- != 0;)
		{
			const Attribute& declaration = *_declared[i];
			if (std::string_view(declaration.local_name(), declaration.local_name_size()) == prefix)
				return node.namespace_uri(declaration.value(), declaration.value_size());
		}
		throw xml::parse_error("No namespace definition found", nullptr);
	}

	/// Prefixes are looked up one by one, so that their number is bounded.
	void Declare(const Attribute* attribute)
	{
		if (_declarations++ == kMaxNamespacePrefixes)
			throw XmlError("more than 256 namespace prefixes are declared", attribute->name());
		_declared[_count++] = attribute;
	}

	std::array<const Attribute*, kMaxNamespacePrefixes> _declared;
	std::size_t _count = 0;        ///< Of those that hold in the element at hand.
	std::size_t _declarations = 0; ///< Of all up to here.
};

} // namespace orvan::svg
