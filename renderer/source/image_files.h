// SPDX-License-Identifier: MIT
/// The files that a document may name.
#pragma once

#include "orvan/array.h"
#include "orvan/string.h"
#include "orvan/url.h"

namespace orvan::cairo
{

/// The bytes of the file that `link` names in a document at `base`; none when the document is no file on disk, when the
/// link leads to no file in its folder or below, links of the file system followed, or when the file is larger than
/// `limit` bytes. Fails for want of memory only.
Result<BaseArray<unsigned char>> ReadFileBeside(const Url& base, std::string_view link, double limit) noexcept;

} // namespace orvan::cairo
