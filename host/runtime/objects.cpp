// SPDX-License-Identifier: MIT
#include "objects.h"

#include "live_count.h"
#include "memory.h"
#include "orvan/class_declaration.h"

#include <mutex>
#include <unordered_map>

namespace orvan
{

/// What stands between weak references and their object. `target` becomes null when the object dies; both fields are
/// guarded by the table's mutex.
struct WeakBlock
{
	ObjectBase* target;
	std::int64_t references;
};

/// The host's view of the head of an object.
struct ObjectAccess
{
	static constexpr std::uint64_t kHasWeak = ObjectBase::kHasWeak;
	static constexpr std::uint64_t kCountMask = ObjectBase::kCountMask;

	static std::atomic<std::uint64_t>& Word(const ObjectBase* object) noexcept
	{
		return object->_word;
	}

	static void SetClass(ObjectBase* object, const ClassInfo* objectClass) noexcept
	{
		object->_class = objectClass;
	}

	static ClassInfo* GetClass(const ObjectBase* object) noexcept
	{
		return const_cast<ClassInfo*>(object->_class);
	}
};

namespace
{

/// The blocks of all objects that have weak references. Few objects do, so one table with one lock serves.
struct WeakTable
{
	std::mutex mutex;
	std::unordered_map<ObjectBase*, WeakBlock*> blocks;
};

WeakTable& TheWeakTable() noexcept
{
	static auto* table = new WeakTable; // Never destroyed: objects may be released while the process ends.
	return *table;
}

/// Destroying one object may release others. They are destroyed at once, while what was just read of them is still in
/// the processor's caches; but only to this depth, so that a deep tree does not use up the stack.
constexpr int kDeepestNesting = 32;

/// The objects beyond that depth that this thread is about to destroy, linked through their counts.
struct ReleaseQueue
{
	ObjectBase* first = nullptr;
	ObjectBase* last = nullptr;
	int depth = 0; ///< Of the destructions that are under way.
};

constinit thread_local ReleaseQueue t_queue;

/// All records of classes are the host's.
runtime::LiveCount& CountOf(ClassInfo* objectClass) noexcept
{
	return static_cast<runtime::CountedClass*>(objectClass)->live;
}

void Destroy(ObjectBase* object) noexcept
{
	ClassInfo* objectClass = ObjectAccess::GetClass(object);
	objectClass->declaration.load(std::memory_order_relaxed)->destruct(object);
	runtime::Free(object);
	CountOf(objectClass).Decrement();
}

[[gnu::noinline]] Error NoImplementationError(const ClassInfo* objectClass) noexcept
{
	return NotFoundError("No loaded module implements class '@'.", objectClass->id);
}

Result<ObjectBase*> Clone(const ObjectBase* source) noexcept
{
	ClassInfo* objectClass = ObjectAccess::GetClass(source);
	const ClassDeclaration* declaration = objectClass->declaration.load(std::memory_order_acquire);
	if (declaration == nullptr)
		return NoImplementationError(objectClass);
	if (declaration->copy == nullptr)
		return IllegalArgumentError("Objects of class '@' cannot be copied.", objectClass->id);
	void* storage = runtime::Allocate(declaration->objectSize);
	if (storage == nullptr)
		return OutOfMemoryError();
	ObjectBase* object = nullptr;
	if (Result<void> copied = declaration->copy(source, storage, &object); !copied.IsOk())
	{
		runtime::Free(storage);
		return copied.GetError();
	}
	ObjectAccess::SetClass(object, objectClass);
	CountOf(objectClass).Increment();
	return object;
}

/// Has the references see that their object is lost.
[[gnu::noinline]] void ForgetInWeakReferences(ObjectBase* object) noexcept
{
	WeakTable& table = TheWeakTable();
	const std::lock_guard lock(table.mutex);
	if (const auto found = table.blocks.find(object); found != table.blocks.end())
	{
		found->second->target = nullptr;
		table.blocks.erase(found);
	}
}

[[gnu::noinline]] void Enqueue(ReleaseQueue& queue, ObjectBase* object) noexcept
{
	ObjectAccess::Word(object).store(0, std::memory_order_relaxed);
	if (queue.first == nullptr)
		queue.first = object;
	else
		ObjectAccess::Word(queue.last).store(reinterpret_cast<std::uintptr_t>(object), std::memory_order_relaxed);
	queue.last = object;
}

[[gnu::noinline]] void DestroyQueued(ReleaseQueue& queue) noexcept
{
	while (queue.first != nullptr)
	{
		ObjectBase* next = queue.first;
		const std::uint64_t link = ObjectAccess::Word(next).load(std::memory_order_relaxed);
		queue.first = next == queue.last ? nullptr : reinterpret_cast<ObjectBase*>(link);
		Destroy(next);
	}
}

} // namespace

ErrorBlock* runtime::CreateObject(ClassInfo* objectClass, ObjectBase** result) noexcept
{
	const ClassDeclaration* declaration = objectClass->declaration.load(std::memory_order_acquire);
	if (declaration == nullptr)
		return NoImplementationError(objectClass).Release();
	void* storage = Allocate(declaration->objectSize);
	if (storage == nullptr)
		return OutOfMemoryError().Release();
	ObjectBase* object = declaration->construct(storage);
	ObjectAccess::SetClass(object, objectClass);
	CountOf(objectClass).Increment();
	if (declaration->initialize != nullptr)
	{
		if (Result<void> initialized = declaration->initialize(object); !initialized.IsOk())
		{
			object->ReleaseReference();
			return initialized.GetError().Release();
		}
	}
	*result = object;
	return nullptr;
}

ErrorBlock* runtime::CloneObject(const ObjectBase* source, ObjectBase** result) noexcept
{
	Result<ObjectBase*> copy = Clone(source);
	if (!copy.IsOk())
		return copy.GetError().Release();
	*result = copy.GetValue();
	return nullptr;
}

void runtime::DestroyObject(ObjectBase* object) noexcept
{
	if (ObjectAccess::Word(object).load(std::memory_order_relaxed) & ObjectAccess::kHasWeak)
		ForgetInWeakReferences(object);
	ReleaseQueue& queue = t_queue;
	if (queue.depth == kDeepestNesting)
		return Enqueue(queue, object);
	queue.depth++;
	Destroy(object);
	if (queue.depth == 1)
		DestroyQueued(queue);
	queue.depth--;
}

WeakBlock* runtime::AcquireWeak(ObjectBase* object) noexcept
{
	void* memory = runtime::Allocate(sizeof(WeakBlock));
	if (memory == nullptr)
		return nullptr;
	WeakTable& table = TheWeakTable();
	const std::lock_guard lock(table.mutex);
	if (const auto found = table.blocks.find(object); found != table.blocks.end())
	{
		runtime::Free(memory);
		found->second->references++;
		return found->second;
	}
	auto* block = new (memory) WeakBlock{object, 1};
	try
	{
		table.blocks.emplace(object, block);
	}
	catch (const std::bad_alloc&)
	{
		runtime::Free(memory);
		return nullptr;
	}
	ObjectAccess::Word(object).fetch_or(ObjectAccess::kHasWeak, std::memory_order_relaxed);
	return block;
}

ObjectBase* runtime::LockWeak(WeakBlock* block) noexcept
{
	const std::lock_guard lock(TheWeakTable().mutex);
	if (block->target == nullptr)
		return nullptr;
	// An object whose count has reached zero is lost, even if its destruction has not yet come to the table.
	std::atomic<std::uint64_t>& word = ObjectAccess::Word(block->target);
	std::uint64_t value = word.load(std::memory_order_relaxed);
	while ((value & ObjectAccess::kCountMask) != 0)
	{
		if (word.compare_exchange_weak(value, value + 1, std::memory_order_acquire, std::memory_order_relaxed))
			return block->target;
	}
	return nullptr;
}

void runtime::ReleaseWeak(WeakBlock* block) noexcept
{
	{
		WeakTable& table = TheWeakTable();
		const std::lock_guard lock(table.mutex);
		if (--block->references > 0)
			return;
		if (block->target != nullptr)
			table.blocks.erase(block->target);
	}
	runtime::Free(block);
}

} // namespace orvan
