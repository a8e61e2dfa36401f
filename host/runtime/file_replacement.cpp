// SPDX-License-Identifier: MIT
#include "file_replacement.h"

#include "file_stamps.h"
#include "files.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <new>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace orvan::runtime
{
namespace
{

Error FailedToWrite(const Url& url, int number) noexcept
{
	return IoError(url, "'@' cannot be written: @.", url.GetText(), SystemErrorText(number));
}

/// A new file beside another one, which goes again unless it takes the other's place.
class NewFile
{
public:
	NewFile() noexcept = default;
	NewFile(const NewFile&) = delete;

	~NewFile()
	{
		if (_descriptor >= 0)
			close(_descriptor);
		if (!_path.empty())
			unlink(_path.c_str());
	}

	/// Makes the file beside `target`; false with errno set when that is not possible. `old` is what stands there; null
	/// where nothing does.
	bool Create(const std::string& target, const struct stat* old)
	{
		// Hidden, so that a glance at the folder shows no half files. Names are tried until one is free.
		const std::string start = target.substr(0, target.rfind('/') + 1) + ".orvan-" + std::to_string(getpid()) + '-';
		constexpr int kAttempts = 1000;
		constexpr mode_t kUsual = 0666; // Without what the process's mask takes away.
		for (int attempt = 0; attempt < kAttempts; attempt++)
		{
			const std::string path = start + std::to_string(attempt);
			_descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, old != nullptr ? 0600 : kUsual);
			if (_descriptor < 0 && errno == EEXIST)
				continue;
			if (_descriptor < 0)
				return false;
			_path = path;
			return old == nullptr || TakePermissions(*old);
		}
		return false;
	}

	bool Write(const char* bytes, std::int64_t count) noexcept
	{
		while (count > 0)
		{
			const ssize_t written = write(_descriptor, bytes, static_cast<std::size_t>(count));
			if (written < 0 && errno == EINTR)
				continue;
			if (written <= 0)
				return false;
			bytes += written;
			count -= written;
		}
		return true;
	}

	/// Gives the file the other's name, once it is on the disk.
	bool Commit(const std::string& target, FileStamp& stamp) noexcept
	{
		struct stat status;
		if (fsync(_descriptor) != 0 || std::rename(_path.c_str(), target.c_str()) != 0)
			return false;
		_path.clear();
		// Renaming changes the file's times, too.
		stamp = fstat(_descriptor, &status) == 0 ? StampOf(status) : FileStamp();
		return true;
	}

private:
	/// The owner can be kept by the superuser alone; who else replaces a file owns it.
	bool TakePermissions(const struct stat& old) noexcept
	{
		constexpr mode_t kPermissions = 07777;
		const bool isOurs = fchown(_descriptor, old.st_uid, old.st_gid) == 0 || errno == EPERM;
		return isOurs && fchmod(_descriptor, old.st_mode & kPermissions) == 0;
	}

	int _descriptor = -1;
	std::string _path;
};

/// What a path leads to: the end of all symbolic links, also where nothing stands there yet.
std::string FollowLinks(std::string path)
{
	constexpr int kMostLinks = 40;
	for (int i = 0; i < kMostLinks; i++)
	{
		char leadsTo[4096];
		const ssize_t length = readlink(path.c_str(), leadsTo, sizeof leadsTo);
		if (length <= 0 || static_cast<std::size_t>(length) == sizeof leadsTo)
			break;
		const std::string target(leadsTo, static_cast<std::size_t>(length));
		path = target.starts_with('/') ? target : path.substr(0, path.rfind('/') + 1) + target;
	}
	return path;
}

Result<FileStamp> Replace(const Url& url, const char* bytes, std::int64_t count)
{
	if (count < 0)
		return IllegalArgumentError("There are no @ bytes to write.", count);
	const Location location = ORVAN_TRY(Locate(url));
	if (location.scheme != Location::Scheme::file)
		return IoError(url, "'@' cannot be written: it is no file on disk.", url.GetText());
	const std::string target = FollowLinks(location.path.CString());
	struct stat old;
	const bool exists = stat(target.c_str(), &old) == 0;
	if (!exists && errno != ENOENT)
		return FailedToWrite(url, errno);
	if (exists && !S_ISREG(old.st_mode))
		return IoError(url, "'@' cannot be written: it is not a regular file.", url.GetText());
	// Renaming asks only for the folder's permission.
	if (exists && access(target.c_str(), W_OK) != 0)
		return FailedToWrite(url, errno);
	NewFile file;
	FileStamp stamp;
	if (!file.Create(target, exists ? &old : nullptr) || !file.Write(bytes, count) || !file.Commit(target, stamp))
		return FailedToWrite(url, errno);
	return stamp;
}

} // namespace

ErrorBlock* ReplaceFile(const Url& url, const void* bytes, std::int64_t count, FileStamp* stamp) noexcept
{
	try
	{
		Result<FileStamp> replaced = Replace(url, static_cast<const char*>(bytes), count);
		if (!replaced.IsOk())
			return replaced.GetError().Release();
		*stamp = replaced.GetValue();
		return nullptr;
	}
	catch (const std::bad_alloc&)
	{
		return OutOfMemoryError().Release();
	}
}

} // namespace orvan::runtime
