// SPDX-License-Identifier: MIT
#include "runtime/live_count.h"

#include <gtest/gtest.h>

#include <barrier>
#include <thread>
#include <vector>

namespace orvan::runtime
{
namespace
{

/// Has threads count side by side: each up, then down by less.
void CountSideBySide(LiveCount& count, std::ptrdiff_t threadCount)
{
	std::barrier start(threadCount);
	std::vector<std::thread> threads;
	for (std::ptrdiff_t i = 0; i < threadCount; i++)
	{
		threads.emplace_back(
			[&]
			{
				start.arrive_and_wait();
				for (int change = 0; change < 400'000; change++)
					count.Increment();
				for (int change = 0; change < 300'000; change++)
					count.Decrement();
			});
	}
	for (std::thread& thread : threads)
		thread.join();
}

TEST(LiveCount, LosesNothingHoweverManyThreadsCome)
{
	LiveCount count;
	constexpr std::ptrdiff_t kMany = CountingPart::kCount + 40;
	CountSideBySide(count, kMany);
	EXPECT_EQ(100'000 * kMany, count.Get());
	// The parts of those that have ended are owned by others now.
	CountSideBySide(count, kMany);
	EXPECT_EQ(200'000 * kMany, count.Get());
}

TEST(LiveCount, HasNoPartForAThreadThatHasGivenItsOwnBack)
{
	static std::size_t lastPart = 0;
	struct Last
	{
		~Last()
		{
			lastPart = CountingPart::OfThisThread();
		}
	};
	std::thread(
		[]
		{
			static thread_local Last last; // Made first, so that it goes last.
			static_cast<void>(&last);
			EXPECT_LT(CountingPart::OfThisThread(), CountingPart::kOwned);
		})
		.join();
	EXPECT_GE(lastPart, CountingPart::kOwned);
	EXPECT_LT(lastPart, CountingPart::kCount);
}

TEST(LiveCount, GivesThePartsOfEndedThreadsToOthers)
{
	std::size_t first = 0;
	std::size_t second = 0;
	std::thread([&] { first = CountingPart::OfThisThread(); }).join();
	std::thread([&] { second = CountingPart::OfThisThread(); }).join();
	EXPECT_LT(first, CountingPart::kOwned);
	EXPECT_EQ(first, second);
}

} // namespace
} // namespace orvan::runtime
