// SPDX-License-Identifier: MIT
#include "orvan/data_type.h"

#include "runtime/registry.h"
#include "support.h"
#include "test_types.h"

namespace orvan
{
namespace
{

TEST(Data, HoldsSmallValuesInsideAndLargeOnesInMemory)
{
	RegisterTestTypes();
	// The record of a type is made when it is first mentioned, and stays.
	ASSERT_NE(nullptr, FindDataType<Color>());
	ASSERT_NE(nullptr, FindDataType<LargeValue>());
	EXPECT_EQ(0, FailEachAllocation([] { return Data::Create(Color{1, 0.5, 0}); }));
	EXPECT_EQ(1, FailEachAllocation([] { return Data::Create(LargeValue{{1, 2, 3, 4, 5, 6}}); }));
	const Data data = Must(Data::Create(LargeValue{{1, 2, 3, 4, 5, 6}}));
	EXPECT_EQ(6, data.Get<LargeValue>()->numbers[5]);
	EXPECT_EQ(nullptr, data.Get<Color>());
}

TEST(Data, CopiesAreIndependentAndFailureKeepsTheOldValue)
{
	BaseArray<Float> numbers;
	Must(numbers.Append(1.5));
	const Data source = Must(Data::Create(std::move(numbers)));
	Data copy = Must(Data::Create(Text("old")));
	EXPECT_EQ(1, FailEachAllocation(
					 [&]
					 {
						 auto result = copy.CopyFrom(source);
						 if (!result.IsOk())
						 {
							 EXPECT_EQ("old", copy.Get<String>()->View());
						 }
						 return result;
					 }));
	EXPECT_EQ(1.5, (*copy.Get<BaseArray<Float>>())[0]);
	EXPECT_NE(source.Get<BaseArray<Float>>()->begin(), copy.Get<BaseArray<Float>>()->begin());
}

TEST(Data, CountsTheLiveValuesOfTypesThatNeedCodeToBeReleased)
{
	const DataType* texts = FindDataType<String>();
	const auto before = texts->liveValues.load();
	{
		Data first = Must(Data::Create(Text("a")));
		Data second = std::move(first);
		EXPECT_EQ(nullptr, first.GetType()); // NOLINT(bugprone-use-after-move): what is left is told.
		EXPECT_EQ(before + 1, texts->liveValues.load());
		Must(first.CopyFrom(second));
		EXPECT_EQ(before + 2, texts->liveValues.load());
	}
	EXPECT_EQ(before, texts->liveValues.load());
}

TEST(Data, OfAnUnknownTypeIsNotFound)
{
	const auto result = Data::Create(UnregisteredValue{});
	EXPECT_EQ("No loaded module provides data type 'net.orvan.test.Unregistered'.", MessageOf(result));
}

TEST(DataTypeOperations, WorkOnManyValuesAtOnce)
{
	const DataTypeOperations& operations = *FindDataType<String>()->operations.load();
	alignas(String) unsigned char target[3 * sizeof(String)];
	operations.construct(target, 3);
	String source[] = {Text("a"), Text("b"), Text("c")};
	Must(operations.copy(target, source, 3));
	auto* texts = reinterpret_cast<String*>(target);
	EXPECT_TRUE(texts[2].IsSameObject(source[2]));
	operations.move(source, target, 2);
	EXPECT_EQ("b", source[1].View());
	operations.destruct(target, 3);
}

TEST(DataTypeOperations, MakeACopyInHostMemory)
{
	const DataTypeOperations& operations = *FindDataType<BaseArray<Float>>()->operations.load();
	BaseArray<Float> source;
	Must(source.Append(2.5));
	void* copy = nullptr;
	EXPECT_EQ(2, FailEachAllocation([&] { return operations.createCopy(&source, &copy); }));
	ASSERT_NE(nullptr, copy);
	EXPECT_EQ(2.5, (*static_cast<BaseArray<Float>*>(copy))[0]);
	operations.destruct(copy, 1);
	Host().free(copy);
}

TEST(DataTypeOperations, ComparisonStopsAndAnswersNeutrally)
{
	const DataTypeOperations& operations = *FindDataType<Color>()->operations.load();
	const Color color;
	testing::internal::CaptureStderr();
	EXPECT_EQ(CompareResult::incomparable, operations.compare(&color, &color));
	EXPECT_FALSE(operations.isEqual(&color, &color));
	EXPECT_EQ(0u, operations.hash(&color));
	EXPECT_TRUE(testing::internal::GetCapturedStderr().starts_with("Stop"));
}

TEST(DataTypeOperations, DescribeTheTypeAndThePlace)
{
	const DataTypeOperations& operations = *FindDataType<Color>()->operations.load();
	const Color color;
	EXPECT_TRUE(Must(operations.describe(&color)).View().starts_with("orvan::Color 0x"));
	EXPECT_EQ("nullptr", Must(operations.describe(nullptr)).View());
}

TEST(DataTypeRegistry, KnowsArraysByTheElementsIdAndRefusesASecondOwner)
{
	EXPECT_STREQ("net.orvan.datatype.Float[]", FindDataType<BaseArray<Float>>()->id);
	EXPECT_EQ("Data type 'net.orvan.datatype.Float' is already registered.",
			  MessageOf(runtime::AddDataType(kDataTypeDeclaration<Float>, runtime::Ownership::single)));
	EXPECT_NE(nullptr, FindDataType<Float>()->operations.load());
	// The types of geometry are the host's own, as are their arrays.
	const Data map = Must(Data::Create(Matrix2d{{1, 2}, {3, 4}, {5, 6}}));
	EXPECT_STREQ("net.orvan.datatype.Matrix2d", map.GetType()->id);
	EXPECT_EQ((Vector2d{5, 6}), map.Get<Matrix2d>()->axis2);
	EXPECT_STREQ("net.orvan.datatype.Vector2d[]", Must(Data::Create(BaseArray<Vector2d>())).GetType()->id);
}

} // namespace
} // namespace orvan
