// SPDX-License-Identifier: MIT
#pragma once

#include "orvan/services.h"

#include <cstddef>
#include <memory_resource>
#include <new>

namespace orvan::svg::complete
{

/// The host's memory for containers of the standard library. Throws std::bad_alloc when it runs out.
class HostMemory final : public std::pmr::memory_resource
{
private:
	void* do_allocate(std::size_t bytes, std::size_t) override
	{
		void* const memory = Host().allocate(bytes);
		if (memory == nullptr)
			throw std::bad_alloc();
		return memory;
	}

	void do_deallocate(void* memory, std::size_t, std::size_t) override
	{
		Host().free(memory);
	}

	bool do_is_equal(const std::pmr::memory_resource& other) const noexcept override
	{
		return this == &other;
	}
};

} // namespace orvan::svg::complete
