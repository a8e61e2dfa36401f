// SPDX-License-Identifier: MIT
// What stands between a text and the XML parser, beside the parser as it comes.

#include "importer/xml/xml_namespaces.h"
#include "require.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

using orvan::fuzz::Require;

namespace
{
namespace xml = orvan::svg::xml;

constexpr int kFlags = xml::parse_validate_closing_tags | xml::parse_no_element_values;
/// With a flag that changes nothing, so that the parser looks for quotes by itself.
constexpr int kRawFlags = orvan::svg::kXmlParseFlags | xml::parse_no_utf8;

/// "" when the importer's parse takes the text.
std::string Judge(xml::xml_document<>& document, std::vector<char>& text)
{
	try
	{
		document.parse_ns<orvan::svg::kXmlParseFlags, orvan::svg::XmlNamespaces>(text.data());
		return {};
	}
	catch (const xml::parse_error&)
	{
		return "syntax";
	}
	catch (const orvan::svg::XmlError& error)
	{
		Require(error.GetWhere() >= text.data() && error.GetWhere() < text.data() + text.size(),
				"a refusal's place is in the text");
		return error.what();
	}
}

/// "" when the guard lets the text pass.
std::string Guard(std::string_view text)
{
	try
	{
		orvan::svg::GuardXml(text);
		return {};
	}
	catch (const orvan::svg::XmlError& error)
	{
		Require(error.GetWhere() >= text.data() && error.GetWhere() <= text.data() + text.size(),
				"a refusal's place is in the text", text);
		return error.what();
	}
}

template <int flags>
bool Parse(xml::xml_document<>& document, std::string& text)
{
	try
	{
		document.parse<flags>(text.data());
		return true;
	}
	catch (const xml::parse_error&)
	{
		return false;
	}
}

/// The decoder's reading of a value as it stands in the text must be what the parser's own replacement makes of it.
void CompareValue(const xml::xml_base<>& raw, const xml::xml_base<>& replaced)
{
	const std::vector<char> text(raw.value(), raw.value() + raw.value_size());
	std::vector<char> decoded(text.size());
	decoded.resize(static_cast<std::size_t>(orvan::svg::DecodeReferences({text.data(), text.size()}, decoded.data()) -
											decoded.data()));
	Require(std::equal(decoded.begin(), decoded.end(), replaced.value(), replaced.value() + replaced.value_size()),
			"references are replaced as the parser does", {text.data(), text.size()});
}

bool HaveSameNamespace(const xml::xml_base<>& one, const xml::xml_base<>& other)
{
	return std::string_view(one.namespace_uri(), one.namespace_uri_size()) ==
		   std::string_view(other.namespace_uri(), other.namespace_uri_size());
}

/// Compares the parser's tree of a text with the importer's.
void CompareNamespaces(const xml::xml_node<>& own, const xml::xml_node<>& imported)
{
	const auto* other = imported.first_node();
	for (const auto* node = own.first_node(); node != nullptr; node = node->next_sibling())
	{
		Require(other != nullptr && HaveSameNamespace(*node, *other), "elements have the parser's namespaces");
		const auto* attribute = other->first_attribute();
		for (const auto* at = node->first_attribute(); at != nullptr; at = at->next_attribute())
		{
			Require(attribute != nullptr && HaveSameNamespace(*at, *attribute), "and so have attributes");
			attribute = attribute->next_attribute();
		}
		CompareNamespaces(*node, *other);
		other = other->next_sibling();
	}
}

/// Compares two trees of one text.
void Compare(const xml::xml_node<>& raw, const xml::xml_node<>& replaced)
{
	const auto* other = replaced.first_node();
	for (const auto* node = raw.first_node(); node != nullptr; node = node->next_sibling())
	{
		Require(other != nullptr && node->type() == other->type(), "both trees have the same nodes");
		if (node->type() == xml::node_data)
			CompareValue(*node, *other);
		const auto* attribute = other->first_attribute();
		for (const auto* at = node->first_attribute(); at != nullptr; at = at->next_attribute())
		{
			CompareValue(*at, *attribute);
			attribute = attribute->next_attribute();
		}
		Compare(*node, *other);
		other = other->next_sibling();
	}
}

/// What is bounded.
struct Extent
{
	int depth = 0;
	int prefixes = 0;
};

Extent Measure(const xml::xml_node<>& parent)
{
	Extent extent;
	for (const auto* node = parent.first_node(); node != nullptr; node = node->next_sibling())
	{
		for (const auto* at = node->first_attribute(); at != nullptr; at = at->next_attribute())
			extent.prefixes += std::string_view(at->prefix(), at->prefix_size()) == "xmlns" ? 1 : 0;
		const Extent below = Measure(*node);
		extent.prefixes += below.prefixes;
		if (node->type() == xml::node_element)
			extent.depth = std::max(extent.depth, 1 + below.depth);
	}
	return extent;
}

/// True when the text has so long a run of digits that the parser's arithmetic wraps around.
bool HasLongNumber(std::string_view text)
{
	std::size_t run = 0;
	for (const char c : text)
	{
		run = std::string_view("0123456789abcdefABCDEF").find(c) != std::string_view::npos ? run + 1 : 0;
		if (run > 15)
			return true;
	}
	return false;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
	// Without a terminating zero, so that a read beyond the end is noticed.
	std::vector<char> bytes(data, data + size);
	bytes.shrink_to_fit();
	const std::string_view text(bytes.data(), bytes.size());
	const std::string verdict = Guard(text);
	if (text.find('\0') != text.npos)
	{
		Require(!verdict.empty(), "zero bytes are refused", text);
		return 0;
	}

	std::string rawText(text);
	std::string replacedText(text);
	xml::xml_document<> raw;
	xml::xml_document<> replaced;
	const bool isReadRaw = Parse<kRawFlags>(raw, rawText);
	const bool isReadReplaced = Parse<kFlags>(replaced, replacedText);
	if (verdict.empty())
	{
		Require(isReadRaw == isReadReplaced, "what passes has no reference that the parser refuses", text);
		if (isReadRaw)
			Compare(raw, replaced);
	}
	else
		Require(!isReadReplaced || HasLongNumber(text), "references are refused only where the parser does", text);

	xml::xml_document<> imported;
	bytes.push_back('\0');
	const std::string refusal = Judge(imported, bytes);
	const Extent extent = isReadRaw ? Measure(raw) : Extent();
	const bool isTooDeep = extent.depth > orvan::svg::kMaxDepth;
	const bool isTooWide = extent.prefixes > orvan::svg::kMaxNamespacePrefixes;
	Require((isReadRaw && !isTooDeep && !isTooWide) == refusal.empty(), "the parser and the bounds alone refuse",
			rawText);
	Require(!isReadRaw || (refusal.find("deep") != refusal.npos ? isTooDeep : isTooWide || refusal.empty()),
			"and a refusal says for what", rawText);
	if (refusal.empty())
		CompareNamespaces(raw, imported);
	return 0;
}
