// SPDX-License-Identifier: MIT
#include "dictionary.h"

#include "live_count.h"
#include "memory.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace orvan::runtime
{
namespace
{

using Entry = DictionaryBlock::Entry;

constexpr std::uint32_t kFirstEntries = 4;
constexpr std::uint32_t kFirstValueBytes = 80;

/// Bytes that a value of the type takes inside the block: itself, or the pointer to it.
std::uint32_t SlotSize(const DataType* type) noexcept
{
	return Data::IsInline(type) ? DictionaryBlock::RoundUp(type->size) : sizeof(void*);
}

void* ValueSlot(DictionaryBlock* block, const Entry& entry) noexcept
{
	return reinterpret_cast<char*>(block) + entry.offset;
}

void* ValueOf(DictionaryBlock* block, const Entry& entry) noexcept
{
	return const_cast<void*>(block->ValueOf(entry));
}

DictionaryBlock* AllocateBlock(std::uint64_t entryCapacity, std::uint64_t valueBytes) noexcept
{
	const std::uint64_t size = sizeof(DictionaryBlock) + entryCapacity * sizeof(Entry) + valueBytes;
	if (size > std::numeric_limits<std::uint32_t>::max())
		return nullptr;
	void* memory = Allocate(size);
	if (memory == nullptr)
		return nullptr;
	const auto entries = static_cast<std::uint32_t>(entryCapacity);
	return new (memory) DictionaryBlock{
		{1}, 0, entries, DictionaryBlock::ValueBegin(entries), static_cast<std::uint32_t>(size), false, false};
}

/// All records of data types are the host's.
LiveCount& CountOf(const DataType& type) noexcept
{
	return static_cast<const CountedType&>(type).live;
}

/// Lets go of a value and, when it stands outside, of its memory.
void DropValue(DictionaryBlock* block, const Entry& entry) noexcept
{
	void* value = ValueOf(block, entry);
	if (!entry.type->isTrivial)
	{
		entry.type->operations.load(std::memory_order_relaxed)->destruct(value, 1);
		CountOf(*entry.type).Decrement();
	}
	if (!Data::IsInline(entry.type))
		Free(value);
}

[[gnu::noinline]] void DropValues(DictionaryBlock* block) noexcept
{
	for (std::uint32_t i = 0; i < block->count; i++)
		DropValue(block, block->Entries()[i]);
}

/// Makes the value of `entry`, of which `target` holds a copy of the bytes, a value of the target's own.
ErrorBlock* CopyValue(const DictionaryBlock& source, const Entry& entry, DictionaryBlock* target) noexcept
{
	const DataType& type = *entry.type;
	const bool isInline = Data::IsInline(&type);
	void* value = ValueSlot(target, entry);
	if (!isInline)
	{
		void* outside = Allocate(type.size);
		if (outside == nullptr)
			return OutOfMemoryError().Release();
		std::memcpy(outside, source.ValueOf(entry), type.size);
		std::memcpy(value, &outside, sizeof outside);
		value = outside;
	}
	if (type.isTrivial)
		return nullptr;
	const DataTypeOperations& operations = *type.operations.load(std::memory_order_relaxed);
	operations.construct(value, 1);
	if (Result<void> copied = operations.copy(value, source.ValueOf(entry), 1); !copied.IsOk())
	{
		operations.destruct(value, 1);
		if (!isInline)
			Free(value);
		return copied.GetError().Release();
	}
	CountOf(type).Increment();
	return nullptr;
}

/// Bytes that the values take without the gaps that replaced ones left behind.
std::uint32_t CountValueBytes(const DictionaryBlock& block) noexcept
{
	std::uint32_t bytes = 0;
	for (std::uint32_t i = 0; i < block.count; i++)
		bytes += SlotSize(block.Entries()[i].type);
	return bytes;
}

/// Moves everything into another block, without gaps. The values move as bytes.
bool MoveToBlock(DictionaryBlock** block, std::uint64_t entryCapacity, std::uint64_t valueBytes) noexcept
{
	DictionaryBlock* old = *block;
	DictionaryBlock* moved = AllocateBlock(entryCapacity, valueBytes);
	if (moved == nullptr)
		return false;
	for (std::uint32_t i = 0; i < old->count; i++)
	{
		const Entry& from = old->Entries()[i];
		moved->Entries()[i] = {from.key, moved->valueEnd, from.type};
		std::memcpy(ValueSlot(moved, moved->Entries()[i]), ValueSlot(old, from), SlotSize(from.type));
		moved->valueEnd += SlotSize(from.type);
	}
	moved->count = old->count;
	moved->hasOwners = old->hasOwners;
	Free(old);
	*block = moved;
	return true;
}

/// Makes the block larger where it stands, if its memory allows, and moves the values to behind the new entries.
bool ExtendBlock(DictionaryBlock** block, std::uint64_t entryCapacity, std::uint64_t valueBytes) noexcept
{
	const std::uint64_t size = sizeof(DictionaryBlock) + entryCapacity * sizeof(Entry) + valueBytes;
	if (size > std::numeric_limits<std::uint32_t>::max())
		return false;
	auto* extended = static_cast<DictionaryBlock*>(Reallocate(*block, size));
	if (extended == nullptr)
		return false;
	const std::uint32_t from = DictionaryBlock::ValueBegin(extended->entryCapacity);
	const std::uint32_t shift = DictionaryBlock::ValueBegin(static_cast<std::uint32_t>(entryCapacity)) - from;
	char* bytes = reinterpret_cast<char*>(extended);
	std::memmove(bytes + from + shift, bytes + from, extended->valueEnd - from);
	for (std::uint32_t i = 0; i < extended->count; i++)
		extended->Entries()[i].offset += shift;
	extended->entryCapacity = static_cast<std::uint32_t>(entryCapacity);
	extended->valueEnd += shift;
	extended->blockSize = static_cast<std::uint32_t>(size);
	*block = extended;
	return true;
}

/// Makes room for one more entry and `bytes` more of values.
[[gnu::noinline]] bool Grow(DictionaryBlock** block, std::uint32_t bytes) noexcept
{
	DictionaryBlock* old = *block;
	if (old == nullptr)
	{
		*block = AllocateBlock(kFirstEntries, std::max(kFirstValueBytes, bytes));
		return *block != nullptr;
	}
	const std::uint64_t entries = old->count < old->entryCapacity ? old->entryCapacity : 2ull * old->entryCapacity;
	const std::uint64_t used =
		old->hasGaps ? CountValueBytes(*old) : old->valueEnd - DictionaryBlock::ValueBegin(old->entryCapacity);
	const std::uint64_t wanted = used + used / 2 + bytes;
	return old->hasGaps ? MoveToBlock(block, entries, wanted) : ExtendBlock(block, entries, wanted);
}

/// Stores a value that replaces another, needs more room, or stands outside.
[[gnu::noinline]] void* StoreSlowly(DictionaryBlock** block, std::int32_t key, const DataType* type) noexcept
{
	void* outside = nullptr;
	if (!Data::IsInline(type))
	{
		outside = Allocate(type->size);
		if (outside == nullptr)
			return nullptr;
	}
	const std::uint32_t bytes = SlotSize(type);
	const std::uint32_t count = *block != nullptr ? (*block)->count : 0;
	// From the end, where most keys belong: the attributes of a file tend to come in their usual order.
	std::uint32_t at = count;
	while (at > 0 && (*block)->Entries()[at - 1].key >= key)
		at--;
	const bool isNew = at == count || (*block)->Entries()[at].key != key;
	const std::uint32_t oldBytes = isNew ? 0 : SlotSize((*block)->Entries()[at].type);
	const bool reusesSlot = !isNew && oldBytes >= bytes;
	if (!reusesSlot && (*block == nullptr || (isNew && count == (*block)->entryCapacity) ||
						(*block)->blockSize - (*block)->valueEnd < bytes))
	{
		if (!Grow(block, bytes))
		{
			Free(outside);
			return nullptr;
		}
	}
	DictionaryBlock& target = **block;
	Entry* entries = target.Entries();
	if (isNew)
	{
		for (std::uint32_t i = target.count++; i > at; i--)
			entries[i] = entries[i - 1];
	}
	else
	{
		DropValue(&target, entries[at]);
		target.hasGaps |= oldBytes != bytes;
	}
	const std::uint32_t offset = reusesSlot ? entries[at].offset : target.valueEnd;
	if (!reusesSlot)
		target.valueEnd += bytes;
	entries[at] = {key, offset, type};
	if (!type->isTrivial)
	{
		CountOf(*type).Increment();
		target.hasOwners = true;
	}
	void* slot = ValueSlot(&target, entries[at]);
	if (outside == nullptr)
		return slot;
	target.hasOwners = true;
	std::memcpy(slot, &outside, sizeof outside);
	return outside;
}

} // namespace

void* DictionaryStore(DictionaryBlock** block, std::int32_t key, const DataType* type) noexcept
{
	if (*block == nullptr || !Data::IsInline(type))
		return StoreSlowly(block, key, type);
	void* storage = (*block)->TryInsert(key, type, DictionaryBlock::RoundUp(type->size));
	if (storage == nullptr)
		return StoreSlowly(block, key, type);
	if (!type->isTrivial)
	{
		CountOf(*type).Increment();
		(*block)->hasOwners = true;
	}
	return storage;
}

void DictionaryRemove(DictionaryBlock* block, std::int32_t key) noexcept
{
	Entry* const end = block->Entries() + block->count;
	Entry* const entry = std::find_if(block->Entries(), end, [key](const Entry& other) { return other.key == key; });
	if (entry == end)
		return;
	DropValue(block, *entry);
	const std::uint32_t bytes = SlotSize(entry->type);
	if (entry->offset + bytes == block->valueEnd)
		block->valueEnd -= bytes;
	else
		block->hasGaps = true;
	std::copy(entry + 1, end, entry);
	block->count--;
}

ErrorBlock* DictionaryClone(const DictionaryBlock* block, DictionaryBlock** result) noexcept
{
	DictionaryBlock* copy =
		AllocateBlock(block->entryCapacity, block->blockSize - DictionaryBlock::ValueBegin(block->entryCapacity));
	if (copy == nullptr)
		return OutOfMemoryError().Release();
	// Trivial values are copied as bytes, all at once; the others then one by one, each counted when it is there.
	std::memcpy(static_cast<void*>(copy->Entries()), block->Entries(), block->valueEnd - sizeof(DictionaryBlock));
	copy->valueEnd = block->valueEnd;
	copy->hasGaps = block->hasGaps;
	copy->hasOwners = block->hasOwners;
	for (; copy->count < block->count; copy->count++)
	{
		const Entry& entry = block->Entries()[copy->count];
		if (ErrorBlock* error = CopyValue(*block, entry, copy))
		{
			DictionaryRelease(copy);
			return error;
		}
	}
	*result = copy;
	return nullptr;
}

void DictionaryRelease(DictionaryBlock* block) noexcept
{
	if (!orvan::detail::ReleaseReference(block->references))
		return;
	if (block->hasOwners)
		DropValues(block);
	Free(block);
}

} // namespace orvan::runtime
