// SPDX-License-Identifier: MIT
/// A small dictionary from integer keys to values of registered data types.
#pragma once

#include "orvan/data_type.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <utility>

namespace orvan
{

/// The shared content of a dictionary, made by the host: entries in ascending order of their keys at the front of one
/// block, the values behind them.
struct DictionaryBlock
{
	struct Entry
	{
		std::int32_t key;
		std::uint32_t offset; ///< Of the value, or of the pointer to it when it does not fit, from the block's start.
		const DataType* type;
	};

	std::atomic<std::uint32_t> references;
	std::uint32_t count;
	std::uint32_t entryCapacity;
	std::uint32_t valueEnd; ///< Where the next value goes.
	std::uint32_t blockSize;
	bool hasGaps;   ///< Values that were replaced or removed left room between the others.
	bool hasOwners; ///< A value may own something, so that releasing it takes more than dropping its bytes.

	/// Bytes that a value of some size takes among the values.
	static constexpr std::uint32_t RoundUp(std::size_t size) noexcept
	{
		return (static_cast<std::uint32_t>(size) + 7u) & ~7u;
	}

	/// Where the values begin, from the block's start.
	static constexpr std::uint32_t ValueBegin(std::uint32_t entryCapacity) noexcept
	{
		return static_cast<std::uint32_t>(sizeof(DictionaryBlock) + entryCapacity * sizeof(Entry));
	}

	const Entry* Entries() const noexcept
	{
		return reinterpret_cast<const Entry*>(this + 1);
	}

	Entry* Entries() noexcept
	{
		return reinterpret_cast<Entry*>(this + 1);
	}

	const void* ValueOf(const Entry& entry) const noexcept
	{
		const char* at = reinterpret_cast<const char*>(this) + entry.offset;
		return Data::IsInline(entry.type) ? at : *reinterpret_cast<void* const*>(at);
	}

	/// Adds an entry whose value takes `bytes` among the values, and returns where it goes. Null when there is no room,
	/// and when the key is there already.
	void* TryInsert(std::int32_t key, const DataType* type, std::uint32_t bytes) noexcept
	{
		if (count == entryCapacity || blockSize - valueEnd < bytes)
			return nullptr;
		// From the end, where most keys belong: the attributes of a file tend to come in their usual order.
		Entry* const end = Entries() + count;
		Entry* at = end;
		while (at != Entries() && at[-1].key > key)
			at--;
		if (at != Entries() && at[-1].key == key) [[unlikely]]
			return nullptr;
		std::copy_backward(at, end, end + 1);
		*at = {key, valueEnd, type};
		count++;
		return reinterpret_cast<char*>(this) + std::exchange(valueEnd, valueEnd + bytes);
	}

	/// Where the value of a key stands, when it is of this type, which is one that stands in the block. Null otherwise.
	void* FindInline(std::int32_t key, const DataType* type) noexcept
	{
		Entry* const end = Entries() + count;
		Entry* const entry = std::find_if(Entries(), end, [key](const Entry& other) { return other.key == key; });
		return entry != end && entry->type == type ? reinterpret_cast<char*>(this) + entry->offset : nullptr;
	}
};

/// A dictionary whose copies share one content until one of them writes (copy on write). An empty dictionary takes no
/// memory; one with the ten or so entries that are usual is a single block. Looking up a key is a walk over the keys;
/// entries are in ascending order of their keys. Const members may run side by side; writing is not synchronised, but
/// writing to one copy never disturbs the readers of another.
class DataDictionary
{
public:
	using Entry = DictionaryBlock::Entry;

	DataDictionary() noexcept = default;

	DataDictionary(const DataDictionary& other) noexcept : _block(other._block)
	{
		if (_block != nullptr)
			_block->references.fetch_add(1, std::memory_order_relaxed);
	}

	DataDictionary(DataDictionary&& other) noexcept : _block(std::exchange(other._block, nullptr))
	{
	}

	DataDictionary& operator=(DataDictionary other) noexcept
	{
		std::swap(_block, other._block);
		return *this;
	}

	~DataDictionary()
	{
		if (_block != nullptr)
			Host().dictionaryRelease(_block);
	}

	/// Number of entries.
	std::size_t GetCount() const noexcept
	{
		return _block != nullptr ? _block->count : 0;
	}

	/// True when there is a value under `key`, of whatever type.
	bool Has(std::int32_t key) const noexcept
	{
		return FindEntry(key) != nullptr;
	}

	/// The value of `key` as a `T`; null when the key is absent or its value is of another type. Good until the
	/// dictionary is written or released.
	template <typename T>
	const T* Find(std::int32_t key) const noexcept
	{
		const Entry* entry = FindEntry(key);
		return entry != nullptr && entry->type == FindDataType<T>() ? static_cast<const T*>(_block->ValueOf(*entry))
																	: nullptr;
	}

	/// The value of `key`, or `fallback` when the key is absent or its value is of another type.
	template <typename T>
	T GetOr(std::int32_t key, T fallback) const noexcept
	{
		const T* value = Find<T>(key);
		return value != nullptr ? *value : fallback;
	}

	/// Stores a value, replacing the one that the key had. On failure the dictionary is as it was.
	template <typename T>
	Result<void> Set(std::int32_t key, T value) noexcept
	{
		const DataType* type = FindDataType<T>();
		if (type == nullptr)
			return OutOfMemoryError();
		if constexpr (std::is_trivially_copyable_v<T> && Data::IsInline(sizeof(T), alignof(T)))
		{
			void* storage = TryStore(key, type, DictionaryBlock::RoundUp(sizeof(T)));
			if (storage == nullptr)
				return SetBytes(key, type, &value);
			std::construct_at(static_cast<T*>(storage), value);
		}
		else
		{
			void* storage = ORVAN_TRY(Store(key, type));
			std::construct_at(static_cast<T*>(storage), std::move(value));
		}
		return {};
	}

	/// Stores a copy of a value of any type; an empty `Data` is refused.
	Result<void> SetData(std::int32_t key, const Data& value) noexcept
	{
		const DataType* type = value.GetType();
		if (type == nullptr)
			return IllegalArgumentError("An empty value cannot be stored under key @.", key);
		if (type->isTrivial)
			return SetBytes(key, type, value.GetValue());
		// Copied first, so that a failing copy leaves the dictionary as it was.
		Data copy;
		ORVAN_TRY(copy.CopyFrom(value));
		const DataTypeOperations& operations = *type->operations.load(std::memory_order_relaxed);
		void* storage = ORVAN_TRY(Store(key, type));
		operations.construct(storage, 1);
		operations.move(storage, const_cast<void*>(copy.GetValue()), 1);
		return {};
	}

	/// Takes the value of `key` out; the result says whether there was one. Removing the last entry gives the memory
	/// back. Only a dictionary that shares its content with copies allocates here, to have one of its own, and thus can
	/// run out of memory; it is then as it was, as are the copies in any case.
	Result<bool> Remove(std::int32_t key) noexcept
	{
		if (!Has(key))
			return false;
		if (_block->count == 1)
		{
			Host().dictionaryRelease(std::exchange(_block, nullptr));
			return true;
		}
		ORVAN_TRY(MakeOwn());
		Host().dictionaryRemove(_block, key);
		return true;
	}

	/// A copy of the value of `key`; not found when it is absent.
	Result<Data> GetData(std::int32_t key) const noexcept
	{
		const Entry* entry = FindEntry(key);
		if (entry == nullptr)
			return NotFoundError("The dictionary has no value under key @.", key);
		return Data::CreateCopy(entry->type, _block->ValueOf(*entry));
	}

	/// The entries in ascending order of their keys; `GetValue` gives an entry's value.
	const Entry* begin() const noexcept
	{
		return _block != nullptr ? _block->Entries() : nullptr;
	}

	const Entry* end() const noexcept
	{
		return _block != nullptr ? _block->Entries() + _block->count : nullptr;
	}

	/// The value of one of this dictionary's entries as a `T`, or null when it is of another type.
	template <typename T>
	const T* GetValue(const Entry& entry) const noexcept
	{
		return entry.type == FindDataType<T>() ? static_cast<const T*>(_block->ValueOf(entry)) : nullptr;
	}

	/// True when both share one content.
	bool IsSameObject(const DataDictionary& other) const noexcept
	{
		return _block == other._block;
	}

private:
	friend class DictionaryStaging;

	const Entry* FindEntry(std::int32_t key) const noexcept
	{
		for (const Entry& entry : *this)
		{
			if (entry.key >= key)
				return entry.key == key ? &entry : nullptr;
		}
		return nullptr;
	}

	/// Storage for a trivial value that stands in the block, when there is room for a new one or it replaces one of its
	/// type: most of a file's attributes are stored this way, without a call of the host. Null otherwise.
	[[gnu::noinline]] void* TryStore(std::int32_t key, const DataType* type, std::uint32_t bytes) noexcept
	{
		if (_block == nullptr || _block->references.load(std::memory_order_acquire) != 1 ||
			type->operations.load(std::memory_order_relaxed) == nullptr)
			return nullptr;
		void* const storage = _block->TryInsert(key, type, bytes);
		return storage != nullptr ? storage : _block->FindInline(key, type);
	}

	/// Stores a trivial value wherever the host has room for it.
	[[gnu::noinline]] Result<void> SetBytes(std::int32_t key, const DataType* type, const void* value) noexcept
	{
		void* storage = ORVAN_TRY(Store(key, type));
		std::memcpy(storage, value, type->size);
		return {};
	}

	/// Makes the content, of which there must be some, this dictionary's own.
	Result<void> MakeOwn() noexcept
	{
		if (_block->references.load(std::memory_order_acquire) > 1)
		{
			DictionaryBlock* own = nullptr;
			ORVAN_TRY(ResultOf(Host().dictionaryClone(_block, &own)));
			Host().dictionaryRelease(std::exchange(_block, own));
		}
		return {};
	}

	/// Makes the content this dictionary's own and returns raw storage for a value under `key`.
	Result<void*> Store(std::int32_t key, const DataType* type) noexcept
	{
		if (type->operations.load(std::memory_order_relaxed) == nullptr)
			return NotFoundError("No loaded module provides data type '@'.", type->id);
		if (_block != nullptr)
			ORVAN_TRY(MakeOwn());
		void* storage = Host().dictionaryStore(&_block, key, type);
		if (storage == nullptr)
			return OutOfMemoryError();
		return storage;
	}

	DictionaryBlock* _block = nullptr;
};

/// A staging buffer for filling many dictionaries, one after the other. Each has a block with ample room while it is
/// filled, so that it does not grow in steps, and gives it back for one of just its size:
///
///     DictionaryStaging staging;
///     for (DataDictionary& dictionary : dictionaries) // All of them empty.
///     {
///         ORVAN_TRY(staging.Lend(dictionary));
///         ORVAN_TRY(dictionary.Set(kWidth, 16.0)); // And so on.
///         ORVAN_TRY(staging.TakeBack(dictionary));
///     }
///
/// A dictionary that keeps the ample block, because of an error, say, is sound and only larger than it need be. For one
/// thread at a time.
class DictionaryStaging
{
public:
	/// Gives an empty dictionary the ample block. Fails for want of memory.
	Result<void> Lend(DataDictionary& dictionary) noexcept
	{
		if (_ample._block == nullptr)
			ORVAN_TRY(MakeBlock(_ample._block, kEntries, kValueBytes));
		std::swap(dictionary._block, _ample._block);
		return {};
	}

	/// Moves the entries to a block of just their size; does nothing when the dictionary has other or shared content by
	/// now. On failure it is as it was.
	Result<void> TakeBack(DataDictionary& dictionary) noexcept
	{
		DictionaryBlock* const ample = dictionary._block;
		if (ample == nullptr || ample->entryCapacity < kEntries ||
			ample->references.load(std::memory_order_acquire) != 1)
			return {};
		DictionaryBlock* exact = nullptr;
		if (ample->count != 0)
			ORVAN_TRY(MoveOut(*ample, exact));
		dictionary._block = exact;
		const DataDictionary former = std::move(_ample);
		_ample._block = ample;
		return {};
	}

private:
	static constexpr std::uint32_t kEntries = 32;
	static constexpr std::uint32_t kValueBytes = 480;

	static Result<void> MakeBlock(DictionaryBlock*& block, std::uint32_t entries, std::uint32_t valueBytes) noexcept
	{
		const std::uint32_t valueBegin = DictionaryBlock::ValueBegin(entries);
		void* memory = Host().allocate(valueBegin + valueBytes);
		if (memory == nullptr)
			return OutOfMemoryError();
		block = new (memory) DictionaryBlock{{1}, 0, entries, valueBegin, valueBegin + valueBytes, false, false};
		return {};
	}

	/// Makes the exact block and leaves the ample one empty. The values move as bytes.
	static Result<void> MoveOut(DictionaryBlock& ample, DictionaryBlock*& exact) noexcept
	{
		const std::uint32_t valueBegin = DictionaryBlock::ValueBegin(ample.entryCapacity);
		const std::uint32_t valueBytes = ample.valueEnd - valueBegin;
		ORVAN_TRY(MakeBlock(exact, ample.count, valueBytes));
		const std::uint32_t shift = valueBegin - exact->valueEnd;
		DictionaryBlock::Entry* to = exact->Entries();
		for (const DictionaryBlock::Entry *from = ample.Entries(), *end = from + ample.count; from != end; from++, to++)
		{
			*to = *from;
			to->offset -= shift;
		}
		std::memcpy(to, reinterpret_cast<char*>(&ample) + valueBegin, valueBytes);
		exact->count = std::exchange(ample.count, 0);
		exact->valueEnd = exact->blockSize;
		exact->hasGaps = std::exchange(ample.hasGaps, false);
		exact->hasOwners = std::exchange(ample.hasOwners, false);
		ample.valueEnd = valueBegin;
		return {};
	}

	DataDictionary _ample;
};

} // namespace orvan
