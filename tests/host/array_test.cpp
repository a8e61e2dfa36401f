// SPDX-License-Identifier: MIT
#include "orvan/array.h"

#include "support.h"

#include <numeric>

namespace orvan
{
namespace
{

BaseArray<String> Texts(std::initializer_list<std::string_view> texts)
{
	BaseArray<String> array;
	for (const std::string_view text : texts)
		Must(array.Append(Text(text)));
	return array;
}

TEST(BaseArray, GrowsByHalfFromFour)
{
	BaseArray<int> array;
	std::vector<std::size_t> capacities;
	for (int i = 0; i < 10; i++)
	{
		Must(array.Append(i));
		if (capacities.empty() || capacities.back() != array.GetCapacity())
			capacities.push_back(array.GetCapacity());
	}
	EXPECT_EQ((std::vector<std::size_t>{4, 6, 9, 13}), capacities);
	EXPECT_EQ(45, std::accumulate(array.begin(), array.end(), 0));
}

TEST(BaseArray, AppendsAnElementOfItsOwnWhileItGrows)
{
	BaseArray<String> array = Texts({"a", "b", "c", "d"});
	ASSERT_EQ(array.GetCount(), array.GetCapacity());
	Must(array.Append(array[1]));
	EXPECT_EQ("b", array[4].View());
}

TEST(BaseArray, AppendsManyElementsAtOnce)
{
	BaseArray<char> array;
	Must(array.AppendAll("abc", 3));
	Must(array.AppendAll("defgh", 5));
	Must(array.AppendAll(nullptr, 0));
	EXPECT_EQ("abcdefgh", std::string(array.begin(), array.end()));
}

TEST(BaseArray, IsAsItWasAfterAFailedAppend)
{
	BaseArray<String> array = Texts({"a", "b", "c", "d"});
	const AllocationFailure failure(1, AllocationFailure::Extent::one);
	EXPECT_FALSE(array.Append(String()).IsOk());
	ASSERT_EQ(4u, array.GetCount());
	EXPECT_EQ("d", array[3].View());
}

TEST(BaseArray, CopiesIntoLargerStorageInPlaceAndIntoSmallerWithTheExactCount)
{
	const BaseArray<String> source = Texts({"a", "b", "c", "d", "e"});
	BaseArray<String> large = Texts({"1", "2", "3", "4", "5", "6", "7"});
	const auto* storage = large.begin();
	Must(large.CopyFrom(source));
	EXPECT_EQ(storage, large.begin());
	EXPECT_EQ(5u, large.GetCount());

	BaseArray<String> small = Texts({"1"});
	Must(small.CopyFrom(source));
	EXPECT_EQ(5u, small.GetCapacity());
	EXPECT_EQ("e", small[4].View());
	Must(small.CopyFrom(small));
	EXPECT_EQ(5u, small.GetCount());
}

TEST(BaseArray, KeepsItsContentWhenACopyFails)
{
	const BaseArray<String> source = Texts({"a", "b", "c", "d", "e"});
	BaseArray<String> target = Texts({"kept"});
	EXPECT_EQ(1, FailEachAllocation(
					 [&]
					 {
						 auto result = target.CopyFrom(source);
						 if (!result.IsOk())
						 {
							 EXPECT_EQ("kept", target[0].View());
						 }
						 return result;
					 }));
}

TEST(BaseArray, ResizesWithDefaultsAndReleasesWhatFallsAway)
{
	BaseArray<int> numbers;
	Must(numbers.Resize(3));
	EXPECT_EQ(0, numbers[2]);
	BaseArray<String> texts = Texts({"a", "b", "c"});
	Must(texts.Resize(1));
	Must(texts.Resize(2));
	EXPECT_TRUE(texts[1].IsEmpty());
	texts.Compact();
	EXPECT_EQ(2u, texts.GetCapacity());
}

TEST(BaseArray, RefusesSizesThatNoMemoryCanHold)
{
	BaseArray<double> array;
	EXPECT_FALSE(array.Reserve(SIZE_MAX / 2).IsOk());
	EXPECT_FALSE(array.Resize(SIZE_MAX / sizeof(double) + 2).IsOk());
	EXPECT_TRUE(array.IsEmpty());
}

} // namespace
} // namespace orvan
