// SPDX-License-Identifier: MIT
#include "batch/archive_writer.h"

#include "batch/archive_library.h"

#include <cerrno>
#include <new>
#include <stdexcept>

namespace orvan::batch
{

void ArchiveWriter::Closer::operator()(archive* writer) const noexcept
{
	LibArchive().archive_write_free(writer);
}

std::ptrdiff_t ArchiveWriter::TakeBytes(archive* writer, void* self, const void* bytes, std::size_t count)
{
	try
	{
		static_cast<ArchiveWriter*>(self)->_bytes.append(static_cast<const char*>(bytes), count);
		return static_cast<std::ptrdiff_t>(count);
	}
	catch (const std::exception&)
	{
		LibArchive().archive_set_error(writer, ENOMEM, "There is no memory for an archive.");
		return -1;
	}
}

void ArchiveWriter::Check(std::ptrdiff_t status) const
{
	if (status >= ARCHIVE_OK)
		return;
	if (LibArchive().archive_errno(_writer.get()) == ENOMEM)
		throw std::bad_alloc();
	const char* message = LibArchive().archive_error_string(_writer.get());
	throw std::runtime_error(message != nullptr ? message : "An archive cannot be written.");
}

ArchiveWriter::ArchiveWriter(ArchiveFormat format) : _writer(LibArchive().archive_write_new())
{
	archive* const writer = _writer.get();
	if (writer == nullptr)
		throw std::bad_alloc();
	if (format == ArchiveFormat::tar)
		Check(LibArchive().archive_write_set_format_ustar(writer));
	else
	{
		Check(LibArchive().archive_write_set_format_zip(writer));
		Check(LibArchive().archive_write_zip_set_compression_store(writer));
		Check(LibArchive().archive_write_set_bytes_in_last_block(writer, 1));
	}
	Check(LibArchive().archive_write_open(writer, this, nullptr, &TakeBytes, nullptr));
}

void ArchiveWriter::Add(std::string_view name, std::initializer_list<std::string_view> content)
{
	const std::unique_ptr<archive_entry, decltype(&archive_entry_free)> entry(LibArchive().archive_entry_new(),
																			  LibArchive().archive_entry_free);
	if (entry == nullptr)
		throw std::bad_alloc();
	std::size_t size = 0;
	for (const std::string_view piece : content)
		size += piece.size();
	LibArchive().archive_entry_set_pathname(entry.get(), std::string(name).c_str());
	LibArchive().archive_entry_set_filetype(entry.get(), AE_IFREG);
	LibArchive().archive_entry_set_perm(entry.get(), 0644);
	LibArchive().archive_entry_set_size(entry.get(), static_cast<std::int64_t>(size));
	Check(LibArchive().archive_write_header(_writer.get(), entry.get()));
	for (const std::string_view piece : content)
		Check(LibArchive().archive_write_data(_writer.get(), piece.data(), piece.size()));
}

std::string ArchiveWriter::Take()
{
	Check(LibArchive().archive_write_close(_writer.get()));
	return std::move(_bytes);
}

} // namespace orvan::batch
