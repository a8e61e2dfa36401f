// SPDX-License-Identifier: MIT
/// Locations of files, and input streams on them.
#pragma once

#include "orvan/array.h"
#include "orvan/file_stamp.h"
#include "orvan/result.h"
#include "orvan/string.h"

#include <cstdint>
#include <utility>

namespace orvan
{

class InputStream;

/// What a URL designates.
enum class IoDetection : std::int32_t
{
	unknown = 0,     ///< Something that is neither file nor directory, or a scheme that the host does not know.
	nonExistent = 1, ///< Nothing.
	directory = 2,
	file = 3,
	error = 4,       ///< It could not be found out, for example for want of permission.
	outOfMemory = 5, ///< It could not be found out for want of memory.
};

/// A location: `file:` URLs name files on disk, `memory:` URLs files that a host program has published in memory. The
/// path of a `file:` URL is percent-decoded and ends before a query ("?") or fragment ("#"); a name in memory is taken
/// as it stands.
/// Shared and immutable like its text; the empty URL designates nothing.
class Url
{
public:
	Url() noexcept = default;

	/// A URL from its text, for example "file:///usr/share/icons/a.svg" or "memory:icons/a.svg". Anything is accepted;
	/// what cannot be resolved shows when it is used.
	static Result<Url> Create(std::string_view text) noexcept
	{
		Url url;
		url._text = ORVAN_TRY(String::Create(text));
		return url;
	}

	/// The URL of a path on disk. A relative path is taken as it stands, relative to the process's working directory at
	/// the time of use. Bytes that may not stand in a URL are percent-encoded.
	static Result<Url> FromPath(std::string_view path) noexcept;

	const String& GetText() const noexcept
	{
		return _text;
	}

	/// True for the empty URL, which designates nothing.
	bool IsEmpty() const noexcept
	{
		return _text.IsEmpty();
	}

	/// Asks the host what the URL designates at this moment. Symbolic links are followed.
	IoDetection IoDetect() const noexcept
	{
		return Host().detectUrl(*this);
	}

	/// The file that the URL designates at this moment, for telling later whether it has changed: whoever lets somebody
	/// else load the file takes the stamp before. All zero when there is none on disk. Links are followed.
	FileStamp GetStamp() const noexcept
	{
		FileStamp stamp;
		Host().stampFile(*this, &stamp);
		return stamp;
	}

	/// Opens what the URL designates for reading. An I/O error with this URL when that is not possible.
	Result<InputStream> OpenInputStream() const noexcept;

	/// Puts a file with these bytes in the place of the one that the URL designates, or where there is none yet. The
	/// new file is written beside the old one and takes its name when it is complete and on the disk, so that nobody
	/// ever finds half of it, and the old one stays when anything fails. It has the permissions of the old file, and
	/// its owner where the system allows that; a symbolic link stays one, and what it leads to is replaced.
	///
	/// The result is the new file's stamp. Fails with an I/O error when the URL is no `file:` URL, when it designates
	/// something that is no file, and when the old file may not be written; and with the illegal-argument error for a
	/// negative count.
	Result<FileStamp> Replace(const void* bytes, std::int64_t count) const noexcept
	{
		FileStamp stamp;
		ORVAN_TRY(ResultOf(Host().replaceFile(*this, bytes, count, &stamp)));
		return stamp;
	}

	/// True when the texts are the same; two ways of writing one place differ.
	friend bool operator==(const Url& a, const Url& b) noexcept = default;

private:
	String _text;
};

/// A stream of bytes with a known length. Closes when it goes out of scope. Used by one thread at a time.
class InputStream
{
public:
	InputStream(InputStream&& other) noexcept : _handle(std::exchange(other._handle, nullptr))
	{
	}

	InputStream& operator=(InputStream&& other) noexcept
	{
		std::swap(_handle, other._handle);
		return *this;
	}

	~InputStream()
	{
		if (_handle != nullptr)
			Host().closeStream(_handle);
	}

	/// Number of bytes in the whole stream, as of its opening.
	Result<std::int64_t> GetStreamLength() const noexcept
	{
		std::int64_t length = 0;
		ORVAN_TRY(ResultOf(Host().streamLength(_handle, &length)));
		return length;
	}

	/// The open file as of its opening; all zero when it is none on disk. What was read differs from what is there
	/// later only if the stamps do.
	FileStamp GetStamp() const noexcept
	{
		FileStamp stamp;
		Host().stampStream(_handle, &stamp);
		return stamp;
	}

	/// Reads exactly `bytes` bytes. When the stream ends before, the I/O error says how many came.
	Result<void> ReadBytes(void* buffer, std::int64_t bytes) noexcept
	{
		return ResultOf(Host().readStream(_handle, buffer, bytes));
	}

private:
	friend class Url;

	explicit InputStream(StreamHandle* handle) noexcept : _handle(handle)
	{
	}

	StreamHandle* _handle = nullptr;
};

inline Result<InputStream> Url::OpenInputStream() const noexcept
{
	StreamHandle* handle = nullptr;
	ORVAN_TRY(ResultOf(Host().openStream(*this, &handle)));
	return InputStream(handle);
}

inline Result<Url> Url::FromPath(std::string_view path) noexcept
{
	constexpr std::string_view kPlain =
		"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/!$&'()*+,;=:@";
	constexpr char kHex[] = "0123456789ABCDEF";
	BaseArray<char> text;
	const auto put = [&](std::string_view part)
	{
		return text.AppendAll(part.data(), part.size());
	};
	ORVAN_TRY(put(path.starts_with('/') ? "file://" : "file:"));
	for (const char c : path)
	{
		const auto byte = static_cast<unsigned char>(c);
		const char escaped[] = {'%', kHex[byte >> 4], kHex[byte & 15]};
		ORVAN_TRY(kPlain.find(c) != kPlain.npos ? put({&c, 1}) : put({escaped, 3}));
	}
	return Create({text.begin(), text.GetCount()});
}

} // namespace orvan
