// SPDX-License-Identifier: MIT
/// What tests of the complete import share: documents loaded from texts, and what is told of them.
#pragma once

#include "support/svg_module.h"
#include "svg_complete.h"
#include "svg_import.h"

#include <zlib.h>

namespace orvan
{

using Outcome = SVGImportOutcome;

/// Sheets, entities, texts and elements of all sorts.
inline constexpr std::string_view kRich = R"(<?xml version='1.0'?>
<!DOCTYPE svg [<!ENTITY red 'fill:#f00'><!ENTITY nick 'a&lt;b'>]>
<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink'>
<style>.hot > rect:first-child { &red;; stroke: currentColor !important } @media print { rect { fill: blue } }</style>
<title id='title'>A &nick;</title>
<pattern id='pattern' patternTransform='scale(2)'><image id='image' href='p.png'/></pattern>
<marker id='marker' orient='auto'/>
<filter id='filter'><feBlend id='blend' in2='SourceAlpha'/><feMerge><feMergeNode/></feMerge></filter>
<linearGradient id='linear' xlink:href='#other'/>
<g class='hot'><rect id='rect' style='filter: blur(2px) url(#filter)'/></g>
<switch id='switch'><a id='anchor' href='x'><foreignObject id='foreign'/></a></switch>
<text id='text' x='1 2'>one <tspan id='tspan' dx='3'>two</tspan><textPath id='textpath' href='#p'> three</textPath></text>
</svg>)";

class CompleteImport : public SvgModuleTest
{
protected:
	struct Loaded
	{
		SVGDocumentRef document = MakeDocument();
		SVGDocumentImportRef import = Cast<SVGDocumentImportInterface>(document);
		SVGImportReport report;

		SVGElementRef operator[](std::string_view id) const
		{
			return Find(document, id);
		}
	};

	static SVGImportOptions Options(bool isTolerant = true, bool isComplete = true)
	{
		SVGImportOptions options;
		options.isTolerant = isTolerant;
		options.isComplete = isComplete;
		return options;
	}

	static Result<void> InitFrom(const SVGDocumentImportRef& import, std::string_view bytes, const Url& base = Url())
	{
		return import->InitFromMemory(bytes.data(), static_cast<std::int64_t>(bytes.size()), base);
	}

	static Loaded LoadWith(std::string_view bytes, const SVGImportOptions& options = Options())
	{
		const CollectedFindings ignored;
		Loaded loaded;
		Must(loaded.import->SetImportOptions(options));
		Must(InitFrom(loaded.import, bytes));
		loaded.report = Must(loaded.import->GetImportReport());
		return loaded;
	}

	/// "line:column tag#id attribute", one for each finding.
	static std::string Places(const SVGImportReport& report)
	{
		std::string places;
		for (const SVGImportFinding& finding : report.findings)
			places += std::to_string(finding.line) + ':' + std::to_string(finding.column) + ' ' +
					  finding.elementTag.CString() + '#' + finding.elementId.CString() + ' ' +
					  finding.attribute.CString() + '\n';
		return places;
	}

	/// The message for which a text is refused, tolerant or not.
	static std::string Refusal(std::string_view bytes)
	{
		const SVGImportReport report = LoadWith(bytes).report;
		EXPECT_EQ(Outcome::refused, report.outcome) << bytes.substr(0, 200);
		return report.findings.IsEmpty() ? "nothing" : report.findings[0].message.CString();
	}

	static std::string Repeat(std::string_view text, int count)
	{
		std::string repeated;
		for (int i = 0; i < count; i++)
			repeated += text;
		return repeated;
	}

	static std::string Gzip(const std::string& text)
	{
		z_stream stream{};
		EXPECT_EQ(Z_OK, deflateInit2(&stream, 9, Z_DEFLATED, 16 + MAX_WBITS, 9, Z_DEFAULT_STRATEGY));
		std::string packed(deflateBound(&stream, text.size()), '\0');
		std::string input = text;
		stream.next_in = reinterpret_cast<Bytef*>(input.data());
		stream.avail_in = static_cast<uInt>(input.size());
		stream.next_out = reinterpret_cast<Bytef*>(packed.data());
		stream.avail_out = static_cast<uInt>(packed.size());
		EXPECT_EQ(Z_STREAM_END, deflate(&stream, Z_FINISH));
		packed.resize(stream.total_out);
		deflateEnd(&stream);
		return packed;
	}
};

} // namespace orvan
