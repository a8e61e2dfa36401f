// SPDX-License-Identifier: MIT
/// For tests: making allocations fail.
#pragma once

#include <cstdint>

namespace orvan
{

/// While it lives, counts the allocations of host types on this thread and fails those from number `firstFailure` on
/// (from 1), or only that one. Does not nest.
class AllocationFailure
{
public:
	enum class Extent
	{
		one,
		allFollowing,
	};

	AllocationFailure(std::int64_t firstFailure, Extent extent) noexcept;
	AllocationFailure(const AllocationFailure&) = delete;
	~AllocationFailure();

	/// True once an allocation has been made to fail.
	bool HasFailed() const noexcept;
};

/// Number of blocks of host memory that are allocated at the moment, in the whole process. Counted in builds with
/// `ORVAN_COUNT_ALLOCATIONS`; -1 in others.
std::int64_t CountAllocations() noexcept;

} // namespace orvan
