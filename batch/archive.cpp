// SPDX-License-Identifier: MIT
#include "batch/archive.h"

#include "batch/inflating.h"
#include "batch/open_file.h"
#include "batch/tar_archive.h"
#include "batch/zip_archive.h"

namespace orvan::batch
{

bool Archive::IsArchive(const std::string& path)
{
	return path.ends_with(".tar") || path.ends_with(".tar.gz") || path.ends_with(".tgz") || path.ends_with(".zip");
}

std::unique_ptr<Archive> Archive::Open(const std::string& path)
{
	if (path.ends_with(".zip"))
		return std::make_unique<ZipArchive>(path);
	return std::make_unique<TarArchive>(path);
}

std::string ReadWholeFile(const std::string& path)
{
	const OpenFile file(path);
	// What has no size, such as a pipe, is read to its end.
	std::string bytes(file.GetSize() + 1, '\0');
	std::size_t size = 0;
	while (const std::size_t count = file.ReadNext(bytes.data() + size, bytes.size() - size))
	{
		size += count;
		if (size > kMostBytes)
			throw std::runtime_error("It is too large.");
		if (size == bytes.size())
			bytes.resize(2 * size);
	}
	bytes.resize(size);
	return bytes;
}

} // namespace orvan::batch
