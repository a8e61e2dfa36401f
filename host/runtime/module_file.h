// SPDX-License-Identifier: MIT
/// Looking into a module's file without loading it.
#pragma once

#include "orvan/result.h"

#include <cstdint>
#include <string>

namespace orvan::runtime
{

/// The ABI version that the module in this file was built against. An I/O error when the file cannot be read, an
/// illegal-argument error when it is no module.
Result<AbiVersion> ReadAbiVersion(const std::string& path) noexcept;

} // namespace orvan::runtime
