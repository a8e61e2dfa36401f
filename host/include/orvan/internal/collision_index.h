// SPDX-License-Identifier: MIT
/// What keeps `StringMap` quick when keys collide on purpose. Nothing here is for clients.
#pragma once

#include "orvan/array.h"
#include "orvan/hash.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

namespace orvan::internal
{

/// Finds the entries of a map whatever their hashes are: open addressing by another function of the key than the map's,
/// with a secret that differs from map to map and run to run. Holds addresses of entries, which must not move and are
/// never taken out one by one. Empty, without memory, until the map builds it.
template <typename Entry>
class CollisionIndex
{
public:
	/// Longest chain that a map searches entry by entry. Beyond it, keys that collide on purpose would make loads
	/// quadratic.
	static constexpr std::size_t kLongestChain = 32;

	bool IsEmpty() const noexcept
	{
		return _slots.IsEmpty();
	}

	/// The entry of a key, or null. Only when not empty.
	const Entry* Find(std::string_view key, std::uint64_t hash) const noexcept
	{
		for (std::size_t at = PositionOf(key);; at = Next(at))
		{
			const Entry* entry = _slots[at];
			if (entry == nullptr || (entry->hash == hash && entry->key == key))
				return entry;
		}
	}

	/// True when one more entry beside `count` would fill more than half of the index, once there is one.
	bool MustGrow(std::size_t count) const noexcept
	{
		return !IsEmpty() && 2 * (count + 1) > _slots.GetCount();
	}

	/// Makes room for `count` entries and their like again, and has `visitAll` call its argument with each entry that
	/// is in the map. On failure the index is as it was.
	template <typename VisitAll>
	Result<void> Build(std::size_t count, VisitAll visitAll) noexcept
	{
		std::size_t size = kSmallest;
		while (size < 4 * count)
			size *= 2;
		BaseArray<Entry*> slots;
		ORVAN_TRY(slots.Resize(size));
		_slots = std::move(slots);
		visitAll([this](Entry* entry) { Add(entry); });
		return {};
	}

	/// Adds an entry that is not there. Only when not empty, and there must be room.
	void Add(Entry* entry) noexcept
	{
		std::size_t at = PositionOf(entry->key);
		while (_slots[at] != nullptr)
			at = Next(at);
		_slots[at] = entry;
	}

	/// Forgets everything and frees the memory.
	void Reset() noexcept
	{
		_slots.Reset();
	}

private:
	static constexpr std::size_t kSmallest = 256;

	std::size_t PositionOf(std::string_view key) const noexcept
	{
		std::uint64_t state = reinterpret_cast<std::uintptr_t>(_slots.begin()) * 0x9e3779b97f4a7c15;
		for (const char c : key)
			state = detail::MixProduct(state ^ static_cast<unsigned char>(c), 0xe7037ed1a0b428db);
		return (state ^ state >> 32) & (_slots.GetCount() - 1);
	}

	std::size_t Next(std::size_t at) const noexcept
	{
		return (at + 1) & (_slots.GetCount() - 1);
	}

	BaseArray<Entry*> _slots; ///< A power of two of them, at most half full.
};

} // namespace orvan::internal
