// SPDX-License-Identifier: MIT
/// Error objects and diagnostics.
#pragma once

#include "orvan/diagnostics.h"
#include "orvan/error.h"

namespace orvan::runtime
{

ErrorBlock* OutOfMemory() noexcept;
ErrorBlock* MakeError(ErrorClass errorClass, const char* pattern, const FormatArgument* arguments,
					  std::size_t argumentCount, const Url* url, const char* file, int line) noexcept;
void ReleaseError(ErrorBlock* error) noexcept;
void Diagnose(DiagnosticLevel level, const char* pattern, const FormatArgument* arguments, std::size_t argumentCount,
			  const DocumentPosition* position, const char* file, int line) noexcept;
void DebugStop(const char* text, const char* file, int line) noexcept;

} // namespace orvan::runtime
