#include "bulk_memory.h"

#include <atomic>
#include <cstdint>
#include <mutex>
#include <new>
#include <sys/mman.h>
#include <utility>

namespace orvan::runtime
{
namespace
{

constexpr std::size_t kChunkSize = std::size_t(64) << 10;
constexpr std::size_t kRegionSize = std::size_t(16) << 30; ///< Of addresses; memory is only taken where it is used.
constexpr std::size_t kLargestBlock = 2048;
constexpr std::size_t kWarmChunks = 256; ///< Free chunks that keep their memory; that of others goes to the system.

/// The head of a chunk. Blocks follow, each with its size in front.
struct Chunk
{
	/// Blocks in use. While a thread takes blocks from the chunk, `kHeld` minus the blocks that were freed: so that
	/// taking a block needs no atomic operation.
	std::atomic<std::int64_t> live;
	Chunk* next; ///< In the list of free chunks.
};

constexpr std::int64_t kHeld = std::int64_t(1) << 40;

struct BlockHead
{
	std::uint64_t size; ///< Of the block with this head, a multiple of 16.
};

/// Blocks are aligned to 16 bytes, their heads stand before them.
constexpr std::size_t kFirstOffset = (sizeof(Chunk) + sizeof(BlockHead) + 15) / 16 * 16 - sizeof(BlockHead);

/// Where the addresses of chunks begin; so high that no block is there, while there are none.
constinit std::atomic<std::uintptr_t> g_begin = UINTPTR_MAX - kRegionSize;

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
		return new (reinterpret_cast<void*>(std::exchange(_next, _next + kChunkSize))) Chunk{{kHeld}, nullptr};
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

/// The chunk that a thread takes blocks from. Constant-initialised and never destroyed, so that it serves as long as
/// the thread has any code.
struct ThreadBulk
{
	Chunk* chunk = nullptr;
	std::size_t offset = 0; ///< Of the next block's head.
	std::int64_t taken = 0; ///< Blocks taken from the chunk.
	int depth = 0;
	bool isClosed = false; ///< The thread is ending.
};

constinit thread_local ThreadBulk t_bulk;

/// Lets go of the chunk when the thread ends.
struct ThreadCloser
{
	~ThreadCloser()
	{
		t_bulk.isClosed = true;
		if (t_bulk.chunk != nullptr)
			TheRegion().Release(std::exchange(t_bulk.chunk, nullptr), kHeld - t_bulk.taken);
	}
};

Chunk* ChunkOf(const void* memory) noexcept
{
	return reinterpret_cast<Chunk*>(reinterpret_cast<std::uintptr_t>(memory) / kChunkSize * kChunkSize);
}

BlockHead& HeadOf(const void* memory) noexcept
{
	return *(static_cast<BlockHead*>(const_cast<void*>(memory)) - 1);
}

std::size_t OffsetOf(const void* memory) noexcept
{
	return reinterpret_cast<std::uintptr_t>(memory) % kChunkSize - sizeof(BlockHead);
}

constexpr std::size_t RoundUp(std::size_t bytes) noexcept
{
	return (bytes + sizeof(BlockHead) + 15) / 16 * 16;
}

[[gnu::noinline]] bool TakeChunk(ThreadBulk& bulk) noexcept
{
	static thread_local ThreadCloser closer;
	static_cast<void>(&closer);
	if (bulk.isClosed)
		return false;
	if (bulk.chunk != nullptr)
		TheRegion().Release(bulk.chunk, kHeld - bulk.taken);
	bulk.chunk = TheRegion().Take();
	bulk.offset = kFirstOffset;
	bulk.taken = 0;
	return bulk.chunk != nullptr;
}

} // namespace

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

void* AllocateInBulk(std::size_t bytes) noexcept
{
	ThreadBulk& bulk = t_bulk;
	if (bulk.depth == 0 || bytes > kLargestBlock)
		return nullptr;
	const std::size_t size = RoundUp(bytes);
	if ((bulk.chunk == nullptr || kChunkSize - bulk.offset < size) && !TakeChunk(bulk))
		return nullptr;
	char* at = reinterpret_cast<char*>(bulk.chunk) + bulk.offset;
	bulk.offset += size;
	bulk.taken++;
	return new (at) BlockHead{size} + 1;
}

bool IsInBulk(const void* memory) noexcept
{
	return reinterpret_cast<std::uintptr_t>(memory) - g_begin.load(std::memory_order_relaxed) <
		   kRegionSize - kChunkSize;
}

std::size_t GetBulkSize(const void* memory) noexcept
{
	return HeadOf(memory).size - sizeof(BlockHead);
}

bool ResizeInBulk(void* memory, std::size_t bytes) noexcept
{
	ThreadBulk& bulk = t_bulk;
	BlockHead& head = HeadOf(memory);
	const std::size_t offset = OffsetOf(memory);
	const bool isLast = ChunkOf(memory) == bulk.chunk && offset + head.size == bulk.offset;
	if (isLast && bytes < kChunkSize && RoundUp(bytes) <= kChunkSize - offset)
	{
		head.size = RoundUp(bytes);
		bulk.offset = offset + head.size;
		return true;
	}
	return bytes <= GetBulkSize(memory);
}

void FreeInBulk(void* memory) noexcept
{
	TheRegion().Release(ChunkOf(memory), 1);
}

} // namespace orvan::runtime
