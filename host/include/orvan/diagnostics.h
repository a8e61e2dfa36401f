// SPDX-License-Identifier: MIT
/// Messages for the host's console.
///
///     WarningOutput("Layer '@' is missing.", id);
#pragma once

#include "orvan/format.h"

#include <cstdint>
#include <string_view>

namespace orvan
{

enum class DiagnosticLevel : std::int32_t
{
	warning,
	critical,
};

/// The place in a document that a message is about. Travels beside the message, whose wording it does not change.
struct DocumentPosition
{
	std::int64_t line = 0;   ///< From 1; 0 when unknown.
	std::int64_t column = 0; ///< In bytes, from 1; 0 when unknown.
	std::string_view elementName;
	std::string_view elementId;
};

/// Writes a line "WARNING: file(line): text" to the host's diagnostics.
template <typename... Args>
void WarningOutput(Message<Args...> text, const Args&... args) noexcept
{
	const FormatArgument list[sizeof...(Args) + 1] = {FormatArgument(args)..., FormatArgument(std::string_view())};
	Host().diagnose(DiagnosticLevel::warning, text.pattern, list, sizeof...(Args), nullptr, text.file, text.line);
}

/// Writes a line "CRITICAL: file(line): text". `position`, when given, tells a sink that wants to know which place of
/// the document the message is about.
template <typename... Args>
void CriticalOutput(const DocumentPosition* position, Message<Args...> text, const Args&... args) noexcept
{
	const FormatArgument list[sizeof...(Args) + 1] = {FormatArgument(args)..., FormatArgument(std::string_view())};
	Host().diagnose(DiagnosticLevel::critical, text.pattern, list, sizeof...(Args), position, text.file, text.line);
}

} // namespace orvan
