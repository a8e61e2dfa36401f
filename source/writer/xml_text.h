// SPDX-License-Identifier: MIT
/// Texts as they stand in XML.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace orvan::svg
{

/// Why a document cannot be saved, in words for people. Caught where saving begins.
class SaveError : public std::runtime_error
{
public:
	using std::runtime_error::runtime_error;
};

/// Appends the value of an attribute for between two of these quotes. Throws a `SaveError` for what XML cannot hold:
/// control characters, and what is no UTF-8.
void AppendAttributeValue(std::string& xml, std::string_view text, char quote);

/// The same for a style attribute, in which line breaks and tabs stay as they are: to CSS all blanks are one.
void AppendStyleValue(std::string& xml, std::string_view text, char quote);

/// Appends characters for between two tags. Throws likewise.
void AppendCharacters(std::string& xml, std::string_view text);

/// What stands before the colon of a name, the colon included; empty when there is none.
std::string_view PrefixOf(std::string_view name) noexcept;

/// A name without its prefix.
std::string_view WithoutPrefix(std::string_view name) noexcept;

/// Whether a text may be the name of an attribute.
bool IsXmlName(std::string_view name) noexcept;

constexpr bool IsXmlBlank(char c) noexcept
{
	return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

} // namespace orvan::svg
