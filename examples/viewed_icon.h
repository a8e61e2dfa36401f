// SPDX-License-Identifier: MIT
/// What the viewers have in common: an icon that is drawn into a window, in the window's colour, and follows its file.
#pragma once

#include <orvan/host/module_loader.h>
#include <svg_edit.h>
#include <svg_render_target.h>
#include <vector_icon_theme.h>

#include <cstddef>
#include <cstdio>

/// An icon, and the pixels that it was last drawn into.
class ViewedIcon
{
public:
	/// `changed` is called, inside of the event loop, when the file was loaded again and is to be drawn.
	ViewedIcon(void (*changed)(void* context), void* context) : _changed(changed), _context(context)
	{
	}

	orvan::Result<void> Open(const char* file)
	{
		using namespace orvan;
		_icon = ORVAN_TRY(CreateObject<VectorIconInterface>(kVectorIconClass));
		_document = Cast<SVGDocumentInterface>(_icon);
		SVGImportOptions options;
		options.isComplete = options.isTolerant = true; // As a browser reads it.
		ORVAN_TRY(Cast<SVGDocumentImportInterface>(_document)->SetImportOptions(options));
		ORVAN_TRY(_document->Init(ORVAN_TRY(Url::FromPath(file))));
		ORVAN_TRY(Cast<SVGDocumentEditInterface>(_document)->AddObserver(&ViewedIcon::Notice, this));
		_drawing = ORVAN_TRY(CreateObject<SVGContextInterface>(kSVGContextClass));
		_icon->SetLiveReloadEnabled(true);
		return {};
	}

	/// Draws the icon as large as it fits; `color` is what currentColor stands for. The pixels are good until the next
	/// call.
	orvan::Result<orvan::SVGRenderPixels> Draw(int width, int height, const orvan::Color& color)
	{
		using namespace orvan;
		if (!(color == _color))
			ORVAN_TRY(Cast<VectorIconThemeInterface>(_icon)->SetCurrentColor(color));
		_color = color;
		const auto target = Cast<SVGRenderTargetInterface>(_drawing);
		SVGRenderOptions options;
		options.width = width;
		options.height = height;
		ORVAN_TRY(target->Begin(_document, options));
		ORVAN_TRY(DrawSVGElement(_drawing, _document->GetRootElement()));
		return target->GetPixels();
	}

	/// Shows the next of the icon's states, where it has some.
	orvan::Result<void> ShowNextState()
	{
		using namespace orvan;
		const auto theme = Cast<VectorIconThemeInterface>(_icon);
		const BaseArray<String> layers = ORVAN_TRY(theme->GetStateLayers());
		return layers.IsEmpty() ? Result<void>() : theme->SetStateLayer(layers[_clicks++ % layers.GetCount()]);
	}

private:
	static void Notice(void* context, const orvan::SVGChange& change) noexcept
	{
		const auto& self = *static_cast<const ViewedIcon*>(context);
		if (change.kind == orvan::SVGChangeKind::loaded)
			self._changed(self._context);
	}

	orvan::VectorIconRef _icon;
	orvan::SVGDocumentRef _document;
	orvan::SVGContextRef _drawing;
	orvan::Color _color{-1.0, 0.0, 0.0}; ///< None that there is.
	std::size_t _clicks = 0;
	void (*_changed)(void* context);
	void* _context;
};

/// Says what went wrong; true when nothing did.
template <typename T>
bool Report(const orvan::Result<T>& result)
{
	if (!result.IsOk())
		std::fprintf(stderr, "%s\n", result.GetError().GetMessage().CString());
	return result.IsOk();
}

/// Runs `loop` with the modules loaded; the result is the program's exit status.
template <typename Loop>
int RunWithModules(Loop loop)
{
	const auto run = [&]() -> orvan::Result<void>
	{
		orvan::Module* const svg = ORVAN_TRY(orvan::Module::Load(ORVAN_SVG_MODULE));
		orvan::Module* const renderer = ORVAN_TRY(orvan::Module::Load(ORVAN_SVG_CAIRO_MODULE));
		ORVAN_TRY(loop());
		ORVAN_TRY(orvan::Module::Unload(renderer));
		return orvan::Module::Unload(svg);
	};
	return Report(run()) ? 0 : 1;
}
