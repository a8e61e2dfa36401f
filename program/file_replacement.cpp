// SPDX-License-Identifier: MIT
#include "file_replacement.h"

#include "console.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace orvan::program
{
namespace
{
namespace fs = std::filesystem;

[[noreturn]] void Fail(const std::string& path)
{
	throw Failure(WholeLine(path) + " cannot be written: " + std::strerror(errno));
}

/// The permissions of a file that a program makes. Only setting the mask tells what it is, so that is done once.
mode_t GetUsualMode()
{
	static const mode_t mode = []
	{
		constexpr mode_t kAll = 0666;
		const mode_t mask = umask(0);
		umask(mask);
		return kAll & ~mask;
	}();
	return mode;
}
} // namespace

FileReplacement::FileReplacement(const std::string& path) : _target(path)
{
	std::error_code error;
	if (const fs::path leadsTo = fs::canonical(path, error); !error)
		_target = leadsTo;
	struct stat old = {};
	const bool exists = stat(_target.c_str(), &old) == 0;
	if (exists && !S_ISREG(old.st_mode))
	{
		_path = _target;
		_isInPlace = true;
		return;
	}
	// Renaming asks only for the folder's permission.
	if (exists && access(_target.c_str(), W_OK) != 0)
		Fail(_target);
	// Hidden, so that a glance at the folder shows no half pictures.
	const fs::path target(_target);
	std::string pattern = target.parent_path() / ".orvan-XXXXXX";
	const int file = mkstemp(pattern.data());
	if (file < 0)
		Fail(_target);
	_path = std::move(pattern);
	// The owner can be kept by the superuser alone; who else replaces a file owns it.
	const bool isOurs = !exists || fchown(file, old.st_uid, old.st_gid) == 0 || errno == EPERM;
	const bool hasMode = fchmod(file, exists ? old.st_mode & 07777 : GetUsualMode()) == 0;
	close(file);
	if (!isOurs || !hasMode)
	{
		unlink(_path.c_str());
		Fail(_target);
	}
}

FileReplacement::~FileReplacement()
{
	if (!_isInPlace && !_path.empty())
		unlink(_path.c_str());
}

void FileReplacement::Commit()
{
	if (!_isInPlace && std::rename(_path.c_str(), _target.c_str()) != 0)
		Fail(_target);
	_path.clear();
}

} // namespace orvan::program
