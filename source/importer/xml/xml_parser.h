// SPDX-License-Identifier: MIT
/// The XML library, as the importer uses it; see `xml_tree.h` for what owns a tree.
#pragma once

#include <cstring>

// Blocks that the host's bulk memory serves, so that the element tree grows into those that were given back.
#define RAPIDXML_DYNAMIC_POOL_SIZE (64 * 1024 - 64)
#include <rapidxml_ns/rapidxml_ns.hpp>

namespace orvan::svg
{

namespace xml = rapidxml_ns;

/// The text stays as it is: names and values are views, references are replaced where a value is used. That keeps
/// places in the text exact, and is faster.
inline constexpr int kXmlParseFlags =
	xml::parse_validate_closing_tags | xml::parse_no_element_values | xml::parse_non_destructive;

} // namespace orvan::svg

/// Most of a file is attribute values in double quotes. The library looks for their ends character by character; the C
/// library does so for many at once.
template <>
template <>
inline void rapidxml_ns::xml_document<char>::skip<rapidxml_ns::xml_document<char>::attribute_value_pred<'"'>,
												  orvan::svg::kXmlParseFlags>(char*& text)
{
	text = strchrnul(text, '"');
}
