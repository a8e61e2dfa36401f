// SPDX-License-Identifier: MIT
/// The implementation of `VectorIconInterface`.
#pragma once

#include "icon_theme.h"
#include "orvan/file_monitor.h"
#include "svg_edit.h"
#include "svg_import.h"
#include "svg_source.h"
#include "vector_icon.h"
#include "vector_icon_theme.h"

#include <array>

namespace orvan::svg
{

class Document;
class ElementBase;
class VectorIconImpl;

/// The editing half of an icon: that of its document.
class IconEdits
{
public:
	explicit IconEdits(VectorIconImpl& icon) noexcept;

	// clang-format off
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
	// clang-format on

private:
	SVGDocumentEditRef _edit; ///< Keeps the document, whatever its observers do with the icon.
};

/// An icon owns a document and answers for it. The state is the icon's own: it outlives the document's content and is
/// applied to each new one; so are the layers that the client switched, as long as they are of the same file.
class VectorIconImpl : public ObjectBase
{
public:
	Result<void> Initialize() noexcept;

	// The document. Live reload, once on, follows whatever file there is.
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

	// The icon.
	Result<void> SetLayerEnabled(const String& id, bool enabled) noexcept;
	Result<void> ToggleLayer(const String& id) noexcept;
	SVGElementRef GetLayer(const String& id) const noexcept;
	void SetState(SVGIconState state) noexcept;
	SVGIconState GetState() const noexcept;
	void SetLiveReloadEnabled(bool enabled) noexcept;
	void GlobalSetLiveReloadEnabled(bool enabled) noexcept;
	bool GlobalGetLiveReloadEnabled() const noexcept;

	// Its theme, and states by name.
	Result<void> SetCurrentColor(const Color& color) noexcept;
	Result<void> ClearCurrentColor() noexcept;
	Result<void> SetStyleSheet(const String& styleSheet) noexcept;
	String GetStyleSheet() const noexcept;
	std::int64_t GetLoadCount() const noexcept;
	Result<BaseArray<String>> GetStateLayers() const noexcept;
	Result<void> SetStateLayer(const String& id) noexcept;
	String GetStateLayer() const noexcept;

private:
	/// What the client last did to a layer.
	struct LayerSwitch
	{
		String id;
		SVGDisplay display;
	};

	friend class IconEdits;

	Document& Content() const noexcept;
	Result<void> SwitchLayer(const SVGElementRef& layer, const String& id, SVGDisplay display) noexcept;
	Result<void> ShowState(const SVGDocumentRef& document) const noexcept;
	Result<void> ShowStateLayer(const SVGDocumentRef& document, const String& id) const noexcept;
	void ApplyState(const SVGDocumentRef& document) const noexcept;
	void ApplyClientSwitches(const SVGDocumentRef& document) const noexcept;
	void DropClientSwitches(bool (*isDropped)(const VectorIconImpl& icon, const String& id)) noexcept;
	Result<void> ChangeTheme(const IconTheme::Content& content) noexcept;
	void ApplyTheme(const SVGDocumentRef& document) noexcept;
	void Follow() noexcept;
	FileChangeOutcome Reload() noexcept;
	Result<BaseArray<const ElementBase*>> ListSwitched() const noexcept;

	SVGDocumentRef _document;
	SVGIconState _state = SVGIconState::uninitialized;
	bool _isStateSet = false;           ///< A client may set `uninitialized`, too, which hides all layers.
	std::array<String, 4> _stateLayers; ///< In the order of the states' numbers.
	String _stateLayer;                 ///< Set by name; empty when the state is a number.
	BaseArray<LayerSwitch> _clientSwitches;
	IconTheme _theme;
	std::int64_t _loadCount = 0;
	bool _isLiveReloadOn = false; ///< The icon's own: it outlives files, and the global switch.
	FileWatch _watch;             ///< Of the present file.
};

} // namespace orvan::svg
