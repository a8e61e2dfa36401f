// SPDX-License-Identifier: MIT
/// The registries, with declarations that stand for those of several modules.
#include "runtime/registry.h"

#include "orvan/module.h"
#include "support.h"

namespace orvan
{

constexpr const char* kPenId = "net.orvan.test.interface.registrypen";

/// An interface as one version of a header declares it, and as a later one does.
class PenInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = kPenId;
	static constexpr const char* kName = "orvan.PenInterface";
	static constexpr int kSlotCount = 1;

	ORVAN_METHOD(1, int, GetWidth, ())
};

class LongPenInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = kPenId;
	static constexpr const char* kName = "orvan.PenInterface";
	static constexpr int kSlotCount = 2;

	ORVAN_METHOD(1, int, GetWidth, ())
	ORVAN_METHOD(2, int, GetLength, ())
};

ORVAN_DATA_TYPE(Ref<PenInterface>, "net.orvan.test.RegistryPenRef", "orvan::PenRef");

struct Small
{
	std::int32_t value = 0;
};

struct Wide
{
	Float values[9] = {};
};

/// Two layouts under one id.
ORVAN_DATA_TYPE(Small, "net.orvan.test.Layout", "orvan::Layout");
ORVAN_DATA_TYPE(Wide, "net.orvan.test.Layout", "orvan::Layout");

namespace
{

using runtime::Ownership;

template <int width>
class Pen : public ObjectBase
{
public:
	int GetWidth() const noexcept
	{
		return width;
	}

	int GetLength() const noexcept
	{
		return 100 * width;
	}
};

template <int width, typename I = PenInterface>
constexpr ClassDeclaration kPen = DeclareClass<Pen<width>, Implements<I, Pen<width>>>("net.orvan.test.class.pen");

class Registries : public testing::Test
{
protected:
	~Registries() override
	{
		runtime::RemoveInterface(pen);
	}

	static int WidthOfNewPen()
	{
		const auto made = CreateObject<PenInterface>("net.orvan.test.class.pen");
		return made.IsOk() ? made.GetValue()->GetWidth() : 0;
	}

	const InterfaceDeclaration pen = kInterfaceDeclaration<PenInterface>;
	const InterfaceDeclaration samePen = pen;
};

TEST_F(Registries, TakeAnIdenticalInterfaceTwiceAndRefuseADifferentOne)
{
	Must(runtime::AddInterface(pen));
	Must(runtime::AddInterface(samePen));
	const char* const otherMethods[] = {"GetBreadth"};
	InterfaceDeclaration others[] = {kInterfaceDeclaration<LongPenInterface>, pen, pen, pen};
	others[1].name = "orvan.QuillInterface";
	others[2].baseId = kPenId;
	others[3].methodNames = otherMethods;
	for (const InterfaceDeclaration& other : others)
	{
		EXPECT_EQ("Interface 'net.orvan.test.interface.registrypen' is already registered, and is another one.",
				  MessageOf(runtime::AddInterface(other)));
		runtime::RemoveInterface(other); // Which takes nobody else's away.
	}
	runtime::RemoveInterface(pen);
	Must(runtime::AddClass(kPen<3>));
	EXPECT_EQ(3, WidthOfNewPen()) << "the second declaration carries on";
	runtime::RemoveClass(kPen<3>);
	runtime::RemoveInterface(samePen);
	EXPECT_EQ("Interface 'net.orvan.test.interface.registrypen' is not registered.",
			  MessageOf(runtime::AddClass(kPen<3>)));
	EXPECT_EQ(0, WidthOfNewPen());
}

TEST_F(Registries, CompareSlotCounts)
{
	Must(runtime::AddInterface(pen));
	EXPECT_EQ("Interface 'net.orvan.test.interface.registrypen' has 1 slots, but the class was built for 2.",
			  MessageOf(runtime::AddClass(kPen<1, LongPenInterface>)));
	runtime::RemoveInterface(pen);

	const InterfaceDeclaration longPen = kInterfaceDeclaration<LongPenInterface>;
	Must(runtime::AddInterface(longPen));
	Must(runtime::AddClass(kPen<1, LongPenInterface>));
	EXPECT_EQ(1, WidthOfNewPen()) << "an older client reaches the slots that it knows";
	runtime::RemoveClass(kPen<1, LongPenInterface>);

	Must(runtime::AddClass(kPen<2>)); // Built against fewer slots than there are by now.
	EXPECT_EQ(2, WidthOfNewPen());
	EXPECT_EQ("Class 'net.orvan.test.class.pen' does not implement interface 'net.orvan.test.interface.registrypen'.",
			  MessageOf(CreateObject<LongPenInterface>("net.orvan.test.class.pen")));
	runtime::RemoveClass(kPen<2>);
	runtime::RemoveInterface(longPen);
}

TEST_F(Registries, HaveImplementationsWaitOnlyForAClassThatAFrameworkLeavesOpen)
{
	Must(runtime::AddInterface(pen));
	Must(runtime::AddClass(kPen<1>));
	EXPECT_EQ("Class 'net.orvan.test.class.pen' already has an implementation.", MessageOf(runtime::AddClass(kPen<2>)));
	runtime::RemoveClass(kPen<2>);
	EXPECT_EQ(1, WidthOfNewPen()) << "what was refused takes nothing away";
	runtime::RemoveClass(kPen<1>);

	const ClassDeclaration open = DeclareClassWithoutImplementation("net.orvan.test.class.pen");
	Must(runtime::AddClass(open));
	EXPECT_EQ(0, WidthOfNewPen());
	Must(runtime::AddClass(kPen<1>));
	Must(runtime::AddClass(kPen<2>));
	Must(runtime::AddClass(kPen<3>));
	EXPECT_EQ(1, WidthOfNewPen());
	runtime::RemoveClass(kPen<2>);
	EXPECT_EQ(1, WidthOfNewPen());
	{
		const auto alive = Must(CreateObject<PenInterface>("net.orvan.test.class.pen"));
		EXPECT_EQ(1, runtime::CountLiveObjects(kPen<1>));
		EXPECT_EQ(0, runtime::CountLiveObjects(kPen<3>)) << "the object is none of those that wait";
	}
	runtime::RemoveClass(kPen<1>);
	EXPECT_EQ(3, WidthOfNewPen());
	runtime::RemoveClass(kPen<3>);
	EXPECT_EQ(0, WidthOfNewPen());

	// One that waits, and whose interface has gone meanwhile.
	Must(runtime::AddClass(kPen<1>));
	Must(runtime::AddClass(kPen<2>));
	runtime::RemoveInterface(pen);
	CollectedDiagnostics diagnostics;
	runtime::RemoveClass(kPen<1>);
	EXPECT_EQ(std::vector<std::string>{"Class 'net.orvan.test.class.pen' is not available. Interface "
									   "'net.orvan.test.interface.registrypen' is not registered."},
			  diagnostics.lines);
	EXPECT_EQ(0, WidthOfNewPen());
	runtime::RemoveClass(kPen<2>);
	runtime::RemoveClass(open);
	Must(runtime::AddInterface(pen));
	Must(runtime::AddClass(kPen<1>));
	EXPECT_FALSE(runtime::AddClass(kPen<2>).IsOk()) << "it is no longer left open";
	runtime::RemoveClass(kPen<1>);
}

TEST_F(Registries, KeepADataTypeAsItIsWhenAnotherIsRefused)
{
	constexpr DataTypeDeclaration kSmall = kDataTypeDeclaration<Small>;
	Must(runtime::AddDataType(kSmall, Ownership::single));
	const Data data = Must(Data::Create(Small{7}));
	EXPECT_EQ("Data type 'net.orvan.test.Layout' is already registered.",
			  MessageOf(runtime::AddDataType(kDataTypeDeclaration<Wide>, Ownership::single)));
	EXPECT_FALSE(runtime::AddDataType(kDataTypeDeclaration<Wide>, Ownership::shared).IsOk());
	runtime::RemoveDataType(kDataTypeDeclaration<Wide>);
	EXPECT_EQ(sizeof(Small), data.GetType()->size);
	Data copy;
	Must(copy.CopyFrom(data));
	EXPECT_EQ(7, copy.Get<Small>()->value);

	// A value that needs no code outlives its module; a module with another layout would have it misread.
	runtime::RemoveDataType(kSmall);
	EXPECT_FALSE(copy.CopyFrom(data).IsOk());
	EXPECT_EQ("Data type 'net.orvan.test.Layout' was registered with another layout before.",
			  MessageOf(runtime::AddDataType(kDataTypeDeclaration<Wide>, Ownership::single)));
	EXPECT_EQ(7, data.Get<Small>()->value);
	Must(runtime::AddDataType(kSmall, Ownership::single));
	runtime::RemoveDataType(kSmall);
	// An id whose arrays belong to somebody else is not taken by half.
	constexpr DataTypeDeclaration kArrays = {"net.orvan.test.Half[]", "", &kDataTypeOperations<BaseArray<Wide>>};
	constexpr DataTypeDeclaration kHalf = {"net.orvan.test.Half", "", &kDataTypeOperations<Wide>};
	Must(runtime::AddDataType(kArrays, Ownership::single));
	EXPECT_FALSE(runtime::AddDataType(kHalf, Ownership::single).IsOk());
	EXPECT_EQ(nullptr, runtime::FindDataType("net.orvan.test.Half")->operations.load());
	EXPECT_EQ(kArrays.operations, runtime::FindDataType("net.orvan.test.Half[]")->operations.load());
	runtime::RemoveDataType(kArrays);
}

TEST_F(Registries, ShareReferenceTypesAmongModules)
{
	using PenRef = Ref<PenInterface>;
	const DataTypeDeclaration first = kReferenceDeclaration<PenInterface>;
	const DataTypeOperations operations = *first.operations;
	const DataTypeDeclaration second = {first.id, first.name, &operations};
	Must(runtime::AddDataType(first, Ownership::shared));
	Data reference = Must(Data::Create(PenRef()));
	EXPECT_EQ(1, runtime::CountLiveValues(first));
	Must(runtime::AddDataType(second, Ownership::shared));
	EXPECT_EQ(0, runtime::CountLiveValues(first)) << "the second module can release it";
	runtime::RemoveDataType(first);
	EXPECT_EQ(&operations, reference.GetType()->operations.load());
	EXPECT_EQ(1, runtime::CountLiveValues(second));
	reference.Reset();
	EXPECT_EQ(0, runtime::CountLiveValues(second));
	runtime::RemoveDataType(second);
	EXPECT_FALSE(Data::Create(PenRef()).IsOk());
}

TEST_F(Registries, ProvideAHeaderAsLongAsAFrameworkHasIt)
{
	const char* const headers[] = {"pen", "quill"};
	const FrameworkDeclaration framework = {"net.orvan.test.framework", FrameworkDeclaration::Role::defined, headers,
											2};
	EXPECT_FALSE(runtime::HasHeader("quill"));
	Must(runtime::AddFramework(framework));
	Must(runtime::AddFramework(framework));
	EXPECT_TRUE(runtime::HasHeader("pen"));
	runtime::RemoveFramework(framework);
	EXPECT_TRUE(runtime::HasHeader("quill"));
	runtime::RemoveFramework(framework);
	EXPECT_FALSE(runtime::HasHeader("pen"));
}

TEST(AbiVersions, AreCompatibleWithinAMajorVersionWithWhatIsNoNewer)
{
	EXPECT_TRUE(CanLoad({2, 3}, {2, 3}));
	EXPECT_TRUE(CanLoad({2, 3}, {2, 1}));
	EXPECT_FALSE(CanLoad({2, 3}, {2, 4})) << "it may call a service that this host does not have";
	EXPECT_FALSE(CanLoad({2, 3}, {1, 3}));
	EXPECT_FALSE(CanLoad({2, 3}, {3, 0}));
}

} // namespace
} // namespace orvan
