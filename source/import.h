// SPDX-License-Identifier: MIT
/// The import driver: the bytes of a file in, a tree out.
#pragma once

#include "orvan/hash_map.h"
#include "svg_elements.h"

#include <cstdint>

namespace orvan::svg
{

/// What an import yields: the root with the elements by id, or a null root when the text has nothing usable.
struct ImportResult
{
	SVGElementRef root;
	StringMap<SVGElementRef> elementsById;
};

/// Imports a text of `count` bytes, the last of which is a terminating zero; a count below 1 is no text at all. The
/// text is parsed where it stands and must stay in place until the function returns.
///
/// Fails with errors of the host, such as out of memory. A text that is refused (broken XML, an invalid value) is no
/// failure: the reason goes to the diagnostics, with the place in the text beside it, and the root is null.
Result<ImportResult> Import(char* text, std::int64_t count) noexcept;

} // namespace orvan::svg
