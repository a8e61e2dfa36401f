// SPDX-License-Identifier: MIT
/// Memory of host types: the C library's heap, with a hook that lets tests make allocations fail.
#pragma once

#include <cstddef>

namespace orvan::runtime
{

void* Allocate(std::size_t bytes) noexcept;
void* Reallocate(void* memory, std::size_t bytes) noexcept;
void Free(void* memory) noexcept;

} // namespace orvan::runtime
