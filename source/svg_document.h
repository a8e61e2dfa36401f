// SPDX-License-Identifier: MIT
/// The implementation of `SVGDocumentInterface` and of what documents offer for importing, editing and saving.
#pragma once

#include "editing/edit_history.h"
#include "editing/id_table.h"
#include "editing/observer_list.h"
#include "editing/tree_owner.h"
#include "svg_base.h"
#include "svg_edit.h"
#include "svg_import.h"
#include "svg_source.h"
#include "writer/attribute_cover.h"
#include "writer/document_source.h"

#include <span>

namespace orvan::svg
{

struct FileText;

/// A document owns the root of its tree and the table of ids, and keeps account of edits.
class Document : public ObjectBase
{
public:
	~Document();

	Result<void> Init(const Url& url) noexcept;
	void Reset() noexcept;
	const Url& GetUrl() const noexcept;
	const SVGElementRef& GetRootElement() const noexcept;
	Result<SVGElementRef> GetElementById(const String& id) const noexcept;
	Result<BaseArray<SVGElementRef>> GetElementsByIdWithPrefix(const String& prefix) const noexcept;

	Result<void> SetImportOptions(const SVGImportOptions& options) noexcept;
	const SVGImportOptions& GetImportOptions() const noexcept;
	Result<void> InitFromMemory(const void* bytes, std::int64_t count, const Url& baseUrl) noexcept;
	Result<SVGImportReport> GetImportReport() const noexcept;

	Result<std::int64_t> AddObserver(SVGChangeCallback callback, void* context) noexcept;
	void RemoveObserver(std::int64_t number) noexcept;
	Result<void> BeginTransaction() noexcept;
	Result<void> CommitTransaction() noexcept;
	Result<void> RollbackTransaction() noexcept;
	bool IsInTransaction() const noexcept;
	Result<bool> Undo() noexcept;
	Result<bool> Redo() noexcept;
	std::int64_t GetUndoCount() const noexcept;
	std::int64_t GetRedoCount() const noexcept;
	Result<void> SetUndoLimit(std::int64_t count) noexcept;
	Result<void> ClearHistory() noexcept;
	Result<void> RenameId(const SVGElementRef& element, const String& id) noexcept;
	Result<void> SetRootElement(const SVGElementRef& root) noexcept;

	Result<void> Save(const Url& url, const SVGSaveOptions& options) noexcept;
	Result<BaseArray<char>> SaveToMemory(const SVGSaveOptions& options) const noexcept;
	bool HasSource() const noexcept;
	Result<String> GetTag(const SVGElementRef& element) const noexcept;
	Result<BaseArray<String>> GetAttributeNames(const SVGElementRef& element) const noexcept;
	Result<String> GetRawAttribute(const SVGElementRef& element, const String& name) const noexcept;
	Result<String> GetAttributeText(const SVGElementRef& element, const String& name) const noexcept;
	Result<void> SetAttributeText(const SVGElementRef& element, const String& name, const String& text) noexcept;
	Result<void> RemoveAttributeText(const SVGElementRef& element, const String& name) noexcept;
	Result<String> FormatValue(SVGImportElementKind kind, SVGImportAttribute attribute,
							   const Data& value) const noexcept;
	Result<Data> ParseValue(SVGImportElementKind kind, SVGImportAttribute attribute, const String& text) const noexcept;
	Result<BaseArray<SVGElementRef>> Select(const String& selectors) const noexcept;
	Result<BaseArray<SVGRepair>> Repair() noexcept;
	Result<String> GetSourceText() const noexcept;
	Result<String> GetKindName(SVGImportElementKind kind) const noexcept;
	Result<SVGImportElementKind> FindKind(const String& tag) const noexcept;
	Result<BaseArray<SVGEnumerator>> GetEnumerators(SVGImportElementKind kind,
													SVGImportAttribute attribute) const noexcept;

	// For icons, which keep their tree when the file has become unusable.

	/// True when the file was refused, so that the tree is a placeholder.
	bool IsPlaceholder() const noexcept;
	/// True when the URL says where the content is from: after `Init`, but not after `InitFromMemory`.
	bool IsFromUrl() const noexcept;
	/// The file that the tree was read from, as it was then; empty where there was none.
	const FileStamp& GetStamp() const noexcept;
	/// What is the icon's business and not saved.
	struct NotSaved
	{
		std::span<const AttributeCover> covers = {};       ///< Its theme.
		std::span<const ElementBase* const> switched = {}; ///< Its layers, whose "display" it sets.
	};

	/// As the methods of the interface.
	Result<void> SaveWithout(const NotSaved& without, const Url& url, const SVGSaveOptions& options) noexcept;
	Result<BaseArray<char>> SaveToMemoryWithout(const NotSaved& without, const SVGSaveOptions& options) const noexcept;
	/// True when the file at the document's URL is what `Save` has last put there.
	bool IsSavedFile() const noexcept;
	/// Lets go of the tree and the ids, without taking the tree apart, and takes over those of `other`.
	void TakeContentOf(Document& other) noexcept;
	const SVGImportReport& GetReport() const noexcept
	{
		return _report;
	}

	/// Tells the observers what became of a load, of this document or of one that was to take its place.
	void TellOfLoad(SVGChangeKind kind, const SVGImportReport& report) noexcept;

	// For elements, which answer to the document.

	EditHistory& History() noexcept
	{
		return _history;
	}

	/// Tells the observers of a change, if there are any. The document, and the element, may be gone afterwards.
	void TellOf(HierarchyObject& element, SVGChangeKind kind, SVGImportAttribute attribute) noexcept;

	/// Makes several edits one: `make()` records its edits through the functions below, and observers hear of them once
	/// all are made; when it fails, they are taken back. The document may be gone afterwards.
	template <typename Make>
	Result<void> EditTogether(Make make) noexcept
	{
		ORVAN_TRY(_history.Begin(false));
		return EndTogether(make());
	}

	/// Makes an edit, and records it. Inside of `EditTogether`.
	template <typename T, typename... Args>
	Result<void> MakeEdit(Args&&... args) noexcept
	{
		Edit* const edit = ORVAN_TRY(Edit::Make<T>(std::forward<Args>(args)...));
		edit->Swap();
		_history.Append(edit);
		return {};
	}

	/// Gives an element other attributes. Inside of `EditTogether`.
	Result<void> SetAttributesTogether(ElementBase& element, DataDictionary attributes) noexcept;
	/// Moves an element, from wherever it is, below a parent of this document, or out of its tree when `parent` is
	/// null. Ids are not looked at. Inside of `EditTogether`.
	Result<void> MovePlace(HierarchyObject& child, HierarchyObject* parent, HierarchyObject* next) noexcept;
	/// Has a tree of no document, which an object belongs to, answer to this one.
	Result<void> Adopt(HierarchyObject& object) noexcept;
	/// The ids of the element and of everything below leave the table, or enter it where they are free. Inside of
	/// `EditTogether`.
	Result<void> TakeIdsOut(HierarchyObject& top) noexcept;
	Result<void> PutIdsIn(HierarchyObject& top) noexcept;

private:
	void BeginLoad() noexcept;
	Result<void> EndLoad(Result<void> loaded) noexcept;
	SourceOverride* FindOverride(const SVGElementRef& element, std::string_view name) noexcept;
	Result<FileText> Read(InputStream& stream) noexcept;
	Result<void> LoadCopy(const void* bytes, std::size_t count) noexcept;
	/// Loads the `FileText` that `read` returns each time that it is called.
	template <typename ReadText>
	Result<void> LoadText(ReadText read) noexcept;
	Result<void> BuildPlaceholder() noexcept;

	Result<void> TakeRoot(SVGElementRef root) noexcept;
	/// Ends what there is of edits to the tree, which is about to go.
	void ForgetTree() noexcept;
	void TrackRoot() noexcept;
	void Track() noexcept;
	void UntrackUnlessNeeded() noexcept;
	/// Has an element and all below it answer to this document.
	Result<void> Own(ElementBase& top) noexcept;

	Result<void> EndTogether(Result<void> made) noexcept;
	void TellOfEdits(const Edit* first, const Edit* last, bool isBackwards) noexcept;
	void TellOfEdit(const Edit& edit) noexcept;
	Result<void> RefuseInsideEdits() const noexcept;
	Result<void> MakeReferencesFollow(const String& from, const String& to) noexcept;

	IdTable _ids;
	SVGElementRef _rootElement;
	Url _url;
	SVGImportOptions _options;
	SVGImportReport _report;
	DocumentSourcePointer _source; ///< Null unless it is kept.
	FileStamp _stamp;
	std::uint64_t _savedHash = 0; ///< Of the bytes that were saved to the document's own file; 0 for none.
	bool _isFromUrl = false;
	bool _isPlaceholder = false;
	bool _isLoading = false;
	bool _isTracking = false; ///< The elements of the tree are told to report their changes.
	TreeOwner _owner;         ///< What the elements hold; made with the first root.
	ObserverList _observers;
	EditHistory _history;
};

} // namespace orvan::svg
