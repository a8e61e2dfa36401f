// SPDX-License-Identifier: MIT
/// What an icon passes on to the document that it shows: questions about its source, and edits.
#include "svg_document.h"
#include "vector_icon_impl.h"

namespace orvan::svg
{

bool VectorIconImpl::HasSource() const noexcept
{
	return Content().HasSource();
}

Result<String> VectorIconImpl::GetTag(const SVGElementRef& element) const noexcept
{
	return Content().GetTag(element);
}

Result<BaseArray<String>> VectorIconImpl::GetAttributeNames(const SVGElementRef& element) const noexcept
{
	return Content().GetAttributeNames(element);
}

Result<String> VectorIconImpl::GetRawAttribute(const SVGElementRef& element, const String& name) const noexcept
{
	return Content().GetRawAttribute(element, name);
}

Result<String> VectorIconImpl::GetAttributeText(const SVGElementRef& element, const String& name) const noexcept
{
	return Content().GetAttributeText(element, name);
}

Result<void> VectorIconImpl::SetAttributeText(const SVGElementRef& element, const String& name,
											  const String& text) noexcept
{
	return Content().SetAttributeText(element, name, text);
}

Result<void> VectorIconImpl::RemoveAttributeText(const SVGElementRef& element, const String& name) noexcept
{
	return Content().RemoveAttributeText(element, name);
}

Result<String> VectorIconImpl::FormatValue(SVGImportElementKind kind, SVGImportAttribute attribute,
										   const Data& value) const noexcept
{
	return Content().FormatValue(kind, attribute, value);
}

Result<Data> VectorIconImpl::ParseValue(SVGImportElementKind kind, SVGImportAttribute attribute,
										const String& text) const noexcept
{
	return Content().ParseValue(kind, attribute, text);
}

Result<BaseArray<SVGElementRef>> VectorIconImpl::Select(const String& selectors) const noexcept
{
	return Content().Select(selectors);
}

Result<BaseArray<SVGRepair>> VectorIconImpl::Repair() noexcept
{
	return Content().Repair();
}

Result<String> VectorIconImpl::GetSourceText() const noexcept
{
	return Content().GetSourceText();
}

Result<String> VectorIconImpl::GetKindName(SVGImportElementKind kind) const noexcept
{
	return Content().GetKindName(kind);
}

Result<SVGImportElementKind> VectorIconImpl::FindKind(const String& tag) const noexcept
{
	return Content().FindKind(tag);
}

Result<BaseArray<SVGEnumerator>> VectorIconImpl::GetEnumerators(SVGImportElementKind kind,
																SVGImportAttribute attribute) const noexcept
{
	return Content().GetEnumerators(kind, attribute);
}

IconEdits::IconEdits(VectorIconImpl& icon) noexcept : _edit(Cast<SVGDocumentEditInterface>(icon._document))
{
}

// clang-format off
Result<std::int64_t> IconEdits::AddObserver(SVGChangeCallback callback, void* context) noexcept { return _edit->AddObserver(callback, context); }
void IconEdits::RemoveObserver(std::int64_t number) noexcept { _edit->RemoveObserver(number); }
Result<void> IconEdits::BeginTransaction() noexcept { return _edit->BeginTransaction(); }
Result<void> IconEdits::CommitTransaction() noexcept { return _edit->CommitTransaction(); }
Result<void> IconEdits::RollbackTransaction() noexcept { return _edit->RollbackTransaction(); }
bool IconEdits::IsInTransaction() const noexcept { return _edit->IsInTransaction(); }
Result<bool> IconEdits::Undo() noexcept { return _edit->Undo(); }
Result<bool> IconEdits::Redo() noexcept { return _edit->Redo(); }
std::int64_t IconEdits::GetUndoCount() const noexcept { return _edit->GetUndoCount(); }
std::int64_t IconEdits::GetRedoCount() const noexcept { return _edit->GetRedoCount(); }
Result<void> IconEdits::SetUndoLimit(std::int64_t count) noexcept { return _edit->SetUndoLimit(count); }
Result<void> IconEdits::ClearHistory() noexcept { return _edit->ClearHistory(); }
Result<void> IconEdits::RenameId(const SVGElementRef& element, const String& id) noexcept { return _edit->RenameId(element, id); }
Result<void> IconEdits::SetRootElement(const SVGElementRef& root) noexcept { return _edit->SetRootElement(root); }
// clang-format on

} // namespace orvan::svg
