// SPDX-License-Identifier: MIT
/// Errors: what went wrong, as a sentence, with the class of the error and the place in the code that made it.
///
///     return IllegalArgumentError("Layer '@' has no parent.", id);
///
/// Each "@" stands for the next argument; a wrong number of arguments does not compile. An error is passed up untouched
/// by everything between the place that made it and the one that handles it.
#pragma once

#include "orvan/format.h"
#include "orvan/string.h"

#include <atomic>
#include <utility>

namespace orvan
{

class Url;

/// The kinds of errors that a caller can tell apart. `GetErrorClassId` names each for the outside.
enum class ErrorClass : std::int32_t
{
	unknown,
	io,              ///< Reading, writing or finding a file; carries the URL.
	outOfMemory,     ///< An allocation failed.
	notFound,        ///< The thing asked for does not exist.
	illegalArgument, ///< A value that the operation cannot work with.
	nullReference,   ///< A reference that must not be empty is.
	illegalState,    ///< The object or the system is not in a state in which the operation is possible.
};

/// The published id of an error class, for example "net.orvan.error.io".
constexpr const char* GetErrorClassId(ErrorClass errorClass) noexcept
{
	switch (errorClass)
	{
	case ErrorClass::io:
		return "net.orvan.error.io";
	case ErrorClass::outOfMemory:
		return "net.orvan.error.outofmemory";
	case ErrorClass::notFound:
		return "net.orvan.error.notfound";
	case ErrorClass::illegalArgument:
		return "net.orvan.error.illegalargument";
	case ErrorClass::nullReference:
		return "net.orvan.error.nullreference";
	case ErrorClass::illegalState:
		return "net.orvan.error.illegalstate";
	case ErrorClass::unknown:
		break;
	}
	return "net.orvan.error.unknown";
}

/// The shared, immutable content of an error. Made by the host, which copies all texts.
struct ErrorBlock
{
	std::atomic<std::uint32_t> count; ///< 0 marks the immortal out-of-memory error.
	ErrorClass errorClass;
	int line;
	String message;
	String url;  ///< Text of the URL that the error is about; empty for most.
	String file; ///< Source file that made the error.
};

/// A shared reference to an error. Never empty except after being moved from.
class [[nodiscard]] Error
{
public:
	/// Takes over the reference that the host returned.
	explicit Error(ErrorBlock* adopted) noexcept : _block(adopted)
	{
	}

	Error(const Error& other) noexcept : _block(other._block)
	{
		if (_block != nullptr && _block->count.load(std::memory_order_relaxed) != 0)
			_block->count.fetch_add(1, std::memory_order_relaxed);
	}

	Error(Error&& other) noexcept : _block(std::exchange(other._block, nullptr))
	{
	}

	Error& operator=(Error other) noexcept
	{
		std::swap(_block, other._block);
		return *this;
	}

	~Error()
	{
		if (_block != nullptr)
			Host().releaseError(_block);
	}

	/// The kind of error, by which callers decide.
	ErrorClass GetClass() const noexcept
	{
		return _block->errorClass;
	}

	/// The sentence that says what went wrong, without the location.
	const String& GetMessage() const noexcept
	{
		return _block->message;
	}

	/// Text of the URL that an I/O error is about; empty for other errors.
	const String& GetUrlText() const noexcept
	{
		return _block->url;
	}

	/// The source file and line that made the error; empty and 0 for the out-of-memory error.
	const String& GetFile() const noexcept
	{
		return _block->file;
	}

	/// The line in `GetFile`, from 1; 0 for the out-of-memory error.
	int GetLine() const noexcept
	{
		return _block->line;
	}

	/// Hands the reference over to a function of the service table.
	ErrorBlock* Release() noexcept
	{
		return std::exchange(_block, nullptr);
	}

private:
	ErrorBlock* _block;
};

namespace detail
{
template <typename... Args>
Error MakeError(ErrorClass errorClass, const Url* url, const Message<Args...>& text, const Args&... args) noexcept
{
	const FormatArgument list[sizeof...(Args) + 1] = {FormatArgument(args)..., FormatArgument(std::string_view())};
	return Error(Host().makeError(errorClass, text.pattern, list, sizeof...(Args), url, text.file, text.line));
}
} // namespace detail

/// The error of a failed allocation. Making it allocates nothing.
inline Error OutOfMemoryError() noexcept
{
	return Error(Host().outOfMemory());
}

template <typename... Args>
Error IoError(const Url& url, Message<Args...> text, const Args&... args) noexcept
{
	return detail::MakeError<Args...>(ErrorClass::io, &url, text, args...);
}

template <typename... Args>
Error NotFoundError(Message<Args...> text, const Args&... args) noexcept
{
	return detail::MakeError<Args...>(ErrorClass::notFound, nullptr, text, args...);
}

template <typename... Args>
Error IllegalArgumentError(Message<Args...> text, const Args&... args) noexcept
{
	return detail::MakeError<Args...>(ErrorClass::illegalArgument, nullptr, text, args...);
}

template <typename... Args>
Error IllegalStateError(Message<Args...> text, const Args&... args) noexcept
{
	return detail::MakeError<Args...>(ErrorClass::illegalState, nullptr, text, args...);
}

template <typename... Args>
Error NullReferenceError(Message<Args...> text, const Args&... args) noexcept
{
	return detail::MakeError<Args...>(ErrorClass::nullReference, nullptr, text, args...);
}

template <typename... Args>
Error UnknownError(Message<Args...> text, const Args&... args) noexcept
{
	return detail::MakeError<Args...>(ErrorClass::unknown, nullptr, text, args...);
}

} // namespace orvan
