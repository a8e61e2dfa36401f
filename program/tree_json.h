// SPDX-License-Identifier: MIT
/// A document as JSON.
#pragma once

#include "json_writer.h"
#include "svg_base.h"

namespace orvan::program
{

/// Prints a document as one JSON object, one element a line where the layout has lines. Throws `Failure` when memory
/// runs out.
void PrintTreeAsJson(JsonWriter& json, const SVGDocumentRef& document, bool isPlaceholder);

} // namespace orvan::program
