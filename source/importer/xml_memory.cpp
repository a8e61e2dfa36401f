#include "xml_memory.h"

#include <cstdint>
#include <functional>
#include <new>
#include <sys/mman.h>

namespace orvan::svg
{
namespace
{

/// In the part of thread storage that is laid out in advance. The other part is allocated at first use, where the leak
/// checker of the sanitizers does not find its way.
[[gnu::tls_model("initial-exec")]] constinit thread_local XmlMemory* t_memory = nullptr;

/// Trees smaller than this stay to the end: handing pages back and getting new ones costs time, which counts more.
constexpr std::size_t kWorthwhile = 8 * 1024 * 1024;

/// Returns the pages inside of a block to the system. The first page stays: the pool keeps the way to its other blocks
/// at the start of each. The block still belongs to the pool, which frees it in the end.
void ReturnPages(char* begin, std::size_t size) noexcept
{
	constexpr std::uintptr_t kPage = 4096;
	const std::uintptr_t from = (reinterpret_cast<std::uintptr_t>(begin) / kPage + 2) * kPage;
	const std::uintptr_t to = (reinterpret_cast<std::uintptr_t>(begin) + size) / kPage * kPage;
	if (from < to)
		madvise(reinterpret_cast<void*>(from), to - from, MADV_DONTNEED);
}

} // namespace

XmlMemory::XmlMemory() noexcept
{
	t_memory = this;
}

XmlMemory::~XmlMemory()
{
	t_memory = nullptr;
}

void* XmlMemory::Allocate(std::size_t bytes)
{
	void* memory = Host().allocate(bytes);
	if (memory == nullptr || !t_memory->_blocks.Append({static_cast<char*>(memory), bytes}).IsOk())
	{
		Host().free(memory);
		throw std::bad_alloc();
	}
	t_memory->_total += bytes;
	return memory;
}

void XmlMemory::Free(void* memory) noexcept
{
	Host().free(memory);
}

void XmlMemory::ReleaseBefore(const void* node) noexcept
{
	const auto isIn = [node](const Block& block)
	{
		return !std::less<>()(node, block.begin) && std::less<>()(node, block.begin + block.size);
	};
	if (_total < kWorthwhile)
		return;
	// The pool's first nodes are in memory of its own; then the walk goes from block to block.
	if (_blocks.IsEmpty() || (_reached > 0 && isIn(_blocks[_reached - 1])))
		return;
	for (std::size_t next = _reached; next < _blocks.GetCount(); next++)
	{
		if (!isIn(_blocks[next]))
			continue;
		for (; _reached <= next; _reached++)
		{
			if (_reached > 0)
				ReturnPages(_blocks[_reached - 1].begin, _blocks[_reached - 1].size);
		}
		return;
	}
}

} // namespace orvan::svg
