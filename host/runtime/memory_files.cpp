#include "orvan/host/memory_files.h"

#include "files.h"

#include <mutex>
#include <shared_mutex>
#include <string>
#include <unordered_map>

namespace orvan
{
namespace
{

/// Lets the map be searched with a view, so that opening a stream makes no copy of the name.
struct ViewHash
{
	using is_transparent = void;

	std::size_t operator()(std::string_view name) const noexcept
	{
		return HashBytes(name);
	}
};

struct Files
{
	std::shared_mutex mutex;
	std::unordered_map<std::string, std::string_view, ViewHash, std::equal_to<>> byName;
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
	const auto found = files.byName.find(name);
	return found != files.byName.end() ? std::optional(found->second) : std::nullopt;
}

Result<void> MemoryFiles::Publish(std::string_view name, std::string_view bytes) noexcept
{
	try
	{
		Files& files = TheFiles();
		std::string key(name);
		const std::unique_lock lock(files.mutex);
		files.byName.insert_or_assign(std::move(key), bytes);
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
	if (const auto found = files.byName.find(name); found != files.byName.end())
		files.byName.erase(found);
}

} // namespace orvan
