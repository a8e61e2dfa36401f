// SPDX-License-Identifier: MIT
// Path data and "points".

#include "agreement.h"

using namespace orvan::grammar;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
	const fuzz::Input input(data, size);
	const std::string_view text = input.Text();
	fuzz::ExpectAgreement("ParsePath", text,
						  [text](bool isFast, fuzz::Trace& trace)
						  { return isFast ? ParsePath(text, trace) : library::ParsePath(text, trace); });
	fuzz::ExpectAgreement("ParsePoints", text,
						  [text](bool isFast, fuzz::Trace& trace)
						  { return isFast ? ParsePoints(text, trace) : library::ParsePoints(text, trace); });
	return 0;
}
