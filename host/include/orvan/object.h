// SPDX-License-Identifier: MIT
/// The object model: reference-counted objects that are reached only through interfaces.
///
/// An object is a block of memory with a class. A class implements interfaces; for each pair of class and interface the
/// host owns a method table, one entry a slot, which the module that implements the class has filled. A reference
/// (`Ref<SomeInterface>`) is a counted pointer to the object together with the table, so that a call costs two loads
/// and an indirect jump.
///
/// An interface is declared like this; the compiler refuses a slot number that is used twice or missing:
///
///     class SVGSizeInterface : public ObjectInterface
///     {
///     public:
///         static constexpr const char* kId = "net.orvan.image.interface.svgsize";
///         static constexpr const char* kName = "orvan.SVGSizeInterface";
///         static constexpr int kSlotCount = 2;
///
///         ORVAN_METHOD(1, Result<void>, SetWidth, (const SVGLength& width), width)
///         ORVAN_METHOD(2, SVGLength, GetWidth, ())
///     };
///     using SVGSizeRef = Ref<SVGSizeInterface>;
#pragma once

#include "orvan/hash.h"
#include "orvan/reference_count.h"
#include "orvan/result.h"

#include <atomic>
#include <concepts>
#include <cstdint>
#include <functional>
#include <string_view>
#include <type_traits>
#include <utility>

namespace orvan
{

/// One slot of a method table; cast back to its own signature before the call.
using AnyMethod = void (*)();

/// The methods of one class for one interface. Made and owned by the host, filled by the implementing module.
struct MethodTable
{
	std::uint64_t interfaceKey; ///< Hash of the interface's id.
	std::int32_t slotCount;
	AnyMethod* slots;
};

struct ClassDeclaration;

/// What the host knows about a class id. Lives as long as the process; `declaration` is null while no loaded module
/// implements the class.
struct ClassInfo
{
	static constexpr int kMaxInterfaces = 8;

	const char* id;
	std::atomic<const ClassDeclaration*> declaration;
	std::atomic<std::int64_t> liveObjects; ///< Always zero, kept for the layout: the host counts elsewhere.
	int tableCount;
	MethodTable tables[kMaxInterfaces];
};

/// The head of every object. Implementation classes derive from it (first) and are only ever made by the host.
class ObjectBase
{
public:
	ObjectBase() noexcept = default;
	ObjectBase(const ObjectBase&) noexcept
	{
		// A copy is an object of its own: it starts with its own count and gets its class from the host.
	}
	ObjectBase& operator=(const ObjectBase&) = delete;

	/// Counts one more reference. Safe from any thread that holds one.
	void AddReference() const noexcept
	{
		_word.fetch_add(1, std::memory_order_relaxed);
	}

	/// Counts one reference less; with the last one the object is destroyed, on this thread.
	void ReleaseReference() const noexcept
	{
		// An object with weak references counts down to zero, by which they see that it is lost.
		if (detail::ReleaseReference(_word, kCountMask))
			Host().destroyObject(const_cast<ObjectBase*>(this));
	}

	const ClassInfo& GetClass() const noexcept
	{
		return *_class;
	}

	/// The method table for the interface with this key, or null. `slotCount` is what the caller was compiled for.
	const MethodTable* FindTable(std::uint64_t interfaceKey, int slotCount) const noexcept
	{
		for (int i = 0; i < _class->tableCount; i++)
		{
			const MethodTable& table = _class->tables[i];
			if (table.interfaceKey == interfaceKey)
				return table.slotCount >= slotCount ? &table : nullptr;
		}
		return nullptr;
	}

private:
	friend struct ObjectAccess; // The host's runtime.

	static constexpr std::uint64_t kHasWeak = 1ull << 63;
	static constexpr std::uint64_t kCountMask = kHasWeak - 1;

	/// Count of references, with a flag for weak ones; the link of the release queue once the object is dying.
	mutable std::atomic<std::uint64_t> _word{1};
	const ClassInfo* _class = nullptr;
};

template <int number>
struct Slot
{
	// A slot number is a type, so that using it twice redeclares a function.
};

/// The base of every interface: an uncounted pointer to an object and one of its method tables. Clients hold `Ref`s.
class ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.core.interface.object";
	static constexpr const char* kName = "orvan.ObjectInterface";
	static constexpr int kSlotCount = 0;

	/// The id of the object's class.
	const char* GetClassId() const noexcept
	{
		return _object->GetClass().id;
	}

	/// The object itself, for comparing identities. Not counted.
	ObjectBase* GetObject() const noexcept
	{
		return _object;
	}

protected:
	ObjectInterface() noexcept = default;

	template <typename Signature>
	auto At(int slot) const noexcept;

	template <typename I>
	friend class Ref;
	template <typename I>
	friend class Borrowed;

	ObjectBase* _object = nullptr;
	const MethodTable* _table = nullptr;
};

namespace detail
{
template <typename Signature>
struct Call;

template <typename R, typename... Args>
struct Call<R(Args...)>
{
	/// Exceptions end here instead of crossing the module's border.
	using Thunk = R (*)(ObjectBase* self, Args...) noexcept;

	/// The slot entry that calls `method` of `Component` on an object of class `Impl`. A component is that class or a
	/// base of it, or a stateless view that is made from it for the call.
	template <typename Impl, typename Component, auto method>
	static AnyMethod To() noexcept
	{
		static_assert(std::is_invocable_r_v<R, decltype(method), Component&, Args...>,
					  "the method's signature differs from the interface's");
		const Thunk thunk = &Invoke<Impl, Component, method>;
		return reinterpret_cast<AnyMethod>(thunk);
	}

private:
	template <typename Impl, typename Component, auto method>
	static R Invoke(ObjectBase* self, Args... args) noexcept
	{
		auto& object = *static_cast<Impl*>(self);
		if constexpr (std::derived_from<Impl, Component>)
			return std::invoke(method, static_cast<Component&>(object), std::forward<Args>(args)...);
		else
			return std::invoke(method, Component(object), std::forward<Args>(args)...);
	}
};
} // namespace detail

template <typename Signature>
auto ObjectInterface::At(int slot) const noexcept
{
	return reinterpret_cast<typename detail::Call<Signature>::Thunk>(_table->slots[slot - 1]);
}

/// Declares the method of one slot: `ORVAN_METHOD(slot, result, name, (parameters), argument names…)`.
#define ORVAN_METHOD(slot, R, Name, params, ...)                                                                       \
	R Name params const                                                                                                \
	{                                                                                                                  \
		return At<R params>(slot)(_object __VA_OPT__(, ) __VA_ARGS__);                                                 \
	}                                                                                                                  \
	static constexpr const char* NameOf(Slot<slot>) noexcept                                                           \
	{                                                                                                                  \
		return #Name;                                                                                                  \
	}                                                                                                                  \
	template <typename Impl, typename Component>                                                                       \
	static AnyMethod Bind(Slot<slot>) noexcept                                                                         \
	{                                                                                                                  \
		return detail::Call<R params>::template To<Impl, Component, &Component::Name>();                               \
	}

/// The key under which an interface is found on an object.
template <typename I>
inline constexpr std::uint64_t kInterfaceKey = HashBytes(I::kId);

/// A shared reference to an object through interface `I`; possibly null. Has the semantics of a pointer: a const
/// reference still changes the object. Counting is atomic; one `Ref` object must not be written by two threads at once.
template <typename I>
class Ref
{
public:
	using Interface = I;

	Ref() noexcept = default;

	Ref(std::nullptr_t) noexcept
	{
	}

	Ref(const Ref& other) noexcept : _interface(other._interface)
	{
		if (_interface._object != nullptr)
			_interface._object->AddReference();
	}

	Ref(Ref&& other) noexcept : _interface(std::exchange(other._interface, I()))
	{
	}

	Ref& operator=(const Ref& other) noexcept
	{
		Ref(other).Swap(*this);
		return *this;
	}

	Ref& operator=(Ref&& other) noexcept
	{
		Ref(std::move(other)).Swap(*this);
		return *this;
	}

	~Ref()
	{
		if (_interface._object != nullptr)
			_interface._object->ReleaseReference();
	}

	/// A counted reference to `object`; null when the object is null or does not implement the interface.
	static Ref From(ObjectBase* object) noexcept
	{
		Ref result = Adopt(object);
		if (result)
			object->AddReference();
		return result;
	}

	/// Takes over one count of `object`, which must be null or implement the interface; otherwise the result is null
	/// and the count stays with the caller.
	static Ref Adopt(ObjectBase* object) noexcept
	{
		Ref result;
		if (object == nullptr)
			return result;
		if constexpr (std::same_as<I, ObjectInterface>)
			result._interface._object = object;
		else if (const MethodTable* table = object->FindTable(kInterfaceKey<I>, I::kSlotCount))
		{
			result._interface._object = object;
			result._interface._table = table;
		}
		return result;
	}

	/// Hands the count over to the caller, and is null then.
	[[nodiscard]] ObjectBase* Detach() noexcept
	{
		return std::exchange(_interface, I())._object;
	}

	/// False for the null reference.
	explicit operator bool() const noexcept
	{
		return _interface._object != nullptr;
	}

	/// The interface; only when not null.
	const I* operator->() const noexcept
	{
		return &_interface;
	}

	const I& operator*() const noexcept
	{
		return _interface;
	}

	/// The object, uncounted; null for the null reference.
	ObjectBase* GetObject() const noexcept
	{
		return _interface._object;
	}

	/// Exchanges what the two refer to, without counting.
	void Swap(Ref& other) noexcept
	{
		std::swap(_interface, other._interface);
	}

	/// True when both refer to the same object, or to none.
	friend bool operator==(const Ref& a, const Ref& b) noexcept
	{
		return a.GetObject() == b.GetObject();
	}

private:
	I _interface;
};

using ObjectRef = Ref<ObjectInterface>;

/// The same object through another of its interfaces; null when it has none of that kind.
template <typename To, typename From>
Ref<To> Cast(const Ref<From>& reference) noexcept
{
	return Ref<To>::From(reference.GetObject());
}

/// An interface of an object that somebody else keeps alive: what `Cast` gives, without counting. For short use on hot
/// paths.
template <typename I>
class Borrowed
{
public:
	/// The interface of `object`; empty when the object is null or does not implement it.
	explicit Borrowed(ObjectBase* object) noexcept
	{
		if (object == nullptr)
			return;
		_interface._table = object->FindTable(kInterfaceKey<I>, I::kSlotCount);
		if (_interface._table != nullptr)
			_interface._object = object;
	}

	/// The interface of what `reference` refers to; empty when that does not implement it.
	template <typename From>
	explicit Borrowed(const Ref<From>& reference) noexcept : Borrowed(reference.GetObject())
	{
	}

	/// False when empty.
	explicit operator bool() const noexcept
	{
		return _interface._object != nullptr;
	}

	const I* operator->() const noexcept
	{
		return &_interface;
	}

private:
	I _interface;
};

/// A class by its id, for making many objects: the host's record is looked up once. Safe to use from any thread.
class ObjectFactory
{
public:
	/// A factory for the class of this id, which must live as long as the factory. Nothing is looked up yet.
	constexpr explicit ObjectFactory(const char* classId) noexcept : _classId(classId)
	{
	}

	/// Makes a new object. Fails when no loaded module implements the class (not found), when the class lacks the
	/// interface, or for want of memory.
	template <typename I>
	Result<Ref<I>> Create() const noexcept
	{
		ClassInfo* objectClass = _class.load(std::memory_order_relaxed);
		if (objectClass == nullptr)
		{
			objectClass = Host().findClass(_classId);
			if (objectClass == nullptr)
				return OutOfMemoryError();
			_class.store(objectClass, std::memory_order_relaxed);
		}
		ObjectBase* object = nullptr;
		ORVAN_TRY(ResultOf(Host().createObject(objectClass, &object)));
		Ref<I> result = Ref<I>::Adopt(object);
		if (!result)
		{
			object->ReleaseReference();
			return IllegalArgumentError("Class '@' does not implement interface '@'.", _classId, I::kId);
		}
		return result;
	}

private:
	const char* _classId;
	mutable std::atomic<ClassInfo*> _class = nullptr;
};

/// Makes a new object of the class with this id; fails like `ObjectFactory::Create`.
template <typename I>
Result<Ref<I>> CreateObject(const char* classId) noexcept
{
	return ObjectFactory(classId).Create<I>();
}

/// A copy of an object: same class, same state, no parent and no children. Fails when the class cannot be copied.
template <typename I>
Result<Ref<I>> CloneObject(const Ref<I>& source) noexcept
{
	if (!source)
		return NullReferenceError("An empty reference cannot be copied.");
	ObjectBase* object = nullptr;
	ORVAN_TRY(ResultOf(Host().cloneObject(source.GetObject(), &object)));
	return Ref<I>::Adopt(object);
}

/// A reference that does not keep its object alive.
class WeakRef
{
public:
	WeakRef() noexcept = default;
	WeakRef(const WeakRef&) = delete;

	WeakRef(WeakRef&& other) noexcept : _block(std::exchange(other._block, nullptr))
	{
	}

	WeakRef& operator=(WeakRef&& other) noexcept
	{
		std::swap(_block, other._block);
		return *this;
	}

	~WeakRef()
	{
		if (_block != nullptr)
			Host().releaseWeak(_block);
	}

	/// A weak reference to `object`, which may be null.
	static Result<WeakRef> To(ObjectBase* object) noexcept
	{
		WeakRef result;
		if (object != nullptr)
		{
			result._block = Host().acquireWeak(object);
			if (result._block == nullptr)
				return OutOfMemoryError();
		}
		return result;
	}

	/// The object, if it is still alive.
	ObjectRef Lock() const noexcept
	{
		return _block != nullptr ? ObjectRef::Adopt(Host().lockWeak(_block)) : ObjectRef();
	}

private:
	WeakBlock* _block = nullptr;
};

} // namespace orvan
