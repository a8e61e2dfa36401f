// SPDX-License-Identifier: MIT
// Colours, paints, references and style declarations.

#include "agreement.h"

using namespace orvan::grammar;

namespace
{
void CompareDeclarations(std::string_view text)
{
	fuzz::ExpectAgreement("StyleSplitter", text,
						  [text](bool isFast, fuzz::Trace& trace)
						  {
							  StyleSplitter splitter(text);
							  std::string_view rest = text;
							  for (std::string_view name, value;
								   isFast ? splitter.Next(name, value) : library::NextDeclaration(rest, name, value);)
							  {
								  trace.Add(name);
								  trace.Add(value);
							  }
							  return Parsed::value;
						  });
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
	const fuzz::Input input(data, size);
	const std::string_view text = input.Text();
	fuzz::ExpectAgreement<PackedColor>("ParseColor", text, ParseColor, library::ParseColor,
									   [](fuzz::Trace& trace, PackedColor color) { trace.Add(std::uint64_t{color}); });
	fuzz::ExpectAgreement<Paint>("ParsePaint", text, ParsePaint, library::ParsePaint,
								 [](fuzz::Trace& trace, const Paint& paint)
								 {
									 trace.Add(static_cast<std::uint64_t>(paint.kind));
									 trace.Add(static_cast<std::uint64_t>(paint.fallback));
									 trace.Add(std::uint64_t{paint.color});
									 trace.Add(paint.reference);
								 });
	fuzz::ExpectAgreement<Reference>("ParseIri", text, ParseIri, library::ParseIri,
									 [](fuzz::Trace& trace, const Reference& reference) { trace.Add(reference); });
	fuzz::ExpectAgreement<std::string_view>("ParseMaskReference", text, ParseMaskReference, library::ParseMaskReference,
											[](fuzz::Trace& trace, std::string_view id) { trace.Add(id); });
	CompareDeclarations(text);
	return 0;
}
