// SPDX-License-Identifier: MIT
/// Reading tar and ZIP archives, whose members are listed one at a time and read in any order, so that archives of any
/// size take no memory.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace orvan::batch
{

/// A file in an archive.
struct ArchiveMember
{
	std::string name;
	/// Where its bytes are, in a form that only `Archive::Read` understands: plain text, to be sent elsewhere.
	std::string place;
};

/// An archive that is open. All members throw `std::runtime_error` for what cannot be read or is damaged. Used by one
/// thread at a time.
class Archive
{
public:
	virtual ~Archive() = default;

	/// True for names of what `Open` can read: ".tar", ".tar.gz", ".tgz" and ".zip".
	static bool IsArchive(const std::string& path);

	/// Opens an archive by its name. Members of packed tars are found by unpacking all that stands before them: reading
	/// them in their order costs one pass.
	static std::unique_ptr<Archive> Open(const std::string& path);

	/// The next ordinary file, in the order of the archive; none at the end.
	virtual std::optional<ArchiveMember> Next() = 0;

	/// The bytes of a member.
	virtual std::string Read(const std::string& place) = 0;
};

/// All bytes of a file. Throws `std::runtime_error`.
std::string ReadWholeFile(const std::string& path);

} // namespace orvan::batch
