// SPDX-License-Identifier: MIT
// Numbers, lengths, lists of them, view boxes and transforms.

#include "agreement.h"

using namespace orvan::grammar;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
	const fuzz::Input input(data, size);
	const std::string_view text = input.Text();
	const auto number = [](fuzz::Trace& trace, double value)
	{
		trace.Add(value);
	};
	const auto length = [](fuzz::Trace& trace, const Length& value)
	{
		trace.Append(value);
	};
	for (Source source : {Source::attribute, Source::style})
	{
		fuzz::ExpectAgreement<double>("ParseNumber", text, ParseNumber, library::ParseNumber, number, source);
		fuzz::ExpectAgreement<Length>("ParseLength", text, ParseLength, library::ParseLength, length, source);
		fuzz::ExpectAgreement<Length>("ParseFontSize", text, ParseFontSize, library::ParseFontSize, length, source);
		fuzz::ExpectAgreement("ParseDashArray", text,
							  [&](bool isFast, fuzz::Trace& trace) {
								  return isFast ? ParseDashArray(text, source, trace)
												: library::ParseDashArray(text, source, trace);
							  });
	}
	fuzz::ExpectAgreement<double>("ParseOffset", text, ParseOffset, library::ParseOffset, number);
	fuzz::ExpectAgreement<ViewBox>("ParseViewBox", text, ParseViewBox, library::ParseViewBox,
								   [](fuzz::Trace& trace, const ViewBox& box)
								   {
									   for (double value : {box.x, box.y, box.width, box.height})
										   trace.Add(value);
								   });
	fuzz::ExpectAgreement<Matrix>("ParseTransform", text, ParseTransform, library::ParseTransform,
								  [](fuzz::Trace& trace, const Matrix& m)
								  {
									  for (double value : {m.a, m.b, m.c, m.d, m.e, m.f})
										  trace.Add(value);
								  });
	return 0;
}
