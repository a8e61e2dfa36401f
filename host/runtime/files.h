/// What URLs designate, and streams on it: files on disk and files in memory.
#pragma once

#include "orvan/url.h"

#include <string>
#include <string_view>

namespace orvan::runtime
{

IoDetection DetectUrl(const Url& url) noexcept;
ErrorBlock* OpenStream(const Url& url, StreamHandle** result) noexcept;
ErrorBlock* StreamLength(StreamHandle* stream, std::int64_t* length) noexcept;
ErrorBlock* ReadStream(StreamHandle* stream, void* buffer, std::int64_t bytes) noexcept;
void CloseStream(StreamHandle* stream) noexcept;

/// The path on disk that a `file:` URL names, percent-decoded. Fails for other schemes, for other machines than this
/// one, and for texts that decode to nothing that can be a path.
Result<std::string> PathOf(const Url& url) noexcept;

/// The bytes published under `name`; null data when there are none.
std::string_view FindMemoryFile(std::string_view name) noexcept;

} // namespace orvan::runtime
