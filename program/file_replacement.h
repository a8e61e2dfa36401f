// SPDX-License-Identifier: MIT
/// Writing a file so that what stood there before stays until the new one is complete.
#pragma once

#include <string>

namespace orvan::program
{

/// A file beside another one, whose place it takes in the end. What is written to a full disk, or by a process that is
/// killed, never shows under the other's name.
class FileReplacement
{
public:
	/// Makes an empty file beside `path`, with the permissions of what stands there. What `path` leads to is replaced,
	/// not the symbolic link; what is no ordinary file (a device, a pipe) is written to in place. Throws `Failure` when
	/// there can be no such file.
	explicit FileReplacement(const std::string& path);
	FileReplacement(const FileReplacement&) = delete;

	/// Takes the new file away, unless it has taken its place.
	~FileReplacement();

	/// Where to write.
	const std::string& GetPath() const
	{
		return _path;
	}

	/// Lets the new file, which must be closed, take its place. Throws `Failure`.
	void Commit();

private:
	std::string _target;
	std::string _path;
	bool _isInPlace = false;
};

} // namespace orvan::program
