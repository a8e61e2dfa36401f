// SPDX-License-Identifier: MIT
#include "element_tape.h"

#include "orvan/services.h"

#include <new>

namespace orvan::svg
{

/// Of the size that the host's bulk memory serves whole.
struct ElementTape::Block
{
	Block* next = nullptr;
	std::array<TapeEntry, (std::size_t{64} * 1024 - 64 - sizeof(void*)) / sizeof(TapeEntry)> entries;
};

void ElementTape::AddBlock()
{
	void* const memory = Host().allocate(sizeof(Block));
	if (memory == nullptr)
		throw std::bad_alloc();
	auto* const block = new (memory) Block;
	(_back != nullptr ? _back->next : _front) = block;
	_back = block;
	*_put = TapeEntry(TapeMark::link);
	_put = block->entries.data();
	_last = _put + block->entries.size() - 1;
}

const TapeEntry* ElementTape::EnterNextBlock() noexcept
{
	if (_isInFront)
	{
		Block* const left = _front;
		_front = left->next;
		Host().free(left);
	}
	_isInFront = true;
	return _front->entries.data();
}

void ElementTape::Clear() noexcept
{
	while (_front != nullptr)
	{
		Block* const next = _front->next;
		Host().free(_front);
		_front = next;
	}
	_back = nullptr;
	_isInFront = false;
	_put = _first.data();
	_last = _put + _first.size() - 1;
}

} // namespace orvan::svg
