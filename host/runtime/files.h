// SPDX-License-Identifier: MIT
/// What URLs designate, and streams on it: files on disk and files in memory.
#pragma once

#include "orvan/url.h"

#include <optional>
#include <string_view>

namespace orvan::runtime
{

IoDetection DetectUrl(const Url& url) noexcept;
ErrorBlock* OpenStream(const Url& url, StreamHandle** result) noexcept;
ErrorBlock* StreamLength(StreamHandle* stream, std::int64_t* length) noexcept;
ErrorBlock* ReadStream(StreamHandle* stream, void* buffer, std::int64_t bytes) noexcept;
void CloseStream(StreamHandle* stream) noexcept;
void StampStream(const StreamHandle* stream, FileStamp* result) noexcept;
void StampFile(const Url& url, FileStamp* result) noexcept;

/// What a URL says, before anything is looked up.
struct Location
{
	enum class Scheme
	{
		file,
		memory,
		unknown,
	};

	Scheme scheme;
	std::string_view name; ///< Of a file in memory; as it stands in the URL.
	String path;           ///< Of a file on disk, percent-decoded.
};

/// Takes a URL apart, which must outlive the result. Fails when a `file:` URL names another machine or decodes to
/// nothing that can be a path. A query or fragment is no part of the path.
Result<Location> Locate(const Url& url) noexcept;

/// The bytes that are published in memory under `name`, if any.
std::optional<std::string_view> FindMemoryFile(std::string_view name) noexcept;

/// The system's text for an error number, for example "Permission denied".
class SystemErrorText
{
public:
	explicit SystemErrorText(int number) noexcept;

	operator std::string_view() const noexcept
	{
		return _text;
	}

private:
	char _buffer[128];
	const char* _text;
};

} // namespace orvan::runtime
