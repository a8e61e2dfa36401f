// SPDX-License-Identifier: MIT
#include "documents.h"
#include "orvan/host/file_monitor_pump.h"
#include "vector_icon.h"

#include <algorithm>
#include <pybind11/stl.h>
#include <vector>

namespace orvan::python
{
namespace
{

/// All icons that there are: a dispatch may load any of them again, so it holds them all. Used under the interpreter's
/// lock.
std::vector<std::weak_ptr<SharedDocument>> g_icons;

std::vector<std::shared_ptr<SharedDocument>> ListIcons()
{
	std::erase_if(g_icons, [](const auto& icon) { return icon.expired(); });
	std::vector<std::shared_ptr<SharedDocument>> icons;
	for (const auto& icon : g_icons)
		icons.push_back(icon.lock());
	// Everybody else holds one document at a time, and dispatches take them in the same order.
	std::ranges::sort(icons);
	return icons;
}

VectorIconRef AsIcon(const SharedDocument& shared)
{
	return Cast<VectorIconInterface>(shared.document);
}

std::uintptr_t AddressOf(const ObjectBase* object)
{
	return reinterpret_cast<std::uintptr_t>(object);
}

/// Makes the reloads that are due, waiting for them up to a time in milliseconds. The result has the addresses of the
/// icons whose files changed, with whether each could be loaded.
std::vector<std::pair<std::uintptr_t, bool>> Dispatch()
{
	const std::vector<std::shared_ptr<SharedDocument>> icons = ListIcons();
	std::vector<std::unique_ptr<DocumentLock>> locks;
	for (const auto& icon : icons)
		locks.push_back(std::make_unique<DocumentLock>(*icon));
	std::vector<std::pair<std::uintptr_t, bool>> changed;
	const CollectedDiagnostics silence;
	const auto note = [](const FileChangeReport& report, void* context) noexcept
	{
		if (report.owner)
			static_cast<decltype(changed)*>(context)->emplace_back(AddressOf(report.owner->GetObject()),
																   report.outcome == FileChangeOutcome::reloaded);
	};
	FileMonitorPump::DispatchDue(note, &changed);
	return changed;
}

} // namespace

std::shared_ptr<SharedDocument> MakeIcon()
{
	auto shared = std::make_shared<SharedDocument>();
	shared->document = Unwrap(CreateObject<SVGDocumentInterface>(kVectorIconClass));
	g_icons.push_back(shared);
	return shared;
}

void DefineIcons(py::module_& module)
{
	module.def("_icon_address", [](SharedDocument& self) { return AddressOf(self.document->GetObject()); });
	module.def("_icon_state",
			   [](SharedDocument& self)
			   {
				   const DocumentLock lock(self);
				   return static_cast<std::uint32_t>(AsIcon(self)->GetState());
			   });
	module.def("_set_icon_state",
			   [](SharedDocument& self, std::uint32_t state)
			   {
				   const DocumentLock lock(self);
				   const CollectedDiagnostics said;
				   AsIcon(self)->SetState(static_cast<SVGIconState>(state));
				   return said.texts;
			   });
	module.def("_set_icon_layer",
			   [](SharedDocument& self, const std::string& id, bool isShown)
			   {
				   const DocumentLock lock(self);
				   Unwrap(AsIcon(self)->SetLayerEnabled(ToString(id), isShown));
			   });
	module.def("_toggle_icon_layer",
			   [](SharedDocument& self, const std::string& id)
			   {
				   const DocumentLock lock(self);
				   Unwrap(AsIcon(self)->ToggleLayer(ToString(id)));
			   });
	module.def("_set_live_reload",
			   [](SharedDocument& self, bool isEnabled)
			   {
				   const DocumentLock lock(self);
				   const CollectedDiagnostics said;
				   AsIcon(self)->SetLiveReloadEnabled(isEnabled);
				   return said.texts;
			   });
	module.def("_changes_descriptor", &FileMonitorPump::GetDescriptor);
	module.def("_changes_timeout", &FileMonitorPump::GetTimeout);
	module.def("_dispatch_changes", &Dispatch);
}

} // namespace orvan::python
