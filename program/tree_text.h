// SPDX-License-Identifier: MIT
/// A document for people to read.
#pragma once

#include "output.h"
#include "svg_base.h"

namespace orvan::program
{

/// Prints the tree of a document, indented, one element a line; with colours when `withColor`.
void PrintTreeAsText(Output& output, const SVGDocumentRef& document, bool withColor);

/// The name of a kind of element, as SVG spells it.
std::string_view GetElementName(SVGImportElementKind kind);

} // namespace orvan::program
