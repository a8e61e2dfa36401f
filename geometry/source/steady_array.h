// SPDX-License-Identifier: MIT
/// An array that grows without moving what is in it.
#pragma once

#include "orvan/array.h"

#include <bit>

namespace orvan::geometry
{

/// An array in blocks, each as large as all before it together. Elements stay where they are until the array is
/// released, also when it is moved: large ones cost neither copies nor fresh memory when it grows.
template <typename T>
class SteadyArray
{
public:
	std::size_t GetCount() const noexcept
	{
		return _count;
	}

	bool IsEmpty() const noexcept
	{
		return _count == 0;
	}

	T& operator[](std::size_t index) noexcept
	{
		const std::size_t block = GetBlock(index);
		return _blocks[block][index - GetFirst(block)];
	}

	const T& operator[](std::size_t index) const noexcept
	{
		return const_cast<SteadyArray&>(*this)[index];
	}

	/// Adds an element at the end. On failure the array is as it was.
	Result<void> Append(T value) noexcept
	{
		const std::size_t block = GetBlock(_count);
		ORVAN_TRY(_blocks[block].Reserve(block == 0 ? kFirst : GetFirst(block)));
		ORVAN_TRY(_blocks[block].Append(std::move(value)));
		_count++;
		return {};
	}

private:
	static constexpr std::size_t kFirst = 16;
	static constexpr std::size_t kBlocks = 32;

	static std::size_t GetBlock(std::size_t index) noexcept
	{
		return static_cast<std::size_t>(std::bit_width(index / kFirst));
	}

	/// The index of the first element in a block.
	static std::size_t GetFirst(std::size_t block) noexcept
	{
		return block == 0 ? 0 : kFirst << (block - 1);
	}

	BaseArray<T> _blocks[kBlocks];
	std::size_t _count = 0;
};

} // namespace orvan::geometry
