// SPDX-License-Identifier: MIT
#include "orvan/object.h"

#include "orvan/class_declaration.h"
#include "orvan/module.h"
#include "runtime/registry.h"
#include "support.h"

#include <thread>

namespace orvan
{
namespace
{

class CounterInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.test.interface.counter";
	static constexpr const char* kName = "orvan.CounterInterface";
	static constexpr int kSlotCount = 2;

	ORVAN_METHOD(1, void, SetCount, (int count), count)
	ORVAN_METHOD(2, int, GetCount, ())
};
using CounterRef = Ref<CounterInterface>;

class ForeignInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.test.interface.foreign";
	static constexpr int kSlotCount = 0;
};

class Counter : public ObjectBase
{
public:
	Result<void> Initialize() noexcept
	{
		_label = ORVAN_TRY(String::Create("label"));
		return {};
	}

	Result<void> CopyStateTo(Counter& copy) const noexcept
	{
		copy._label = ORVAN_TRY(String::Create(_label));
		copy._count = _count;
		return {};
	}

	void SetCount(int count) noexcept
	{
		_count = count;
	}

	int GetCount() const noexcept
	{
		return _count;
	}

private:
	String _label;
	int _count = 0;
};

constexpr const char* kCounterClass = "net.orvan.test.class.counter";
constexpr ClassDeclaration kCounter = DeclareClass<Counter, Implements<CounterInterface, Counter>>(kCounterClass);

class Objects : public testing::Test
{
protected:
	static void SetUpTestSuite()
	{
		Must(runtime::AddInterface(kInterfaceDeclaration<CounterInterface>));
		Must(runtime::AddClass(kCounter));
	}

	static void TearDownTestSuite()
	{
		runtime::RemoveClass(kCounter);
		runtime::RemoveInterface(kInterfaceDeclaration<CounterInterface>);
	}
};

TEST_F(Objects, AreReachedThroughTheSlotsOfTheirClass)
{
	const CounterRef counter = Must(CreateObject<CounterInterface>(kCounterClass));
	counter->SetCount(5);
	EXPECT_EQ(5, counter->GetCount());
	EXPECT_STREQ(kCounterClass, counter->GetClassId());
	EXPECT_EQ(counter, Cast<CounterInterface>(Cast<ObjectInterface>(counter)));
	EXPECT_FALSE(Cast<ForeignInterface>(counter));
}

TEST_F(Objects, OfUnknownClassesAndWithMissingInterfacesAreRefused)
{
	EXPECT_EQ("No loaded module implements class 'net.orvan.test.class.none'.",
			  MessageOf(CreateObject<CounterInterface>("net.orvan.test.class.none")));
	EXPECT_EQ("Class 'net.orvan.test.class.counter' does not implement interface 'net.orvan.test.interface.foreign'.",
			  MessageOf(CreateObject<ForeignInterface>(kCounterClass)));
	EXPECT_EQ(0, runtime::CountLiveObjects(kCounter));
}

TEST_F(Objects, ReportWantOfMemoryAndLeaveNothingBehind)
{
	IgnoreResult(CreateObject<CounterInterface>(kCounterClass)); // Makes the host's record of the class.
	FailEachAllocation([] { return CreateObject<CounterInterface>(kCounterClass); });
	const CounterRef counter = Must(CreateObject<CounterInterface>(kCounterClass));
	const auto blocks = CountAllocations();
	EXPECT_EQ(2, FailEachAllocation([&] { return CloneObject(counter); }));
	EXPECT_EQ(1, runtime::CountLiveObjects(kCounter));
	EXPECT_EQ(blocks, CountAllocations());
}

TEST_F(Objects, AreCopiedWithTheirState)
{
	const CounterRef counter = Must(CreateObject<CounterInterface>(kCounterClass));
	counter->SetCount(3);
	const CounterRef copy = Must(CloneObject(counter));
	counter->SetCount(4);
	EXPECT_EQ(3, copy->GetCount());
	EXPECT_FALSE(copy == counter);
}

TEST_F(Objects, AreLostToWeakReferencesWhenTheLastStrongOneGoes)
{
	CounterRef counter = Must(CreateObject<CounterInterface>(kCounterClass));
	const auto blocks = CountAllocations();
	for (int round = 0; round < 2; round++) // The second time nothing of the first is left.
		EXPECT_TRUE(Must(WeakRef::To(counter.GetObject())).Lock());
	EXPECT_EQ(blocks, CountAllocations());
	const WeakRef first = Must(WeakRef::To(counter.GetObject()));
	{
		const WeakRef second = Must(WeakRef::To(counter.GetObject()));
		EXPECT_EQ(counter.GetObject(), second.Lock().GetObject());
	}
	EXPECT_TRUE(first.Lock());
	counter = {};
	EXPECT_FALSE(first.Lock());
	EXPECT_FALSE(WeakRef().Lock());
	EXPECT_EQ(0, runtime::CountLiveObjects(kCounter));
}

TEST_F(Objects, WeakReferencesSurviveARaceWithTheLastRelease)
{
	for (int round = 0; round < 300; round++)
	{
		CounterRef counter = Must(CreateObject<CounterInterface>(kCounterClass));
		const WeakRef weak = Must(WeakRef::To(counter.GetObject()));
		std::thread reader(
			[&weak]
			{
				while (const ObjectRef locked = weak.Lock())
					ASSERT_STREQ(kCounterClass, locked->GetClassId());
			});
		counter = {};
		reader.join();
	}
	EXPECT_EQ(0, runtime::CountLiveObjects(kCounter));
}

TEST_F(Objects, AreNotMadeWithoutMethodTables)
{
	static constexpr ClassDeclaration kOrphan =
		DeclareClass<Counter, Implements<CounterInterface, Counter>, Implements<ForeignInterface, Counter>>(
			"net.orvan.test.class.orphan");
	EXPECT_EQ("Interface 'net.orvan.test.interface.foreign' is not registered.", MessageOf(runtime::AddClass(kOrphan)));
	EXPECT_FALSE(CreateObject<CounterInterface>("net.orvan.test.class.orphan").IsOk());
}

} // namespace
} // namespace orvan
