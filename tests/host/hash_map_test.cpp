// SPDX-License-Identifier: MIT
#include "orvan/hash_map.h"

#include "support.h"

#include <chrono>

namespace orvan
{
namespace
{

/// Different keys of 16 bytes with one hash: the second word undoes what the first one did to the hash's state.
String CollidingKey(std::uint64_t number)
{
	const std::uint64_t state = detail::MixProduct(0xa0761d6478bd642f ^ 16 ^ number, 0xe7037ed1a0b428db);
	const std::uint64_t words[] = {number, state ^ 0x1234};
	return Text({reinterpret_cast<const char*>(words), sizeof words});
}

/// The order that the map promises, from its description: buckets in the order of their first entry, and each growth
/// enters everything anew in the order so far.
std::vector<std::string> PromisedOrder(const std::vector<std::string>& keys)
{
	std::vector<std::string> order;
	std::vector<std::vector<std::string>> chains;
	std::size_t size = 0;
	const auto arrange = [&](const std::vector<std::string>& entries)
	{
		std::vector<std::size_t> occupied;
		chains.assign(size, {});
		for (const std::string& key : entries)
		{
			const std::size_t index = HashBytes(key) & (size - 1);
			if (chains[index].empty())
				occupied.push_back(index);
			chains[index].push_back(key);
		}
		order.clear();
		for (const std::size_t index : occupied)
			order.insert(order.end(), chains[index].begin(), chains[index].end());
	};
	for (const std::string& key : keys)
	{
		if (static_cast<double>(order.size() + 1) > 0.65 * static_cast<double>(size))
		{
			size = size == 0 ? 16 : 2 * size;
			arrange(order);
		}
		std::vector<std::string> entries = order;
		entries.push_back(key);
		arrange(entries);
	}
	return order;
}

TEST(StringMap, FindsNothingWhileItIsEmpty)
{
	const StringMap<int> map;
	EXPECT_EQ(nullptr, map.Find(String()));
	EXPECT_EQ(map.begin(), map.end());
}

TEST(StringMap, KeepsTheFirstValueOfAKey)
{
	StringMap<int> map;
	EXPECT_TRUE(Must(map.Insert(Text("a"), 1)));
	EXPECT_FALSE(Must(map.Insert(Text("a"), 2)));
	EXPECT_TRUE(Must(map.Insert(String(), 3)));
	EXPECT_EQ(1, *map.Find(Text("a")));
	EXPECT_EQ(3, *map.Find(Text("")));
	EXPECT_EQ(nullptr, map.Find(Text("A")));
}

TEST(StringMap, IteratesInThePromisedOrderAtEverySize)
{
	StringMap<int> map;
	std::vector<std::string> keys;
	for (int i = 0; i < 120; i++)
	{
		keys.push_back("layer" + std::to_string(i * 7 % 120));
		Must(map.Insert(Text(keys.back()), i));
		std::vector<std::string> order;
		for (const auto& entry : map)
			order.emplace_back(entry.key.View());
		ASSERT_EQ(PromisedOrder(keys), order) << "with " << keys.size() << " entries";
	}
}

TEST(StringMap, FindsEveryKeyWhenAllHashesCollide)
{
	StringMap<std::uint64_t> map;
	ASSERT_EQ(CollidingKey(1).GetHash(), CollidingKey(2).GetHash());
	for (std::uint64_t i = 0; i < 2000; i++)
	{
		ASSERT_TRUE(Must(map.Insert(CollidingKey(i), i)));
		ASSERT_FALSE(Must(map.Insert(CollidingKey(i / 2), i)));
		ASSERT_EQ(i / 2, *map.Find(CollidingKey(i / 2)));
	}
	EXPECT_EQ(nullptr, map.Find(CollidingKey(2000)));
	std::uint64_t next = 0;
	for (const auto& entry : map)
		ASSERT_EQ(next++, entry.value);
	EXPECT_EQ(2000u, next);
}

TEST(StringMap, TakesNoQuadraticTimeForCollidingKeys)
{
	constexpr std::uint64_t kCount = 200'000;
	const auto begin = std::chrono::steady_clock::now();
	StringMap<std::uint64_t> map;
	for (std::uint64_t i = 0; i < kCount; i++)
		Must(map.Insert(CollidingKey(i), i));
	// Walking the one chain would take 20 thousand million steps.
	EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
	EXPECT_EQ(kCount, map.GetCount());
}

TEST(StringMap, IsAsItWasAfterAFailedInsertion)
{
	// 10 entries fill the first sixteen buckets, so that the next insertion has to grow the map.
	StringMap<int> map;
	for (int i = 0; i < 10; i++)
		Must(map.Insert(Text(std::to_string(i)), i));
	const String key = Text("new");
	const int allocations = FailEachAllocation(
		[&]
		{
			auto result = map.Insert(key, 10);
			if (!result.IsOk())
			{
				EXPECT_EQ(10u, map.GetCount());
				EXPECT_EQ(nullptr, map.Find(key));
				EXPECT_NE(nullptr, map.Find(Text("9")));
			}
			return result;
		});
	// The buckets and their list; the entry itself finds room in a block.
	EXPECT_EQ(2, allocations);
}

TEST(StringMap, GoesOnWithoutItsIndexWhenThereIsNoMemoryForIt)
{
	StringMap<std::uint64_t> map;
	for (std::uint64_t i = 0; i < 32; i++)
		Must(map.Insert(CollidingKey(i), i));
	const String key = CollidingKey(32);
	{
		const AllocationFailure failure(1, AllocationFailure::Extent::one);
		EXPECT_TRUE(Must(map.Insert(key, 32)));
		EXPECT_TRUE(failure.HasFailed());
	}
	EXPECT_EQ(32u, *map.Find(key));
	Must(map.Insert(CollidingKey(33), 33));
	EXPECT_EQ(5u, *map.Find(CollidingKey(5)));
}

TEST(StringMap, MovesItsEntriesAsTheyStandAndServesAgainAfterReset)
{
	StringMap<int> source;
	for (int i = 0; i < 50; i++)
		Must(source.Insert(Text(std::to_string(i)), i));
	const int* value = source.Find(Text("7"));
	StringMap<int> target;
	Must(target.Insert(Text("dropped"), 0));
	target = std::move(source);
	EXPECT_EQ(value, target.Find(Text("7")));
	EXPECT_EQ(nullptr, target.Find(Text("dropped")));
	target.Reset();
	EXPECT_EQ(0u, target.GetCount());
	Must(target.Insert(Text("again"), 1));
	EXPECT_EQ(1, *target.Find(Text("again")));
}

} // namespace
} // namespace orvan
