// SPDX-License-Identifier: MIT
/// A file that is open for reading.
#pragma once

#include <cstdint>
#include <string>

namespace orvan::batch
{

/// A file, closed with the object. All members throw `std::runtime_error` with the system's words.
class OpenFile
{
public:
	explicit OpenFile(const std::string& path);
	OpenFile(const OpenFile&) = delete;
	~OpenFile();

	/// Its size in bytes; 0 for what has none.
	std::size_t GetSize() const;

	/// Reads up to `count` bytes from where the last call ended. Returns how many there were; 0 at the end.
	std::size_t ReadNext(char* bytes, std::size_t count) const;

	/// The same from a place.
	std::size_t ReadSome(std::uint64_t offset, char* bytes, std::size_t count) const;

private:
	int _file;
};

} // namespace orvan::batch
