/// Memory for many small blocks that come and go together, such as the objects of a document that is being loaded.
///
/// Inside of a bulk scope a thread takes small blocks side by side from a chunk of 64 KiB: a few instructions each, in
/// the order in which they will be walked and released, and the block at the end can grow in place. A chunk counts its
/// blocks and is free again when the last of them is; single blocks are not used again, which is why bulk scopes are
/// for what is released together. Blocks may be freed at any time and by any thread.
#pragma once

#include <cstddef>

namespace orvan::runtime
{

/// Begins and ends a scope of the current thread; scopes nest.
void BeginBulk() noexcept;
void EndBulk() noexcept;

/// A block from the thread's chunk; null when the thread is in no scope, the block is not small, or there is no chunk
/// to be had. The caller then turns to the C library.
void* AllocateInBulk(std::size_t bytes) noexcept;

/// True for a block that came from a chunk.
bool IsInBulk(const void* memory) noexcept;

/// Number of bytes that a block from a chunk has room for.
std::size_t GetBulkSize(const void* memory) noexcept;

/// Makes a block from a chunk larger or smaller where it stands; false when that is not possible. A smaller size is
/// always possible, though the room may stay unused.
bool ResizeInBulk(void* memory, std::size_t bytes) noexcept;

void FreeInBulk(void* memory) noexcept;

} // namespace orvan::runtime
