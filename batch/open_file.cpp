// SPDX-License-Identifier: MIT
#include "batch/open_file.h"

#include "batch/inflating.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace orvan::batch
{
namespace
{

[[noreturn]] void Fail()
{
	throw std::runtime_error(std::strerror(errno));
}

} // namespace

OpenFile::OpenFile(const std::string& path) : _file(open(path.c_str(), O_RDONLY | O_CLOEXEC))
{
	if (_file < 0)
		Fail();
}

OpenFile::~OpenFile()
{
	close(_file);
}

std::size_t OpenFile::GetSize() const
{
	struct stat status = {};
	if (fstat(_file, &status) != 0)
		Fail();
	return static_cast<std::size_t>(status.st_size);
}

std::size_t OpenFile::ReadNext(char* bytes, std::size_t count) const
{
	ssize_t read = 0;
	do
		read = ::read(_file, bytes, count);
	while (read < 0 && errno == EINTR);
	if (read < 0)
		Fail();
	return static_cast<std::size_t>(read);
}

std::string OpenFile::ReadAt(std::uint64_t offset, std::uint64_t count) const
{
	if (count > kMostBytes)
		throw std::runtime_error("It is too large.");
	std::string bytes(count, '\0');
	std::size_t size = 0;
	while (size < count)
	{
		const ssize_t read = pread(_file, bytes.data() + size, count - size, static_cast<off_t>(offset + size));
		if (read < 0 && errno == EINTR)
			continue;
		if (read < 0)
			Fail();
		if (read == 0)
			throw std::runtime_error("The archive is cut off.");
		size += static_cast<std::size_t>(read);
	}
	return bytes;
}

} // namespace orvan::batch
