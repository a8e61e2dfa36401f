// SPDX-License-Identifier: MIT
/// A document as JSON.
#pragma once

#include "svg_base.h"

namespace orvan::program
{

/// Prints a document as one JSON object, one element a line. Throws `Failure` when memory runs out.
void PrintTreeAsJson(const SVGDocumentRef& document, bool isPlaceholder);

} // namespace orvan::program
