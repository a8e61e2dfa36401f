// SPDX-License-Identifier: MIT
// Bulk memory: blocks that are made, resized and freed in any order keep their bytes to themselves.

#include "require.h"
#include "runtime/bulk_memory.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

using namespace orvan::runtime;
using orvan::fuzz::Require;

namespace
{
/// A block, filled with bytes of its own as far as `size`.
struct Block
{
	unsigned char* bytes;
	std::size_t size;
	unsigned char fill;

	void Fill() const
	{
		std::memset(bytes, fill, size);
	}

	void Check(std::size_t count) const
	{
		Require(std::all_of(bytes, bytes + count, [this](unsigned char byte) { return byte == fill; }),
				"nobody writes to the block of another");
	}
};

void FreeAt(std::vector<Block>& blocks, std::size_t index)
{
	std::swap(blocks[index], blocks.back());
	blocks.back().Check(blocks.back().size);
	FreeInBulk(blocks.back().bytes);
	blocks.pop_back();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
	std::vector<Block> blocks;
	int depth = 0;
	// Three bytes a step: what to do, with which block, and a size.
	for (std::size_t at = 0; at + 3 <= size; at += 3)
	{
		const std::size_t bytes = std::size_t(data[at + 2]) << (data[at] >> 4);
		const std::size_t index = blocks.empty() ? 0 : data[at + 1] * blocks.size() / 256;
		switch (data[at] % 8)
		{
		case 0:
			BeginBulk();
			depth++;
			break;
		case 1:
			if (depth > 0)
			{
				EndBulk();
				depth--;
			}
			break;
		case 2:
		case 3:
			if (!blocks.empty())
				FreeAt(blocks, index);
			break;
		case 4:
			if (!blocks.empty())
			{
				Block& block = blocks[index];
				const bool isResized = ResizeInBulk(block.bytes, bytes);
				Require(isResized || bytes > block.size, "smaller is always possible");
				block.Check(std::min(block.size, isResized ? bytes : block.size));
				block.size = isResized ? bytes : block.size;
				block.Fill();
			}
			break;
		default:
			auto* memory = static_cast<unsigned char*>(AllocateInBulk(bytes));
			Require(memory == nullptr || depth > 0, "there is bulk memory in bulk scopes only");
			if (memory == nullptr)
				break;
			Require(reinterpret_cast<std::uintptr_t>(memory) % 16 == 0, "blocks are aligned");
			Require(IsInBulk(memory) && GetBulkSize(memory) >= bytes, "blocks know themselves");
			blocks.push_back({memory, bytes, static_cast<unsigned char>(at)});
			blocks.back().Fill();
		}
	}
	for (; depth > 0; depth--)
		EndBulk();
	while (!blocks.empty())
		FreeAt(blocks, blocks.size() - 1);
	return 0;
}
