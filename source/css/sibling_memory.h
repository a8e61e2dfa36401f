// SPDX-License-Identifier: MIT
#pragma once

#include "element_view.h"

#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <vector>

namespace orvan::css
{
/// What was found out about the children of elements that have many, so that a walk over all of them does not count
/// from the first one again and again.
class SiblingMemory
{
public:
	explicit SiblingMemory(std::pmr::memory_resource* memory) : _entries(memory)
	{
	}

	struct Entry
	{
		Element parent = nullptr;
		const void* question = nullptr; ///< What was asked: an address of a selector's part.
		std::uint64_t detail = 0;       ///< What the question depends on besides.
		Element child = nullptr;        ///< The child for which `count` is the answer; null when nothing was found yet.
		std::uint32_t count = 0;
		std::uint32_t total = 0; ///< The answer for all children; 0 when nobody asked.
	};

	/// The entry of this question, a new one when it was never asked. Good until the next call. Throws std::bad_alloc.
	Entry& At(Element parent, const void* question, std::uint64_t detail);

private:
	std::pmr::vector<Entry> _entries; ///< Open addressing, a power of two.
	std::size_t _used = 0;
};
} // namespace orvan::css
