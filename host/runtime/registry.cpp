// SPDX-License-Identifier: MIT
#include "registry.h"

#include "orvan/hash_map.h"
#include "orvan/hierarchy.h"

#include <cstring>
#include <mutex>
#include <shared_mutex>

namespace orvan::runtime
{
namespace
{

/// Interfaces and headers: how many loaded modules provide them, and for interfaces the declaration.
struct Provision
{
	const InterfaceDeclaration* declaration = nullptr;
	int count = 0;
};

/// Records by id. Lookups, which dominate by far, share the lock.
struct Registry
{
	std::shared_mutex mutex;
	StringMap<ClassInfo*> classes;
	StringMap<DataType*> dataTypes;
	StringMap<Provision*> interfaces;
	StringMap<Provision*> headers;
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

void SetId(ClassInfo& record, const char* id) noexcept
{
	record.id = id;
}

void SetId(DataType& record, const char* id) noexcept
{
	record.id = id;
}

void SetId(Provision&, const char*) noexcept
{
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
		SetId(*record, text);
		if ((registry.*map).Insert(key.GetValue(), record).IsOk())
		{
			if constexpr (!requires { record->id; })
				Host().free(text);
			return record;
		}
	}
	Host().free(text);
	Host().free(memory);
	return nullptr;
}

Provision* FindInterface(std::string_view id) noexcept
{
	return Intern(&Registry::interfaces, id);
}

/// The host hands out the method table of a class for an interface: as many slots as the interface was registered with.
Result<void> ObtainTable(const InterfaceBinding& binding, MethodTable& table) noexcept
{
	const Provision* known = FindInterface(binding.interfaceId);
	if (known == nullptr)
		return OutOfMemoryError();
	if (known->declaration == nullptr)
		return NotFoundError("Interface '@' is not registered.", binding.interfaceId);
	if (known->declaration->slotCount != binding.slotCount)
	{
		return IllegalArgumentError("Interface '@' has @ slots, but the class was built for @.", binding.interfaceId,
									known->declaration->slotCount, binding.slotCount);
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

DataType* InternDataType(std::string_view id) noexcept
{
	return Intern(&Registry::dataTypes, id);
}

Result<void> SetOperations(const char* id, const DataTypeOperations* operations) noexcept
{
	DataType* type = InternDataType(id);
	if (type == nullptr)
		return OutOfMemoryError();
	const DataTypeOperations* none = nullptr;
	type->size = operations->size;
	type->alignment = operations->alignment;
	type->isTrivial = operations->isTrivial;
	if (!type->operations.compare_exchange_strong(none, operations))
		return IllegalStateError("Data type '@' is already registered.", id);
	return {};
}

/// The id of the arrays of a data type; empty when memory runs out.
String ArrayId(const char* id) noexcept
{
	BaseArray<char> text;
	if (text.AppendAll(id, std::strlen(id)).IsOk() && text.AppendAll("[]", 2).IsOk())
		return String::Create({text.begin(), text.GetCount()}).GetValueOr(String());
	return {};
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
		for (const char* header : {"object", "string", "array", "url", "data_type", "data_dictionary", "hierarchy",
								   "geometry", "diagnostics", "file_monitor", "class_declaration", "module"})
			IgnoreResult(AddHeader(header));
		IgnoreResult(AddInterface(kInterfaceDeclaration<ObjectInterface>));
		IgnoreResult(AddInterface(kInterfaceDeclaration<HierarchyObjectInterface>));
	}

	template <typename T>
	static void Add() noexcept
	{
		IgnoreResult(AddDataType(kDataTypeDeclaration<T>));
	}
};

} // namespace

ClassInfo* FindClass(const char* id) noexcept
{
	return Intern(&Registry::classes, id);
}

const DataType* FindDataType(const char* id) noexcept
{
	return InternDataType(id);
}

Result<void> AddInterface(const InterfaceDeclaration& declaration) noexcept
{
	Provision* known = FindInterface(declaration.id);
	if (known == nullptr)
		return OutOfMemoryError();
	const std::unique_lock lock(TheRegistry().mutex);
	if (known->declaration != nullptr)
		return IllegalStateError("Interface '@' is already registered.", declaration.id);
	known->declaration = &declaration;
	return {};
}

void RemoveInterface(const InterfaceDeclaration& declaration) noexcept
{
	if (Provision* known = FindInterface(declaration.id))
	{
		const std::unique_lock lock(TheRegistry().mutex);
		known->declaration = nullptr;
	}
}

Result<void> AddClass(const ClassDeclaration& declaration) noexcept
{
	ClassInfo* info = FindClass(declaration.id);
	if (info == nullptr)
		return OutOfMemoryError();
	if (declaration.construct == nullptr)
		return {};
	if (info->declaration.load() != nullptr)
		return IllegalStateError("Class '@' already has an implementation.", declaration.id);
	for (int i = 0; i < declaration.bindingCount; i++)
	{
		if (Result<void> obtained = ObtainTable(declaration.bindings[i], info->tables[i]); !obtained.IsOk())
		{
			ReleaseTables(*info);
			return obtained;
		}
		info->tableCount = i + 1;
	}
	info->declaration.store(&declaration, std::memory_order_release);
	return {};
}

void RemoveClass(const ClassDeclaration& declaration) noexcept
{
	ClassInfo* info = FindClass(declaration.id);
	if (info == nullptr || info->declaration.load() != &declaration)
		return;
	info->declaration.store(nullptr, std::memory_order_release);
	ReleaseTables(*info);
}

Result<void> AddDataType(const DataTypeDeclaration& declaration) noexcept
{
	const String arrayId = ArrayId(declaration.id);
	if (arrayId.IsEmpty())
		return OutOfMemoryError();
	ORVAN_TRY(SetOperations(declaration.id, declaration.operations));
	if (declaration.operations->array == nullptr)
		return {};
	Result<void> added = SetOperations(arrayId.CString(), declaration.operations->array);
	if (!added.IsOk())
		RemoveDataType(declaration);
	return added;
}

void RemoveDataType(const DataTypeDeclaration& declaration) noexcept
{
	if (DataType* type = InternDataType(declaration.id))
		type->operations.store(nullptr);
	if (const String arrayId = ArrayId(declaration.id); !arrayId.IsEmpty())
	{
		if (DataType* type = InternDataType(arrayId))
			type->operations.store(nullptr);
	}
}

Result<void> AddHeader(std::string_view header) noexcept
{
	Provision* known = Intern(&Registry::headers, header);
	if (known == nullptr)
		return OutOfMemoryError();
	const std::unique_lock lock(TheRegistry().mutex);
	known->count++;
	return {};
}

void RemoveHeader(std::string_view header) noexcept
{
	if (Provision* known = Intern(&Registry::headers, header))
	{
		const std::unique_lock lock(TheRegistry().mutex);
		known->count--;
	}
}

bool HasHeader(std::string_view header) noexcept
{
	const Provision* known = Intern(&Registry::headers, header);
	const std::shared_lock lock(TheRegistry().mutex);
	return known != nullptr && known->count > 0;
}

std::int64_t CountLiveObjects(const ClassDeclaration& declaration) noexcept
{
	const ClassInfo* info = FindClass(declaration.id);
	return info != nullptr && info->declaration.load() == &declaration ? info->liveObjects.load() : 0;
}

std::int64_t CountLiveValues(const DataTypeDeclaration& declaration) noexcept
{
	std::int64_t count = 0;
	if (const DataType* type = InternDataType(declaration.id))
		count += type->liveValues.load();
	const String arrayId = ArrayId(declaration.id);
	if (const DataType* type = arrayId.IsEmpty() ? nullptr : InternDataType(arrayId))
		count += type->liveValues.load();
	return count;
}

void EnsureHostTypes() noexcept
{
	static const HostTypes types;
}

} // namespace orvan::runtime
