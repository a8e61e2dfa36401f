// SPDX-License-Identifier: MIT
#pragma once

#include "orvan/array.h"
#include "orvan/result.h"

#include <cstddef>
#include <string_view>

namespace orvan::svg
{

/// Whether the bytes begin like a gzip file.
bool IsGzip(std::string_view bytes) noexcept;

/// Unpacks a gzip file of one or more members. Bytes behind the last member are ignored, as gzip does it. Fails for
/// want of memory; throws an `XmlError` when the file is damaged or comes to more than `limit` bytes.
Result<BaseArray<char>> Gunzip(std::string_view bytes, std::size_t limit);

} // namespace orvan::svg
