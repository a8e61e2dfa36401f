// SPDX-License-Identifier: MIT
#pragma once

/// How a fuzz target says that an input has shown a fault.

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace orvan::fuzz
{
/// Ends the process with a report when what must hold does not.
inline void Require(bool isTrue, const char* what, std::string_view about = "")
{
	if (isTrue)
		return;
	std::fprintf(stderr, "fault: %s: \"%.*s\"\n", what, static_cast<int>(about.size()), about.data());
	std::abort();
}
} // namespace orvan::fuzz
