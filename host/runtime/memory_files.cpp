// SPDX-License-Identifier: MIT
#include "orvan/host/memory_files.h"

#include "files.h"
#include "orvan/hash.h"

#include <algorithm>
#include <limits>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <utility>
#include <vector>

namespace orvan
{
namespace
{

/// Files by name. A program may keep thousands of them, and hardly any is in the processor's caches when it is asked
/// for: a search reads one small number and then, nearly always, no other file than the one it is about.
class FileTable
{
public:
	/// The bytes of a file, or null.
	std::string_view* Find(std::string_view name) noexcept
	{
		if (_files.empty())
			return nullptr;
		const Number number = LinkTo(name);
		return number != kNone ? &_files[number].bytes : nullptr;
	}

	/// Adds a file whose name is not there yet. Throws for want of memory, and has then changed nothing.
	void Add(std::string name, std::string_view bytes)
	{
		if (_heads.size() < kHeadsPerFile * (_files.size() + 1))
			Grow();
		_files.push_back({std::move(name), bytes, kNone});
		LinkTo(_files.back().name) = static_cast<Number>(_files.size() - 1);
	}

	void Remove(std::string_view name) noexcept
	{
		if (_files.empty())
			return;
		Number& link = LinkTo(name);
		const Number number = link;
		if (number == kNone)
			return;
		link = _files[number].next;
		// The last file takes the place of this one.
		if (number != _files.size() - 1)
		{
			LinkTo(_files.back().name) = number;
			_files[number] = std::move(_files.back());
		}
		_files.pop_back();
	}

private:
	using Number = std::uint32_t;

	struct File
	{
		std::string name;
		std::string_view bytes;
		Number next; ///< Of the files whose names share a head.
	};

	static constexpr Number kNone = std::numeric_limits<Number>::max();
	static constexpr std::size_t kHeadsPerFile = 4;
	static constexpr std::size_t kFewestHeads = 64;

	/// The link that holds the number of the file; when there is no such file, the one that ends the chain.
	Number& LinkTo(std::string_view name) noexcept
	{
		Number* link = &_heads[HashBytes(name) & (_heads.size() - 1)];
		while (*link != kNone && _files[*link].name != name)
			link = &_files[*link].next;
		return *link;
	}

	void Grow()
	{
		_heads = std::vector<Number>(std::max(kFewestHeads, 2 * _heads.size()), kNone);
		for (File& file : _files)
			file.next = kNone;
		for (std::size_t i = 0; i < _files.size(); i++)
			LinkTo(_files[i].name) = static_cast<Number>(i);
	}

	std::vector<File> _files;
	std::vector<Number> _heads; ///< A power of two of them.
};

struct Files
{
	std::shared_mutex mutex;
	FileTable table;
};

Files& TheFiles()
{
	static auto* files = new Files; // Never destroyed: files may be read while the process ends.
	return *files;
}

} // namespace

std::optional<std::string_view> runtime::FindMemoryFile(std::string_view name) noexcept
{
	Files& files = TheFiles();
	const std::shared_lock lock(files.mutex);
	const std::string_view* bytes = files.table.Find(name);
	if (bytes == nullptr)
		return std::nullopt;
	// Whoever asks for a file is about to read it. By then its bytes should be on their way from memory.
	constexpr std::size_t kAhead = 4096;
	constexpr std::size_t kCacheLine = 64;
	for (std::size_t i = 0; i < std::min(bytes->size(), kAhead); i += kCacheLine)
		__builtin_prefetch(bytes->data() + i);
	return *bytes;
}

Result<void> MemoryFiles::Publish(std::string_view name, std::string_view bytes) noexcept
{
	try
	{
		Files& files = TheFiles();
		std::string key(name);
		const std::unique_lock lock(files.mutex);
		if (std::string_view* known = files.table.Find(name))
			*known = bytes;
		else
			files.table.Add(std::move(key), bytes);
		return {};
	}
	catch (const std::bad_alloc&)
	{
		return OutOfMemoryError();
	}
}

void MemoryFiles::Withdraw(std::string_view name) noexcept
{
	Files& files = TheFiles();
	const std::unique_lock lock(files.mutex);
	files.table.Remove(name);
}

} // namespace orvan
