// SPDX-License-Identifier: MIT
#pragma once

/// Edits of documents that keep their source, and what must hold when they are saved.

#include "svg_source.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace orvan::fuzz
{
/// What can be done to a document.
enum class EditKind
{
	color,
	transform,
	path,
	id,
	attribute, ///< One that SVG does not know.
	width,
	removal,
	move,
	addition,
	clearing, ///< Of whatever the element says about itself.
	classes,
	count
};

/// Loads bytes completely and tolerantly, or plainly, keeping their source. Says nothing about them.
SVGDocumentRef OpenForEditing(std::string_view bytes, bool isComplete = true);

/// Does one edit to an element that a number picks. False when there is no element that it can be done to.
bool EditDocument(const SVGDocumentRef& document, EditKind kind, std::uint64_t number);

/// Whether something in a tree is moved by percentages. What these come to depends on a viewport, which may have been
/// edited, and where they are written anew it is all that is left of them.
bool MovesByPercentages(const SVGElementRef& root);

/// What a tree says: equal texts mean equal trees, but for transforms where these are left out.
std::string DescribeSaved(const SVGElementRef& root, bool hasTransforms = true);

/// The bytes that are saved; the empty text, and the reason, when that is refused.
std::string Save(const SVGDocumentRef& document, std::string* reason = nullptr);

/// The first line in which two such texts differ, as each has it.
std::string ShowDifference(std::string_view before, std::string_view after);

/// Number of lines that are only in the one text, or only in the other, from the first to the last that differs.
struct LineDifference
{
	std::size_t removed = 0;
	std::size_t added = 0;
};
LineDifference CompareLines(std::string_view before, std::string_view after);

/// Whether a difference is no larger than an edit of the kind has to be.
bool IsSmall(EditKind kind, const LineDifference& difference);
} // namespace orvan::fuzz
