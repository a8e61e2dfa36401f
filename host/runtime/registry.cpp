// SPDX-License-Identifier: MIT
#include "registry.h"

#include "live_count.h"
#include "orvan/diagnostics.h"
#include "orvan/hash_map.h"
#include "orvan/hierarchy.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <shared_mutex>

namespace orvan::runtime
{
namespace
{

/// The modules' declarations of one thing, in the order of their registration; the first is in use.
template <typename Declaration>
class Providers
{
public:
	Result<void> Add(const Declaration& declaration) noexcept
	{
		return _list.Append(&declaration);
	}

	/// Takes a declaration out; false when it is not among them.
	bool Remove(const Declaration& declaration) noexcept
	{
		const Declaration** at = std::find(_list.begin(), _list.end(), &declaration);
		if (at == _list.end())
			return false;
		std::copy(at + 1, _list.end(), at);
		IgnoreResult(_list.Resize(_list.GetCount() - 1));
		return true;
	}

	const Declaration* GetFirst() const noexcept
	{
		return _list.IsEmpty() ? nullptr : _list[0];
	}

	bool IsShared() const noexcept
	{
		return _list.GetCount() > 1;
	}

private:
	BaseArray<const Declaration*> _list;
};

struct ClassRecord : CountedClass
{
	Providers<ClassDeclaration> implementations;
	int openDeclarations = 0; ///< By frameworks that leave the implementation to others.
};

struct DataTypeRecord : CountedType
{
	Providers<DataTypeOperations> providers;
	DataTypeRecord* arrays =
		nullptr; ///< Of the type's arrays, once they were registered: withdrawing allocates nothing.
};

struct InterfaceRecord
{
	Providers<InterfaceDeclaration> providers;
};

struct HeaderRecord
{
	int count = 0; ///< Of loaded modules that provide it.
};

/// Records by id. Lookups, which dominate by far, share the lock.
struct Registry
{
	std::shared_mutex mutex;
	StringMap<ClassRecord*> classes;
	StringMap<DataTypeRecord*> dataTypes;
	StringMap<InterfaceRecord*> interfaces;
	StringMap<HeaderRecord*> headers;
};

/// Never destroyed: references may be released while the process ends.
Registry& TheRegistry() noexcept
{
	alignas(Registry) static unsigned char storage[sizeof(Registry)];
	static Registry* registry = new (storage) Registry;
	return *registry;
}

char* CopyText(std::string_view text) noexcept
{
	auto* copy = static_cast<char*>(Host().allocate(text.size() + 1));
	if (copy != nullptr)
	{
		std::memcpy(copy, text.data(), text.size());
		copy[text.size()] = '\0';
	}
	return copy;
}

/// The record of `id` in `map`, made if need be; null when memory runs out.
template <typename Record>
Record* Intern(StringMap<Record*> Registry::*map, std::string_view id) noexcept
{
	Registry& registry = TheRegistry();
	{
		const std::shared_lock lock(registry.mutex);
		if (Record* const* known = (registry.*map).Find(id))
			return *known;
	}
	Result<String> key = String::Create(id);
	if (!key.IsOk())
		return nullptr;
	const std::unique_lock lock(registry.mutex);
	if (Record* const* known = (registry.*map).Find(key.GetValue()))
		return *known;
	void* memory = Host().allocate(sizeof(Record));
	char* text = CopyText(id);
	if (memory != nullptr && text != nullptr)
	{
		auto* record = new (memory) Record{};
		if constexpr (requires { record->id; })
			record->id = std::exchange(text, nullptr);
		if ((registry.*map).Insert(key.GetValue(), record).IsOk())
		{
			Host().free(text);
			return record;
		}
		if constexpr (requires { record->id; })
			text = const_cast<char*>(record->id);
	}
	Host().free(text);
	Host().free(memory);
	return nullptr;
}

/// The host hands out the method table of a class for an interface: as many slots as the class was built for.
Result<void> ObtainTable(const InterfaceBinding& binding, MethodTable& table) noexcept
{
	const InterfaceRecord* known = Intern(&Registry::interfaces, binding.interfaceId);
	if (known == nullptr)
		return OutOfMemoryError();
	const InterfaceDeclaration* declaration = known->providers.GetFirst();
	if (declaration == nullptr)
		return NotFoundError("Interface '@' is not registered.", binding.interfaceId);
	if (declaration->slotCount < binding.slotCount)
	{
		return IllegalArgumentError("Interface '@' has @ slots, but the class was built for @.", binding.interfaceId,
									declaration->slotCount, binding.slotCount);
	}
	auto* slots = static_cast<AnyMethod*>(
		Host().allocate(sizeof(AnyMethod) * static_cast<std::size_t>(std::max(1, binding.slotCount))));
	if (slots == nullptr)
		return OutOfMemoryError();
	binding.fill(slots);
	table = {HashBytes(binding.interfaceId), binding.slotCount, slots};
	return {};
}

void ReleaseTables(ClassInfo& info) noexcept
{
	for (int i = 0; i < info.tableCount; i++)
		Host().free(info.tables[i].slots);
	info.tableCount = 0;
}

/// Gives a class the implementation that comes first, if there is any.
Result<void> UseFirstImplementation(ClassRecord& record) noexcept
{
	const ClassDeclaration* declaration = record.implementations.GetFirst();
	if (declaration == nullptr)
		return {};
	for (int i = 0; i < declaration->bindingCount; i++)
	{
		if (Result<void> obtained = ObtainTable(declaration->bindings[i], record.tables[i]); !obtained.IsOk())
		{
			ReleaseTables(record);
			return obtained;
		}
		record.tableCount = i + 1;
	}
	record.declaration.store(declaration, std::memory_order_release);
	return {};
}

bool AreEqual(const InterfaceDeclaration& a, const InterfaceDeclaration& b) noexcept
{
	const auto isSameText = [](const char* x, const char* y)
	{
		return std::strcmp(x, y) == 0;
	};
	return a.slotCount == b.slotCount && isSameText(a.name, b.name) && isSameText(a.baseId, b.baseId) &&
		   std::equal(a.methodNames, a.methodNames + a.slotCount, b.methodNames, isSameText);
}

bool HaveEqualLayout(const DataType& type, const DataTypeOperations& operations) noexcept
{
	return type.size == operations.size && type.alignment == operations.alignment &&
		   type.isTrivial == operations.isTrivial;
}

/// Registers the operations of one id. What is wrong with them is found before anything is written: a record that is in
/// use decides how the values of the type are copied and released.
Result<void> AddOperations(DataTypeRecord& type, const DataTypeOperations& operations, Ownership ownership) noexcept
{
	const std::unique_lock lock(TheRegistry().mutex);
	const bool isSame = HaveEqualLayout(type, operations);
	if (type.operations.load() != nullptr && (ownership == Ownership::single || !isSame))
		return IllegalStateError("Data type '@' is already registered.", type.id);
	// Values that are dropped without their operations are not counted: some may outlive the module that they were of.
	if (type.size != 0 && type.isTrivial && !isSame)
		return IllegalStateError("Data type '@' was registered with another layout before.", type.id);
	ORVAN_TRY(type.providers.Add(operations));
	type.size = operations.size;
	type.alignment = operations.alignment;
	type.isTrivial = operations.isTrivial;
	type.operations.store(type.providers.GetFirst());
	return {};
}

void RemoveOperations(DataTypeRecord& type, const DataTypeOperations& operations) noexcept
{
	const std::unique_lock lock(TheRegistry().mutex);
	if (type.providers.Remove(operations))
		type.operations.store(type.providers.GetFirst());
}

/// Values of a type that need just these operations.
std::int64_t CountValues(const DataTypeRecord& type, const DataTypeOperations& operations) noexcept
{
	const bool isNeeded = type.providers.GetFirst() == &operations && !type.providers.IsShared();
	return isNeeded ? type.liveValues.load(std::memory_order_acquire) + type.live.Get() : 0;
}

/// The id of the arrays of a data type; empty when memory runs out.
String ArrayId(const char* id) noexcept
{
	BaseArray<char> text;
	if (text.AppendAll(id, std::strlen(id)).IsOk() && text.AppendAll("[]", 2).IsOk())
		return String::Create({text.begin(), text.GetCount()}).GetValueOr(String());
	return {};
}

Result<void> AddHeader(std::string_view header) noexcept
{
	HeaderRecord* known = Intern(&Registry::headers, header);
	if (known == nullptr)
		return OutOfMemoryError();
	const std::unique_lock lock(TheRegistry().mutex);
	known->count++;
	return {};
}

void RemoveHeader(std::string_view header) noexcept
{
	HeaderRecord* known = Intern(&Registry::headers, header);
	const std::unique_lock lock(TheRegistry().mutex);
	if (known != nullptr)
		known->count--;
}

/// The host's own types, for which no module has to be loaded.
struct HostTypes
{
	HostTypes() noexcept
	{
		Add<std::int32_t>();
		Add<Float>();
		Add<String>();
		Add<Color>();
		Add<Vector2d>();
		Add<Matrix2d>();
		for (const char* header :
			 {"object", "string", "array", "url", "data_type", "data_dictionary", "hierarchy", "geometry",
			  "diagnostics", "file_stamp", "file_monitor", "class_declaration", "module"})
			IgnoreResult(AddHeader(header));
		IgnoreResult(AddInterface(kInterfaceDeclaration<ObjectInterface>));
		IgnoreResult(AddInterface(kInterfaceDeclaration<HierarchyObjectInterface>));
	}

	template <typename T>
	static void Add() noexcept
	{
		IgnoreResult(AddDataType(kDataTypeDeclaration<T>, Ownership::single));
	}
};

} // namespace

ClassInfo* FindClass(const char* id) noexcept
{
	return Intern(&Registry::classes, id);
}

const DataType* FindDataType(const char* id) noexcept
{
	return Intern(&Registry::dataTypes, id);
}

Result<void> AddInterface(const InterfaceDeclaration& declaration) noexcept
{
	InterfaceRecord* known = Intern(&Registry::interfaces, declaration.id);
	if (known == nullptr)
		return OutOfMemoryError();
	const std::unique_lock lock(TheRegistry().mutex);
	const InterfaceDeclaration* first = known->providers.GetFirst();
	if (first != nullptr && !AreEqual(*first, declaration))
		return IllegalStateError("Interface '@' is already registered, and is another one.", declaration.id);
	return known->providers.Add(declaration);
}

void RemoveInterface(const InterfaceDeclaration& declaration) noexcept
{
	InterfaceRecord* known = Intern(&Registry::interfaces, declaration.id);
	const std::unique_lock lock(TheRegistry().mutex);
	if (known != nullptr)
		known->providers.Remove(declaration);
}

Result<void> AddClass(const ClassDeclaration& declaration) noexcept
{
	ClassRecord* record = Intern(&Registry::classes, declaration.id);
	if (record == nullptr)
		return OutOfMemoryError();
	if (declaration.construct == nullptr)
	{
		record->openDeclarations++;
		return {};
	}
	const bool isFirst = record->implementations.GetFirst() == nullptr;
	if (!isFirst && record->openDeclarations == 0)
		return IllegalStateError("Class '@' already has an implementation.", declaration.id);
	ORVAN_TRY(record->implementations.Add(declaration));
	Result<void> used = isFirst ? UseFirstImplementation(*record) : Result<void>();
	if (!used.IsOk())
		record->implementations.Remove(declaration);
	return used;
}

void RemoveClass(const ClassDeclaration& declaration) noexcept
{
	ClassRecord* record = Intern(&Registry::classes, declaration.id);
	if (record == nullptr)
		return;
	if (declaration.construct == nullptr)
	{
		record->openDeclarations--;
		return;
	}
	record->implementations.Remove(declaration);
	if (record->declaration.load() != &declaration)
		return;
	record->declaration.store(nullptr, std::memory_order_release);
	ReleaseTables(*record);
	if (const Result<void> used = UseFirstImplementation(*record); !used.IsOk())
		WarningOutput("Class '@' is not available. @", declaration.id, used.GetError());
}

Result<void> AddDataType(const DataTypeDeclaration& declaration, Ownership ownership) noexcept
{
	const DataTypeOperations& operations = *declaration.operations;
	const String arrayId = ArrayId(declaration.id);
	DataTypeRecord* type = Intern(&Registry::dataTypes, declaration.id);
	DataTypeRecord* arrays = arrayId.IsEmpty() ? nullptr : Intern(&Registry::dataTypes, arrayId);
	if (type == nullptr || arrays == nullptr)
		return OutOfMemoryError();
	ORVAN_TRY(AddOperations(*type, operations, ownership));
	type->arrays = arrays;
	Result<void> added =
		operations.array != nullptr ? AddOperations(*arrays, *operations.array, ownership) : Result<void>();
	if (!added.IsOk())
		RemoveOperations(*type, operations);
	return added;
}

void RemoveDataType(const DataTypeDeclaration& declaration) noexcept
{
	const DataTypeOperations& operations = *declaration.operations;
	DataTypeRecord* type = Intern(&Registry::dataTypes, declaration.id);
	if (type == nullptr)
		return;
	RemoveOperations(*type, operations);
	if (type->arrays != nullptr && operations.array != nullptr)
		RemoveOperations(*type->arrays, *operations.array);
}

Result<void> AddFramework(const FrameworkDeclaration& declaration) noexcept
{
	for (int i = 0; i < declaration.headerCount; i++)
	{
		if (Result<void> added = AddHeader(declaration.headers[i]); !added.IsOk())
		{
			while (i-- > 0)
				RemoveHeader(declaration.headers[i]);
			return added;
		}
	}
	return {};
}

void RemoveFramework(const FrameworkDeclaration& declaration) noexcept
{
	for (int i = declaration.headerCount; i-- > 0;)
		RemoveHeader(declaration.headers[i]);
}

bool HasHeader(std::string_view header) noexcept
{
	const HeaderRecord* known = Intern(&Registry::headers, header);
	const std::shared_lock lock(TheRegistry().mutex);
	return known != nullptr && known->count > 0;
}

std::int64_t CountLiveObjects(const ClassDeclaration& declaration) noexcept
{
	const ClassRecord* record = Intern(&Registry::classes, declaration.id);
	return record != nullptr && record->declaration.load() == &declaration ? record->live.Get() : 0;
}

std::int64_t CountLiveValues(const DataTypeDeclaration& declaration) noexcept
{
	const DataTypeOperations& operations = *declaration.operations;
	const DataTypeRecord* type = Intern(&Registry::dataTypes, declaration.id);
	if (type == nullptr)
		return 0;
	std::int64_t count = CountValues(*type, operations);
	if (type->arrays != nullptr && operations.array != nullptr)
		count += CountValues(*type->arrays, *operations.array);
	return count;
}

void EnsureHostTypes() noexcept
{
	static const HostTypes types;
}

} // namespace orvan::runtime
