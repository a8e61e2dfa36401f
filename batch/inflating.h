// SPDX-License-Identifier: MIT
/// Unpacking what was packed by gzip.
#pragma once

#include <string>
#include <string_view>

namespace orvan::batch
{

/// What an input may have at most, unpacked.
inline constexpr std::size_t kMostBytes = std::size_t(1) << 30;

/// The bytes unpacked. Throws `std::runtime_error` for what is damaged or becomes larger than `kMostBytes`.
std::string Inflate(std::string_view packed);

} // namespace orvan::batch
