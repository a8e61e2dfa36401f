// SPDX-License-Identifier: MIT
#include "writer/save.h"

#include "import.h"
#include "importer/text/gzip.h"
#include "writer/guarded.h"
#include "writer/tree_comparison.h"
#include "writer/tree_writer.h"
#include "writer/xml_text.h"

namespace orvan::svg
{
namespace
{

Result<BaseArray<char>> CopyOf(std::string_view bytes) noexcept
{
	BaseArray<char> copy;
	ORVAN_TRY(copy.AppendAll(bytes.data(), bytes.size()));
	return copy;
}

/// Loads what was written as it will be loaded, and looks whether it is what was meant. The result tells whether it has
/// to be written once more.
Result<bool> Check(const SaveRequest& request, const WriteRequest& written, std::string_view bytes,
				   ForcedProperties& forced)
{
	SVGImportOptions options = request.importOptions;
	options.isComplete = request.source == nullptr || request.source->isComplete;
	options.isTolerant = request.source != nullptr && options.isTolerant;
	options.keepsSource = false;
	BaseArray<char> copy = ORVAN_TRY(CopyOf(bytes));
	ORVAN_TRY(copy.Append('\0'));
	SVGImportReport report;
	const ImportResult loaded = ORVAN_TRY(Import(std::move(copy), options, report));
	if (!loaded.root)
	{
		throw SaveError("The saved file could not be loaded. " +
						(report.findings.IsEmpty() ? std::string() : std::string(report.findings[0].message.View())));
	}
	return FindCascadeDifferences(written, *ElementOf(loaded.root), forced);
}

/// The bytes as the source has them packed or not, with edits.
Result<BaseArray<char>> Write(const SaveRequest& request, const ElementBase& root, bool& isPacked)
{
	const bool isEdit = request.source != nullptr && request.options.mode == SVGSaveMode::edit;
	const SavedAttributes attributes(request.covers, request.switched, request.source);
	ForcedProperties forced;
	bool asksSheets = isEdit;
	bool isAsItWas = false;
	// As the sheets want it, by itself, in its style attribute, and with "!important": more a property cannot do.
	constexpr int kMostAttempts = 5;
	for (int attempt = 0;; attempt++)
	{
		const WriteRequest writing{root,       request.source, request.options,
								   attributes, forced,         request.importOptions.styleSheet.View(),
								   asksSheets};
		TreeWriter writer(writing);
		std::string bytes;
		if (isEdit)
		{
			TextEdits edits = writer.MakeEdits();
			isAsItWas = edits.IsEmpty();
			if (isAsItWas && !writer.HasChanges())
				break;
			if (asksSheets && !writer.AreSheetsSure())
			{
				asksSheets = false;
				continue;
			}
			bytes = ORVAN_TRY(MakeFileBytes(*request.source, edits));
		}
		else
			bytes = writer.WriteWhole();
		isPacked = false;
		const bool isExact = request.options.precision == SVGSaveOptions::kExact;
		if (!writer.NeedsCheck() || !isExact || !ORVAN_TRY(Check(request, writing, bytes, forced)))
		{
			if (isAsItWas)
				break;
			return CopyOf(bytes);
		}
		asksSheets = false;
		if (attempt == kMostAttempts)
			throw SaveError("The style sheets of the document leave no way to write what its elements say.");
	}
	isPacked = IsGzip(request.source->FileBytes());
	return CopyOf(request.source->FileBytes());
}

Result<BaseArray<char>> WritePacked(const SaveRequest& request, const ElementBase& root, Packing packing)
{
	bool isPacked = false;
	BaseArray<char> bytes = ORVAN_TRY(Write(request, root, isPacked));
	const std::string_view written(bytes.begin(), bytes.GetCount());
	const bool wasPacked = request.source != nullptr && IsGzip(request.source->FileBytes());
	const bool packs = packing == Packing::packed || (packing == Packing::asSource && wasPacked);
	if (packs == isPacked)
		return bytes;
	return packs ? Gzip(written) : Gunzip(written, kMaxUnpackedSize);
}

} // namespace

Packing PackingFor(const Url& url) noexcept
{
	const std::string_view text = url.GetText().View();
	return text.ends_with(".svgz") ? Packing::packed : text.ends_with(".svg") ? Packing::unpacked : Packing::asSource;
}

Result<BaseArray<char>> MakeSavedBytes(const SaveRequest& request, Packing packing) noexcept
{
	const ElementBase* const root = request.root ? ElementOf(request.root) : nullptr;
	if (root == nullptr)
		return IllegalStateError("There is nothing to save.");
	if (ClassKindOf(*root) != SVGImportElementKind::svg)
		return IllegalStateError("Only a document whose root is an svg element can be saved.");
	const SVGSaveOptions& options = request.options;
	constexpr std::int32_t kMostDigits = 15;
	constexpr std::int32_t kMostBlanks = 64;
	if (options.precision < SVGSaveOptions::kExact || options.precision > kMostDigits || options.indentation < -1 ||
		options.indentation > kMostBlanks)
		return IllegalArgumentError("A precision of @ digits and an indentation of @ are not possible.",
									options.precision, options.indentation);
	return Guarded([&] { return WritePacked(request, *root, packing); });
}

} // namespace orvan::svg
