// SPDX-License-Identifier: MIT
/// What a client asks of an import, and what became of it.
///
/// Documents and icons implement `SVGDocumentImportInterface` beside `SVGDocumentInterface`:
///
///     const auto import = Cast<SVGDocumentImportInterface>(document);
///     SVGImportOptions options;
///     options.isTolerant = true; // A value that is refused costs that value and nothing else.
///     options.isComplete = true; // Everything that a browser would read.
///     ORVAN_TRY(import->SetImportOptions(options));
///     ORVAN_TRY(document->Init(ORVAN_TRY(Url::FromPath("drawing.svg"))));
///     const SVGImportReport report = ORVAN_TRY(import->GetImportReport());
///     for (const SVGImportFinding& finding : report.findings)
///         std::printf("%lld:%lld %s\n", (long long)finding.line, (long long)finding.column,
///         finding.message.CString());
#pragma once

#include "orvan/array.h"
#include "orvan/data_type.h"
#include "orvan/object.h"
#include "orvan/string.h"
#include "orvan/url.h"

#include <cstdint>

namespace orvan
{

/// How a file is read. The defaults are the plain import.
struct SVGImportOptions
{
	/// A value that is refused costs that value and nothing else: the attribute or declaration counts as absent, path
	/// data and points keep what stands before the fault, and each is a finding. Otherwise the first one ends the
	/// import. Text that is no XML, or breaks a bound, is refused either way.
	bool isTolerant = false;
	/// Reads all that a browser would: style sheets, entities, colours and lengths of CSS, further elements and
	/// attributes. Elements then come in kinds, and attributes under numbers, that the plain import never uses.
	bool isComplete = false;
	/// The document remembers the text that it was loaded from.
	bool keepsSource = false;
	/// A style sheet of the client's own, in UTF-8, which cascades after those of the file. Used by the complete import
	/// only. Copies share the text.
	String styleSheet;
};

/// What became of a load.
enum class SVGImportOutcome : std::int32_t
{
	empty = 0,              ///< Nothing was loaded since the object was made or reset, or the file could not be read.
	loaded = 1,             ///< Loaded, and nothing to say about it.
	loadedWithFindings = 2, ///< Loaded; see the findings.
	refused = 3,            ///< The content was refused; the document holds a placeholder.
	noSvgElement = 4,       ///< There is no svg element in the text; the document holds a placeholder.
};

enum class SVGFindingLevel : std::int32_t
{
	warning = 0,  ///< Something was left out.
	critical = 1, ///< The file was refused for it.
};

/// One thing that an import has to say about a file.
struct SVGImportFinding
{
	SVGFindingLevel level = SVGFindingLevel::warning;
	/// Place in the text, both from 1; 0 where it is not known. A column counts bytes of the text in UTF-8.
	std::int64_t line = 0;
	std::int64_t column = 0;
	String elementTag; ///< The tag as written; empty where the finding is about no element.
	String elementId;
	String attribute; ///< The name of the attribute or property; empty where the finding is about none.
	String message;   ///< An English sentence.
};

/// What became of the last load. Copying may fail for want of memory, so it is spelled `CopyFrom`.
struct SVGImportReport
{
	/// Findings beyond these many are counted only.
	static constexpr std::int64_t kMaxFindings = 100;

	SVGImportOutcome outcome = SVGImportOutcome::empty;
	BaseArray<SVGImportFinding> findings; ///< The first ones, in the order in which they were made.
	std::int64_t findingCount = 0;        ///< How many there were in all.

	/// Takes over the other's outcome and copies its findings.
	Result<void> CopyFrom(const SVGImportReport& other) noexcept
	{
		outcome = other.outcome;
		findingCount = other.findingCount;
		return findings.CopyFrom(other.findings);
	}
};

/// The way to ask for an import, and to learn what became of it. Documents and icons implement it.
///
/// `InitFromMemory` must not overlap any other use of the object; the getters may run side by side.
class SVGDocumentImportInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgdocumentimport";
	static constexpr const char* kName = "orvan.SVGDocumentImportInterface";
	static constexpr int kSlotCount = 4;

	/// Sets how files are read from the next load on, an icon's reloads included. The options survive `Reset`. Never
	/// fails.
	ORVAN_METHOD(1, Result<void>, SetImportOptions, (const SVGImportOptions& options), options)
	/// The options as they were last set; initially those of the plain import.
	ORVAN_METHOD(2, const SVGImportOptions&, GetImportOptions, ())
	/// Resets the document and loads `count` bytes at `bytes`, which are copied. `baseUrl` is what relative references
	/// are resolved against and what `GetUrl` returns afterwards; it may be empty. Fails like
	/// `SVGDocumentInterface::Init`, and with the illegal-argument error for a negative count or for null bytes with a
	/// positive one.
	ORVAN_METHOD(3, Result<void>, InitFromMemory, (const void* bytes, std::int64_t count, const Url& baseUrl), bytes,
				 count, baseUrl)
	/// What became of the last load, reloads included; `empty` before the first one and after `Reset`. Fails for want
	/// of memory only.
	ORVAN_METHOD(4, Result<SVGImportReport>, GetImportReport, ())
};
using SVGDocumentImportRef = Ref<SVGDocumentImportInterface>;

ORVAN_DATA_TYPE(SVGDocumentImportRef, "orvan::SVGDocumentImportRef", "orvan::SVGDocumentImportRef");

} // namespace orvan
