// SPDX-License-Identifier: MIT
/// Reading archives by libarchive, whose members are listed one at a time and read in any order, so that archives of
/// any size take no memory.
#pragma once

#include "batch/open_file.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct archive;
struct archive_entry;

namespace orvan::batch
{

/// A file in an archive.
struct ArchiveMember
{
	std::string name; ///< Empty for what stands in the place of members that cannot be listed.
	/// Where its bytes are, in a form that only `Archive::Read` understands: plain text, to be sent elsewhere. Without
	/// a name, "!" and what is wrong.
	std::string place;
};

/// An archive that is open: a tar, plain or packed by gzip, xz or zstd, or a ZIP. Used by one thread at a time.
class Archive
{
public:
	/// True for names of what can be read: ".tar", ".tar.gz", ".tgz", ".tar.xz", ".txz", ".tar.zst", ".tzst" and
	/// ".zip".
	static bool IsArchive(const std::string& path);

	/// Throws `std::runtime_error` for a file that cannot be opened.
	explicit Archive(const std::string& path);
	~Archive();

	/// The next ordinary file, in the order of the archive; none at the end. Where an archive is damaged comes one
	/// without a name, and then the end.
	std::optional<ArchiveMember> Next();

	/// The bytes of a member. What `Next` has passed so far may be forgotten. Members of packed tars are found by
	/// unpacking all that stands before them: reading them in their order costs one pass. Throws `std::runtime_error`
	/// for what is damaged or too large.
	std::string Read(const std::string& place);

private:
	struct Closer
	{
		void operator()(archive* reader) const noexcept;
	};

	/// Begins to read at a place, where a member's header must be.
	void Begin(std::uint64_t offset);
	/// The next member; null at the end.
	archive_entry* NextEntry();
	/// Where the header of the present member stands, in bytes unpacked.
	std::uint64_t GetPosition() const;
	/// Where the present member is: the place of its header, or, where they stand in the file as they are, that of its
	/// bytes and their number, for which nobody needs the library.
	std::string GetPlace(archive_entry* entry) const;
	std::string ReadBytes(std::uint64_t begin, std::uint64_t size) const;
	std::string ReadContent(archive_entry* entry);
	[[noreturn]] void Fail() const;

	/// What the library asks for bytes.
	static std::ptrdiff_t GiveBytes(archive* reader, void* self, const void** bytes);
	static std::int64_t Skip(archive* reader, void* self, std::int64_t count);

	OpenFile _file;
	const bool _isZip;
	const bool _isPacked;
	std::unique_ptr<archive, Closer> _reader;
	std::uint64_t _base = 0; ///< Where the reader has begun.
	std::uint64_t _next = 0; ///< What it is given next, both in bytes of the file.
	std::vector<char> _buffer;
	bool _isListed = false;
};

/// All bytes of a file. Throws `std::runtime_error`.
std::string ReadWholeFile(const std::string& path);

} // namespace orvan::batch
