// SPDX-License-Identifier: MIT
#include "memory.h"

#include "bulk_memory.h"
#include "orvan/host/allocation_failure.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>

namespace orvan
{
namespace
{

/// What the current thread's `AllocationFailure` wants. A countdown of 0 means that nothing is wanted.
struct FailurePlan
{
	std::int64_t countdown = 0;
	AllocationFailure::Extent extent = AllocationFailure::Extent::one;
	bool hasFailed = false;
};

constinit thread_local FailurePlan t_plan;

#ifdef ORVAN_COUNT_ALLOCATIONS
std::atomic<std::int64_t> g_blocks = 0;

void Count(std::int64_t blocks) noexcept
{
	g_blocks.fetch_add(blocks, std::memory_order_relaxed);
}
#else
void Count(std::int64_t) noexcept
{
}
#endif

// The thread sanitizer sees what becomes of a block only when it comes from the C library.
#ifdef __SANITIZE_THREAD__
constexpr bool kUsesBulk = false;
#else
constexpr bool kUsesBulk = true;
#endif

bool IsFailurePlanned() noexcept
{
	return t_plan.countdown != 0;
}

bool MustFail() noexcept
{
	if (!IsFailurePlanned()) [[likely]]
		return false;
	if (t_plan.countdown > 1)
	{
		t_plan.countdown--;
		return false;
	}
	t_plan.hasFailed = true;
	if (t_plan.extent == AllocationFailure::Extent::one)
		t_plan.countdown = 0;
	return true;
}

[[gnu::noinline]] void* AllocateSlowly(std::size_t bytes) noexcept
{
	if (MustFail())
		return nullptr;
	void* memory = kUsesBulk ? runtime::AllocateInBulk(bytes) : nullptr;
	if (memory == nullptr)
		memory = std::malloc(bytes);
	if (memory != nullptr)
		Count(1);
	return memory;
}

} // namespace

void* runtime::Allocate(std::size_t bytes) noexcept
{
	void* memory = kUsesBulk && !IsFailurePlanned() ? TryAllocateInBulk(bytes) : nullptr;
	if (memory == nullptr)
		return AllocateSlowly(bytes);
	Count(1);
	return memory;
}

void* runtime::Reallocate(void* memory, std::size_t bytes) noexcept
{
	if (memory == nullptr)
		return Allocate(bytes);
	if (MustFail())
		return nullptr;
	if (!kUsesBulk || !IsInBulk(memory))
		return std::realloc(memory, bytes);
	if (ResizeInBulk(memory, bytes))
		return memory;
	void* moved = AllocateInBulk(bytes);
	if (moved == nullptr)
		moved = std::malloc(bytes);
	if (moved != nullptr)
	{
		const std::size_t kept = std::min(bytes, GetBulkSize(memory));
		Unpoison(memory, kept); // The room of the block, of which less may have been asked for.
		std::memcpy(moved, memory, kept);
		FreeInBulk(memory);
	}
	return moved;
}

void runtime::Free(void* memory) noexcept
{
	if (memory != nullptr)
		Count(-1);
	if (kUsesBulk && IsInBulk(memory))
		return FreeInBulk(memory);
	std::free(memory);
}

AllocationFailure::AllocationFailure(std::int64_t firstFailure, Extent extent) noexcept
{
	t_plan = {firstFailure, extent, false};
}

AllocationFailure::~AllocationFailure()
{
	t_plan = {};
}

bool AllocationFailure::HasFailed() const noexcept
{
	return t_plan.hasFailed;
}

std::int64_t CountAllocations() noexcept
{
#ifdef ORVAN_COUNT_ALLOCATIONS
	return g_blocks.load(std::memory_order_relaxed);
#else
	return -1;
#endif
}

} // namespace orvan
