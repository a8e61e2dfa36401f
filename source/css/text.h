// SPDX-License-Identifier: MIT
#pragma once

/// Texts as CSS writes them: escapes, quotes, comments, and comparisons that do not respect the case of ASCII letters.
/// Functions with an arena answer with a view of what they were given when nothing had to change, else with a copy in
/// the arena. Only the arena can throw (std::bad_alloc).

#include <memory_resource>
#include <string_view>

namespace orvan::css
{
/// Where copies live that views are handed out of: it gives back nothing until it goes.
using Arena = std::pmr::monotonic_buffer_resource;

/// True when both are the same but for the case of ASCII letters.
bool EqualsIgnoringCase(std::string_view left, std::string_view right);

/// True when the last byte is a backslash that no other one escapes.
bool EndsInEscape(std::string_view text);

/// With every escape replaced by its character and zero bytes by U+FFFD, as in a name or the content of a string: an
/// escaped line end vanishes.
std::string_view Unescape(std::string_view text, Arena& arena);

/// With ASCII capitals as small letters.
std::string_view FoldCase(std::string_view text, Arena& arena);

/// Without comments: a blank stands in the place of each. Comments inside strings are none.
std::string_view StripComments(std::string_view text, Arena& arena);

/// What a whole value says that is a string ("a" or 'a') or a reference (url(a), url("a"), url('a')): its content with
/// escapes resolved. False when the value is anything else, also when something follows.
///
///     std::string_view name;
///     if (ReadStringOrUrl("url( '#a' )", arena, name)) … // name is "#a"
bool ReadStringOrUrl(std::string_view value, Arena& arena, std::string_view& content);
} // namespace orvan::css
