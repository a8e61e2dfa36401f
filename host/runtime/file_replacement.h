// SPDX-License-Identifier: MIT
/// Writing files so that the old one stays until the new one is complete.
#pragma once

#include "orvan/url.h"

namespace orvan::runtime
{

ErrorBlock* ReplaceFile(const Url& url, const void* bytes, std::int64_t count, FileStamp* stamp) noexcept;

} // namespace orvan::runtime
