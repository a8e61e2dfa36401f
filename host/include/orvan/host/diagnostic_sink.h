// SPDX-License-Identifier: MIT
/// For host programs: where diagnostics go.
#pragma once

#include "orvan/diagnostics.h"

#include <string>
#include <string_view>

namespace orvan
{

/// One message. The views are good for the duration of the call.
struct Diagnostic
{
	DiagnosticLevel level;
	std::string_view text;
	std::string_view file; ///< Source file of the code that wrote it, without folders.
	int line;
	const DocumentPosition* position; ///< The place in a document that it is about; null when there is none.
};

/// Receives messages. May be called from any thread that writes one, also from several at once.
using DiagnosticSink = void (*)(const Diagnostic& diagnostic, void* context);

/// Replaces the process's sink; null restores the console, which writes `FormatDiagnostic` to standard error.
void SetDiagnosticSink(DiagnosticSink sink, void* context) noexcept;

/// The line that the console shows: "WARNING: file(line): text" or "CRITICAL: file(line): text".
std::string FormatDiagnostic(const Diagnostic& diagnostic);

/// Redirects the messages of the current thread for as long as it lives. They nest.
class ThreadDiagnosticSink
{
public:
	ThreadDiagnosticSink(DiagnosticSink sink, void* context) noexcept;
	ThreadDiagnosticSink(const ThreadDiagnosticSink&) = delete;
	~ThreadDiagnosticSink();

private:
	DiagnosticSink _previousSink;
	void* _previousContext;
};

} // namespace orvan
