// SPDX-License-Identifier: MIT
/// How a module describes the classes that it implements.
///
///     constexpr ClassDeclaration kRect = DeclareClass<RectElement,
///         Implements<SVGElementInterface, ElementBase>,       // methods are found in ElementBase
///         Implements<SVGSizeInterface, SizeComponent>>("net.orvan.image.class.svgrectelement");
#pragma once

#include "orvan/object.h"

#include <array>
#include <concepts>
#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

namespace orvan
{

/// One interface of a class and how its method table is filled.
struct InterfaceBinding
{
	const char* interfaceId;
	int slotCount;
	void (*fill)(AnyMethod* slots) noexcept;
};

/// What a module tells the host about a class. A declaration without `construct` names a class that others implement.
struct ClassDeclaration
{
	const char* id;
	std::size_t objectSize;
	/// Makes an object in raw storage.
	ObjectBase* (*construct)(void* storage) noexcept;
	/// Gives a new object what it needs to allocate; null when there is nothing to do.
	Result<void> (*initialize)(ObjectBase* object) noexcept;
	/// Makes a copy in raw storage; null when objects of the class cannot be copied. On success `result` is set.
	Result<void> (*copy)(const ObjectBase* source, void* storage, ObjectBase** result) noexcept;
	void (*destruct)(ObjectBase* object) noexcept;
	/// Called when a hierarchy object got another parent, or none; null when the class does not care.
	void (*parentChanged)(ObjectBase* object) noexcept;
	/// Called when a hierarchy object got another child, whatever the child's class; null when the class does not care.
	void (*childAdded)(ObjectBase* object, ObjectBase* child) noexcept;
	const InterfaceBinding* bindings;
	int bindingCount;
};

/// Binds interface `I` to `Component`: a base of the implementation class, or a stateless view made from it.
template <typename I, typename Component>
struct Implements
{
	template <typename Impl>
	static constexpr InterfaceBinding BindingFor() noexcept
	{
		// A component that is an object by itself is reached without knowing the class that derives from it, so that
		// all classes with this component share its slot entries.
		constexpr bool kIsObject = std::derived_from<Component, ObjectBase>;
		static_assert(!kIsObject || std::derived_from<Impl, Component>, "the class does not have this component");
		return {I::kId, I::kSlotCount, &Fill<std::conditional_t<kIsObject, Component, Impl>>};
	}

private:
	template <typename Object>
	static void Fill(AnyMethod* slots) noexcept
	{
		FillSlots<Object>(slots, std::make_integer_sequence<int, I::kSlotCount>());
	}

	template <typename Object, int... numbers>
	static void FillSlots([[maybe_unused]] AnyMethod* slots, std::integer_sequence<int, numbers...>) noexcept
	{
		if constexpr (sizeof...(numbers) > 0)
			((slots[numbers] = I::template Bind<Object, Component>(Slot<numbers + 1>())), ...);
	}
};

namespace detail
{
template <typename Impl, typename... Bindings>
inline constexpr std::array<InterfaceBinding, sizeof...(Bindings)> kBindings = {
	Bindings::template BindingFor<Impl>()...};
}

/// The declaration of class `Impl`, which derives from `ObjectBase` first. Recognised where `Impl` has them:
/// `Result<void> Initialize()`, `Result<void> CopyStateTo(Impl& copy) const` (makes the class copyable),
/// `void OnParentChanged()`, `void OnChildAdded(ObjectBase& child)`.
template <std::derived_from<ObjectBase> Impl, typename... Bindings>
constexpr ClassDeclaration DeclareClass(const char* id) noexcept
{
	static_assert(sizeof...(Bindings) <= ClassInfo::kMaxInterfaces);
	ClassDeclaration declaration{};
	declaration.id = id;
	declaration.objectSize = sizeof(Impl);
	declaration.construct = [](void* storage) noexcept -> ObjectBase*
	{
		return new (storage) Impl();
	};
	declaration.destruct = [](ObjectBase* object) noexcept
	{
		static_cast<Impl*>(object)->~Impl();
	};
	if constexpr (requires(Impl & object) { object.Initialize(); })
		declaration.initialize = [](ObjectBase* object) noexcept
		{
			return static_cast<Impl*>(object)->Initialize();
		};
	if constexpr (requires(const Impl& source, Impl& copy) { source.CopyStateTo(copy); })
	{
		declaration.copy = [](const ObjectBase* source, void* storage, ObjectBase** result) noexcept -> Result<void>
		{
			auto* copy = new (storage) Impl();
			Result<void> copied = static_cast<const Impl*>(source)->CopyStateTo(*copy);
			if (copied.IsOk())
				*result = copy;
			else
				copy->~Impl();
			return copied;
		};
	}
	if constexpr (requires(Impl & object) { object.OnParentChanged(); })
		declaration.parentChanged = [](ObjectBase* object) noexcept
		{
			static_cast<Impl*>(object)->OnParentChanged();
		};
	if constexpr (requires(Impl & object, ObjectBase & child) { object.OnChildAdded(child); })
		declaration.childAdded = [](ObjectBase* object, ObjectBase* child) noexcept
		{
			static_cast<Impl*>(object)->OnChildAdded(*child);
		};
	declaration.bindings = detail::kBindings<Impl, Bindings...>.data();
	declaration.bindingCount = sizeof...(Bindings);
	return declaration;
}

/// The declaration of a class that the framework defines and somebody else implements.
constexpr ClassDeclaration DeclareClassWithoutImplementation(const char* id) noexcept
{
	ClassDeclaration declaration{};
	declaration.id = id;
	return declaration;
}

} // namespace orvan
