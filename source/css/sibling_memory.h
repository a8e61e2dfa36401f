// SPDX-License-Identifier: MIT
#pragma once

#include "element_view.h"

#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <string_view>
#include <vector>

namespace orvan::css
{
/// What was found out about some children of elements that have many, so that nobody counts from the first one again
/// and again.
class SiblingMemory
{
public:
	explicit SiblingMemory(std::pmr::memory_resource* memory) : _entries(memory)
	{
	}

	/// What is remembered, and of what. A question is known by the address of whatever asks it; the type is the type of
	/// element that it is about, if any.
	struct Entry
	{
		Element element = nullptr;
		const void* question = nullptr;
		std::string_view type;
		std::uint32_t answer = 0;
	};

	/// The answer to the question about the element; null when it was never found out. Good until the next `Put`.
	const std::uint32_t* Find(Element element, const void* question, std::string_view type) const;

	/// Remembers an answer. Throws std::bad_alloc.
	void Put(const Entry& entry);

private:
	std::size_t FindPlace(Element element, const void* question, std::string_view type) const;
	void Grow();

	std::pmr::vector<Entry> _entries; ///< Open addressing; the size is a power of two.
	std::size_t _used = 0;
};
} // namespace orvan::css
