// The guard in front of the XML parser, beside the parser itself.

#include "importer/xml_guard.h"
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

/// Compares two trees of one text; the result is the depth of the deepest element.
int Compare(const xml::xml_node<>& raw, const xml::xml_node<>& replaced)
{
	int depth = 0;
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
		if (node->type() == xml::node_element)
			depth = std::max(depth, 1 + Compare(*node, *other));
		other = other->next_sibling();
	}
	return depth;
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

	// Refused for a reference, not for a bound of the guard's own.
	const bool isAboutReference = verdict.find("deep") == verdict.npos && verdict.find("prefixes") == verdict.npos;
	std::string rawText(text);
	std::string replacedText(text);
	xml::xml_document<> raw;
	xml::xml_document<> replaced;
	const bool isReadRaw = Parse<kFlags | xml::parse_non_destructive>(raw, rawText);
	const bool isReadReplaced = Parse<kFlags>(replaced, replacedText);
	if (verdict.empty())
	{
		Require(isReadRaw == isReadReplaced, "what passes has no reference that the parser refuses", text);
		if (isReadRaw)
			Require(Compare(raw, replaced) <= orvan::svg::kMaxDepth, "what passes is not nested too deep", text);
	}
	else if (isAboutReference)
		Require(!isReadReplaced || HasLongNumber(text), "references are refused only where the parser does", text);
	else if (isReadRaw && verdict.find("deep") != verdict.npos)
		Require(Compare(raw, raw) > orvan::svg::kMaxDepth, "what is refused for its depth is that deep", text);
	return 0;
}
