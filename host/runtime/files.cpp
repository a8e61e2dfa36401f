// SPDX-License-Identifier: MIT
#include "files.h"

#include "file_stamps.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvan
{

/// An open stream: on a descriptor, or on bytes in memory when that is -1.
struct StreamHandle
{
	Url url;
	int descriptor;
	const char* memory;
	std::int64_t length;
	std::int64_t position; ///< In memory; a descriptor has its own.
	FileStamp stamp;       ///< Of the file behind a descriptor, as of its opening.
};

namespace runtime
{
namespace
{

using Scheme = Location::Scheme;

IoDetection DetectPath(const char* path) noexcept
{
	struct stat status;
	if (stat(path, &status) != 0)
		return errno == ENOENT || errno == ENOTDIR ? IoDetection::nonExistent : IoDetection::error;
	if (S_ISREG(status.st_mode))
		return IoDetection::file;
	return S_ISDIR(status.st_mode) ? IoDetection::directory : IoDetection::unknown;
}

Result<StreamHandle*> MakeHandle(const Url& url, int descriptor, std::string_view memory,
								 const FileStamp& stamp) noexcept
{
	void* storage = Host().allocate(sizeof(StreamHandle));
	if (storage == nullptr)
		return OutOfMemoryError();
	const std::int64_t length = descriptor < 0 ? static_cast<std::int64_t>(memory.size()) : stamp.size;
	return new (storage) StreamHandle{url, descriptor, memory.data(), length, 0, stamp};
}

Result<StreamHandle*> OpenMemory(const Url& url, std::string_view name) noexcept
{
	const std::optional<std::string_view> bytes = FindMemoryFile(name);
	if (!bytes)
		return IoError(url, "'@' cannot be opened: no such file is published in memory.", url.GetText());
	return MakeHandle(url, -1, *bytes, {});
}

Result<StreamHandle*> OpenDescriptor(const Url& url, int descriptor) noexcept
{
	// Asked of the open file: what the path designates may have changed since anyone asked before.
	struct stat status;
	if (fstat(descriptor, &status) != 0)
		return IoError(url, "'@' cannot be opened: @.", url.GetText(), SystemErrorText(errno));
	if (S_ISDIR(status.st_mode))
		return IoError(url, "'@' cannot be opened: it is a directory.", url.GetText());
	if (!S_ISREG(status.st_mode))
		return IoError(url, "'@' cannot be opened: it is not a regular file.", url.GetText());
	return MakeHandle(url, descriptor, {}, StampOf(status));
}

Result<StreamHandle*> OpenPath(const Url& url, const char* path) noexcept
{
	// Not blocking, so that a pipe in the place of a file does not hang the caller until somebody writes to it.
	const int descriptor = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
	if (descriptor < 0)
		return IoError(url, "'@' cannot be opened: @.", url.GetText(), SystemErrorText(errno));
	Result<StreamHandle*> opened = OpenDescriptor(url, descriptor);
	if (!opened.IsOk())
		close(descriptor);
	return opened;
}

Result<StreamHandle*> Open(const Url& url) noexcept
{
	const Location location = ORVAN_TRY(Locate(url));
	switch (location.scheme)
	{
	case Scheme::file:
		return OpenPath(url, location.path.CString());
	case Scheme::memory:
		return OpenMemory(url, location.name);
	case Scheme::unknown:
		break;
	}
	return IoError(url, "'@' cannot be opened: the scheme of the URL is not known.", url.GetText());
}

Error ShortRead(const Url& url, std::int64_t bytes, std::int64_t wanted) noexcept
{
	return IoError(url, "The requested number of bytes could not be read (@ of @).", bytes, wanted);
}

Result<void> ReadMemory(StreamHandle& stream, void* buffer, std::int64_t bytes) noexcept
{
	const std::int64_t available = std::min(bytes, stream.length - stream.position);
	if (available > 0)
		std::memcpy(buffer, stream.memory + stream.position, static_cast<std::size_t>(available));
	stream.position += available;
	if (available < bytes)
		return ShortRead(stream.url, available, bytes);
	return {};
}

Result<void> ReadDescriptor(const StreamHandle& stream, char* buffer, std::int64_t bytes) noexcept
{
	for (std::int64_t done = 0; done < bytes;)
	{
		const ssize_t count = read(stream.descriptor, buffer + done, static_cast<std::size_t>(bytes - done));
		if (count > 0)
			done += count;
		else if (count == 0)
			return ShortRead(stream.url, done, bytes);
		else if (errno != EINTR)
			return IoError(stream.url, "'@' cannot be read: @.", stream.url.GetText(), SystemErrorText(errno));
	}
	return {};
}

} // namespace

SystemErrorText::SystemErrorText(int number) noexcept : _text(strerror_r(number, _buffer, sizeof _buffer))
{
}

IoDetection DetectUrl(const Url& url) noexcept
{
	const Result<Location> location = Locate(url);
	if (!location.IsOk())
	{
		return location.GetError().GetClass() == ErrorClass::outOfMemory ? IoDetection::outOfMemory
																		 : IoDetection::error;
	}
	switch (location.GetValue().scheme)
	{
	case Scheme::file:
		return DetectPath(location.GetValue().path.CString());
	case Scheme::memory:
		return FindMemoryFile(location.GetValue().name) ? IoDetection::file : IoDetection::nonExistent;
	case Scheme::unknown:
		break;
	}
	return IoDetection::unknown;
}

ErrorBlock* OpenStream(const Url& url, StreamHandle** result) noexcept
{
	Result<StreamHandle*> opened = Open(url);
	if (!opened.IsOk())
		return opened.GetError().Release();
	*result = opened.GetValue();
	return nullptr;
}

ErrorBlock* StreamLength(StreamHandle* stream, std::int64_t* length) noexcept
{
	*length = stream->length;
	return nullptr;
}

ErrorBlock* ReadStream(StreamHandle* stream, void* buffer, std::int64_t bytes) noexcept
{
	const Result<void> done = stream->descriptor < 0 ? ReadMemory(*stream, buffer, bytes)
													 : ReadDescriptor(*stream, static_cast<char*>(buffer), bytes);
	return done.IsOk() ? nullptr : done.GetError().Release();
}

void CloseStream(StreamHandle* stream) noexcept
{
	if (stream->descriptor >= 0)
		close(stream->descriptor);
	std::destroy_at(stream);
	Host().free(stream);
}

void StampStream(const StreamHandle* stream, FileStamp* result) noexcept
{
	*result = stream->stamp;
}

void StampFile(const Url& url, FileStamp* result) noexcept
{
	const Result<Location> location = Locate(url);
	if (location.IsOk() && location.GetValue().scheme == Scheme::file)
		*result = StampOfPath(location.GetValue().path.CString());
	else
		*result = {};
}

} // namespace runtime
} // namespace orvan
