// SPDX-License-Identifier: MIT
// Whole files, packed and in any encoding, through the complete import, tolerant and not.

#include "document.h"
#include "require.h"
#include "svg_complete.h"
#include "svg_import.h"

#include "orvan/host/diagnostic_sink.h"

#include <cstdint>

using namespace orvan;
using fuzz::Require;

namespace
{
/// The elements of a tree with their ids, which attributes they have, and their characters, in document order.
std::string DescribeTree(const SVGElementRef& element)
{
	std::string description = element->GetClassId();
	description += '#' + std::string(element->GetId().View());
	for (const DataDictionary::Entry& entry : element->GetAttributeDictionary())
		description += ' ' + std::to_string(entry.key);
	if (const auto run = Cast<SVGTextRunInterface>(element))
		description += run->GetText().View();
	const SVGElementRef copy = CloneObject(element).GetValue();
	Require(copy->GetAttributeDictionary().GetCount() == element->GetAttributeDictionary().GetCount(),
			"copies have what their originals have", description);
	description += '(';
	for (auto child = Cast<HierarchyObjectInterface>(element)->GetFirstChild(); child; child = child->GetNextSibling())
		description += DescribeTree(Cast<SVGElementInterface>(child));
	return description + ')';
}

void CheckReport(const SVGImportReport& report)
{
	const auto kept = static_cast<std::int64_t>(report.findings.GetCount());
	// What a file is refused for is kept beyond the bound.
	Require(kept <= report.findingCount && kept <= SVGImportReport::kMaxFindings + 1, "findings are bounded");
	Require((report.outcome == SVGImportOutcome::loaded) == (report.findingCount == 0) ||
				report.outcome == SVGImportOutcome::noSvgElement,
			"the outcome goes with the findings");
	std::int64_t critical = 0;
	for (const SVGImportFinding& finding : report.findings)
	{
		critical += finding.level == SVGFindingLevel::critical ? 1 : 0;
		Require(finding.line >= 0 && (finding.line == 0) == (finding.column == 0), "a place is whole", finding.message);
		Require(!finding.message.IsEmpty(), "a finding says something");
	}
	Require(critical == (report.outcome == SVGImportOutcome::refused ? 1 : 0), "what is refused is refused once");
}

std::string LoadAndDescribe(std::string_view bytes, bool isTolerant, SVGImportReport& report)
{
	const auto document = CreateObject<SVGDocumentInterface>(kSVGDocumentClass).GetValue();
	const auto import = Cast<SVGDocumentImportInterface>(document);
	SVGImportOptions options;
	options.isComplete = true;
	options.isTolerant = isTolerant;
	Require(import->SetImportOptions(options).IsOk(), "options are taken");
	const ThreadDiagnosticSink ignored([](const Diagnostic&, void*) {}, nullptr);
	Require(import->InitFromMemory(bytes.data(), static_cast<std::int64_t>(bytes.size()), Url()).IsOk(),
			"bytes are loaded");
	report = import->GetImportReport().GetValue();
	CheckReport(report);
	return DescribeTree(document->GetRootElement());
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
	const std::string_view bytes(reinterpret_cast<const char*>(data), size);
	fuzz::LoadDocument("<svg/>"); // Loads the module.
	SVGImportReport strict;
	SVGImportReport tolerant;
	const std::string strictTree = LoadAndDescribe(bytes, false, strict);
	const std::string tolerantTree = LoadAndDescribe(bytes, true, tolerant);
	// Tolerance changes nothing about what is not refused, and nothing about what is no XML.
	if (strict.outcome != SVGImportOutcome::refused)
		Require(strictTree == tolerantTree && strict.findingCount == tolerant.findingCount, "both imports agree",
				bytes);
	else if (tolerant.outcome == SVGImportOutcome::refused)
		Require(strictTree == tolerantTree, "the placeholder is always the same");
	return 0;
}
