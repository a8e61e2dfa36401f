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

/// The part of every count that the calling thread changes. The first threads have one of their own, which the next
/// thread gets when one ends; all further ones share some.
class CountingPart
{
public:
	static constexpr std::size_t kOwned = 16;
	static constexpr std::size_t kCount = kOwned + 8;

	static std::size_t OfThisThread() noexcept
	{
		if (t_part == kCount) [[unlikely]]
			Take();
		return t_part;
	}

private:
	struct Returner;

	static void Take() noexcept;

	static inline constinit thread_local std::size_t t_part = kCount;
};

/// A count that threads change all the time and hardly anybody reads. Each thread changes a part of its own, while
/// there are enough of them, so that no processor waits for another's cache line, and no instruction is locked. What
/// one thread has counted another may take back; so the parts mean something only together.
class LiveCount
{
public:
	void Increment() noexcept
	{
		Add(1);
	}

	void Decrement() noexcept
	{
		Add(-1);
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

	/// Host memory is not aligned to cache lines, so what keeps apart stands between.
	struct Part
	{
		std::byte before[kCacheLine - sizeof(std::atomic<std::int64_t>)];
		std::atomic<std::int64_t> count = 0;
	};

	void Add(std::int64_t change) noexcept
	{
		const std::size_t part = CountingPart::OfThisThread();
		std::atomic<std::int64_t>& count = _parts[part].count;
		if (part < CountingPart::kOwned) [[likely]]
			count.store(count.load(std::memory_order_relaxed) + change, std::memory_order_release);
		else
			count.fetch_add(change, std::memory_order_release);
	}

	std::array<Part, CountingPart::kCount> _parts;
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
