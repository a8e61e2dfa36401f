// SPDX-License-Identifier: MIT
/// The document's `SVGDocumentSourceInterface`. Attributes as texts are in `writer/attribute_texts.cpp`.
#include "importer/text/gzip.h"
#include "orvan/hash.h"
#include "svg_document.h"
#include "writer/element_selection.h"
#include "writer/guarded.h"
#include "writer/repair.h"
#include "writer/save.h"
#include "writer/text_edits.h"

#include <string>

namespace orvan::svg
{

// Saving -------------------------------------------------------------------------------------------------------------

Result<void> Document::Save(const Url& url, const SVGSaveOptions& options) noexcept
{
	return SaveWithout({}, url, options);
}

Result<BaseArray<char>> Document::SaveToMemory(const SVGSaveOptions& options) const noexcept
{
	return SaveToMemoryWithout({}, options);
}

Result<void> Document::SaveWithout(const NotSaved& without, const Url& url, const SVGSaveOptions& options) noexcept
{
	const Url target = url;
	if (_isPlaceholder)
		return IllegalStateError("The content of '@' was refused when it was loaded: there is nothing to save.",
								 _url.GetText());
	const SaveRequest request{_rootElement, _source.get(), _options, options, without.covers, without.switched};
	const BaseArray<char> bytes = ORVAN_TRY(MakeSavedBytes(request, PackingFor(target)));
	const FileStamp stamp = ORVAN_TRY(target.Replace(bytes.begin(), static_cast<std::int64_t>(bytes.GetCount())));
	// The document's own file, under whatever name.
	const FileStamp own = _isFromUrl ? _url.GetStamp() : FileStamp();
	if (stamp.inode != 0 && own.inode == stamp.inode && own.device == stamp.device)
	{
		_stamp = stamp;
		_savedHash = HashBytes({bytes.begin(), bytes.GetCount()});
	}
	return {};
}

Result<BaseArray<char>> Document::SaveToMemoryWithout(const NotSaved& without,
													  const SVGSaveOptions& options) const noexcept
{
	if (_isPlaceholder)
		return IllegalStateError("The content of '@' was refused when it was loaded: there is nothing to save.",
								 _url.GetText());
	const SaveRequest request{_rootElement, _source.get(), _options, options, without.covers, without.switched};
	return MakeSavedBytes(request, Packing::asSource);
}

bool Document::IsSavedFile() const noexcept
{
	if (_savedHash == 0)
		return false;
	// Clocks of file systems move in steps, so that the content has the last word.
	Result<InputStream> opened = _url.OpenInputStream();
	if (!opened.IsOk())
		return false;
	InputStream stream = std::move(opened).GetValue();
	const Result<std::int64_t> length = stream.GetStreamLength();
	BaseArray<char> bytes;
	if (!length.IsOk() || !bytes.ResizeUninitialized(static_cast<std::size_t>(length.GetValue())).IsOk() ||
		!stream.ReadBytes(bytes.begin(), length.GetValue()).IsOk())
		return false;
	return HashBytes({bytes.begin(), bytes.GetCount()}) == _savedHash;
}

bool Document::HasSource() const noexcept
{
	return _source != nullptr;
}

Result<String> Document::GetSourceText() const noexcept
{
	return _source ? String::Create(_source->text.ForPlaces()) : Result<String>(String());
}

// Finding and repairing ----------------------------------------------------------------------------------------------

Result<BaseArray<SVGElementRef>> Document::Select(const String& selectors) const noexcept
{
	return SelectElements(_rootElement, _source.get(), selectors.View());
}

Result<BaseArray<SVGRepair>> Document::Repair() noexcept
{
	if (!_source)
		return IllegalStateError("Only a document that keeps its source can be repaired.");
	return Guarded(
		[&]() -> Result<BaseArray<SVGRepair>>
		{
			const BaseArray<char> saved = ORVAN_TRY(SaveToMemory({}));
			const std::string_view bytes(saved.begin(), saved.GetCount());
			if (bytes != _source->FileBytes())
				return IllegalStateError("A document that was edited cannot be repaired.");
			const bool isPacked = IsGzip(bytes);
			std::string text(bytes);
			if (isPacked)
			{
				const BaseArray<char> unpacked = ORVAN_TRY(Gunzip(bytes, kMaxUnpackedSize));
				text.assign(unpacked.begin(), unpacked.GetCount());
			}
			BaseArray<SVGRepair> repairs = ORVAN_TRY(RepairText(text));
			if (repairs.IsEmpty())
				return repairs;
			BaseArray<char> repaired;
			if (isPacked)
				repaired = ORVAN_TRY(Gzip(text));
			else
				ORVAN_TRY(repaired.AppendAll(text.data(), text.size()));
			// The same file, with other bytes.
			const Url url = _url;
			const bool isFromUrl = _isFromUrl;
			const FileStamp stamp = _stamp;
			BeginLoad();
			_url = url;
			_isFromUrl = isFromUrl;
			_stamp = stamp;
			ORVAN_TRY(EndLoad(LoadCopy(repaired.begin(), repaired.GetCount())));
			return repairs;
		});
}

} // namespace orvan::svg
