// SPDX-License-Identifier: MIT
// The guard in front of the XML parser, beside the parser itself.

#include "importer/xml/xml_guard.h"
#include "require.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include <rapidxml_ns/rapidxml_ns.hpp>

using orvan::fuzz::Require;

namespace
{
namespace xml = rapidxml_ns;

constexpr int kFlags = xml::parse_validate_closing_tags | xml::parse_no_element_values;

/// "" when the guard lets the text pass.
std::string Judge(std::string_view text)
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

/// What the guard bounds.
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
	const std::string verdict = Judge(text);
	if (text.find('\0') != text.npos)
	{
		Require(!verdict.empty(), "zero bytes are refused", text);
		return 0;
	}

	std::string rawText(text);
	std::string replacedText(text);
	xml::xml_document<> raw;
	xml::xml_document<> replaced;
	const bool isReadRaw = Parse<kFlags | xml::parse_non_destructive>(raw, rawText);
	const bool isReadReplaced = Parse<kFlags>(replaced, replacedText);
	const Extent extent = isReadRaw ? Measure(raw) : Extent();
	if (verdict.empty())
	{
		Require(isReadRaw == isReadReplaced, "what passes has no reference that the parser refuses", text);
		Require(!isReadRaw || extent.depth <= orvan::svg::kMaxDepth, "what passes is not nested too deep", text);
		Require(!isReadRaw || extent.prefixes <= orvan::svg::kMaxNamespacePrefixes, "nor has it too many prefixes",
				text);
		if (isReadRaw)
			Compare(raw, replaced);
	}
	else if (verdict.find("deep") != verdict.npos)
		Require(!isReadRaw || extent.depth > orvan::svg::kMaxDepth, "what is refused for its depth is that deep", text);
	else if (verdict.find("prefixes") != verdict.npos)
		Require(!isReadRaw || extent.prefixes > orvan::svg::kMaxNamespacePrefixes, "and has that many prefixes", text);
	else
		Require(!isReadReplaced || HasLongNumber(text), "references are refused only where the parser does", text);
	return 0;
}
