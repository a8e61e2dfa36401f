// SPDX-License-Identifier: MIT
/// The hash that names a content.
#pragma once

#include <string>
#include <string_view>

namespace orvan::batch
{

/// SHA-256 of some bytes, in 64 hexadecimal digits, as `sha256sum` prints it.
std::string GetSha256(std::string_view bytes);

} // namespace orvan::batch
