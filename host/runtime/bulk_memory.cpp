// SPDX-License-Identifier: MIT
#include "bulk_memory.h"

#include <mutex>
#include <sys/mman.h>
#include <utility>

namespace orvan::runtime
{

constinit thread_local detail::ThreadBulk detail::t_bulk;
constinit std::atomic<std::uintptr_t> detail::g_begin = UINTPTR_MAX - kRegionSize;

namespace
{

using namespace detail;

/// Free chunks that keep their memory, 64 MiB of it, which is also what the C library would keep; that of others goes
/// to the system, and having it back costs as much again as filling it.
constexpr std::size_t kWarmChunks = 1024;

constexpr std::int64_t kHeld = std::int64_t(1) << 40;

/// Blocks are aligned to 16 bytes, their heads stand before them.
constexpr std::size_t kFirstOffset = (sizeof(Chunk) + sizeof(BlockHead) + 15) / 16 * 16 - sizeof(BlockHead);

/// The addresses that all chunks lie in, so that one comparison tells whether a block is from a chunk.
class Region
{
public:
	Region() noexcept
	{
		void* memory = mmap(nullptr, kRegionSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
		if (memory == MAP_FAILED)
			return;
		const auto begin = (reinterpret_cast<std::uintptr_t>(memory) + kChunkSize - 1) / kChunkSize * kChunkSize;
		_next = begin;
		_end = reinterpret_cast<std::uintptr_t>(memory) + kRegionSize;
		g_begin.store(begin, std::memory_order_release);
	}

	/// A chunk that the caller holds; null when there is none.
	Chunk* Take() noexcept
	{
		const std::lock_guard lock(_mutex);
		if (Chunk* chunk = _free)
		{
			_free = chunk->next;
			_freeCount--;
			return new (chunk) Chunk{{kHeld}, nullptr};
		}
		if (_end - _next < kChunkSize ||
			mprotect(reinterpret_cast<void*>(_next), kChunkSize, PROT_READ | PROT_WRITE) != 0)
			return nullptr;
		void* fresh = reinterpret_cast<void*>(std::exchange(_next, _next + kChunkSize));
		KeepAlive(fresh, kChunkSize);
		Poison(static_cast<char*>(fresh) + sizeof(Chunk), kChunkSize - sizeof(Chunk));
		return new (fresh) Chunk{{kHeld}, nullptr};
	}

	/// Gives up blocks, or a thread's hold.
	void Release(Chunk* chunk, std::int64_t count) noexcept
	{
		if (chunk->live.fetch_sub(count, std::memory_order_acq_rel) != count)
			return;
		const std::lock_guard lock(_mutex);
		if (_freeCount >= kWarmChunks)
			madvise(chunk, kChunkSize, MADV_DONTNEED);
		chunk->next = std::exchange(_free, chunk);
		_freeCount++;
	}

private:
	std::mutex _mutex;
	std::uintptr_t _next = 0;
	std::uintptr_t _end = 0;
	Chunk* _free = nullptr;
	std::size_t _freeCount = 0;
};

/// Never destroyed: blocks may be freed to the very end of the process.
alignas(Region) unsigned char g_regionMemory[sizeof(Region)];
Region& TheRegion() noexcept
{
	static Region* region = new (g_regionMemory) Region;
	return *region;
}

/// Gives up what the thread keeps when it ends.
struct ThreadCloser
{
	~ThreadCloser()
	{
		ThreadBulk& bulk = t_bulk;
		bulk.isOpen = false;
		bulk.isClosed = true;
		bulk.offset = kChunkSize;
		if (bulk.chunk != nullptr)
			TheRegion().Release(std::exchange(bulk.chunk, nullptr), kHeld - bulk.taken);
		if (bulk.emptied != nullptr)
			TheRegion().Release(std::exchange(bulk.emptied, nullptr), bulk.freed);
	}
};

BlockHead* HeadOf(void* memory) noexcept
{
	return static_cast<BlockHead*>(memory) - 1;
}

std::size_t OffsetOf(const void* memory) noexcept
{
	return reinterpret_cast<std::uintptr_t>(memory) % kChunkSize - sizeof(BlockHead);
}

bool TakeChunk(ThreadBulk& bulk) noexcept
{
	static thread_local ThreadCloser closer;
	static_cast<void>(&closer);
	if (bulk.isClosed)
		return false;
	bulk.isOpen = true;
	if (bulk.chunk != nullptr)
		TheRegion().Release(bulk.chunk, kHeld - bulk.taken);
	bulk.chunk = TheRegion().Take();
	bulk.offset = bulk.chunk != nullptr ? kFirstOffset : kChunkSize;
	bulk.taken = 0;
	return bulk.chunk != nullptr;
}

/// A block with a chunk of its own, when it comes close to filling one.
void* AllocateChunk(std::size_t bytes) noexcept
{
	constexpr std::size_t kRoom = kChunkSize - kFirstOffset;
	if (bytes < kRoom / 16 * 15 || RoundUp(bytes) > kRoom)
		return nullptr;
	Chunk* chunk = TheRegion().Take();
	if (chunk == nullptr)
		return nullptr;
	chunk->live.store(1, std::memory_order_relaxed);
	return OpenBlock(reinterpret_cast<char*>(chunk) + kFirstOffset, RoundUp(bytes), bytes);
}

} // namespace

/// Frees the last block of the chunk that the thread is emptying, or the first of another.
void detail::FreeElsewhere(Chunk* chunk) noexcept
{
	ThreadBulk& bulk = t_bulk;
	const std::int64_t freed = 1 + (chunk == bulk.emptied ? bulk.freed : 0);
	if (chunk != bulk.emptied && bulk.emptied != nullptr)
		TheRegion().Release(bulk.emptied, bulk.freed);
	// Only the threads that take chunks see to it, when they end, that nothing is kept.
	const bool isLast = chunk->live.load(std::memory_order_relaxed) == freed;
	const bool isKept = bulk.isOpen && !isLast;
	bulk.emptied = isKept ? chunk : nullptr;
	bulk.freed = freed;
	if (!isKept)
		TheRegion().Release(chunk, freed);
}

void* AllocateInBulk(std::size_t bytes) noexcept
{
	ThreadBulk& bulk = t_bulk;
	if (bulk.depth == 0)
		return nullptr;
	if (bytes > kLargestBlock)
		return AllocateChunk(bytes);
	if (kChunkSize - bulk.offset < RoundUp(bytes) && (bytes > kSmallBlock || !TakeChunk(bulk)))
		return nullptr;
	return TryAllocateInBulk(bytes);
}

void BeginBulk() noexcept
{
	ThreadBulk& bulk = t_bulk;
	if (bulk.depth++ != 0 || bulk.chunk == nullptr)
		return;
	// A chunk of which all blocks have been freed starts over.
	if (bulk.chunk->live.load(std::memory_order_acquire) == kHeld - bulk.taken)
	{
		bulk.chunk->live.store(kHeld, std::memory_order_relaxed);
		bulk.offset = kFirstOffset;
		bulk.taken = 0;
	}
}

void EndBulk() noexcept
{
	t_bulk.depth--;
}

std::size_t GetBulkSize(const void* memory) noexcept
{
	const auto* head = static_cast<const BlockHead*>(memory) - 1;
	Unpoison(head, sizeof(BlockHead));
	const std::size_t size = head->size;
	Poison(head, sizeof(BlockHead));
	return size - sizeof(BlockHead);
}

bool ResizeInBulk(void* memory, std::size_t bytes) noexcept
{
	ThreadBulk& bulk = t_bulk;
	std::size_t size = GetBulkSize(memory) + sizeof(BlockHead);
	const std::size_t offset = OffsetOf(memory);
	const bool isLast = ChunkOf(memory) == bulk.chunk && offset + size == bulk.offset;
	const bool fits = isLast && bytes < kChunkSize && RoundUp(bytes) <= kChunkSize - offset;
	if (!fits && bytes > size - sizeof(BlockHead))
		return false;
	Poison(memory, size - sizeof(BlockHead));
	if (fits)
	{
		size = RoundUp(bytes);
		bulk.offset = offset + size;
	}
	OpenBlock(HeadOf(memory), size, bytes);
	return true;
}

} // namespace orvan::runtime
