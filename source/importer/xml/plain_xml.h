// SPDX-License-Identifier: MIT
/// A reader of our own for XML as most drawings have it, several times as fast as the XML library.
#pragma once

#include "importer/xml/element_tape.h"

#include <string_view>

namespace orvan::svg
{

/// Puts the elements of a guarded text on an empty tape: the root, which is an svg element, and all below it. Behind
/// the text, `kTextPadding` zeros must stand. What it takes, the library takes as well, and reads the same from it.
///
/// False for a text that it leaves to the library, which knows what is wrong with it, if anything is: other markup
/// around the root than comments and the like, a document type with declarations, blanks around equals signs, names of
/// other characters than those of ASCII, and all that is wrong. Then the tape has no meaning.
///
/// Throws `std::bad_alloc`.
bool ReadPlainXml(std::string_view text, ElementTape& tape);

} // namespace orvan::svg
