// SPDX-License-Identifier: MIT
#pragma once

#include "declarations.h"

#include <cstddef>
#include <cstdint>

namespace orvan::css
{
/// Reads a style attribute one declaration at a time, as drawing programs write them: several times as fast as through
/// tokens, and to the same end. It stops before whatever needs more than a look at its characters: comments, escapes,
/// "!", functions other than rgb(), rgba() and url(), a fault. From there the tokens go on.
///
///     SimpleDeclarations declarations(style);
///     while (declarations.Next())
///     {
///         if (const Property* property = Find(declarations.Name()))
///             Apply(*property, declarations.Value());
///         else if (!declarations.HasPlainName()) // "FILL" is found when the tokens have made "fill" of it.
///         {
///             declarations.PutBack();
///             break;
///         }
///     }
///     if (!declarations.IsAtEnd())
///         ReadDeclarations(style, {.arena = arena, .start = declarations.Offset()}, rest);
///
/// Nothing is allocated. The views are good as long as the text.
class SimpleDeclarations
{
public:
	/// Stands before the first declaration, or before the first one from a place on.
	explicit SimpleDeclarations(std::string_view text, std::size_t start = 0) noexcept
		: _begin(text.data()), _at(text.data() + start), _end(text.data() + text.size())
	{
	}

	/// Goes to the next declaration; false at the end and before one that is not simple.
	bool Next() noexcept;

	/// What stands before the colon of the declaration it stands on. Where this is no plain name, see below, the
	/// declaration may mean something else than it seems, or nothing.
	std::string_view Name() const noexcept
	{
		return _name;
	}

	/// Whether the name is one of small letters and hyphens, and that of no custom property.
	bool HasPlainName() const noexcept;

	/// The value, which is never important, and has neither escapes nor variables.
	std::string_view Value() const noexcept
	{
		return _value;
	}

	/// Goes back before the declaration it stands on, and leaves that to the tokens.
	void PutBack() noexcept
	{
		_at = _name.data();
	}

	/// After `Next` said false: whether the text is read to its end.
	bool IsAtEnd() const noexcept
	{
		return _at == _end;
	}

	/// The byte of the text that comes next.
	std::size_t Offset() const noexcept
	{
		return static_cast<std::size_t>(_at - _begin);
	}

private:
	const char* SkipPlain(const char* at) noexcept;
	bool LookAhead(const char* at) noexcept;

	const char* const _begin;
	const char* _at;
	const char* const _end;
	std::string_view _name;
	std::string_view _value;
	// Up to sixty-four characters have been looked at together …
	const char* _seen = _at;
	const char* _seenEnd = _at;
	std::uint64_t _marks =
		0; ///< … with a bit for each that may end what stands anywhere in a value, the first one lowest.
};
} // namespace orvan::css
