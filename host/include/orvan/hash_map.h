// SPDX-License-Identifier: MIT
/// A hash map with a documented iteration order.
#pragma once

#include "orvan/array.h"
#include "orvan/internal/collision_index.h"
#include "orvan/string.h"

#include <cstddef>
#include <cstdint>
#include <utility>

namespace orvan
{

/// A map from `String` to `V`: chained buckets in an array whose size is a power of two (bucket index = hash AND mask;
/// the mask is all ones while there is no array), at most 0.65 entries a bucket. Beside the buckets the map keeps the
/// list of those that hold entries, in the order in which each received its first entry; iteration walks that list and
/// each bucket's chain. So the order depends only on the keys and the order of their insertion.
///
/// Entries never move in memory. Inserting keeps the first value of a key. Not synchronised; const members may run side
/// by side.
template <typename V>
class StringMap
{
public:
	/// One entry. `hash` is the key's `String::GetHash`.
	struct Entry
	{
		Entry* next;
		std::uint64_t hash;
		String key;
		V value;
	};

	static constexpr double kMaxLoadFactor = 0.65;

	StringMap() noexcept = default;
	StringMap(const StringMap&) = delete;

	StringMap(StringMap&& other) noexcept
	{
		Swap(other);
	}

	/// Drops the own entries and takes the other's over as they stand, without rehashing.
	StringMap& operator=(StringMap&& other) noexcept
	{
		StringMap taken(std::move(other));
		Swap(taken);
		return *this;
	}

	~StringMap()
	{
		Reset();
	}

	/// Number of entries.
	std::size_t GetCount() const noexcept
	{
		return _count;
	}

	/// The value of `key`, or null. The pointer is good until the map is reset.
	const V* Find(const String& key) const noexcept
	{
		const Entry* entry = FindEntry(key, key.GetHash());
		return entry != nullptr ? &entry->value : nullptr;
	}

	const V* Find(std::string_view key) const noexcept
	{
		const Entry* entry = FindEntry(key, HashBytes(key));
		return entry != nullptr ? &entry->value : nullptr;
	}

	/// Adds an entry unless the key is already there, in which case the first value stays. The result tells whether the
	/// entry was added; on failure the map is as it was.
	Result<bool> Insert(String key, V value) noexcept
	{
		const std::uint64_t hash = key.GetHash();
		if (FindEntry(key, hash) != nullptr)
			return false;
		if (_count >= GetMostEntries(_buckets.GetCount()))
			ORVAN_TRY(Grow());
		if (_index.MustGrow(_count))
			ORVAN_TRY(BuildIndex());
		if (_blocks == nullptr || _blocks->used == _blocks->size)
			ORVAN_TRY(AddBlock());
		Entry* entry =
			new (&_blocks->Entries()[_blocks->used++]) Entry{nullptr, hash, std::move(key), std::move(value)};
		const std::size_t chainLength = Link(entry);
		_count++;
		if (!_index.IsEmpty())
			_index.Add(entry);
		else if (chainLength > Index::kLongestChain)
			IgnoreResult(BuildIndex()); // Without memory for it the chains still answer, only more slowly.
		return true;
	}

	/// Drops every entry and frees the buckets.
	void Reset() noexcept
	{
		while (_blocks != nullptr)
		{
			std::destroy_n(_blocks->Entries(), _blocks->used);
			Host().free(std::exchange(_blocks, _blocks->next));
		}
		_buckets.Reset();
		_occupied.Reset();
		_index.Reset();
		_mask = ~std::uint64_t(0);
		_count = 0;
	}

	/// Iterates over the entries in the map's order.
	class Iterator
	{
	public:
		const Entry& operator*() const noexcept
		{
			return *_entry;
		}

		const Entry* operator->() const noexcept
		{
			return _entry;
		}

		Iterator& operator++() noexcept
		{
			_entry = _entry->next;
			if (_entry == nullptr)
			{
				_position++;
				Settle();
			}
			return *this;
		}

		bool operator==(const Iterator& other) const noexcept
		{
			return _entry == other._entry;
		}

	private:
		friend class StringMap;

		Iterator(const StringMap* map, std::size_t position) noexcept : _map(map), _position(position)
		{
			Settle();
		}

		void Settle() noexcept
		{
			_entry = _position < _map->_occupied.GetCount() ? _map->_buckets[_map->_occupied[_position]].head : nullptr;
		}

		const StringMap* _map;
		std::size_t _position;
		const Entry* _entry = nullptr;
	};

	Iterator begin() const noexcept
	{
		return Iterator(this, 0);
	}

	Iterator end() const noexcept
	{
		return Iterator(this, _occupied.GetCount());
	}

private:
	struct Bucket
	{
		Entry* head;
		Entry* tail;
	};

	/// Entries are made by the block, since single ones are never taken out. Blocks grow with the map.
	struct Block
	{
		Block* next;
		std::size_t size;
		std::size_t used;

		Entry* Entries() noexcept
		{
			return reinterpret_cast<Entry*>(this + 1);
		}
	};

	static constexpr std::size_t kFirstBlock = 4;
	static constexpr std::size_t kLargestBlock = 256;

	using Index = internal::CollisionIndex<Entry>;

	/// As many entries as the buckets may hold: 0.65 of their number, by whole numbers.
	static constexpr std::size_t GetMostEntries(std::size_t bucketCount) noexcept
	{
		static_assert(kMaxLoadFactor == 0.65);
		return bucketCount * 13 / 20;
	}

	const Entry* FindEntry(std::string_view key, std::uint64_t hash) const noexcept
	{
		if (_buckets.IsEmpty())
			return nullptr;
		if (!_index.IsEmpty())
			return _index.Find(key, hash);
		for (const Entry* entry = _buckets[hash & _mask].head; entry != nullptr; entry = entry->next)
		{
			if (entry->hash == hash && entry->key == key)
				return entry;
		}
		return nullptr;
	}

	/// Hangs an entry at the end of its chain; returns the length of that chain as far as it matters.
	std::size_t Link(Entry* entry) noexcept
	{
		Bucket& bucket = _buckets[entry->hash & _mask];
		entry->next = nullptr;
		if (bucket.head == nullptr)
		{
			// `_occupied` has room for every bucket, see `Grow`.
			IgnoreResult(_occupied.Append(entry->hash & _mask));
			bucket.head = bucket.tail = entry;
			return 1;
		}
		bucket.tail->next = entry;
		bucket.tail = entry;
		std::size_t length = 0;
		for (const Entry* at = bucket.head; at != nullptr && length <= Index::kLongestChain; at = at->next)
			length++;
		return length;
	}

	Result<void> AddBlock() noexcept
	{
		const std::size_t size = std::min(kLargestBlock, _blocks != nullptr ? 2 * _blocks->size : kFirstBlock);
		void* memory = Host().allocate(sizeof(Block) + size * sizeof(Entry));
		if (memory == nullptr)
			return OutOfMemoryError();
		_blocks = new (memory) Block{_blocks, size, 0};
		return {};
	}

	Result<void> Grow() noexcept
	{
		const std::size_t size = _buckets.IsEmpty() ? 16 : 2 * _buckets.GetCount();
		BaseArray<Bucket> buckets;
		BaseArray<std::size_t> occupied;
		ORVAN_TRY(buckets.Resize(size));
		ORVAN_TRY(occupied.Reserve(size));
		std::swap(_buckets, buckets);
		std::swap(_occupied, occupied);
		_mask = size - 1;
		for (const std::size_t index : occupied)
		{
			for (Entry* entry = buckets[index].head; entry != nullptr;)
				Link(std::exchange(entry, entry->next));
		}
		return {};
	}

	/// Has the index find all entries from here on.
	Result<void> BuildIndex() noexcept
	{
		return _index.Build(_count,
							[this](auto add)
							{
								for (Block* block = _blocks; block != nullptr; block = block->next)
								{
									for (std::size_t i = 0; i < block->used; i++)
										add(&block->Entries()[i]);
								}
							});
	}

	void Swap(StringMap& other) noexcept
	{
		std::swap(_buckets, other._buckets);
		std::swap(_occupied, other._occupied);
		std::swap(_index, other._index);
		std::swap(_blocks, other._blocks);
		std::swap(_mask, other._mask);
		std::swap(_count, other._count);
	}

	BaseArray<Bucket> _buckets;
	BaseArray<std::size_t> _occupied; ///< Buckets that hold entries, in the order of their first entry.
	Index _index;                     ///< Empty unless a chain grew too long.
	Block* _blocks = nullptr;         ///< The one that new entries go to, and behind it the full ones.
	std::uint64_t _mask = ~std::uint64_t(0);
	std::size_t _count = 0;
};

} // namespace orvan
