// SPDX-License-Identifier: MIT
/// Attribute values as text, by the table that the importer reads them with.
///
/// A reader that is new in `attribute_rules.cpp` needs a formatter in `value_formatters.h` and a row in
/// `value_text.cpp`; until it has one, a test fails.
#pragma once

#include "importer/complete/attribute_rules.h"
#include "orvan/data_dictionary.h"
#include "writer/number_text.h"

#include <string>
#include <string_view>

namespace orvan::svg
{

/// Where and how a value is written.
struct ValueStyle
{
	NumberStyle numbers;
	/// In a style attribute: no exponents, transforms and paths as CSS has them.
	bool isDeclaration = false;
	/// For the plain import too: colours in 256 steps, as "#rrggbb".
	bool isPlain = false;
};

/// What became of writing a value.
enum class Formatted
{
	absent,    ///< There is no value.
	text,      ///< It was appended.
	impossible ///< There is no text for it; what was appended is to be thrown away.
};

/// The number under which a key of the dictionary is written: "x" for `xList`, "font-weight" for its number.
SVGImportAttribute WrittenAs(SVGImportAttribute key) noexcept;

/// The rule by which an attribute of this number is written; null when there is none.
const complete::Rule* FindWritingRule(SVGImportAttribute number) noexcept;

/// Whether a rule's values can be written: for a test.
bool HasFormatter(const complete::Rule& rule) noexcept;

/// Appends the value that a dictionary has for a rule, on elements of a tag. Not for what stands outside of the
/// dictionary: id, transform, paths, links of uses. May throw std::bad_alloc.
Formatted FormatEntry(std::string& text, const DataDictionary& values, const complete::Rule& rule, complete::Tag tag,
					  const ValueStyle& style);

/// Appends a transform; "none", or nothing in an attribute, for the identity.
bool AppendMatrix(std::string& text, const Matrix2d& matrix, const ValueStyle& style);

/// Appends a link: an id with its "#", anything else as it is. `isId` says that an element has this id.
void AppendLink(std::string& text, std::string_view link, complete::Tag tag, bool isId);

/// Whether a text of CSS or of a whole file may say a keyword, in capitals or with an escape, too. The keyword is in
/// lower case.
bool MayMention(std::string_view text, std::string_view keyword) noexcept;

} // namespace orvan::svg
