// SPDX-License-Identifier: MIT
/// What the examples of event loops have in common: an icon that follows its file, and says so.
#pragma once

#include <orvan/host/module_loader.h>
#include <svg_edit.h>
#include <vector_icon.h>

#include <cstdio>

/// An icon that prints what becomes of its file, and calls `done` after so many changes.
class WatchedIcon
{
public:
	WatchedIcon(int changes, void (*done)()) : _changesLeft(changes), _done(done)
	{
	}

	orvan::Result<void> Follow(const char* file)
	{
		using namespace orvan;
		_icon = ORVAN_TRY(CreateObject<VectorIconInterface>(kVectorIconClass));
		ORVAN_TRY(Cast<SVGDocumentInterface>(_icon)->Init(ORVAN_TRY(Url::FromPath(file))));
		ORVAN_TRY(Cast<SVGDocumentEditInterface>(_icon)->AddObserver(&WatchedIcon::Notice, this));
		_icon->SetLiveReloadEnabled(true);
		std::printf("following\n");
		std::fflush(stdout);
		return {};
	}

private:
	/// Called inside of `FileMonitorPump::DispatchDue`, so inside of the event loop. A program with a window would ask
	/// for it to be drawn again.
	static void Notice(void* context, const orvan::SVGChange& change) noexcept
	{
		using orvan::SVGChangeKind;
		auto& self = *static_cast<WatchedIcon*>(context);
		if (change.kind != SVGChangeKind::loaded && change.kind != SVGChangeKind::notReloaded)
			return;
		std::printf("%s\n", change.kind == SVGChangeKind::loaded ? "reloaded" : "kept");
		std::fflush(stdout);
		if (--self._changesLeft == 0)
			self._done();
	}

	orvan::VectorIconRef _icon;
	int _changesLeft;
	void (*_done)();
};

/// Runs `loop` with the module loaded; the result is the program's exit status.
template <typename Loop>
int RunWithModule(Loop loop)
{
	const auto run = [&]() -> orvan::Result<void>
	{
		orvan::Module* module = ORVAN_TRY(orvan::Module::Load(ORVAN_SVG_MODULE));
		ORVAN_TRY(loop());
		return orvan::Module::Unload(module);
	};
	const orvan::Result<void> result = run();
	if (!result.IsOk())
		std::fprintf(stderr, "%s\n", result.GetError().GetMessage().CString());
	return result.IsOk() ? 0 : 1;
}
