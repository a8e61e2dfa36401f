// SPDX-License-Identifier: MIT
/// The module side of loading: the descriptor `g_orvan`, the single symbol that a module exports, and the entries that
/// link themselves into it while the module's static data is initialised.
///
/// The host reads the descriptor, checks the ABI version before any code of the module runs, hands over its services
/// and registers the entries in the order of the list. At unload it withdraws them in reverse. The order of the list is
/// the order of initialisation; units fix theirs with `[[gnu::init_priority]]`, so that it does not hang on link order.
///
///     // in one unit of the module
///     ORVAN_DEFINE_MODULE();
///     // in each unit
///     constexpr ClassDeclaration kLamp = DeclareClass<Lamp, Implements<LampInterface, Lamp>>("my.class.lamp");
///     [[gnu::init_priority(1001)]] const RegistrationEntry entries[] = {{RegistrationEntry::Kind::unit, "lamp"},
///     kLamp};
#pragma once

#include "orvan/class_declaration.h"
#include "orvan/data_type.h"

#include <array>
#include <cstdint>
#include <utility>

namespace orvan
{

/// An interface that a framework defines, with the names of its methods in slot order.
struct InterfaceDeclaration
{
	const char* id;
	const char* name;
	const char* baseId;
	int slotCount;
	const char* const* methodNames;
};

/// A data type with its published id, its display name and its operations.
struct DataTypeDeclaration
{
	const char* id;
	const char* name;
	const DataTypeOperations* operations;
};

/// A framework by id: its headers when the module defines it, none when it only uses it.
struct FrameworkDeclaration
{
	enum class Role : std::int32_t
	{
		defined,
		used,
	};

	const char* id;
	Role role;
	const char* const* headers;
	int headerCount;
};

/// A declaration that a unit takes from a header, so that the host can check that some framework provides the header.
struct UseDeclaration
{
	const char* unit;
	const char* declaration;
	const char* header;
};

/// One registration of a module: an element of the descriptor's list.
class RegistrationEntry
{
public:
	enum class Kind : std::int32_t
	{
		unit,
		interface,
		referenceType,
		module,
		framework,
		classImplementation,
		dataType,
		use,
	};

	/// Links the entry at the end of the module's list. `declaration` is of the type that the kind calls for, or null
	/// for units and the module, which have but a name; it must live as long as the entry.
	RegistrationEntry(Kind kind, const char* name, const void* declaration = nullptr) noexcept;
	RegistrationEntry(const InterfaceDeclaration& declaration) noexcept
		: RegistrationEntry(Kind::interface, declaration.id, &declaration)
	{
	}

	RegistrationEntry(const FrameworkDeclaration& declaration) noexcept
		: RegistrationEntry(Kind::framework, declaration.id, &declaration)
	{
	}

	RegistrationEntry(const ClassDeclaration& declaration) noexcept
		: RegistrationEntry(Kind::classImplementation, declaration.id, &declaration)
	{
	}

	RegistrationEntry(const UseDeclaration& declaration) noexcept
		: RegistrationEntry(Kind::use, declaration.declaration, &declaration)
	{
	}

	RegistrationEntry(const RegistrationEntry&) = delete;
	~RegistrationEntry();

	/// What is registered, and with it the type of the declaration.
	Kind GetKind() const noexcept
	{
		return _kind;
	}

	/// The id or the name under which it is registered.
	const char* GetName() const noexcept
	{
		return _name;
	}

	/// What is declared. Only for the type that the kind calls for, and not for units and modules.
	template <typename Declaration>
	const Declaration& GetDeclaration() const noexcept
	{
		return *static_cast<const Declaration*>(_declaration);
	}

	/// The entry that follows in the module's list; null for the last.
	const RegistrationEntry* GetNext() const noexcept
	{
		return _next;
	}

	/// The entry before; null for the first.
	const RegistrationEntry* GetPrevious() const noexcept
	{
		return _previous;
	}

private:
	Kind _kind;
	const char* _name;
	const void* _declaration;
	RegistrationEntry* _previous;
	RegistrationEntry* _next = nullptr;
};

/// What a module exports under the name `g_orvan`. The first two members are read from the file, before it is loaded.
struct ModuleDescriptor
{
	static constexpr std::uint64_t kMagic = 0x31'6e61'7672'6f; // "orvan1"

	std::uint64_t magic = kMagic;
	AbiVersion abiVersion = kHostAbiVersion;                     ///< What the module was built against.
	const HostServices** hostServices = &detail::g_hostServices; ///< Where the loader puts the host's services.
	RegistrationEntry* first = nullptr;
	RegistrationEntry* last = nullptr;
};

/// The name of the exported descriptor.
inline constexpr const char* kModuleSymbol = "g_orvan";

namespace detail
{
template <typename I, int... numbers>
constexpr std::array<const char*, sizeof...(numbers)> MethodNames(std::integer_sequence<int, numbers...>) noexcept
{
	if constexpr (sizeof...(numbers) > 0)
		return {I::NameOf(Slot<numbers + 1>())...};
	else
		return {};
}

template <typename I>
inline constexpr auto kMethodNames = MethodNames<I>(std::make_integer_sequence<int, I::kSlotCount>());
} // namespace detail

/// The declaration of interface `I`.
template <typename I>
inline constexpr InterfaceDeclaration kInterfaceDeclaration = {I::kId, I::kName, ObjectInterface::kId, I::kSlotCount,
															   detail::kMethodNames<I>.data()};

/// References are compared by the object that they refer to.
template <typename I>
struct ReferenceComparison
{
	/// Equal or incomparable: there is no order among objects.
	static CompareResult Compare(const void* a, const void* b) noexcept
	{
		return IsEqual(a, b) ? CompareResult::equal : CompareResult::incomparable;
	}

	/// True when both refer to the same object, or to none.
	static bool IsEqual(const void* a, const void* b) noexcept
	{
		return *static_cast<const Ref<I>*>(a) == *static_cast<const Ref<I>*>(b);
	}

	/// By the object's address, so that it differs from run to run.
	static std::uint64_t Hash(const void* value) noexcept
	{
		return reinterpret_cast<std::uintptr_t>(static_cast<const Ref<I>*>(value)->GetObject());
	}
};

template <typename I>
inline constexpr DataTypeDeclaration kReferenceDeclaration = {
	DataTypeTraits<Ref<I>>::kId, DataTypeTraits<Ref<I>>::kName, &kDataTypeOperations<Ref<I>, ReferenceComparison<I>>};

template <typename T>
inline constexpr DataTypeDeclaration kDataTypeDeclaration = {DataTypeTraits<T>::kId, DataTypeTraits<T>::kName,
															 &kDataTypeOperations<T>};

} // namespace orvan

extern "C" [[gnu::visibility("default")]] orvan::ModuleDescriptor g_orvan;

namespace orvan
{

inline RegistrationEntry::RegistrationEntry(Kind kind, const char* name, const void* declaration) noexcept
	: _kind(kind), _name(name), _declaration(declaration), _previous(g_orvan.last)
{
	(_previous != nullptr ? _previous->_next : g_orvan.first) = this;
	g_orvan.last = this;
}

inline RegistrationEntry::~RegistrationEntry()
{
	(_previous != nullptr ? _previous->_next : g_orvan.first) = _next;
	(_next != nullptr ? _next->_previous : g_orvan.last) = _previous;
}

/// Defines the descriptor of a module. The descriptor is constant-initialised: it is there before any entry is.
#define ORVAN_DEFINE_MODULE()                                                                                          \
	const orvan::HostServices* orvan::detail::g_hostServices = nullptr;                                                \
	constinit orvan::ModuleDescriptor g_orvan

} // namespace orvan
