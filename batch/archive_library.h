// SPDX-License-Identifier: MIT
/// libarchive, loaded when somebody needs it (delay loading): a dozen libraries come along with it, and the start of a
/// program that reads no archives would take half as long again for them.
#pragma once

#include <archive.h>
#include <archive_entry.h>

// What is used of it.
#define ORVAN_ARCHIVE_FUNCTIONS(X)                                                                                     \
	X(archive_entry_filetype)                                                                                          \
	X(archive_entry_free)                                                                                              \
	X(archive_entry_hardlink)                                                                                          \
	X(archive_entry_new)                                                                                               \
	X(archive_entry_pathname)                                                                                          \
	X(archive_entry_set_filetype)                                                                                      \
	X(archive_entry_set_pathname)                                                                                      \
	X(archive_entry_set_perm)                                                                                          \
	X(archive_entry_set_size)                                                                                          \
	X(archive_entry_size)                                                                                              \
	X(archive_entry_sparse_count)                                                                                      \
	X(archive_errno)                                                                                                   \
	X(archive_error_string)                                                                                            \
	X(archive_filter_bytes)                                                                                            \
	X(archive_read_data_block)                                                                                         \
	X(archive_read_free)                                                                                               \
	X(archive_read_header_position)                                                                                    \
	X(archive_read_new)                                                                                                \
	X(archive_read_next_header)                                                                                        \
	X(archive_read_open1)                                                                                              \
	X(archive_read_set_callback_data)                                                                                  \
	X(archive_read_set_format)                                                                                         \
	X(archive_read_set_read_callback)                                                                                  \
	X(archive_read_set_skip_callback)                                                                                  \
	X(archive_read_support_filter_gzip)                                                                                \
	X(archive_read_support_filter_xz)                                                                                  \
	X(archive_read_support_filter_zstd)                                                                                \
	X(archive_read_support_format_tar)                                                                                 \
	X(archive_read_support_format_zip_streamable)                                                                      \
	X(archive_set_error)                                                                                               \
	X(archive_write_close)                                                                                             \
	X(archive_write_data)                                                                                              \
	X(archive_write_free)                                                                                              \
	X(archive_write_header)                                                                                            \
	X(archive_write_new)                                                                                               \
	X(archive_write_open)                                                                                              \
	X(archive_write_set_bytes_in_last_block)                                                                           \
	X(archive_write_set_format_ustar)                                                                                  \
	X(archive_write_set_format_zip)                                                                                    \
	X(archive_write_zip_set_compression_store)

namespace orvan::batch
{

/// The library's functions under their names.
struct ArchiveLibrary
{
#define ORVAN_DECLARE(name) decltype(&::name) name;
	ORVAN_ARCHIVE_FUNCTIONS(ORVAN_DECLARE)
#undef ORVAN_DECLARE
};

/// Loads the library at the first call. Throws `std::runtime_error` when it is not there. Thread-safe.
const ArchiveLibrary& LibArchive();

} // namespace orvan::batch
