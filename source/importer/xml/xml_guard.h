// SPDX-License-Identifier: MIT
/// Checks that a text is safe to hand to the XML parser.
///
/// The parser recurses into nested elements, looks namespace prefixes up one by one, and stops at a zero byte; a small
/// hostile file could exhaust the stack or the day. The guard bounds all three before the parser runs. It reads markup
/// exactly as the parser does, so that neither comments, CDATA sections, processing instructions, a document type nor
/// quoted ">" make it count too much or too little; at the first syntax error it stops, as the parser then will.
#pragma once

#include <cstddef>
#include <exception>
#include <string_view>

namespace orvan::svg
{

/// A text that the XML parser must not see, or whose character references are wrong.
class XmlError : public std::exception
{
public:
	XmlError(const char* message, const char* where) noexcept : _message(message), _where(where)
	{
	}

	const char* what() const noexcept override
	{
		return _message;
	}

	/// The place in the text.
	const char* GetWhere() const noexcept
	{
		return _where;
	}

private:
	const char* _message;
	const char* _where;
};

inline constexpr int kMaxDepth = 1024;
inline constexpr int kMaxNamespacePrefixes = 256;

/// Throws an `XmlError` when the text (without its terminating zero) holds a zero byte, nests elements more than 1,024
/// deep, declares more than 256 namespace prefixes, or has a malformed numeric character reference. The result tells
/// whether the text holds any character or entity reference at all.
bool GuardXml(std::string_view text);

/// The text with its references replaced: the five predefined entities and numeric ones; others stay as they are. At
/// most as long as the text; `target` must have room for that. Returns the end of what was written. Throws an
/// `XmlError` for a malformed numeric reference.
char* DecodeReferences(std::string_view text, char* target);

} // namespace orvan::svg
