// SPDX-License-Identifier: MIT
#include "batch/archive.h"

#include "batch/archive_library.h"

#include "batch/inflating.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <locale.h>
#include <new>
#include <span>
#include <stdexcept>
#include <string_view>

namespace orvan::batch
{
namespace
{

constexpr std::size_t kReadAhead = 1 << 16;

constexpr std::array<std::string_view, 2> kPlainSuffixes = {".tar", ".zip"};
constexpr std::array<std::string_view, 6> kPackedSuffixes = {".tar.gz", ".tgz", ".tar.xz", ".txz", ".tar.zst", ".tzst"};

bool EndsWithAny(const std::string& path, std::span<const std::string_view> suffixes)
{
	return std::ranges::any_of(suffixes, [&](std::string_view suffix) { return path.ends_with(suffix); });
}

/// Has this thread take texts for UTF-8 while it lives, because the library converts names to what the process speaks:
/// names shall not depend on that.
class Utf8Scope
{
public:
	Utf8Scope() : _former(uselocale(GetUtf8()))
	{
	}

	Utf8Scope(const Utf8Scope&) = delete;

	~Utf8Scope()
	{
		uselocale(_former);
	}

private:
	static locale_t GetUtf8()
	{
		static const locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
		return utf8;
	}

	locale_t _former;
};

} // namespace

bool Archive::IsArchive(const std::string& path)
{
	return EndsWithAny(path, kPlainSuffixes) || EndsWithAny(path, kPackedSuffixes);
}

Archive::Archive(const std::string& path)
	: _file(path), _isZip(path.ends_with(".zip")), _isPacked(EndsWithAny(path, kPackedSuffixes)), _buffer(kReadAhead)
{
}

Archive::~Archive() = default;

void Archive::Closer::operator()(archive* reader) const noexcept
{
	LibArchive().archive_read_free(reader);
}

void Archive::Fail() const
{
	if (LibArchive().archive_errno(_reader.get()) == ENOMEM)
		throw std::bad_alloc();
	const char* message = LibArchive().archive_error_string(_reader.get());
	throw std::runtime_error(message != nullptr ? message : "The archive is damaged.");
}

std::ptrdiff_t Archive::GiveBytes(archive* reader, void* self, const void** bytes)
{
	auto& archive = *static_cast<Archive*>(self);
	try
	{
		const std::size_t count = archive._file.ReadSome(archive._next, archive._buffer.data(), kReadAhead);
		archive._next += count;
		*bytes = archive._buffer.data();
		return static_cast<std::ptrdiff_t>(count);
	}
	catch (const std::runtime_error& error)
	{
		LibArchive().archive_set_error(reader, EIO, "%s", error.what());
		return -1;
	}
}

std::int64_t Archive::Skip(archive*, void* self, std::int64_t count)
{
	// Whether there is so much shows when it is read on.
	static_cast<Archive*>(self)->_next += static_cast<std::uint64_t>(count);
	return count;
}

void Archive::Begin(std::uint64_t offset)
{
	_base = _next = offset;
	_reader.reset(LibArchive().archive_read_new());
	archive* const reader = _reader.get();
	if (reader == nullptr)
		throw std::bad_alloc();
	if (_isPacked)
	{
		LibArchive().archive_read_support_filter_gzip(reader);
		LibArchive().archive_read_support_filter_xz(reader);
		LibArchive().archive_read_support_filter_zstd(reader);
	}
	// ZIPs by their members, too: the library would have their directory in memory as a whole, and be slow to come to a
	// member. That the format is said lets it begin anywhere.
	if (_isZip)
		LibArchive().archive_read_support_format_zip_streamable(reader);
	else
		LibArchive().archive_read_support_format_tar(reader);
	LibArchive().archive_read_set_format(reader, _isZip ? ARCHIVE_FORMAT_ZIP : ARCHIVE_FORMAT_TAR);
	LibArchive().archive_read_set_callback_data(reader, this);
	LibArchive().archive_read_set_read_callback(reader, &GiveBytes);
	if (LibArchive().archive_read_set_skip_callback(reader, &Skip) != ARCHIVE_OK ||
		LibArchive().archive_read_open1(reader) != ARCHIVE_OK)
		Fail();
}

std::uint64_t Archive::GetPosition() const
{
	return _base + static_cast<std::uint64_t>(LibArchive().archive_read_header_position(_reader.get()));
}

archive_entry* Archive::NextEntry()
{
	archive_entry* entry = nullptr;
	const int status = LibArchive().archive_read_next_header(_reader.get(), &entry);
	if (status == ARCHIVE_OK || status == ARCHIVE_WARN)
		return entry;
	if (status != ARCHIVE_EOF)
		Fail();
	// A tar ends with a block of zeros: without it there may have been more members.
	if (!_isZip &&
		LibArchive().archive_filter_bytes(_reader.get(), 0) == LibArchive().archive_read_header_position(_reader.get()))
		throw std::runtime_error("The archive is cut off.");
	return nullptr;
}

std::string Archive::GetPlace(archive_entry* entry) const
{
	const bool hasHoles = LibArchive().archive_entry_sparse_count(entry) > 0;
	if (_isZip || _isPacked || hasHoles)
		return std::to_string(GetPosition());
	const auto begin = _base + static_cast<std::uint64_t>(LibArchive().archive_filter_bytes(_reader.get(), 0));
	return std::to_string(begin) + '+' + std::to_string(LibArchive().archive_entry_size(entry));
}

std::optional<ArchiveMember> Archive::Next()
{
	if (_isListed)
		return std::nullopt;
	const Utf8Scope utf8;
	try
	{
		if (!_reader)
			Begin(0);
		while (archive_entry* const entry = NextEntry())
		{
			if (LibArchive().archive_entry_filetype(entry) != AE_IFREG ||
				LibArchive().archive_entry_hardlink(entry) != nullptr)
				continue;
			const char* const name = LibArchive().archive_entry_pathname(entry);
			if (name == nullptr)
				throw std::runtime_error("The name of a member is damaged.");
			if (*name != '\0')
				return ArchiveMember{name, GetPlace(entry)};
		}
		_isListed = true;
		return std::nullopt;
	}
	catch (const std::runtime_error& error)
	{
		_isListed = true;
		return ArchiveMember{{}, std::string("!") + error.what()};
	}
}

std::string Archive::ReadContent(archive_entry* entry)
{
	constexpr auto kMost = static_cast<std::int64_t>(kMostBytes);
	if (LibArchive().archive_entry_size(entry) > kMost)
		throw std::runtime_error("It is too large.");
	std::string bytes;
	while (true)
	{
		const void* block = nullptr;
		std::size_t size = 0;
		std::int64_t offset = 0;
		const int status = LibArchive().archive_read_data_block(_reader.get(), &block, &size, &offset);
		if (status != ARCHIVE_OK && status != ARCHIVE_EOF)
			Fail();
		// What the header says may be wrong.
		if (offset + static_cast<std::int64_t>(size) > kMost)
			throw std::runtime_error("It is too large.");
		// Sparse files have holes, maybe at their ends.
		bytes.resize(std::max(bytes.size(), static_cast<std::size_t>(offset)));
		if (status == ARCHIVE_EOF)
			return bytes;
		bytes.append(static_cast<const char*>(block), size);
	}
}

std::string Archive::ReadBytes(std::uint64_t begin, std::uint64_t size) const
{
	if (size > kMostBytes)
		throw std::runtime_error("It is too large.");
	const std::uint64_t end = _file.GetSize();
	std::string bytes(begin <= end && size <= end - begin ? size : 0, '\0');
	std::size_t done = 0;
	while (done < bytes.size())
	{
		const std::size_t count = _file.ReadSome(begin + done, bytes.data() + done, bytes.size() - done);
		if (count == 0)
			break;
		done += count;
	}
	if (done != size)
		throw std::runtime_error("The archive is cut off.");
	return bytes;
}

std::string Archive::Read(const std::string& place)
{
	std::uint64_t wanted = 0;
	const char* const last = place.data() + place.size();
	const auto [end, error] = std::from_chars(place.data(), last, wanted);
	if (error != std::errc())
		throw std::runtime_error("There is no such place.");
	std::uint64_t size = 0;
	if (end != last && std::from_chars(end + 1, last, size).ec == std::errc())
		return ReadBytes(wanted, size);
	const Utf8Scope utf8;
	try
	{
		// A short way is read on, since members mostly come in their order; a long one in what is not packed is gone at
		// once.
		const bool isPassed = !_reader || GetPosition() >= wanted;
		if (isPassed || (!_isPacked && wanted - GetPosition() > kReadAhead))
			Begin(_isPacked ? 0 : wanted);
		archive_entry* entry = nullptr;
		do
			entry = NextEntry();
		while (entry != nullptr && GetPosition() < wanted);
		if (entry == nullptr)
			throw std::runtime_error("There is no such place.");
		return ReadContent(entry);
	}
	catch (...)
	{
		// One that is packed would be unpacked anew up to the next member.
		if (!_isPacked)
			_reader.reset();
		throw;
	}
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
