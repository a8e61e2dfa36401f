// SPDX-License-Identifier: MIT
/// How the elements of a tree find their document.
#pragma once

#include "orvan/reference_count.h"
#include "orvan/result.h"

#include <atomic>
#include <cstdint>
#include <new>
#include <utility>

namespace orvan::svg
{

class Document;

/// A counted link to a document that may be gone. The root of a document has one, and whatever a history has taken out
/// of the tree or may take out; of several on the way up from an element the topmost counts.
class TreeOwner
{
public:
	TreeOwner() noexcept = default;

	TreeOwner(const TreeOwner& other) noexcept : _block(other._block)
	{
		if (_block != nullptr)
			_block->references.fetch_add(1, std::memory_order_relaxed);
	}

	TreeOwner(TreeOwner&& other) noexcept : _block(std::exchange(other._block, nullptr))
	{
	}

	TreeOwner& operator=(TreeOwner other) noexcept
	{
		std::swap(_block, other._block);
		return *this;
	}

	~TreeOwner()
	{
		if (_block != nullptr && orvan::detail::ReleaseReference(_block->references))
			Host().free(_block);
	}

	static Result<TreeOwner> Of(Document& document) noexcept
	{
		TreeOwner owner;
		void* memory = Host().allocate(sizeof(Block));
		if (memory == nullptr)
			return OutOfMemoryError();
		owner._block = new (memory) Block{{1}, &document};
		return owner;
	}

	explicit operator bool() const noexcept
	{
		return _block != nullptr;
	}

	/// The document; null when it is gone.
	Document* GetDocument() const noexcept
	{
		return _block != nullptr ? _block->document : nullptr;
	}

	/// Has all who hold the link find another document, or none.
	void SetDocument(Document& document) noexcept
	{
		if (_block != nullptr)
			_block->document = &document;
	}

	void Forget() noexcept
	{
		if (_block != nullptr)
			_block->document = nullptr;
	}

private:
	struct Block
	{
		std::atomic<std::uint32_t> references;
		Document* document;
	};

	Block* _block = nullptr;
};

} // namespace orvan::svg
