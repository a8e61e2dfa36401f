// SPDX-License-Identifier: MIT
/// A growable array whose growth can fail.
#pragma once

#include "orvan/result.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <span>
#include <type_traits>
#include <utility>

namespace orvan
{

/// An array of `T` in one block of host memory, 24 bytes itself. Grows by half of its capacity, at least to four
/// elements. Copying may fail, so it is spelled `CopyFrom`; moving never does. Not synchronised.
template <typename T>
class BaseArray
{
	static_assert(std::is_nothrow_move_constructible_v<T>);

public:
	using Value = T;

	BaseArray() noexcept = default;
	BaseArray(const BaseArray&) = delete; ///< Would have no way to report a failed allocation; use `CopyFrom`.

	BaseArray(BaseArray&& other) noexcept
		: _data(std::exchange(other._data, nullptr)), _size(std::exchange(other._size, 0)),
		  _capacity(std::exchange(other._capacity, 0))
	{
	}

	BaseArray& operator=(BaseArray&& other) noexcept
	{
		BaseArray taken(std::move(other));
		std::swap(_data, taken._data);
		std::swap(_size, taken._size);
		std::swap(_capacity, taken._capacity);
		return *this;
	}

	~BaseArray()
	{
		Reset();
	}

	/// Number of elements.
	std::size_t GetCount() const noexcept
	{
		return _size;
	}

	/// Number of elements that there is room for before the storage has to grow.
	std::size_t GetCapacity() const noexcept
	{
		return _capacity;
	}

	/// True when there is no element, whatever the capacity.
	bool IsEmpty() const noexcept
	{
		return _size == 0;
	}

	/// The first element, and the place behind the last; good until the array grows or is released. Both may be null
	/// when it is empty.
	T* begin() noexcept
	{
		return _data;
	}

	T* end() noexcept
	{
		return _data + _size;
	}

	const T* begin() const noexcept
	{
		return _data;
	}

	const T* end() const noexcept
	{
		return _data + _size;
	}

	/// The element at `index`, which must be below `GetCount`.
	T& operator[](std::size_t index) noexcept
	{
		return _data[index];
	}

	const T& operator[](std::size_t index) const noexcept
	{
		return _data[index];
	}

	/// All elements; good as long as `begin`.
	operator std::span<const T>() const noexcept
	{
		return {_data, _size};
	}

	/// Adds an element at the end. On failure the array is as it was.
	Result<void> Append(T value) noexcept
	{
		if (_size == _capacity) [[unlikely]]
		{
			if (!SetCapacity(std::max<std::size_t>(4, _capacity + _capacity / 2)))
				return OutOfMemoryError();
		}
		std::construct_at(_data + _size, std::move(value));
		_size++;
		return {};
	}

	/// Adds copies of `count` elements at the end.
	Result<void> AppendAll(const T* values, std::size_t count) noexcept requires std::is_trivially_copyable_v<T>
	{
		if (count > _capacity - _size && !SetCapacity(std::max({_size + count, _capacity + _capacity / 2})))
			return OutOfMemoryError();
		if (count != 0)
			std::memcpy(static_cast<void*>(_data + _size), values, count * sizeof(T));
		_size += count;
		return {};
	}

	/// Adds `count` elements of arbitrary bytes, for which there must be room, and returns the first.
	T* AppendUninitialized(std::size_t count) noexcept requires std::is_trivial_v<T>
	{
		T* first = _data + _size;
		_size += count;
		return first;
	}

	/// Makes room for at least `capacity` elements.
	Result<void> Reserve(std::size_t capacity) noexcept
	{
		if (capacity > _capacity && !SetCapacity(capacity))
			return OutOfMemoryError();
		return {};
	}

	/// Gives unused capacity back where that is possible; never fails.
	void Compact() noexcept
	{
		if (_size == 0)
			Reset();
		else if (_size < _capacity)
			SetCapacity(_size);
	}

	/// Changes the number of elements; new ones are value-initialised.
	Result<void> Resize(std::size_t count) noexcept
	{
		if (count > _capacity && !SetCapacity(count))
			return OutOfMemoryError();
		if (count < _size)
			std::destroy(_data + count, _data + _size);
		else
			std::uninitialized_value_construct(_data + _size, _data + count);
		_size = count;
		return {};
	}

	/// Changes the number of elements; new ones hold arbitrary bytes that the caller is about to write.
	Result<void> ResizeUninitialized(std::size_t count) noexcept requires std::is_trivial_v<T>
	{
		if (count > _capacity && !SetCapacity(count))
			return OutOfMemoryError();
		_size = count;
		return {};
	}

	/// Replaces the content by copies of the other's. Storage is reused when it suffices; otherwise exactly the other's
	/// count is allocated. On failure the array is as it was.
	Result<void> CopyFrom(const BaseArray& other) noexcept
	{
		static_assert(std::is_nothrow_copy_constructible_v<T>);
		if (this == &other)
			return {};
		if (other._size > _capacity)
		{
			BaseArray fresh;
			if (!fresh.SetCapacity(other._size))
				return OutOfMemoryError();
			*this = std::move(fresh);
		}
		Clear();
		std::uninitialized_copy(other.begin(), other.end(), _data);
		_size = other._size;
		return {};
	}

	/// Removes all elements and keeps the storage.
	void Clear() noexcept
	{
		std::destroy(_data, _data + _size);
		_size = 0;
	}

	/// Removes all elements and releases the storage.
	void Reset() noexcept
	{
		if (_data == nullptr) // As after a move: then there is nothing to call the host for.
			return;
		Clear();
		Host().free(_data);
		_data = nullptr;
		_capacity = 0;
	}

private:
	bool SetCapacity(std::size_t capacity) noexcept
	{
		if (capacity > PTRDIFF_MAX / sizeof(T))
			return false;
		T* data = nullptr;
		if constexpr (std::is_trivially_copyable_v<T>)
		{
			data = static_cast<T*>(Host().reallocate(_data, capacity * sizeof(T)));
			if (data == nullptr)
				return false;
		}
		else
		{
			data = static_cast<T*>(Host().allocate(capacity * sizeof(T)));
			if (data == nullptr)
				return false;
			std::uninitialized_move(_data, _data + _size, data);
			std::destroy(_data, _data + _size);
			Host().free(_data);
		}
		_data = data;
		_capacity = capacity;
		return true;
	}

	T* _data = nullptr;
	std::size_t _size = 0;
	std::size_t _capacity = 0;
};

} // namespace orvan
