// SPDX-License-Identifier: MIT
#include "icon_theme.h"

#include "importer/complete/sheet_overlay.h"
#include "svg_document.h"

#include <algorithm>

namespace orvan::svg
{

namespace
{

ElementBase& ElementOf(const SVGElementRef& element) noexcept
{
	return static_cast<ElementBase&>(*element.GetObject());
}

/// Makes all entries of `to` that `which` has a key for what they are in `from`.
Result<void> CopyEntries(const DataDictionary& from, const DataDictionary& which, DataDictionary& to) noexcept
{
	for (const DataDictionary::Entry& entry : which)
	{
		if (from.Has(entry.key))
			ORVAN_TRY(to.SetData(entry.key, ORVAN_TRY(from.GetData(entry.key))));
		else
			ORVAN_TRY(to.Remove(entry.key));
	}
	return {};
}

} // namespace

Result<BaseArray<AttributeCover>> IconTheme::CoversOf(Document& document, const Content& content) noexcept
{
	BaseArray<AttributeCover> covers;
	const SVGElementRef& root = document.GetRootElement();
	if (!root)
		return covers;
	if (!content.styleSheet.IsEmpty())
	{
		BaseArray<complete::SheetOverlay> overlays =
			ORVAN_TRY(complete::MatchSheet(ElementOf(root), content.styleSheet.View()));
		ORVAN_TRY(covers.Reserve(overlays.GetCount() + 1));
		for (complete::SheetOverlay& overlay : overlays)
			IgnoreResult(covers.Append({std::move(overlay.element), std::move(overlay.values), {}}));
	}
	if (content.currentColor)
	{
		// The root comes first, when it is there.
		const bool isThere = !covers.IsEmpty() && covers[0].element == root;
		if (!isThere)
			ORVAN_TRY(covers.Append({root, {}, {}}));
		DataDictionary& values = isThere ? covers[0].values : covers[covers.GetCount() - 1].values;
		ORVAN_TRY(values.Set(static_cast<std::int32_t>(SVGImportAttribute::color),
							 SVGPaint{SVGPaintType::color, *content.currentColor, {}}));
	}
	return covers;
}

/// Takes the present covers away and puts others in their place, as one edit of the document. Its observers find the
/// new theme in place.
Result<void> IconTheme::Replace(Document& document, const Content& content, BaseArray<AttributeCover> covers) noexcept
{
	return document.EditTogether(
		[&]() noexcept -> Result<void>
		{
			for (const AttributeCover& cover : _covered)
			{
				DataDictionary bare = ElementOf(cover.element).GetAttributeDictionary();
				ORVAN_TRY(CopyEntries(cover.before, cover.values, bare));
				ORVAN_TRY(document.SetAttributesTogether(ElementOf(cover.element), std::move(bare)));
			}
			for (AttributeCover& cover : covers)
			{
				cover.before = ElementOf(cover.element).GetAttributeDictionary();
				DataDictionary covered = cover.before;
				ORVAN_TRY(CopyEntries(cover.values, cover.values, covered));
				ORVAN_TRY(document.SetAttributesTogether(ElementOf(cover.element), std::move(covered)));
			}
			_covered = std::move(covers);
			_content = content;
			return {};
		});
}

Result<void> IconTheme::Change(Document& document, const Content& content) noexcept
{
	return Replace(document, content, ORVAN_TRY(CoversOf(document, content)));
}

Result<void> IconTheme::Apply(Document& document) noexcept
{
	if (!_content.currentColor && _content.styleSheet.IsEmpty())
		return {};
	BaseArray<AttributeCover> covers = ORVAN_TRY(CoversOf(document, _content));
	BaseArray<AttributeCover> former = std::move(_covered);
	Result<void> replaced = Replace(document, Content(_content), std::move(covers));
	if (!replaced.IsOk())
		_covered = std::move(former);
	return replaced;
}

} // namespace orvan::svg
