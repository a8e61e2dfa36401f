// SPDX-License-Identifier: MIT
/// Telling the address sanitizer which bytes of memory that we hand out ourselves may be touched. In other builds all
/// of this is nothing.
#pragma once

#include <cstddef>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ORVAN_ADDRESS_SANITIZER
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define ORVAN_ADDRESS_SANITIZER
#endif

#ifdef ORVAN_ADDRESS_SANITIZER
#include <sanitizer/asan_interface.h>
#include <sanitizer/lsan_interface.h>
#endif

namespace orvan::runtime
{

#ifdef ORVAN_ADDRESS_SANITIZER
inline constexpr bool kPoisons = true;

inline void Poison(const void* memory, std::size_t bytes) noexcept
{
	__asan_poison_memory_region(memory, bytes);
}

inline void Unpoison(const void* memory, std::size_t bytes) noexcept
{
	__asan_unpoison_memory_region(memory, bytes);
}

/// Has the search for leaks follow the pointers that stand in memory that is not from the C library.
inline void KeepAlive(const void* memory, std::size_t bytes) noexcept
{
	__lsan_register_root_region(memory, bytes);
}
#else
inline constexpr bool kPoisons = false;

inline void Poison(const void*, std::size_t) noexcept
{
}

inline void Unpoison(const void*, std::size_t) noexcept
{
}

inline void KeepAlive(const void*, std::size_t) noexcept
{
}
#endif

} // namespace orvan::runtime
