// SPDX-License-Identifier: MIT
/// Memory for many small blocks that come and go together, such as the objects of a document that is being loaded.
///
/// Inside of a bulk scope a thread takes small blocks side by side from a chunk of 64 KiB: a few instructions each, in
/// the order in which they will be walked and released, and the block at the end can grow in place. Blocks of some
/// kilobytes are taken where the chunk at hand has room, and one that comes close to filling a chunk gets one of its
/// own. A chunk counts its blocks and is free again when the last of them is; single blocks are not used again, which
/// is why bulk scopes are for what is released together. Blocks may be freed at any time and by any thread.
///
/// The address sanitizer sees what becomes of each block: a free one, the heads and what is left of the last sixteen
/// bytes of a block are poisoned.
#pragma once

#include "poison.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <new>

namespace orvan::runtime
{

/// Begins and ends a scope of the current thread; scopes nest.
void BeginBulk() noexcept;
void EndBulk() noexcept;

/// A block from the thread's chunk; null when the thread is in no scope, the block is not small, or there is no chunk
/// to be had. The caller then turns to the C library.
void* AllocateInBulk(std::size_t bytes) noexcept;

/// The same as long as the chunk at hand has room: a few instructions without a call. Null otherwise.
void* TryAllocateInBulk(std::size_t bytes) noexcept;

/// True for a block that came from a chunk.
bool IsInBulk(const void* memory) noexcept;

/// Number of bytes that a block from a chunk has room for.
std::size_t GetBulkSize(const void* memory) noexcept;

/// Makes a block from a chunk larger or smaller where it stands; false when that is not possible. A smaller size is
/// always possible, though the room may stay unused.
bool ResizeInBulk(void* memory, std::size_t bytes) noexcept;

void FreeInBulk(void* memory) noexcept;

// What every block passes through is inline, the rest stands in the source file.

namespace detail
{
inline constexpr std::size_t kChunkSize = std::size_t(64) << 10;
inline constexpr std::size_t kRegionSize = std::size_t(16) << 30; ///< Of addresses; memory is taken where it is used.
inline constexpr std::size_t kSmallBlock = 2048;   ///< Takes another chunk when that at hand has no room.
inline constexpr std::size_t kLargestBlock = 8192; ///< In between, a block would leave too much of a chunk unused.

/// The head of a chunk. Blocks follow, each with its size in front.
struct Chunk
{
	/// Blocks in use. While a thread takes blocks from the chunk, `kHeld` minus the blocks that other threads freed: so
	/// that the thread itself needs no atomic operation.
	std::atomic<std::int64_t> live;
	Chunk* next; ///< In the list of free chunks.
};

struct BlockHead
{
	std::uint64_t size; ///< Of the block with this head, a multiple of 16.
};

/// The chunks that a thread works on. Constant-initialised and never destroyed, so that it serves as long as the thread
/// has any code.
struct ThreadBulk
{
	Chunk* chunk = nullptr;          ///< Held: the one that blocks are taken from.
	std::size_t offset = kChunkSize; ///< Of the next block's head.
	std::int64_t taken = 0;          ///< Blocks taken from the chunk, less those that the thread itself freed.
	Chunk* emptied = nullptr;        ///< The other chunk that the thread freed blocks of most recently.
	std::int64_t freed = 0;          ///< Blocks of it whose freeing the chunk has not been told of yet.
	int depth = 0;                   ///< Of scopes.
	bool isOpen = false;             ///< What is kept here will be given up when the thread ends.
	bool isClosed = false;           ///< The thread is ending: nothing may be kept any more.
};

[[gnu::visibility("hidden")]] extern constinit thread_local ThreadBulk t_bulk;

/// Where the addresses of chunks begin; so high that no block is there, while there are none.
[[gnu::visibility("hidden")]] extern constinit std::atomic<std::uintptr_t> g_begin;

/// Makes the block behind `head` one of `size` bytes, of which the first `bytes` may be touched.
inline void* OpenBlock(void* head, std::size_t size, std::size_t bytes) noexcept
{
	Unpoison(head, sizeof(BlockHead) + (bytes != 0 ? bytes : 1));
	void* memory = new (head) BlockHead{size} + 1;
	Poison(head, sizeof(BlockHead));
	return memory;
}

/// Poisons a block that is being freed, and finds one that is free already.
inline void CloseBlock(void* memory) noexcept
{
	if constexpr (kPoisons)
	{
		static_cast<void>(*static_cast<volatile char*>(memory));
		Poison(memory, GetBulkSize(memory));
	}
}

void FreeElsewhere(Chunk* chunk) noexcept;

inline Chunk* ChunkOf(const void* memory) noexcept
{
	return reinterpret_cast<Chunk*>(reinterpret_cast<std::uintptr_t>(memory) / kChunkSize * kChunkSize);
}

constexpr std::size_t RoundUp(std::size_t bytes) noexcept
{
	return (bytes + sizeof(BlockHead) + 15) / 16 * 16;
}
} // namespace detail

inline void* TryAllocateInBulk(std::size_t bytes) noexcept
{
	detail::ThreadBulk& bulk = detail::t_bulk;
	const std::size_t size = detail::RoundUp(bytes);
	if (bulk.depth == 0 || bytes > detail::kLargestBlock || detail::kChunkSize - bulk.offset < size)
		return nullptr;
	char* at = reinterpret_cast<char*>(bulk.chunk) + bulk.offset;
	bulk.offset += size;
	bulk.taken++;
	return detail::OpenBlock(at, size, bytes);
}

inline bool IsInBulk(const void* memory) noexcept
{
	return reinterpret_cast<std::uintptr_t>(memory) - detail::g_begin.load(std::memory_order_relaxed) <
		   detail::kRegionSize - detail::kChunkSize;
}

inline void FreeInBulk(void* memory) noexcept
{
	detail::CloseBlock(memory);
	detail::ThreadBulk& bulk = detail::t_bulk;
	detail::Chunk* chunk = detail::ChunkOf(memory);
	if (chunk == bulk.chunk)
		bulk.taken--;
	// Blocks that stood side by side are freed one after the other, as a rule, so the chunk is told of many at a time:
	// at the latest when the thread has freed all that are left.
	else if (chunk == bulk.emptied && chunk->live.load(std::memory_order_relaxed) > bulk.freed + 1)
		bulk.freed++;
	else
		detail::FreeElsewhere(chunk);
}

} // namespace orvan::runtime
