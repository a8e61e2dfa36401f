// SPDX-License-Identifier: MIT
/// Counting the references to something that is shared.
#pragma once

#include <atomic>

namespace orvan::detail
{

/// Gives up one of the references that `count` counts; true when it was the last. Bits outside of `mask` are flags,
/// while one of which is set the count is always brought up to date.
template <typename Count>
bool ReleaseReference(std::atomic<Count>& count, Count mask = static_cast<Count>(-1)) noexcept
{
	// Nobody else can reach what has but one reference, so that giving this one up needs no atomic subtraction. Most
	// objects and strings of a tree are never shared.
	return count.load(std::memory_order_acquire) == 1 || (count.fetch_sub(1, std::memory_order_acq_rel) & mask) == 1;
}

} // namespace orvan::detail
