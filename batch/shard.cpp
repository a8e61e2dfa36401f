// SPDX-License-Identifier: MIT
#include "batch/shard.h"

#include "batch/archive_writer.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <random>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace orvan::batch
{
namespace
{
namespace fs = std::filesystem;

[[noreturn]] void Fail(const std::string& path)
{
	throw std::runtime_error(path + " cannot be written: " + std::strerror(errno));
}

/// Writes a file all the way to the disk.
void WriteFile(const std::string& path, std::string_view bytes)
{
	constexpr mode_t kMode = 0666;
	const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kMode);
	if (file < 0)
		Fail(path);
	while (!bytes.empty())
	{
		const ssize_t count = write(file, bytes.data(), bytes.size());
		if (count < 0 && errno != EINTR)
		{
			close(file);
			Fail(path);
		}
		bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
	}
	const bool isThere = fsync(file) == 0;
	close(file);
	if (!isThere)
		Fail(path);
}

/// Makes a folder beside another one that nobody else writes to, not even a worker elsewhere that was given up and
/// still runs.
std::string MakePart(const std::string& folder)
{
	constexpr mode_t kMode = 0777;
	std::random_device random;
	while (true)
	{
		std::string part = folder + ".part-" + std::to_string(random());
		if (mkdir(part.c_str(), kMode) == 0)
			return part;
		if (errno != EEXIST)
			Fail(part);
	}
}

} // namespace

void Shard::Write(const std::string& folder)
{
	const std::string part = MakePart(folder);
	WriteFile(part + "/rows.jsonl", _rows);
	if (!columns.IsEmpty())
		WriteFile(part + "/columns.npz", columns.Pack());
	if (_hasFiles)
	{
		ArchiveWriter archive(ArchiveFormat::tar);
		for (const auto& [name, content] : _files)
			archive.Add(name, {content});
		WriteFile(part + "/files.tar", archive.Take());
	}
	if (rename(part.c_str(), folder.c_str()) == 0)
		return;
	const int error = errno;
	std::error_code ignored;
	fs::remove_all(part, ignored);
	// The same chunk may have been done by somebody else meanwhile, with the same bytes.
	if (error == EEXIST || error == ENOTEMPTY)
		return;
	errno = error;
	Fail(folder);
}

} // namespace orvan::batch
