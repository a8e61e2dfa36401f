// SPDX-License-Identifier: MIT
// Path data and "points".

#include "agreement.h"
#include "fast/number_tape.h"
#include "fast/paths.h"

using namespace orvan::grammar;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
	const fuzz::Input input(data, size);
	const std::string_view text = input.Text();
	fuzz::ExpectAgreement("ParsePathByNumbers", text,
						  [text](bool isFast, fuzz::Trace& trace)
						  { return isFast ? ParsePathByNumbers(text, trace) : library::ParsePath(text, trace); });
	if (NumberTape::IsAvailable())
		fuzz::ExpectAgreement("ParsePathFromTape", text,
							  [text](bool isFast, fuzz::Trace& trace)
							  { return isFast ? ParsePathFromTape(text, trace) : library::ParsePath(text, trace); });
	fuzz::ExpectAgreement("ParsePoints", text,
						  [text](bool isFast, fuzz::Trace& trace)
						  { return isFast ? ParsePoints(text, trace) : library::ParsePoints(text, trace); });
	return 0;
}
