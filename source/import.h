// SPDX-License-Identifier: MIT
/// The import driver: the bytes of a file in, a tree out.
#pragma once

#include "orvan/hash_map.h"
#include "svg_elements.h"
#include "svg_import.h"
#include "writer/document_source.h"

namespace orvan::svg
{

/// What an import yields: the root with the elements by id, or a null root when the text has nothing usable.
struct ImportResult
{
	SVGElementRef root;
	StringMap<SVGElementRef> elementsById;
	DocumentSourcePointer source; ///< Where there is a root and the options ask for it.
	bool needsWholeText = false;  ///< Nothing was made of the text: it has to be imported as `TextUse::whole`.
};

/// What the caller can do about a text.
enum class TextUse
{
	whole,
	repeatable, ///< Provide it again, so that an import may give its memory back while it makes the tree.
};

/// What a file holds, with a zero behind it, and room for padding.
struct FileText
{
	BaseArray<char> bytes;
	TextUse use = TextUse::whole;

	/// Makes room for `count` bytes, which are still to be written, and puts a zero behind them.
	Result<void> MakeRoom(std::size_t count) noexcept;
};

/// Imports the bytes of a file, behind which a terminating zero stands that the count contains; no bytes at all are no
/// text. They are taken over, and parsed where they stand.
///
/// Fails with errors of the host, such as out of memory. A text that is refused (broken XML, an invalid value) is no
/// failure: the reason goes to the diagnostics, with the place in the text beside it, and to the report, and the root
/// is null.
Result<ImportResult> Import(BaseArray<char> bytes, const SVGImportOptions& options, SVGImportReport& report,
							TextUse use = TextUse::whole) noexcept;

} // namespace orvan::svg
