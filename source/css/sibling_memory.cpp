// SPDX-License-Identifier: MIT
#include "sibling_memory.h"

#include <functional>

namespace orvan::css
{
namespace
{
constexpr std::size_t kFirstSize = 64;

std::size_t Hash(Element element, const void* question, std::string_view type)
{
	// Addresses differ in their middle bits.
	std::uint64_t hash = reinterpret_cast<std::uintptr_t>(element) * 0x9e3779b97f4a7c15;
	hash = (hash ^ hash >> 32 ^ reinterpret_cast<std::uintptr_t>(question)) * 0x9e3779b97f4a7c15;
	if (!type.empty())
		hash ^= std::hash<std::string_view>()(type);
	return static_cast<std::size_t>(hash ^ hash >> 32);
}
} // namespace

const std::uint32_t* SiblingMemory::Find(Element element, const void* question, std::string_view type) const
{
	if (_used == 0)
		return nullptr;
	const Entry& entry = _entries[FindPlace(element, question, type)];
	return entry.element ? &entry.answer : nullptr;
}

void SiblingMemory::Put(const Entry& entry)
{
	if (_used * 2 >= _entries.size())
		Grow();
	Entry& place = _entries[FindPlace(entry.element, entry.question, entry.type)];
	_used += place.element ? 0 : 1;
	place = entry;
}

std::size_t SiblingMemory::FindPlace(Element element, const void* question, std::string_view type) const
{
	const std::size_t mask = _entries.size() - 1;
	for (std::size_t i = Hash(element, question, type) & mask;; i = (i + 1) & mask)
	{
		const Entry& entry = _entries[i];
		if (!entry.element || (entry.element == element && entry.question == question && entry.type == type))
			return i;
	}
}

void SiblingMemory::Grow()
{
	std::pmr::vector<Entry> old(_entries.empty() ? kFirstSize : _entries.size() * 2, _entries.get_allocator());
	old.swap(_entries);
	for (const Entry& entry : old)
	{
		if (entry.element)
			_entries[FindPlace(entry.element, entry.question, entry.type)] = entry;
	}
}
} // namespace orvan::css
