// SPDX-License-Identifier: MIT
#include "batch/row.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace orvan::batch
{
namespace
{

/// How many bytes the character at the start of a text has; 0 for what is no UTF-8.
std::size_t GetLength(std::string_view text)
{
	struct Form
	{
		unsigned char mask;
		unsigned char mark;
		std::uint32_t least; ///< Anything below has a shorter form.
	};
	constexpr std::array<Form, 4> kForms = {
		{{0x80, 0, 0}, {0xe0, 0xc0, 0x80}, {0xf0, 0xe0, 0x800}, {0xf8, 0xf0, 0x10000}}};
	const auto first = static_cast<unsigned char>(text[0]);
	for (std::size_t i = 0; i < kForms.size(); i++)
	{
		const auto [mask, mark, least] = kForms[i];
		if ((first & mask) != mark)
			continue;
		std::uint32_t character = first & ~mask & 0xffU;
		for (std::size_t at = 1; at <= i; at++)
		{
			if (at == text.size() || (static_cast<unsigned char>(text[at]) & 0xc0) != 0x80)
				return 0;
			character = character << 6 | (static_cast<unsigned char>(text[at]) & 0x3fU);
		}
		const bool isSurrogate = character >= 0xd800 && character < 0xe000;
		return character < least || character > 0x10ffff || isSurrogate ? 0 : i + 1;
	}
	return 0;
}

} // namespace

std::string ToJson(std::string_view text)
{
	std::string json = "\"";
	const auto addEscape = [&](unsigned code)
	{
		char escape[8];
		std::snprintf(escape, sizeof(escape), "\\u%04x", code);
		json += escape;
	};
	// Most of it is copied as it is.
	const auto isPlain = [](char character)
	{
		return character >= 0x20 && character < 0x7f && character != '"' && character != '\\';
	};
	while (true)
	{
		const auto plain = static_cast<std::size_t>(std::ranges::find_if_not(text, isPlain) - text.begin());
		json += text.substr(0, plain);
		text.remove_prefix(plain);
		if (text.empty())
			break;
		const std::size_t length = GetLength(text);
		const auto first = static_cast<unsigned char>(text[0]);
		if (length == 0)
			addEscape(0xdc00U + first);
		else if (first < 0x20 || first == 0x7f)
			addEscape(first);
		else
		{
			json += first == '"' || first == '\\' ? "\\" : "";
			json += text.substr(0, length);
		}
		text.remove_prefix(length == 0 ? 1 : length);
	}
	return json + '"';
}

std::string Row::ToLine() const
{
	std::string line = "{";
	for (const auto& [name, json] : _members)
	{
		line += line.size() > 1 ? ",\"" : "\"";
		line += name;
		line += "\":";
		line += json;
	}
	return line + "}\n";
}

} // namespace orvan::batch
