// SPDX-License-Identifier: MIT
/// Vector icons: SVG documents whose layers switch with a state.
///
///     VectorIconRef icon = ORVAN_TRY(CreateObject<VectorIconInterface>(kVectorIconClass));
///     ORVAN_TRY(Cast<SVGDocumentInterface>(icon)->Init(ORVAN_TRY(Url::FromPath("lamp.svg"))));
///     icon->SetState(SVGIconState::enabledActivatedHighlight);
#pragma once

#include "svg_base.h"

#include <cstdint>

namespace orvan
{

/// The class of icons, for `CreateObject`.
inline constexpr const char* kVectorIconClass = "net.orvan.image.class.vectoricon";

/// The states of an icon and the ids of the layers that show them. Other numbers may be stored and show no layer.
enum class SVGIconState : std::uint32_t
{
	enabledActivatedHighlight = 0,     ///< "State:EnabledActivatedHighlight"
	enabledActivatedNoHighlight = 1,   ///< "State:EnabledActivatedNoHighlight"
	enabledDeactivatedHighlight = 2,   ///< "State:EnabledDeactivatedHighlight"
	enabledDeactivatedNoHighlight = 3, ///< "State:EnabledDeactivatedNoHighlight"
	uninitialized = 0xffffffff,        ///< Before the first `SetState`.
};

/// An icon. The same object implements `SVGDocumentInterface`: through it the icon gets its file (`Init`) and shows its
/// tree. A layer is any element with an id; it is shown with display 1 and hidden with display 2.
///
/// An icon does no locking and is used by one thread at a time; reloads happen inside the host's event processing.
class VectorIconInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.vectoricon";
	static constexpr const char* kName = "orvan.VectorIconInterface";
	static constexpr int kSlotCount = 8;

	/// Shows or hides the layer with this id. Not found when there is none; no layer changes then.
	ORVAN_METHOD(1, Result<void>, SetLayerEnabled, (const String& id, bool enabled), id, enabled)
	/// Hides a layer whose display is 1, and shows any other. Not found when there is none.
	ORVAN_METHOD(2, Result<void>, ToggleLayer, (const String& id), id)
	/// The layer with this id; null when there is none.
	ORVAN_METHOD(3, SVGElementRef, GetLayer, (const String& id), id)
	/// Stores the state and shows its layer alone of the four state layers. Does nothing when the state is the one
	/// already stored. A missing layer is reported as a warning, after which layers may be partly switched.
	ORVAN_METHOD(4, void, SetState, (SVGIconState state), state)
	/// The stored state; `uninitialized` for a new icon, whose layers are as the file has them until a state is set.
	ORVAN_METHOD(5, SVGIconState, GetState, ())
	/// Switches live reload on or off. Switching it on does nothing unless the global switch is on and the icon has a
	/// file, and warns when the file cannot be watched. Once on it stays on until it is switched off: through other
	/// files, loads that fail, `Reset` and the global switch; and whenever the icon has a file, that is followed.
	///
	/// When the followed file differs from what was loaded, the icon is reloaded, and the state and the client's layer
	/// switches are applied again. A file that cannot be loaded leaves the icon as it is, with a warning, until the
	/// next change. Reloads happen inside the host's event processing, and never on an icon that has been released or
	/// switched off.
	ORVAN_METHOD(6, void, SetLiveReloadEnabled, (bool enabled), enabled)
	/// Sets the switch of the whole process that allows icons to reload. Initially on. Turning it off switches no icon
	/// off; changes that fall due meanwhile are loaded when it is on again.
	ORVAN_METHOD(7, void, GlobalSetLiveReloadEnabled, (bool enabled), enabled)
	/// The switch of the whole process.
	ORVAN_METHOD(8, bool, GlobalGetLiveReloadEnabled, ())
};
using VectorIconRef = Ref<VectorIconInterface>;

ORVAN_DATA_TYPE(VectorIconRef, "orvan::VectorIconRef", "orvan::VectorIconRef");

} // namespace orvan
