// SPDX-License-Identifier: MIT
/// What the plain import takes from the XML library's tree.
#pragma once

#include "importer/xml/element_tape.h"
#include "importer/xml/xml_tree.h"

namespace orvan::svg
{

/// The first svg element that stands in no other element; null when there is none.
const XmlNode* FindRoot(const XmlTree& tree) noexcept;

/// Puts an element and all below it on a tape. The tree's memory is given back on the way. Throws `std::bad_alloc`.
void AppendTree(XmlTree& tree, const XmlNode& root, ElementTape& tape);

} // namespace orvan::svg
