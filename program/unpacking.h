// SPDX-License-Identifier: MIT
/// Files that are packed with gzip.
#pragma once

#include "orvan/url.h"

#include <string>

namespace orvan::program
{

/// True when the name of a file says that it is packed (".svgz").
bool IsPacked(const std::string& file);

/// What a file holds, unpacked. Throws `Failure` when it cannot be read, is not packed after all or is damaged, and
/// when it would become larger than 1 GiB.
std::string ReadPacked(const Url& url);

} // namespace orvan::program
