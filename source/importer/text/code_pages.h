// SPDX-License-Identifier: MIT
/// Encodings in which each byte is a character, those below 0x80 as in ASCII.
#pragma once

#include "importer/text/encoding.h"

#include <string_view>

namespace orvan::svg
{

/// The encoding that goes by this name, in any case; `unknown` when it is none of these.
Encoding FindCodePage(std::string_view name) noexcept;

/// The character that a byte stands for in one of these encodings.
char32_t ReadByte(unsigned char byte, Encoding encoding) noexcept;

} // namespace orvan::svg
