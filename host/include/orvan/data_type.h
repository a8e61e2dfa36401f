// SPDX-License-Identifier: MIT
/// Data types: values that the host can keep, copy and release without knowing their C++ type.
///
/// A type takes part by a `DataTypeTraits` with its published id; the module that owns the type registers its
/// operations under that id. Values then stand in a `Data`, a `DataDictionary` or an array. A value must survive being
/// moved as bytes, as all types of the host do. With each type comes the type of its arrays, "<id>[]".
#pragma once

#include "orvan/array.h"
#include "orvan/geometry.h"
#include "orvan/object.h"
#include "orvan/string.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>

namespace orvan
{

/// Outcome of comparing two values of a data type.
enum class CompareResult : std::int32_t
{
	less = -1,
	equal = 0,
	greater = 1,
	incomparable = 2,
};

/// The operations of a data type, over arrays of values where that says something. None throws.
struct DataTypeOperations
{
	std::uint32_t size;
	std::uint32_t alignment;
	/// Copying the bytes copies the value, and dropping the bytes releases it.
	bool isTrivial;

	/// Makes `count` values in raw storage, each with the type's defaults.
	void (*construct)(void* values, std::size_t count) noexcept;
	void (*destruct)(void* values, std::size_t count) noexcept;
	/// Assigns `count` values to existing ones. Stops at the first failure.
	Result<void> (*copy)(void* target, const void* source, std::size_t count) noexcept;
	/// Moves `count` values onto existing ones; the sources stay valid.
	void (*move)(void* target, void* source, std::size_t count) noexcept;
	/// A new value in host memory: allocated, set to the defaults, then assigned. Null in `result` on failure.
	Result<void> (*createCopy)(const void* source, void** result) noexcept;
	CompareResult (*compare)(const void* a, const void* b) noexcept;
	bool (*isEqual)(const void* a, const void* b) noexcept;
	std::uint64_t (*hash)(const void* value) noexcept;
	/// A text about the value: the type and where the value stands, "nullptr" when it is missing.
	Result<String> (*describe)(const void* value) noexcept;
	/// The operations of arrays of this type; null where there are none.
	const DataTypeOperations* array;
};

/// What the host knows about a data type id. Lives as long as the process.
struct DataType
{
	const char* id;
	std::atomic<const DataTypeOperations*> operations; ///< Null while no loaded module provides the type.
	/// Number of values in `Data` to be released by the operations; the host counts those of dictionaries elsewhere.
	mutable std::atomic<std::int64_t> liveValues;
	/// Copied from the operations, so that trivial values can be dropped without them.
	std::uint32_t size;
	std::uint32_t alignment;
	bool isTrivial;
};

/// `static constexpr const char* kId` and `kName`: the published id and the display name of type `T`.
template <typename T>
struct DataTypeTraits;

#define ORVAN_DATA_TYPE(Type, id, name)                                                                                \
	template <>                                                                                                        \
	struct DataTypeTraits<Type>                                                                                        \
	{                                                                                                                  \
		static constexpr const char* kId = id;                                                                         \
		static constexpr const char* kName = name;                                                                     \
	}

ORVAN_DATA_TYPE(std::int32_t, "net.orvan.datatype.Int32", "Int32");
ORVAN_DATA_TYPE(Float, "net.orvan.datatype.Float", "Float");
ORVAN_DATA_TYPE(String, "net.orvan.datatype.String", "orvan::String");
ORVAN_DATA_TYPE(Color, "net.orvan.datatype.Color", "orvan::Color");
ORVAN_DATA_TYPE(Vector2d, "net.orvan.datatype.Vector2d", "orvan::Vector2d");
ORVAN_DATA_TYPE(Matrix2d, "net.orvan.datatype.Matrix2d", "orvan::Matrix2d");

/// Arrays of a data type: the element type's id followed by "[]".
template <typename T>
struct DataTypeTraits<BaseArray<T>>
{
private:
	static constexpr std::size_t kSize = std::char_traits<char>::length(DataTypeTraits<T>::kId);
	static constexpr std::array<char, kSize + 3> kText = []
	{
		std::array<char, kSize + 3> text{};
		*std::copy_n("[]", 2, std::copy_n(DataTypeTraits<T>::kId, kSize, text.begin())) = '\0';
		return text;
	}();

public:
	static constexpr const char* kId = kText.data();
	static constexpr const char* kName = kText.data();
};

/// The record of type `T`, or null when memory for it ran out.
template <typename T>
const DataType* FindDataType() noexcept
{
	static constinit std::atomic<const DataType*> known = nullptr;
	const DataType* type = known.load(std::memory_order_relaxed);
	if (type == nullptr)
	{
		type = Host().findDataType(DataTypeTraits<T>::kId);
		known.store(type, std::memory_order_relaxed);
	}
	return type;
}

namespace detail
{
[[gnu::cold]] inline void StopInComparison(const char* file = __builtin_FILE(), int line = __builtin_LINE()) noexcept
{
	Host().debugStop("Stop", file, line);
}

template <typename T>
Result<void> Assign(T& target, const T& source) noexcept
{
	if constexpr (requires { target.CopyFrom(source); })
		return target.CopyFrom(source);
	else
	{
		target = source;
		return {};
	}
}

/// The operations of a type that supports neither comparison nor hashing.
template <typename T>
struct NotComparable
{
	static CompareResult Compare(const void*, const void*) noexcept
	{
		StopInComparison();
		return CompareResult::incomparable;
	}

	static bool IsEqual(const void*, const void*) noexcept
	{
		StopInComparison();
		return false;
	}

	static std::uint64_t Hash(const void*) noexcept
	{
		StopInComparison();
		return 0;
	}
};

template <typename T>
Result<String> Describe(const void* value) noexcept
{
	if (value == nullptr)
		return String::Create("nullptr");
	constexpr std::string_view kName = DataTypeTraits<T>::kName;
	char text[kName.size() + 24];
	char* at = std::copy(kName.begin(), kName.end(), text);
	*at++ = ' ';
	*at++ = '0';
	*at++ = 'x';
	const auto address = reinterpret_cast<std::uintptr_t>(value);
	for (int shift = 60; shift >= 0; shift -= 4)
		*at++ = "0123456789abcdef"[address >> shift & 15];
	return String::Create({text, at});
}
template <typename T>
constexpr const DataTypeOperations* ArrayOperations() noexcept;
} // namespace detail

/// The table of operations for type `T`; a `Comparison` with `Compare`, `IsEqual` and `Hash` replaces the entries that
/// stop in the debugger and answer neutrally.
template <typename T, typename Comparison = detail::NotComparable<T>>
inline constexpr DataTypeOperations kDataTypeOperations = {
	.size = sizeof(T),
	.alignment = alignof(T),
	.isTrivial = std::is_trivially_copyable_v<T>,
	.construct = [](void* values, std::size_t count) noexcept
	{ std::uninitialized_value_construct_n(static_cast<T*>(values), count); },
	.destruct = [](void* values, std::size_t count) noexcept { std::destroy_n(static_cast<T*>(values), count); },
	.copy = [](void* target, const void* source, std::size_t count) noexcept -> Result<void>
	{
		for (std::size_t i = 0; i < count; i++)
			ORVAN_TRY(detail::Assign(static_cast<T*>(target)[i], static_cast<const T*>(source)[i]));
		return {};
	},
	.move = [](void* target, void* source, std::size_t count) noexcept
	{ std::move(static_cast<T*>(source), static_cast<T*>(source) + count, static_cast<T*>(target)); },
	.createCopy = [](const void* source, void** result) noexcept -> Result<void>
	{
		*result = nullptr;
		void* memory = Host().allocate(sizeof(T));
		if (memory == nullptr)
			return OutOfMemoryError();
		T* value = new (memory) T();
		if (Result<void> copied = detail::Assign(*value, *static_cast<const T*>(source)); !copied.IsOk())
		{
			std::destroy_at(value);
			Host().free(memory);
			return copied;
		}
		*result = value;
		return {};
	},
	.compare = &Comparison::Compare,
	.isEqual = &Comparison::IsEqual,
	.hash = &Comparison::Hash,
	.describe = &detail::Describe<T>,
	.array = detail::ArrayOperations<T>(),
};

template <typename T>
constexpr const DataTypeOperations* detail::ArrayOperations() noexcept
{
	if constexpr (std::is_nothrow_copy_constructible_v<T>)
		return &kDataTypeOperations<BaseArray<T>>;
	else
		return nullptr;
}

/// A value of any registered data type, or none. Values of up to 56 bytes that are at ease with being moved as bytes
/// stand inside; larger ones in host memory. Copying may fail, so it is spelled `CopyFrom`.
class Data
{
public:
	static constexpr std::size_t kInlineSize = 56;

	Data() noexcept = default;
	Data(const Data&) = delete; ///< Would have no way to report a failed allocation; use `CopyFrom`.

	Data(Data&& other) noexcept : _type(std::exchange(other._type, nullptr))
	{
		std::memcpy(_bytes, other._bytes, kInlineSize);
	}

	Data& operator=(Data&& other) noexcept
	{
		if (this != &other)
		{
			Reset();
			_type = std::exchange(other._type, nullptr);
			std::memcpy(_bytes, other._bytes, kInlineSize);
		}
		return *this;
	}

	~Data()
	{
		Reset();
	}

	/// Wraps a value. Fails when no loaded module provides the type, or for want of memory.
	template <typename T>
	static Result<Data> Create(T value) noexcept
	{
		Data data;
		const DataType* type = FindDataType<T>();
		if (type == nullptr)
			return OutOfMemoryError();
		void* storage = data.Prepare(type);
		if (storage == nullptr)
			return MissingStorageError(type);
		new (storage) T(std::move(value));
		return data;
	}

	/// A copy of the value of type `type` that stands at `value`.
	static Result<Data> CreateCopy(const DataType* type, const void* value) noexcept
	{
		Data data;
		void* storage = data.Prepare(type);
		if (storage == nullptr)
			return MissingStorageError(type);
		const DataTypeOperations* operations = type->operations.load(std::memory_order_relaxed);
		operations->construct(storage, 1);
		ORVAN_TRY(operations->copy(storage, value, 1));
		return data;
	}

	/// Replaces the value by a copy of the other's; on failure the value is as it was.
	Result<void> CopyFrom(const Data& other) noexcept
	{
		if (other._type == nullptr)
			Reset();
		else
			*this = ORVAN_TRY(CreateCopy(other._type, other.GetValue()));
		return {};
	}

	/// Null when there is no value.
	const DataType* GetType() const noexcept
	{
		return _type;
	}

	/// The value's address; null when there is no value.
	const void* GetValue() const noexcept
	{
		if (_type == nullptr)
			return nullptr;
		return IsInline(_type) ? _bytes : *reinterpret_cast<void* const*>(_bytes);
	}

	/// The value as a `T`, or null when it is of another type.
	template <typename T>
	const T* Get() const noexcept
	{
		return _type != nullptr && _type == FindDataType<T>() ? static_cast<const T*>(GetValue()) : nullptr;
	}

	/// Releases the value.
	void Reset() noexcept
	{
		if (_type == nullptr)
			return;
		void* value = const_cast<void*>(GetValue());
		if (!_type->isTrivial)
		{
			_type->operations.load(std::memory_order_relaxed)->destruct(value, 1);
			_type->liveValues.fetch_sub(1, std::memory_order_release);
		}
		if (!IsInline(_type))
			Host().free(value);
		_type = nullptr;
	}

	/// True when values of the type stand inside a `Data` or a dictionary's block. All host types survive being moved
	/// as bytes, so only size and alignment decide.
	static bool IsInline(const DataType* type) noexcept
	{
		return IsInline(type->size, type->alignment);
	}

	/// The same for a size and an alignment in bytes.
	static constexpr bool IsInline(std::size_t size, std::size_t alignment) noexcept
	{
		return size <= kInlineSize && alignment <= 8;
	}

private:
	static Error MissingStorageError(const DataType* type) noexcept
	{
		if (type->operations.load(std::memory_order_relaxed) == nullptr)
			return NotFoundError("No loaded module provides data type '@'.", type->id);
		return OutOfMemoryError();
	}

	void* Prepare(const DataType* type) noexcept
	{
		if (type->operations.load(std::memory_order_relaxed) == nullptr)
			return nullptr;
		void* storage = _bytes;
		if (!IsInline(type))
		{
			storage = Host().allocate(type->size);
			if (storage == nullptr)
				return nullptr;
			std::memcpy(_bytes, &storage, sizeof(storage));
		}
		if (!type->isTrivial)
			type->liveValues.fetch_add(1, std::memory_order_relaxed);
		_type = type;
		return storage;
	}

	const DataType* _type = nullptr;
	alignas(8) unsigned char _bytes[kInlineSize] = {};
};

} // namespace orvan
