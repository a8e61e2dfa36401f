// SPDX-License-Identifier: MIT
/// Checks what the XML parser does not check by itself: that a text holds no zero byte, where the parser would take it
/// to end, and that its character references are right, which the parser leaves in values as they stand. How deep the
/// parser may go is up to `XmlNamespaces`.
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

/// The parser recurses into nested elements, and looks namespace prefixes up one by one. These bounds keep a small
/// hostile text from exhausting the stack or the day.
inline constexpr int kMaxDepth = 1024;
inline constexpr int kMaxNamespacePrefixes = 256;

/// Which numeric character references are right.
enum class XmlReferences
{
	parsed, ///< What the XML parser takes: any number, also of what is no character, and hexadecimal digits anywhere.
	legal,  ///< Those to characters that XML has. All others would leave texts that nobody else can read.
};

/// Throws an `XmlError` when the text (without its terminating zero) holds a zero byte or a malformed numeric character
/// reference. Markup is read exactly as the parser does, so that comments, CDATA sections and the like may hold
/// anything; at the first syntax error the check stops, as the parser then will. The result tells whether the text
/// holds any character or entity reference at all.
bool GuardXml(std::string_view text, XmlReferences accepted = XmlReferences::parsed);

/// The text with its references replaced: the five predefined entities and numeric ones; others stay as they are. At
/// most as long as the text; `target` must have room for that. Returns the end of what was written. Throws an
/// `XmlError` for a malformed numeric reference. A text that was guarded has none.
char* DecodeReferences(std::string_view text, char* target, XmlReferences accepted = XmlReferences::parsed);

} // namespace orvan::svg
