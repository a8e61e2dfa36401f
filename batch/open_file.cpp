// SPDX-License-Identifier: MIT
#include "batch/open_file.h"

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

std::size_t OpenFile::ReadSome(std::uint64_t offset, char* bytes, std::size_t count) const
{
	ssize_t read = 0;
	do
		read = pread(_file, bytes, count, static_cast<off_t>(offset));
	while (read < 0 && errno == EINTR);
	if (read < 0)
		Fail();
	return static_cast<std::size_t>(read);
}

} // namespace orvan::batch
