// SPDX-License-Identifier: MIT
#include "orvan/data_dictionary.h"

#include "runtime/registry.h"
#include "support.h"
#include "test_types.h"

#include <map>

namespace orvan
{

void RegisterTestTypes()
{
	static const bool isRegistered =
		runtime::AddDataType(kDataTypeDeclaration<LargeValue>, runtime::Ownership::single).IsOk();
	ASSERT_TRUE(isRegistered);
}

namespace
{

BaseArray<Float> Numbers(std::initializer_list<Float> values)
{
	BaseArray<Float> numbers;
	Must(numbers.AppendAll(values.begin(), values.size()));
	return numbers;
}

/// One value of each kind: inside and trivial, inside and not, outside.
DataDictionary MixedDictionary()
{
	RegisterTestTypes();
	DataDictionary dictionary;
	Must(dictionary.Set(3, Numbers({1, 2})));
	Must(dictionary.Set(1, 0.5));
	Must(dictionary.Set(2, LargeValue{{0, 0, 0, 0, 0, 9}}));
	Must(dictionary.Set(4, Text("text")));
	return dictionary;
}

std::vector<std::int32_t> Keys(const DataDictionary& dictionary)
{
	std::vector<std::int32_t> keys;
	for (const auto& entry : dictionary)
		keys.push_back(entry.key);
	return keys;
}

TEST(DataDictionary, KeepsItsEntriesInTheOrderOfTheirKeys)
{
	DataDictionary dictionary;
	std::map<std::int32_t, Float> model;
	for (int i = 0; i < 200; i++)
	{
		const std::int32_t key = i * 37 % 101 - 50;
		Must(dictionary.Set(key, Float(i)));
		model[key] = i;
		if (i % 3 == 0)
		{
			const std::int32_t gone = i * 53 % 101 - 50;
			EXPECT_EQ(model.erase(gone) != 0, Must(dictionary.Remove(gone)));
			EXPECT_FALSE(dictionary.Has(gone));
		}
	}
	ASSERT_EQ(model.size(), dictionary.GetCount());
	auto expected = model.begin();
	for (const auto& entry : dictionary)
	{
		ASSERT_EQ(expected->first, entry.key);
		ASSERT_EQ(expected->second, *dictionary.GetValue<Float>(entry));
		++expected;
	}
	EXPECT_FALSE(dictionary.Has(51));
}

TEST(DataDictionary, AnswersOnlyForTheRightType)
{
	const DataDictionary dictionary = MixedDictionary();
	EXPECT_EQ(0.5, dictionary.GetOr(1, 7.0));
	EXPECT_EQ(7, dictionary.GetOr<std::int32_t>(1, 7));
	EXPECT_EQ(nullptr, dictionary.Find<Float>(9));
	EXPECT_EQ(9, dictionary.Find<LargeValue>(2)->numbers[5]);
	EXPECT_EQ("The dictionary has no value under key 9.", MessageOf(dictionary.GetData(9)));
}

TEST(DataDictionary, ReplacesValuesByOthersOfAnySize)
{
	const DataDictionary original = MixedDictionary();
	DataDictionary dictionary = original;
	for (int round = 0; round < 20; round++)
	{
		for (const std::int32_t key : {1, 2, 3, 4})
		{
			switch ((key + round) % 4)
			{
			case 0:
				Must(dictionary.Set(key, Float(round)));
				break;
			case 1:
				Must(dictionary.Set(key, LargeValue{{Float(round)}}));
				break;
			case 2:
				Must(dictionary.Set(key, Numbers({Float(round), 1, 2})));
				break;
			default:
				Must(dictionary.Set(key, Text(std::to_string(round))));
			}
		}
	}
	EXPECT_EQ((std::vector<std::int32_t>{1, 2, 3, 4}), Keys(dictionary));
	EXPECT_EQ(19, *dictionary.Find<Float>(1));
	EXPECT_EQ(19, dictionary.Find<LargeValue>(2)->numbers[0]);
	EXPECT_EQ(19, (*dictionary.Find<BaseArray<Float>>(3))[0]);
	EXPECT_EQ("19", dictionary.Find<String>(4)->View());
	EXPECT_EQ("text", original.Find<String>(4)->View());
}

TEST(DataDictionary, CopiesShareOneContentUntilOneIsWritten)
{
	DataDictionary first = MixedDictionary();
	const DataDictionary second = first;
	EXPECT_TRUE(first.IsSameObject(second));
	const Float* value = second.Find<Float>(1);
	Must(first.Set(1, 0.75));
	EXPECT_FALSE(first.IsSameObject(second));
	EXPECT_EQ(value, second.Find<Float>(1));
	EXPECT_EQ(0.5, *value);
	EXPECT_EQ(0.75, first.GetOr(1, 0.0));
	// The only owner writes in place.
	const BaseArray<Float>* numbers = first.Find<BaseArray<Float>>(3);
	Must(first.Set(1, 0.8));
	EXPECT_EQ(numbers, first.Find<BaseArray<Float>>(3));
}

TEST(DataDictionary, GivesBackWhatIsRemovedAndLeavesCopiesAlone)
{
	MixedDictionary(); // The records of its types are made once and stay.
	const auto live = runtime::CountLiveValues(kDataTypeDeclaration<String>);
	const auto allocations = CountAllocations();
	{
		const DataDictionary original = MixedDictionary();
		DataDictionary dictionary = original;
		EXPECT_FALSE(Must(dictionary.Remove(9)));
		EXPECT_TRUE(dictionary.IsSameObject(original)) << "nothing was there to be removed";
		EXPECT_EQ(3, FailEachAllocation(
						 [&]
						 {
							 dictionary = original;
							 Result<bool> removed = dictionary.Remove(1);
							 EXPECT_EQ(removed.IsOk(), !dictionary.Has(1));
							 return removed;
						 }))
			<< "the copied block, large value and array";
		// Again and again in the room of one, among values of all kinds: the block must not grow.
		for (int round = 0; round < 300; round++)
		{
			dictionary = round % 100 == 50 ? DataDictionary(original) : dictionary;
			for (const std::int32_t key : {1, 4})
			{
				if (round % 3 != 0)
					Must(dictionary.Remove(key));
				Must(round % 2 == 0 ? dictionary.Set(key, Float(round)) : dictionary.Set(key, Color{}));
			}
			const DataDictionary copy = dictionary; // So that each round works on a clone.
			Must(dictionary.Set(3, Numbers({1, 2})));
		}
		const auto* block = reinterpret_cast<const DictionaryBlock*>(dictionary.begin()) - 1;
		EXPECT_LT(block->blockSize, 500u) << "the room of what was removed or replaced is used again";
		for (const std::int32_t key : {2, 4, 3, 1})
			EXPECT_TRUE(Must(dictionary.Remove(key)));
		EXPECT_TRUE(dictionary.IsSameObject(DataDictionary())) << "an empty dictionary takes no memory";
		EXPECT_EQ(0.5, original.GetOr(1, 0.0));
		EXPECT_EQ((std::vector<std::int32_t>{1, 2, 3, 4}), Keys(original));
		EXPECT_EQ(live + 1, runtime::CountLiveValues(kDataTypeDeclaration<String>));
	}
	{
		DataDictionary texts; // Whose one owner stands inside.
		Must(texts.Set(1, Text("text")));
		// It is still known to be one when all has moved, for want of room behind a gap.
		Must(texts.Set(2, Color{}));
		Must(texts.Set(3, 1.0));
		Must(texts.Remove(2));
		for (std::int32_t key = 4; key < 40; key++)
			Must(texts.Set(key, Color{}));
	}
	EXPECT_EQ(live, runtime::CountLiveValues(kDataTypeDeclaration<String>));
	EXPECT_EQ(allocations, CountAllocations());
}

TEST(DataDictionary, IsAsItWasAfterAFailedWrite)
{
	const DataDictionary shared = MixedDictionary();
	const auto live = runtime::CountLiveValues(kDataTypeDeclaration<String>);
	const auto blocks = CountAllocations();
	const int allocations = FailEachAllocation(
		[&]
		{
			DataDictionary dictionary = shared;
			auto result = dictionary.Set(5, LargeValue{{5}});
			EXPECT_EQ(result.IsOk(), dictionary.Has(5));
			EXPECT_EQ(2, (*dictionary.Find<BaseArray<Float>>(3))[1]);
			return result;
		});
	EXPECT_EQ(5, allocations) << "the copied block, large value and array, the new value, and room for a fifth entry";
	EXPECT_EQ(live, runtime::CountLiveValues(kDataTypeDeclaration<String>));
	EXPECT_FALSE(shared.Has(5));
	EXPECT_EQ(blocks, CountAllocations());
}

TEST(DictionaryStaging, LeavesEachDictionaryABlockOfItsSize)
{
	MixedDictionary(); // The records of its types are made once and stay.
	const auto live = runtime::CountLiveValues(kDataTypeDeclaration<String>);
	const auto blocks = CountAllocations();
	const auto blockOf = [](const DataDictionary& dictionary)
	{
		return reinterpret_cast<const DictionaryBlock*>(dictionary.begin()) - 1;
	};
	const auto fill = [](DataDictionary& dictionary, int count) -> Result<void>
	{
		for (int i = 0; i < count; i++)
		{
			const std::int32_t key = i * 37 % 101; // Out of order.
			ORVAN_TRY(dictionary.Set(key, Float(i)));
			if (i % 4 == 1)
				ORVAN_TRY(dictionary.Set(key, ORVAN_TRY(String::Create(std::to_string(i)))));
			if (i % 4 == 2)
				ORVAN_TRY(dictionary.Set(key, LargeValue{{Float(i)}}));
		}
		return {};
	};
	std::vector<DataDictionary> filled;
	FailEachAllocation(
		[&]() -> Result<void>
		{
			filled.clear();
			DictionaryStaging staging;
			for (const int count : {3, 0, 100, 1, 33, 6})
			{
				DataDictionary& dictionary = filled.emplace_back();
				ORVAN_TRY(staging.Lend(dictionary));
				EXPECT_EQ(0u, dictionary.GetCount());
				ORVAN_TRY(fill(dictionary, count));
				Result<void> taken = staging.TakeBack(dictionary);
				EXPECT_EQ(std::size_t(count), dictionary.GetCount());
				ORVAN_TRY(std::move(taken));
				ORVAN_TRY(staging.TakeBack(dictionary)); // A second time it has nothing to take.
			}
			return {};
		});
	ASSERT_EQ(6u, filled.size());
	for (DataDictionary& dictionary : filled)
	{
		DataDictionary expected;
		Must(fill(expected, static_cast<int>(dictionary.GetCount())));
		ASSERT_EQ(Keys(expected), Keys(dictionary));
		for (const auto& entry : expected)
		{
			EXPECT_EQ(expected.GetOr(entry.key, -1.0), dictionary.GetOr(entry.key, -1.0));
			EXPECT_EQ(expected.GetOr(entry.key, String()), dictionary.GetOr(entry.key, String()));
			EXPECT_EQ(expected.GetOr(entry.key, LargeValue()).numbers[0],
					  dictionary.GetOr(entry.key, LargeValue()).numbers[0]);
		}
		if (dictionary.GetCount() == 0)
			EXPECT_TRUE(dictionary.IsSameObject(DataDictionary()));
		else
			EXPECT_EQ(blockOf(dictionary)->blockSize, blockOf(dictionary)->valueEnd);
		Must(dictionary.Set(1000, 0.5)); // There is no room left, which it notices.
		EXPECT_EQ(0.5, dictionary.GetOr(1000, 0.0));
	}

	// What others share stays where it is.
	DictionaryStaging staging;
	DataDictionary lent;
	Must(staging.Lend(lent));
	Must(lent.Set(1, 0.5));
	const DataDictionary copy = lent;
	Must(staging.TakeBack(lent));
	EXPECT_TRUE(lent.IsSameObject(copy));
	lent = filled.front();
	Must(staging.TakeBack(lent));
	EXPECT_TRUE(lent.IsSameObject(filled.front()));

	lent = copy;
	filled.clear();
	EXPECT_EQ(live, runtime::CountLiveValues(kDataTypeDeclaration<String>));
	EXPECT_EQ(blocks < 0 ? blocks : blocks + 1, CountAllocations()) << "the block of the copy";
}

TEST(DataDictionary, TakesAndGivesValuesOfAnyType)
{
	const DataDictionary source = MixedDictionary();
	DataDictionary target;
	for (const std::int32_t key : {1, 2, 3, 4})
		Must(target.SetData(key, Must(source.GetData(key))));
	EXPECT_EQ(9, target.Find<LargeValue>(2)->numbers[5]);
	EXPECT_EQ(1, (*target.Find<BaseArray<Float>>(3))[0]);
	EXPECT_EQ("text", target.Find<String>(4)->View());
	EXPECT_EQ("An empty value cannot be stored under key 1.", MessageOf(target.SetData(1, Data())));
	EXPECT_EQ(0.5, target.GetOr(1, 0.0));
}

TEST(DataDictionary, TakesOneBlockForTheUsualNumberOfEntries)
{
	DataDictionary dictionary;
	EXPECT_EQ(sizeof(void*), sizeof dictionary);
	for (std::int32_t key = 1; key <= 10; key++)
		Must(dictionary.Set(key, Color{}));
	const DataDictionary other = dictionary;
	EXPECT_EQ(1, FailEachAllocation(
					 [&]
					 {
						 DataDictionary copy = other;
						 return copy.Set(5, Color{1, 1, 1});
					 }));
}

} // namespace
} // namespace orvan
