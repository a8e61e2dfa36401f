// SPDX-License-Identifier: MIT
#pragma once

/// Documents for fuzz targets: the module as a host loads it, and texts as files in memory.

#include "svg_base.h"

#include <string>
#include <string_view>
#include <vector>

namespace orvan::fuzz
{
/// A text as a file in memory, for as long as this lives; one at a time. The file's bytes end where the text ends, so
/// that a read beyond them is noticed.
class TextFile
{
public:
	explicit TextFile(std::string_view text);
	TextFile(const TextFile&) = delete;
	~TextFile();

	const Url& GetUrl() const;

private:
	std::vector<char> _bytes;
};

/// A document that has been loaded, with what the load had to say.
struct LoadedDocument
{
	SVGDocumentRef document;
	bool isRefused = false; ///< There was a critical message; the document holds the placeholder.
};

/// Loads a text. The file's bytes end where the text ends, so that a read beyond them is noticed. The load must
/// succeed, with at most one message, whose place must be in the text.
LoadedDocument LoadDocument(std::string_view text);

/// Loads bytes with the complete, tolerant import, whatever it has to say of them. The module must be loaded.
SVGDocumentRef LoadCompletely(std::string_view bytes);

/// Everything that an element says through its interfaces, except its children: equal texts mean equal elements. Ends
/// the process when something is not as it must be: a number that is not finite, an enumeration's value that does not
/// exist, a path without a start, stops that run backwards.
std::string DescribeElement(const SVGElementRef& element);
} // namespace orvan::fuzz
