// SPDX-License-Identifier: MIT
/// Vector icons.
#include "vector_icon_impl.h"

#include "elements/element_base.h"
#include "orvan/diagnostics.h"
#include "registration.h"
#include "svg_document.h"
#include "writer/element_text.h"

#include <algorithm>
#include <atomic>

namespace orvan::svg
{
namespace
{

constexpr const char* kStateLayers[] = {
	"State:EnabledActivatedHighlight",
	"State:EnabledActivatedNoHighlight",
	"State:EnabledDeactivatedHighlight",
	"State:EnabledDeactivatedNoHighlight",
};

/// How the ids of all state layers begin.
constexpr std::string_view kStatePrefix = "State:";

constinit std::atomic<bool> g_isLiveReloadAllowed = true;

} // namespace

Result<void> VectorIconImpl::Initialize() noexcept
{
	for (std::size_t i = 0; i < _stateLayers.size(); i++)
		_stateLayers[i] = ORVAN_TRY(String::Create(kStateLayers[i]));
	_document = ORVAN_TRY(CreateObject<SVGDocumentInterface>(kSVGDocumentClass));
	return {};
}

Result<void> VectorIconImpl::Init(const Url& url) noexcept
{
	const auto self = SVGDocumentRef::From(this); // Observers may let go of the icon.
	_watch.Stop();
	_clientSwitches.Clear();
	_theme.ForgetTree();
	_loadCount++;
	Result<void> loaded = _document->Init(url);
	ApplyTheme(_document);
	if (loaded.IsOk())
		ApplyState(_document);
	Follow();
	return loaded;
}

void VectorIconImpl::Reset() noexcept
{
	_watch.Stop();
	_clientSwitches.Reset();
	_theme.ForgetTree();
	_document->Reset();
}

const Url& VectorIconImpl::GetUrl() const noexcept
{
	return _document->GetUrl();
}

const SVGElementRef& VectorIconImpl::GetRootElement() const noexcept
{
	return _document->GetRootElement();
}

Result<SVGElementRef> VectorIconImpl::GetElementById(const String& id) const noexcept
{
	return _document->GetElementById(id);
}

Result<BaseArray<SVGElementRef>> VectorIconImpl::GetElementsByIdWithPrefix(const String& prefix) const noexcept
{
	return _document->GetElementsByIdWithPrefix(prefix);
}

Result<void> VectorIconImpl::SetImportOptions(const SVGImportOptions& options) noexcept
{
	return Content().SetImportOptions(options);
}

const SVGImportOptions& VectorIconImpl::GetImportOptions() const noexcept
{
	return Content().GetImportOptions();
}

/// An icon from memory has no file to follow.
Result<void> VectorIconImpl::InitFromMemory(const void* bytes, std::int64_t count, const Url& baseUrl) noexcept
{
	const auto self = SVGDocumentRef::From(this);
	_watch.Stop();
	_clientSwitches.Clear();
	_theme.ForgetTree();
	_loadCount++;
	ORVAN_TRY(Content().InitFromMemory(bytes, count, baseUrl));
	ApplyTheme(_document);
	ApplyState(_document);
	return {};
}

Result<SVGImportReport> VectorIconImpl::GetImportReport() const noexcept
{
	return Content().GetImportReport();
}

/// The layers that the icon shows and hides. What it does to them is not a change of the file.
Result<BaseArray<const ElementBase*>> VectorIconImpl::ListSwitched() const noexcept
{
	BaseArray<const ElementBase*> switched;
	const auto add = [&](const String& id) -> Result<void>
	{
		const ElementBase* const layer = ElementOf(GetLayer(id));
		return layer != nullptr ? switched.Append(layer) : Result<void>();
	};
	if (_isStateSet || !_stateLayer.IsEmpty())
	{
		const String prefix = ORVAN_TRY(String::Create("State:"));
		for (const SVGElementRef& layer : ORVAN_TRY(_document->GetElementsByIdWithPrefix(prefix)))
			ORVAN_TRY(add(layer->GetId()));
	}
	for (const LayerSwitch& entry : _clientSwitches)
		ORVAN_TRY(add(entry.id));
	return switched;
}

Result<void> VectorIconImpl::Save(const Url& url, const SVGSaveOptions& options) noexcept
{
	const BaseArray<const ElementBase*> switched = ORVAN_TRY(ListSwitched());
	return Content().SaveWithout({_theme.GetCovers(), switched}, url, options);
}

Result<BaseArray<char>> VectorIconImpl::SaveToMemory(const SVGSaveOptions& options) const noexcept
{
	const BaseArray<const ElementBase*> switched = ORVAN_TRY(ListSwitched());
	return Content().SaveToMemoryWithout({_theme.GetCovers(), switched}, options);
}

Document& VectorIconImpl::Content() const noexcept
{
	return static_cast<Document&>(*_document.GetObject());
}

Result<void> VectorIconImpl::SetLayerEnabled(const String& id, bool enabled) noexcept
{
	const SVGElementRef layer = ORVAN_TRY(_document->GetElementById(id));
	return SwitchLayer(layer, id, enabled ? SVGDisplay::shown : SVGDisplay::none);
}

Result<void> VectorIconImpl::ToggleLayer(const String& id) noexcept
{
	const SVGElementRef layer = ORVAN_TRY(_document->GetElementById(id));
	const bool isShown = layer->GetDisplay() == SVGDisplay::shown;
	return SwitchLayer(layer, id, isShown ? SVGDisplay::none : SVGDisplay::shown);
}

SVGElementRef VectorIconImpl::GetLayer(const String& id) const noexcept
{
	return _document->GetElementById(id).GetValueOr(nullptr);
}

void VectorIconImpl::SetState(SVGIconState state) noexcept
{
	if (state == _state && _stateLayer.IsEmpty())
		return;
	_state = state;
	_isStateSet = true;
	// The state has the last word about its layers, also after a reload.
	DropClientSwitches(
		[](const VectorIconImpl& icon, const String& id)
		{ return std::find(icon._stateLayers.begin(), icon._stateLayers.end(), id) != icon._stateLayers.end(); });
	const auto self = SVGDocumentRef::From(this);
	const String named = std::exchange(_stateLayer, {});
	if (const SVGElementRef layer = !named.IsEmpty() ? GetLayer(named) : nullptr)
		IgnoreResult(layer->SetDisplay(SVGDisplay::none));
	ApplyState(_document);
}

void VectorIconImpl::DropClientSwitches(bool (*isDropped)(const VectorIconImpl& icon, const String& id)) noexcept
{
	const auto kept = std::remove_if(_clientSwitches.begin(), _clientSwitches.end(),
									 [&](const LayerSwitch& entry) { return isDropped(*this, entry.id); });
	IgnoreResult(_clientSwitches.Resize(static_cast<std::size_t>(kept - _clientSwitches.begin())));
}

SVGIconState VectorIconImpl::GetState() const noexcept
{
	return _state;
}

void VectorIconImpl::SetLiveReloadEnabled(bool enabled) noexcept
{
	if (!enabled)
	{
		_isLiveReloadOn = false;
		_watch.Stop();
	}
	else if (g_isLiveReloadAllowed && Content().IsFromUrl())
	{
		_isLiveReloadOn = true;
		Follow();
	}
}

/// Watches the icon's file where live reload is on and there is one. A change since the file was read is noticed at
/// once.
void VectorIconImpl::Follow() noexcept
{
	if (!_isLiveReloadOn || _watch.IsActive() || !Content().IsFromUrl())
		return;
	const FileStamp& stamp = Content().GetStamp();
	Result<FileWatch> watch =
		FileWatch::Start(GetUrl(), [](void* icon) noexcept { return static_cast<VectorIconImpl*>(icon)->Reload(); },
						 this, {.loaded = &stamp, .owner = this});
	if (watch.IsOk())
		_watch = std::move(watch).GetValue();
	else
		WarningOutput("Icon '@' cannot be followed. @", GetUrl().GetText(), watch.GetError());
}

void VectorIconImpl::GlobalSetLiveReloadEnabled(bool enabled) noexcept
{
	g_isLiveReloadAllowed = enabled;
	if (enabled)
		FileWatch::RetryPostponed();
}

bool VectorIconImpl::GlobalGetLiveReloadEnabled() const noexcept
{
	return g_isLiveReloadAllowed;
}

/// Shows or hides a layer for the client, and remembers it for the next reload.
Result<void> VectorIconImpl::SwitchLayer(const SVGElementRef& layer, const String& id, SVGDisplay display) noexcept
{
	// Room first: a layer that is switched but not remembered would come back from a reload unswitched.
	ORVAN_TRY(_clientSwitches.Reserve(_clientSwitches.GetCount() + 1));
	ORVAN_TRY(layer->SetDisplay(display));
	auto* entry = std::find_if(_clientSwitches.begin(), _clientSwitches.end(),
							   [&id](const LayerSwitch& known) { return known.id == id; });
	if (entry != _clientSwitches.end())
		entry->display = display;
	else
		IgnoreResult(_clientSwitches.Append({id, display}));
	return {};
}

/// Hides all state layers and shows that of the state; stops at the first layer that is missing.
Result<void> VectorIconImpl::ShowState(const SVGDocumentRef& document) const noexcept
{
	for (const String& id : _stateLayers)
		ORVAN_TRY(ORVAN_TRY(document->GetElementById(id))->SetDisplay(SVGDisplay::none));
	const auto number = static_cast<std::size_t>(_state);
	if (number >= _stateLayers.size())
		return {};
	return ORVAN_TRY(document->GetElementById(_stateLayers[number]))->SetDisplay(SVGDisplay::shown);
}

/// Shows the layer and hides all other state layers; not found, with nothing changed, when it is missing.
Result<void> VectorIconImpl::ShowStateLayer(const SVGDocumentRef& document, const String& id) const noexcept
{
	const SVGElementRef shown = ORVAN_TRY(document->GetElementById(id));
	const String prefix = ORVAN_TRY(String::Create(kStatePrefix));
	for (const SVGElementRef& layer : ORVAN_TRY(document->GetElementsByIdWithPrefix(prefix)))
	{
		if (layer != shown)
			ORVAN_TRY(layer->SetDisplay(SVGDisplay::none));
	}
	return shown->SetDisplay(SVGDisplay::shown);
}

/// Has a tree show the state that was last set, if one was.
void VectorIconImpl::ApplyState(const SVGDocumentRef& document) const noexcept
{
	if (!_stateLayer.IsEmpty())
	{
		if (const Result<void> shown = ShowStateLayer(document, _stateLayer); !shown.IsOk())
			WarningOutput("State layer '@' could not be shown. @", _stateLayer, shown.GetError());
		return;
	}
	if (!_isStateSet)
		return;
	if (const Result<void> shown = ShowState(document); !shown.IsOk())
		WarningOutput("VectorIconImpl::SetState() error. Maybe some layer is missing. @", shown.GetError());
}

void VectorIconImpl::ApplyClientSwitches(const SVGDocumentRef& document) const noexcept
{
	for (const LayerSwitch& entry : _clientSwitches)
	{
		// A layer that is gone may be back after the next edit; its switch is kept for then.
		const SVGElementRef layer = document->GetElementById(entry.id).GetValueOr(nullptr);
		if (!layer)
			continue;
		if (const Result<void> switched = layer->SetDisplay(entry.display); !switched.IsOk())
			WarningOutput("Layer '@' could not be switched again. @", entry.id, switched.GetError());
	}
}

/// Called by the host when the icon's file has changed. The host keeps the icon alive meanwhile: whoever reads the
/// diagnostics may let it go.
FileChangeOutcome VectorIconImpl::Reload() noexcept
{
	if (!g_isLiveReloadAllowed)
		return FileChangeOutcome::postponed;
	if (Content().IsSavedFile())
		return FileChangeOutcome::noted; // The icon's tree is what stands there.
	Result<SVGDocumentRef> fresh = CreateObject<SVGDocumentInterface>(kSVGDocumentClass);
	if (fresh.IsOk())
		IgnoreResult(static_cast<Document&>(*fresh.GetValue().GetObject()).SetImportOptions(GetImportOptions()));
	_loadCount++;
	Result<void> loaded = fresh.IsOk() ? fresh.GetValue()->Init(GetUrl()) : Result<void>(fresh.GetError());
	if (!loaded.IsOk())
	{
		WarningOutput("Icon '@' stays as it is, because its file could not be loaded. @", GetUrl().GetText(),
					  loaded.GetError());
		Content().TellOfLoad(SVGChangeKind::notReloaded, SVGImportReport());
		return FileChangeOutcome::failed;
	}
	auto& document = static_cast<Document&>(*fresh.GetValue().GetObject());
	if (document.IsPlaceholder())
	{
		WarningOutput("Icon '@' stays as it is, because its file has no content that can be used.", GetUrl().GetText());
		Content().TellOfLoad(SVGChangeKind::notReloaded, document.GetReport());
		return FileChangeOutcome::failed;
	}
	// What the icon shows is settled before anybody hears of the new tree.
	ApplyTheme(fresh.GetValue());
	ApplyState(fresh.GetValue());
	ApplyClientSwitches(fresh.GetValue());
	// Into the same document, so that references to its root, which the interface hands out, stay good.
	Content().TakeContentOf(document);
	Content().TellOfLoad(SVGChangeKind::loaded, Content().GetReport());
	return FileChangeOutcome::reloaded;
}

// Themes -------------------------------------------------------------------------------------------------------------

Result<void> VectorIconImpl::ChangeTheme(const IconTheme::Content& content) noexcept
{
	const auto self = SVGDocumentRef::From(this); // Observers may let go of the icon.
	return _theme.Change(Content(), content);
}

/// Puts the theme over a tree that is new.
void VectorIconImpl::ApplyTheme(const SVGDocumentRef& document) noexcept
{
	if (const Result<void> applied = _theme.Apply(static_cast<Document&>(*document.GetObject())); !applied.IsOk())
		WarningOutput("Icon '@' goes without its theme. @", GetUrl().GetText(), applied.GetError());
}

Result<void> VectorIconImpl::SetCurrentColor(const Color& color) noexcept
{
	return ChangeTheme({color, _theme.GetContent().styleSheet});
}

Result<void> VectorIconImpl::ClearCurrentColor() noexcept
{
	return ChangeTheme({{}, _theme.GetContent().styleSheet});
}

Result<void> VectorIconImpl::SetStyleSheet(const String& styleSheet) noexcept
{
	return ChangeTheme({_theme.GetContent().currentColor, styleSheet});
}

String VectorIconImpl::GetStyleSheet() const noexcept
{
	return _theme.GetContent().styleSheet;
}

std::int64_t VectorIconImpl::GetLoadCount() const noexcept
{
	return _loadCount;
}

Result<BaseArray<String>> VectorIconImpl::GetStateLayers() const noexcept
{
	BaseArray<String> ids;
	auto* const root = static_cast<HierarchyObject*>(GetRootElement().GetObject());
	for (HierarchyObject* at = root; at != nullptr;)
	{
		const ElementBase* element = AsElement(at);
		const String id = element != nullptr ? element->GetId() : String();
		// Of several with one id only the first is a layer.
		if (id.View().starts_with(kStatePrefix) && GetLayer(id).GetObject() == at)
			ORVAN_TRY(ids.Append(id));
		if (at->FirstChild() != nullptr)
		{
			at = at->FirstChild();
			continue;
		}
		while (at != root && at->NextSibling() == nullptr)
			at = at->Parent();
		at = at != root ? at->NextSibling() : nullptr;
	}
	return ids;
}

Result<void> VectorIconImpl::SetStateLayer(const String& id) noexcept
{
	const auto self = SVGDocumentRef::From(this);
	if (!id.View().starts_with(kStatePrefix))
		return NotFoundError("State layers begin with 'State:', which '@' does not.", id);
	ORVAN_TRY(ShowStateLayer(_document, id));
	const auto number = std::find(_stateLayers.begin(), _stateLayers.end(), id);
	_state = number != _stateLayers.end() ? static_cast<SVGIconState>(number - _stateLayers.begin())
										  : SVGIconState::uninitialized;
	_stateLayer = id;
	DropClientSwitches([](const VectorIconImpl&, const String& layer)
					   { return layer.View().starts_with(kStatePrefix); });
	return {};
}

String VectorIconImpl::GetStateLayer() const noexcept
{
	return _stateLayer;
}

namespace
{

constexpr ClassDeclaration kIconClass = DeclareClass<
	VectorIconImpl, Implements<VectorIconInterface, VectorIconImpl>, Implements<SVGDocumentInterface, VectorIconImpl>,
	Implements<SVGDocumentImportInterface, VectorIconImpl>, Implements<SVGDocumentEditInterface, IconEdits>,
	Implements<VectorIconThemeInterface, VectorIconImpl>, Implements<SVGDocumentSourceInterface, VectorIconImpl>>(
	kVectorIconClass);

constexpr UseDeclaration kUses[] = {
	{"vector_icon_impl", "VectorIconInterface", "vector_icon"},
	{"vector_icon_impl", "SVGDocumentInterface", "svg_base"},
	{"vector_icon_impl", "SVGElementInterface", "svg_elements"},
	{"vector_icon_impl", "FileWatch", "file_monitor"},
};

ORVAN_REGISTER(ORVAN_ORDER_ICON, entries)
[] = {
	{Kind::unit, "vector_icon_impl"}, kIconClass, kUses[0], kUses[1], kUses[2], kUses[3],
};

} // namespace
} // namespace orvan::svg
