// SPDX-License-Identifier: MIT
#include "live_count.h"

#include <bit>

namespace orvan::runtime
{
namespace
{

constinit std::atomic<std::uint32_t> g_taken = 0; ///< A bit for each owned part.
constinit std::atomic<std::size_t> g_sharing = 0; ///< How many threads have come to share.

static_assert(CountingPart::kOwned <= 32);

/// A free part that is nobody else's from now on; `kOwned` when there is none.
std::size_t TakeOwned() noexcept
{
	std::uint32_t taken = g_taken.load(std::memory_order_relaxed);
	for (;;)
	{
		const auto part = static_cast<std::size_t>(std::countr_one(taken));
		if (part >= CountingPart::kOwned)
			return CountingPart::kOwned;
		// What the part's last thread has counted is to be seen here.
		if (g_taken.compare_exchange_weak(taken, taken | std::uint32_t{1} << part, std::memory_order_acquire,
										  std::memory_order_relaxed))
			return part;
	}
}

std::size_t ChooseShared() noexcept
{
	constexpr std::size_t kShared = CountingPart::kCount - CountingPart::kOwned;
	return CountingPart::kOwned + g_sharing.fetch_add(1, std::memory_order_relaxed) % kShared;
}

} // namespace

/// Gives a part back when its thread ends. What is released still later, by others that end with the thread, is counted
/// in a part that threads share.
struct CountingPart::Returner
{
	~Returner()
	{
		const std::uint32_t bit = std::uint32_t{1} << t_part;
		t_part = ChooseShared();
		g_taken.fetch_and(~bit, std::memory_order_release);
	}
};

void CountingPart::Take() noexcept
{
	t_part = TakeOwned();
	if (t_part == kOwned)
	{
		t_part = ChooseShared();
		return;
	}
	static thread_local Returner returner;
	static_cast<void>(&returner);
}

} // namespace orvan::runtime
