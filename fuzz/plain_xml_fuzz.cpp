// SPDX-License-Identifier: MIT
// The reader of plain XML against the XML library: what it takes, the library takes, and puts the same on the tape.

#include "require.h"
#include "support/tape_readings.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
	const std::string text(data, data + size);
	if (text.find('\0') != text.npos)
		return 0; // The guard keeps it from both.
	if (const auto plain = orvan::svg::ReadPlainly(text))
	{
		const auto expected = orvan::svg::ReadWithLibrary(text);
		orvan::fuzz::Require(expected.has_value(), "what is plain is right", text);
		orvan::fuzz::Require(expected == plain, "both readers read the same", text);
	}
	return 0;
}
