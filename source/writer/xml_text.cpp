// SPDX-License-Identifier: MIT
#include "writer/xml_text.h"

#include "importer/text/encoding.h"

#include <algorithm>

namespace orvan::svg
{
namespace
{

void CheckCharacters(std::string_view text)
{
	if (!IsUtf8(text))
		throw SaveError("A text that is no UTF-8 cannot be written.");
	for (std::size_t i = 0; i < text.size(); i++)
	{
		const auto byte = static_cast<unsigned char>(text[i]);
		const bool isControl = byte < 0x20 && !IsXmlBlank(text[i]);
		const bool isNoCharacter = text.substr(i, 3) == "\xef\xbf\xbe" || text.substr(i, 3) == "\xef\xbf\xbf";
		if (isControl || isNoCharacter)
			throw SaveError("A text with a control character cannot be written in XML.");
	}
}

void AppendEscaped(std::string& xml, std::string_view text, char quote, bool keepsBlanks)
{
	CheckCharacters(text);
	for (const char c : text)
	{
		if (c == '&')
			xml += "&amp;";
		else if (c == '<')
			xml += "&lt;";
		else if (c == quote)
			xml += quote == '"' ? "&quot;" : "&#39;";
		else if (c != ' ' && IsXmlBlank(c) && !keepsBlanks)
			xml += c == '\t' ? "&#9;" : c == '\n' ? "&#10;" : "&#13;";
		else
			xml += c;
	}
}

} // namespace

void AppendAttributeValue(std::string& xml, std::string_view text, char quote)
{
	AppendEscaped(xml, text, quote, false);
}

void AppendStyleValue(std::string& xml, std::string_view text, char quote)
{
	AppendEscaped(xml, text, quote, true);
}

void AppendCharacters(std::string& xml, std::string_view text)
{
	CheckCharacters(text);
	for (std::size_t i = 0; i < text.size(); i++)
	{
		const char c = text[i];
		if (c == '&')
			xml += "&amp;";
		else if (c == '<')
			xml += "&lt;";
		else if (c == '>' && i >= 2 && text.substr(i - 2, 2) == "]]")
			xml += "&gt;";
		else if (c == '\r')
			xml += "&#13;";
		else
			xml += c;
	}
}

std::string_view PrefixOf(std::string_view name) noexcept
{
	const std::size_t colon = name.find(':');
	return colon == name.npos ? std::string_view() : name.substr(0, colon + 1);
}

std::string_view WithoutPrefix(std::string_view name) noexcept
{
	return name.substr(PrefixOf(name).size());
}

bool IsXmlName(std::string_view name) noexcept
{
	const auto isStart = [](char c)
	{
		return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || static_cast<unsigned char>(c) >= 0x80;
	};
	const auto isPart = [&](char c)
	{
		return isStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.' || c == ':';
	};
	return !name.empty() && isStart(name[0]) && name.back() != ':' && std::count(name.begin(), name.end(), ':') <= 1 &&
		   std::all_of(name.begin(), name.end(), isPart) && isStart(WithoutPrefix(name)[0]) && IsUtf8(name);
}

} // namespace orvan::svg
