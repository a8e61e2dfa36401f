// SPDX-License-Identifier: MIT
/// Message texts whose "@" are replaced by arguments, checked by the compiler.
#pragma once

#include "orvan/services.h"

#include <concepts>
#include <string_view>
#include <type_traits>

namespace orvan
{

/// One argument of a message. Refers to the text that it was made from; lives for one call.
struct FormatArgument
{
	enum class Kind : std::int32_t
	{
		text,
		integer,
		number,
	};

	/// A text, which must outlive the argument.
	explicit FormatArgument(std::string_view value) noexcept : kind(Kind::text), text(value)
	{
	}

	template <typename T>
	requires(std::is_convertible_v<const T&, std::string_view> &&
			 !std::same_as<T, std::string_view>) explicit FormatArgument(const T& value) noexcept
		: FormatArgument(static_cast<std::string_view>(value))
	{
	}

	/// Anything with a message of its own, such as an error.
	template <typename T>
	requires requires(const T& value)
	{
		static_cast<std::string_view>(value.GetMessage());
	}
	explicit FormatArgument(const T& value) noexcept : FormatArgument(static_cast<std::string_view>(value.GetMessage()))
	{
	}

	/// A whole number, written in decimal.
	explicit FormatArgument(std::integral auto value) noexcept
		: kind(Kind::integer), integer(static_cast<std::int64_t>(value))
	{
	}

	/// A number, written in the shortest form that reads back as the same value.
	explicit FormatArgument(std::floating_point auto value) noexcept : kind(Kind::number), number(value)
	{
	}

	Kind kind;
	std::string_view text;
	union
	{
		std::int64_t integer = 0;
		double number;
	};
};

namespace detail
{
/// A message text with the place in the code where it stands.
template <typename... Args>
struct CheckedMessage
{
	template <std::size_t size>
	consteval CheckedMessage(const char (&text)[size], const char* atFile = __builtin_FILE(),
							 int atLine = __builtin_LINE())
		: pattern(text), file(atFile), line(atLine)
	{
		std::size_t placeholders = 0;
		for (const char c : text)
			placeholders += c == '@';
		if (placeholders != sizeof...(Args))
			throw "the number of '@' differs from the number of arguments";
	}

	const char* pattern;
	const char* file;
	int line;
};
} // namespace detail

/// A literal text whose number of "@" must equal the number of `Args`; remembers the caller's file and line.
template <typename... Args>
using Message = detail::CheckedMessage<std::type_identity_t<Args>...>;

} // namespace orvan
