// SPDX-License-Identifier: MIT
/// Counting what lives, for threads that make and release objects and values side by side.
#pragma once

#include "orvan/data_type.h"
#include "orvan/object.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace orvan::runtime
{

/// A count that threads change all the time and hardly anybody reads. Each thread changes a part of its own, while
/// there are enough of them, so that no processor waits for another's cache line. What one thread has counted another
/// may take back; so the parts mean something only together.
class LiveCount
{
public:
	void Increment() noexcept
	{
		Own().fetch_add(1, std::memory_order_relaxed);
	}

	void Decrement() noexcept
	{
		Own().fetch_sub(1, std::memory_order_release);
	}

	/// The count, while nobody changes it.
	std::int64_t Get() const noexcept
	{
		std::int64_t count = 0;
		for (const Part& part : _parts)
			count += part.count.load(std::memory_order_acquire);
		return count;
	}

private:
	static constexpr std::size_t kCacheLine = 64;
	static constexpr std::size_t kParts = 8;

	/// Host memory is not aligned to cache lines, so what keeps apart stands between.
	struct Part
	{
		std::byte before[kCacheLine - sizeof(std::atomic<std::int64_t>)];
		std::atomic<std::int64_t> count = 0;
	};

	std::atomic<std::int64_t>& Own() noexcept
	{
		if (t_part == kParts) [[unlikely]]
			t_part = g_threads.fetch_add(1, std::memory_order_relaxed) % kParts;
		return _parts[t_part].count;
	}

	static inline constinit thread_local std::size_t t_part = kParts;
	static inline constinit std::atomic<std::size_t> g_threads = 0;

	std::array<Part, kParts> _parts;
	[[maybe_unused]] std::byte _behind[kCacheLine];
};

/// The host's own records begin like this. What the host counts is counted here, and not in the records that modules
/// see, of which processors would otherwise wait for a line that every call reads: `ClassInfo::liveObjects` stays zero,
/// `DataType::liveValues` has the values that modules hold in `Data`.
struct CountedClass : ClassInfo
{
	LiveCount live;
};

struct CountedType : DataType
{
	mutable LiveCount live;
};

} // namespace orvan::runtime
