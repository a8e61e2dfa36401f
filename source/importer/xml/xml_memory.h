// SPDX-License-Identifier: MIT
/// The memory of one XML tree, given back while the tree is walked.
#pragma once

#include "orvan/array.h"

#include <cstddef>

namespace orvan::svg
{

/// The arena of the XML parser: provides the blocks of its pool, and releases them early. The parser makes nodes and
/// attributes in document order and the builder needs none that comes before the one that it is at, so the element tree
/// can grow into the room that the XML tree leaves: the load of a large file then peaks at little more than the larger
/// of the two.
///
/// An object serves the parses of its thread for as long as it lives.
class XmlMemory
{
public:
	XmlMemory() noexcept;
	XmlMemory(const XmlMemory&) = delete;
	~XmlMemory();

	/// For the parser's pool: throws `std::bad_alloc` when memory runs out, for want of another way to say so. The
	/// memory is good until it is given back, at the latest when the object goes; the pool must not free it.
	static void* Allocate(std::size_t bytes);

	/// Gives back what was allocated before the block that holds `node`.
	void ReleaseBefore(const void* node) noexcept;

private:
	struct Block
	{
		char* begin;
		std::size_t size;
	};

	BaseArray<Block> _blocks;
	std::size_t _released = 0; ///< Number of blocks, from the first, that have been given back.
};

} // namespace orvan::svg
