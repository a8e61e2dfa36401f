// SPDX-License-Identifier: MIT
/// What an element says, as text.
#pragma once

#include "elements/element_base.h"
#include "writer/document_source.h"
#include "writer/value_text.h"

#include <optional>
#include <string>
#include <vector>

namespace orvan::svg
{

/// The tag of an element: the one that it was loaded with or, of a new one, the one that it would be written with.
/// `record` is null for elements that are not in the source.
complete::Tag TagOfElement(const ElementBase& element, const DocumentSource* source, const SourceElement* record);

/// Appends the value of an attribute as it is now, from wherever it stands in the element. For `points` and `d` alike
/// the path, in the form of the tag.
Formatted FormatAttribute(std::string& text, const ElementBase& element, const complete::Rule& rule, complete::Tag tag,
						  const ValueStyle& style);

/// The same, as if the element had these attributes in its dictionary.
Formatted FormatAttribute(std::string& text, const ElementBase& element, const DataDictionary& attributes,
						  const complete::Rule& rule, complete::Tag tag, const ValueStyle& style);

/// The rules of all that an element with these attributes says: the id first, then by their numbers, each once. Throws
/// a `SaveError` for an entry of the dictionary that has no name.
std::vector<const complete::Rule*> ListRules(const ElementBase& element, const DataDictionary& attributes,
											 complete::Tag tag);

/// Whether the complete import reads a text as a value that is written like `expected`.
bool ReadsAs(const complete::Rule& rule, complete::Tag tag, std::string_view text, grammar::Source source,
			 std::string_view expected);

/// Reads a text by a rule into a new element of the tag; null when it is refused.
Result<SVGElementRef> ReadIntoNew(const complete::Rule& rule, complete::Tag tag, std::string_view text,
								  grammar::Source source);

/// The implementation behind a reference to an element of this module; null for others and for none.
ElementBase* ElementOf(const SVGElementRef& reference) noexcept;

/// Whether an element is a part of a text: its blanks say something.
bool IsInText(const ElementBase& element) noexcept;

} // namespace orvan::svg
