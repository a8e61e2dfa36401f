// SPDX-License-Identifier: MIT
/// Shared, immutable UTF-8 text.
#pragma once

#include "orvan/hash.h"
#include "orvan/reference_count.h"
#include "orvan/services.h"

#include <atomic>
#include <compare>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

namespace orvan
{

template <typename T>
class Result;

/// A text that is shared by reference count: copying never allocates and never fails, making one may. The null string
/// and the empty string are the same value. Bytes are kept as given; nothing checks that they are valid UTF-8.
/// Different `String` objects that share a text may be used from different threads.
class String
{
public:
	String() noexcept = default;

	String(const String& other) noexcept : _block(other._block)
	{
		if (_block != nullptr)
			_block->count.fetch_add(1, std::memory_order_relaxed);
	}

	String(String&& other) noexcept : _block(std::exchange(other._block, nullptr))
	{
	}

	String& operator=(const String& other) noexcept
	{
		String(other).Swap(*this);
		return *this;
	}

	String& operator=(String&& other) noexcept
	{
		String(std::move(other)).Swap(*this);
		return *this;
	}

	~String()
	{
		if (_block != nullptr && detail::ReleaseReference(_block->count))
			Host().free(_block);
	}

	/// Copies `text` into a new string. Fails only for want of memory; a text is less than 4 GiB long. To call it,
	/// include `orvan/result.h`.
	static Result<String> Create(std::string_view text) noexcept;

	/// True for the text without bytes, which takes no memory.
	bool IsEmpty() const noexcept
	{
		return _block == nullptr;
	}

	/// Number of bytes.
	std::size_t GetSize() const noexcept
	{
		return _block != nullptr ? _block->size : 0;
	}

	/// The bytes; valid as long as any string shares them.
	std::string_view View() const noexcept
	{
		return _block != nullptr ? std::string_view(_block->Text(), _block->size) : std::string_view();
	}

	/// As `View`.
	operator std::string_view() const noexcept
	{
		return View();
	}

	/// The text with a terminating zero byte.
	const char* CString() const noexcept
	{
		return _block != nullptr ? _block->Text() : "";
	}

	/// The 64-bit hash of the bytes, computed once. Equal texts have equal hashes in every process.
	std::uint64_t GetHash() const noexcept
	{
		if (_block == nullptr)
			return HashBytes({});
		std::uint64_t hash = _block->hash.load(std::memory_order_relaxed);
		if (hash == 0)
		{
			hash = HashBytes(View());
			_block->hash.store(hash, std::memory_order_relaxed);
		}
		return hash;
	}

	/// True when both share one text; equal texts need not.
	bool IsSameObject(const String& other) const noexcept
	{
		return _block == other._block;
	}

	/// Exchanges the texts of the two.
	void Swap(String& other) noexcept
	{
		std::swap(_block, other._block);
	}

	/// True when the bytes are the same; nothing is folded or normalised.
	friend bool operator==(const String& a, const String& b) noexcept
	{
		return a._block == b._block || a.View() == b.View();
	}

	/// The same with a text of another kind.
	friend bool operator==(const String& a, std::string_view b) noexcept
	{
		return a.View() == b;
	}

private:
	struct Block
	{
		std::atomic<std::uint32_t> count;
		std::uint32_t size;
		std::atomic<std::uint64_t> hash; ///< 0 until it is asked for.

		char* Text() noexcept
		{
			return reinterpret_cast<char*>(this + 1);
		}
	};

	Block* _block = nullptr;
};

} // namespace orvan
