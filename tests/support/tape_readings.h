// SPDX-License-Identifier: MIT
/// What the two readers of XML put on a tape, as texts that can be compared.
#pragma once

#include "importer/text/source_text.h"
#include "importer/xml/plain_xml.h"
#include "importer/xml/tree_tape.h"

#include <optional>
#include <string>
#include <vector>

namespace orvan::svg
{

/// A text as a reader wants it, in room that ends behind it.
class PaddedText
{
public:
	explicit PaddedText(std::string_view text) : _size(text.size()), _characters(text.begin(), text.end())
	{
		_characters.resize(text.size() + 1 + kTextPadding);
		_characters.shrink_to_fit();
	}

	char* Data()
	{
		return _characters.data();
	}

	std::string_view View() const
	{
		return {_characters.data(), _size};
	}

private:
	std::size_t _size;
	std::vector<char> _characters;
};

/// Elements as "<name:kind@place … >", attributes as "number='value'@place", texts in brackets.
inline std::string Describe(ElementTape& tape, const PaddedText& text)
{
	std::string description;
	const TapeEntry* entry = tape.First();
	for (int depth = 0;; entry = tape.Next(entry))
	{
		const std::string what(entry->Text());
		const std::string place = '@' + std::to_string(entry->Text().data() - text.View().data());
		const std::string number = std::to_string(entry->Number());
		switch (entry->Mark())
		{
		case TapeMark::element:
			description += '<' + what + ':' + number + place + ' ';
			depth++;
			break;
		case TapeMark::attribute:
			description += entry->Number() != 0 ? number + "='" + what + "'" + place + ' ' : "";
			break;
		case TapeMark::text:
		case TapeMark::rawText:
			description += entry->Mark() == TapeMark::text ? "[" : "[raw ";
			description += what.empty() ? "]" : what + place + "]";
			break;
		case TapeMark::end:
			description += '>';
			if (--depth == 0)
				return description;
			break;
		case TapeMark::link:
			return "the walk stops at a link";
		}
	}
}

/// Nothing where the text is left to the library.
inline std::optional<std::string> ReadPlainly(std::string_view text)
{
	const PaddedText padded(text);
	ElementTape tape;
	return ReadPlainXml(padded.View(), tape) ? std::optional(Describe(tape, padded)) : std::nullopt;
}

/// Nothing where there is no root or the library refuses the text.
inline std::optional<std::string> ReadWithLibrary(std::string_view text)
{
	PaddedText padded(text);
	ElementTape tape;
	try
	{
		XmlTree tree(padded.Data());
		const XmlNode* const root = FindRoot(tree);
		if (root == nullptr)
			return std::nullopt;
		AppendTree(tree, *root, tape);
	}
	catch (const xml::parse_error&)
	{
		return std::nullopt;
	}
	catch (const XmlError&)
	{
		return std::nullopt;
	}
	return Describe(tape, padded);
}

} // namespace orvan::svg
