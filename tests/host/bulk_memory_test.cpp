// SPDX-License-Identifier: MIT
#include "runtime/bulk_memory.h"

#include "orvan/host/allocation_failure.h"
#include "runtime/memory.h"

#include <cstring>
#include <gtest/gtest.h>
#include <set>
#include <thread>
#include <vector>

namespace orvan::runtime
{
namespace
{

/// A block that is filled with a value, so that overlaps show.
char* TakeBlock(std::size_t bytes, int value)
{
	auto* block = static_cast<char*>(AllocateInBulk(bytes));
	if (block != nullptr)
		std::memset(block, value, bytes);
	return block;
}

bool HoldsOnly(const char* block, std::size_t bytes, int value)
{
	for (std::size_t i = 0; i < bytes; i++)
	{
		if (block[i] != static_cast<char>(value))
			return false;
	}
	return true;
}

TEST(BulkMemory, GivesBlocksInsideOfScopesOnly)
{
	EXPECT_EQ(nullptr, AllocateInBulk(16));
	BeginBulk();
	char* block = TakeBlock(16, 1);
	ASSERT_NE(nullptr, block);
	EXPECT_EQ(0u, reinterpret_cast<std::uintptr_t>(block) % 16);
	EXPECT_TRUE(IsInBulk(block));
	EXPECT_FALSE(IsInBulk(nullptr));
	EXPECT_FALSE(IsInBulk(&block));
	EXPECT_EQ(nullptr, AllocateInBulk(1'000'000));
	EndBulk();
	EXPECT_EQ(nullptr, AllocateInBulk(16));
	FreeInBulk(block);
}

TEST(BulkMemory, KeepsBlocksApartOverManyChunks)
{
	BeginBulk();
	std::vector<char*> blocks;
	for (int i = 0; i < 3000; i++)
		blocks.push_back(TakeBlock(static_cast<std::size_t>(i % 300), i));
	EndBulk();
	for (int i = 0; i < 3000; i++)
		EXPECT_TRUE(HoldsOnly(blocks[static_cast<std::size_t>(i)], static_cast<std::size_t>(i % 300), i));
	for (char* block : blocks)
		FreeInBulk(block);
}

TEST(BulkMemory, GivesBlocksOfSomeKilobytesWhereThereIsRoom)
{
	BeginBulk();
	std::vector<char*> blocks;
	const auto take = [&blocks](std::size_t bytes)
	{
		char* const block = TakeBlock(bytes, 1);
		if (block != nullptr)
			blocks.push_back(block);
		return block != nullptr;
	};
	EXPECT_TRUE(take(16)) << "which opens a chunk";
	while (take(8192))
		ASSERT_LT(blocks.size(), 9u);
	EXPECT_GT(blocks.size(), 5u);
	EXPECT_FALSE(take(8193));
	while (take(2049))
		ASSERT_LT(blocks.size(), 100u);
	EXPECT_TRUE(take(2048)) << "another chunk is opened";
	EXPECT_TRUE(take(8192)) << "where there is room again";
	EndBulk();
	for (char* block : blocks)
		FreeInBulk(block);
}

TEST(BulkMemory, GivesBlocksThatFillAChunkOneOfTheirOwn)
{
	BeginBulk();
	char* small = TakeBlock(100, 1);
	char* large = TakeBlock(65'000, 2);
	char* next = TakeBlock(100, 3);
	ASSERT_NE(nullptr, large);
	EXPECT_TRUE(IsInBulk(large));
	EXPECT_FALSE(ResizeInBulk(large, 66'000));
	EXPECT_TRUE(HoldsOnly(small, 100, 1) && HoldsOnly(large, 65'000, 2) && HoldsOnly(next, 100, 3));
	EXPECT_EQ(nullptr, AllocateInBulk(30'000));
	EXPECT_EQ(nullptr, AllocateInBulk(65'536));
	FreeInBulk(large);
	EXPECT_EQ(large, AllocateInBulk(65'000)) << "whose chunk is free again";
	EndBulk();
	for (char* block : {small, large, next})
		FreeInBulk(block);
}

TEST(BulkMemory, ResizesTheLastBlockInPlace)
{
	BeginBulk();
	char* first = TakeBlock(32, 1);
	char* last = TakeBlock(32, 2);
	EXPECT_FALSE(ResizeInBulk(first, 64));
	EXPECT_TRUE(ResizeInBulk(first, 8));
	ASSERT_TRUE(ResizeInBulk(last, 4000));
	EXPECT_LE(4000u, GetBulkSize(last));
	EXPECT_FALSE(ResizeInBulk(last, 100'000));
	std::memset(last, 2, 4000);
	char* next = TakeBlock(32, 3);
	EXPECT_LE(last + 4000, next);
	EXPECT_TRUE(HoldsOnly(first, 8, 1));
	EndBulk();
	for (char* block : {first, last, next})
		FreeInBulk(block);
}

#ifdef ORVAN_ADDRESS_SANITIZER
TEST(BulkMemory, IsGuardedByTheAddressSanitizer)
{
	BeginBulk();
	char* first = TakeBlock(20, 1);
	char* second = TakeBlock(32, 2);
	EXPECT_TRUE(ResizeInBulk(second, 30));
	EXPECT_DEATH(TakeBlock(20, 1)[20] = 1, "use-after-poison") << "what is left of the last sixteen bytes";
	EXPECT_DEATH(*static_cast<volatile char*>(second - 1) = 1, "use-after-poison") << "the head of the block";
	EXPECT_DEATH(*static_cast<volatile char*>(second + 30) = 1, "use-after-poison") << "a block made smaller";
	EXPECT_DEATH(*static_cast<volatile char*>(second + 5000) = 1, "use-after-poison") << "what nobody has taken";
	FreeInBulk(first);
	EXPECT_DEATH(*static_cast<volatile char*>(first) = 1, "use-after-poison");
	EXPECT_DEATH(FreeInBulk(first), "use-after-poison") << "freed twice";
	second[29] = 1;
	FreeInBulk(second);
	EndBulk();
}
#endif

TEST(BulkMemory, StartsOverWhenAllBlocksAreFreed)
{
	std::vector<char*> first;
	for (int round = 0; round < 2; round++)
	{
		BeginBulk();
		char* kept = TakeBlock(100, 1);
		first.push_back(kept);
		EndBulk();
		FreeInBulk(kept);
	}
	EXPECT_EQ(first[0], first[1]);
	// With a block in use the chunk goes on behind it.
	BeginBulk();
	char* used = TakeBlock(100, 1);
	EndBulk();
	BeginBulk();
	char* other = TakeBlock(100, 2);
	EndBulk();
	EXPECT_NE(used, other);
	FreeInBulk(used);
	FreeInBulk(other);
}

TEST(BulkMemory, LetsBlocksGrowOutOfIt)
{
	const auto blocks = CountAllocations();
	BeginBulk();
	auto* text = static_cast<char*>(Reallocate(nullptr, 100));
	std::memset(text, 1, 100);
	void* behind = Allocate(16); // So that it cannot grow where it stands.
	for (std::size_t size = 200; size <= 200'000; size *= 10)
	{
		text = static_cast<char*>(Reallocate(text, size));
		EXPECT_TRUE(HoldsOnly(text, 100, 1)) << size;
		Free(std::exchange(behind, Allocate(16)));
	}
	EndBulk();
	Free(text);
	Free(behind);
	EXPECT_EQ(blocks, CountAllocations());
}

TEST(BulkMemory, TakesBlocksBackFromOtherThreads)
{
	std::set<std::uintptr_t> chunks;
	for (int round = 0; round < 20; round++)
	{
		std::vector<char*> blocks;
		std::thread maker(
			[&blocks]
			{
				BeginBulk();
				for (int i = 0; i < 2000; i++)
					blocks.push_back(TakeBlock(100, i));
				EndBulk();
			});
		maker.join();
		for (const char* block : blocks)
			chunks.insert(reinterpret_cast<std::uintptr_t>(block) / detail::kChunkSize);
		const auto release = [&blocks](std::size_t from)
		{
			for (std::size_t i = from; i < blocks.size(); i += 2)
			{
				EXPECT_TRUE(HoldsOnly(blocks[i], 100, static_cast<int>(i)));
				FreeInBulk(blocks[i]);
			}
		};
		std::thread odd(release, 1);
		release(0);
		odd.join();
	}
	EXPECT_LT(chunks.size(), 20u) << "chunks are used again; without that it would be eighty";
}

} // namespace
} // namespace orvan::runtime
