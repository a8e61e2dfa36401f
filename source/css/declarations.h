// SPDX-License-Identifier: MIT
#pragma once

/// Declarations, as they stand in a style attribute or in the block of a rule.
///
///     std::pmr::vector<Declaration> declarations(memory);
///     ReadDeclarations("fill: RED !important; /* thin */ stroke-width: .5", {.arena = arena}, declarations);
///     // fill is "RED" and important, stroke-width is ".5".
///
/// What CSS Syntax calls invalid costs that declaration and nothing else; what a value means is up to the caller.
/// Nested rules and at-rules are skipped.

#include "report.h"
#include "text.h"

#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <string_view>
#include <vector>

namespace orvan::css
{
/// One declaration. The views are good as long as the text and the arena that it was read with.
struct Declaration
{
	/// In small letters and with escapes resolved; the name of a custom property ("--Name") keeps its case.
	std::string_view name;
	/// As written, without blanks at its ends and without "!important"; never empty unless the property is a custom
	/// one. A blank stands in the place of a comment, and what the end of the text has cut off (a bracket, a quote) is
	/// closed.
	std::string_view value;
	std::uint32_t source = 0;      ///< The text that it stands in: the number that the caller gave with the text.
	std::uint32_t offset = 0;      ///< The byte of that text where the name begins.
	std::uint32_t valueOffset = 0; ///< The byte of that text where the value begins.
	bool isImportant = false;
	bool isCustom = false;     ///< A custom property: its name begins with "--".
	bool hasEscapes = false;   ///< There are escapes in the value, see `Unescape`.
	bool hasVariables = false; ///< There is a var() or env() in the value. See `Variables`.
	/// For the caller: what it wants to remember of the declaration, a property's number for example.
	mutable std::uint32_t tag = 0;
};

/// What reading needs besides the text.
struct ReadOptions
{
	Arena& arena;                 ///< For names and values that differ from what is written.
	std::uint32_t source = 0;     ///< Handed on to declarations and problems.
	ReportSink* report = nullptr; ///< Takes the problems; may be absent.
	std::size_t start = 0;        ///< The byte of a style attribute where a declaration begins that comes first.
};

/// Appends the declarations of a style attribute in their order, also those that a later one overrides. The text must
/// outlive them. Throws std::bad_alloc.
void ReadDeclarations(std::string_view text, const ReadOptions& options, std::pmr::vector<Declaration>& declarations);
} // namespace orvan::css
