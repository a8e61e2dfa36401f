// SPDX-License-Identifier: MIT
/// Writing archives by libarchive.
#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

struct archive;

namespace orvan::batch
{

enum class ArchiveFormat
{
	tar,
	zip, ///< Not compressed.
};

/// Puts files together in memory. The same files are the same bytes: nothing is said of times and owners.
class ArchiveWriter
{
public:
	/// Throws `std::bad_alloc`, and `std::runtime_error` when the library is not there.
	explicit ArchiveWriter(ArchiveFormat format);
	ArchiveWriter(const ArchiveWriter&) = delete;

	/// Adds a file, whose content is these pieces one after the other. Throws `std::bad_alloc`, and
	/// `std::runtime_error` for what the format has no room for.
	void Add(std::string_view name, std::initializer_list<std::string_view> content);

	/// The archive, complete; the last call. Throws as `Add`.
	std::string Take();

private:
	struct Closer
	{
		void operator()(archive* writer) const noexcept;
	};

	void Check(std::ptrdiff_t status) const;
	/// What the library gives bytes to.
	static std::ptrdiff_t TakeBytes(archive* writer, void* self, const void* bytes, std::size_t count);

	std::string _bytes;
	std::unique_ptr<archive, Closer> _writer;
};

} // namespace orvan::batch
