// SPDX-License-Identifier: MIT
#include "xml_memory.h"

#include <functional>
#include <new>

namespace orvan::svg
{
namespace
{

/// In the part of thread storage that is laid out in advance. The other part is allocated at first use, where the leak
/// checker of the sanitizers does not find its way.
[[gnu::tls_model("initial-exec")]] constinit thread_local XmlMemory* t_memory = nullptr;

} // namespace

XmlMemory::XmlMemory() noexcept
{
	t_memory = this;
}

XmlMemory::~XmlMemory()
{
	t_memory = nullptr;
	for (; _released < _blocks.GetCount(); _released++)
		Host().free(_blocks[_released].begin);
}

void* XmlMemory::Allocate(std::size_t bytes)
{
	void* memory = Host().allocate(bytes);
	if (memory == nullptr || !t_memory->_blocks.Append({static_cast<char*>(memory), bytes}).IsOk())
	{
		Host().free(memory);
		throw std::bad_alloc();
	}
	return memory;
}

void XmlMemory::ReleaseBefore(const void* node) noexcept
{
	const auto isIn = [node](const Block& block)
	{
		return !std::less<>()(node, block.begin) && std::less<>()(node, block.begin + block.size);
	};
	std::size_t at = _released;
	while (at < _blocks.GetCount() && !isIn(_blocks[at]))
		at++;
	// The pool's first nodes are in memory of its own; then the walk goes from block to block.
	if (at == _blocks.GetCount())
		return;
	for (; _released < at; _released++)
		Host().free(_blocks[_released].begin);
}

} // namespace orvan::svg
