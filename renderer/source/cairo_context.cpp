// SPDX-License-Identifier: MIT
/// The pictures, and the elements that contain others.
#include "cairo_context.h"

#include "orvan/diagnostics.h"
#include "references.h"
#include "scopes.h"

#include <dlfcn.h>

namespace orvan::cairo
{

Result<void> CairoContext::Initialize() noexcept
{
	// The font library registers its types with a library that never leaves the process, and cannot do so twice.
	dlopen("libpangocairo-1.0.so.0", RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE);
	return {};
}

// Pictures -----------------------------------------------------------------------------------------------------------

Result<void> CairoContext::Begin(const SVGDocumentRef& document, const SVGRenderOptions& options) noexcept
{
	_picture = Picture();
	_drawing = nullptr;
	_picture = ORVAN_TRY(Picture::Create(document, options));
	_drawing = _picture.GetDrawing();
	_budget = Budget(_picture.GetSize().x * _picture.GetSize().y);
	_omissions = 0;
	_state = State();
	_state.transform = Scaling(_picture.GetUnit(), _picture.GetUnit());
	_state.viewport = {_picture.GetViewportSize().x, _picture.GetViewportSize().y};
	return {};
}

Vector2d CairoContext::GetSize() const noexcept
{
	return _picture.GetSize();
}

Result<void> CairoContext::Finish(const String& path) noexcept
{
	_drawing = nullptr;
	return _picture.Write(path);
}

Result<SVGRenderPixels> CairoContext::GetPixels() noexcept
{
	_drawing = nullptr;
	return _picture.GetPixels();
}

void CairoContext::Omit(Omission omission) noexcept
{
	const auto bit = static_cast<std::uint32_t>(omission);
	if ((_omissions & bit) != 0)
		return;
	_omissions |= bit;
	switch (omission)
	{
	case Omission::cycle:
		WarningOutput("References that lead in a circle are left out.");
		break;
	case Omission::depth:
		WarningOutput("Elements more than @ levels deep are left out.", kMaxDepth);
		break;
	case Omission::work:
		WarningOutput("Elements drawn by reference and in layers cost more than a picture may; the rest is left out.");
		break;
	case Omission::layers:
		WarningOutput("Elements that need more memory for layers than a picture may use are left out.");
		break;
	case Omission::text:
		WarningOutput("Texts are drawn up to @ bytes; the rest is left out.", kMaxTextBytes);
		break;
	case Omission::fontSize:
		WarningOutput("Texts larger than @ pixels are left out.", kMaxFontSize);
		break;
	case Omission::dashes:
		WarningOutput("Lines with too many dashes are drawn solid.");
		break;
	}
}

bool CairoContext::PayInReference(double work) noexcept
{
	if (_references == 0 || _budget.Pay(work))
		return true;
	Omit(Omission::work);
	return false;
}

// Containers ---------------------------------------------------------------------------------------------------------

Result<void> CairoContext::DrawGroup(const SVGGroupElementRef& element) noexcept
{
	// Shapes alone make up a clip path.
	if (_mode == Mode::clip)
		return {};
	const ElementScope scope(*this, element.GetObject());
	if (!scope.CanDraw())
		return {};
	return Compose(scope.GetEffects(), {}, [&]() noexcept { return DrawChildren(element); });
}

Result<void> CairoContext::DrawSVG(const SVGSVGElementRef& element) noexcept
{
	if (_mode == Mode::clip)
		return {};
	return _depth == 0 ? DrawOutermost(element) : DrawNested(element, element->GetViewport());
}

Result<void> CairoContext::DrawOutermost(const SVGSVGElementRef& element) noexcept
{
	const ElementScope scope(*this, element.GetObject());
	if (!scope.CanDraw())
		return {};
	const auto fitting = Cast<SVGFitToViewboxInterface>(element);
	SVGViewbox viewbox = fitting->GetViewbox();
	if (viewbox.isDefault)
	{
		// The document's own size is what a picture of another size is fitted to.
		const Vector2d& natural = _picture.GetNaturalSize();
		viewbox.width.value = natural.x;
		viewbox.height.value = natural.y;
		viewbox.isDefault = false;
	}
	const Vector2d& size = _picture.GetViewportSize();
	const auto fit = FitViewbox(0.0, 0.0, size.x, size.y, viewbox, fitting->GetPreserveAspectRatio());
	if (!fit)
		return {};
	_state.transform = _state.transform * fit->transform;
	_state.viewport = fit->viewport;
	return Compose(scope.GetEffects(), {}, [&]() noexcept { return DrawChildren(element); });
}

Result<void> CairoContext::DrawNested(const SVGSVGElementRef& element, const SVGViewport& viewport) noexcept
{
	const ElementScope scope(*this, element.GetObject());
	if (!scope.CanDraw())
		return {};
	const double x = Resolve(viewport.x, Axis::horizontal);
	const double y = Resolve(viewport.y, Axis::vertical);
	const double width = Resolve(viewport.width, Axis::horizontal);
	const double height = Resolve(viewport.height, Axis::vertical);
	const auto fitting = Cast<SVGFitToViewboxInterface>(element);
	const auto fit = FitViewbox(x, y, width, height, fitting->GetViewbox(), fitting->GetPreserveAspectRatio());
	if (!fit)
		return {};
	return Compose(scope.GetEffects(), {},
				   [&]() noexcept {
					   return DrawChildrenIn(element, {x, y, x + width, y + height}, *fit);
				   });
}

/// Draws children into a viewport, cut off at its edges.
template <typename I>
Result<void> CairoContext::DrawChildrenIn(const Ref<I>& element, const Rectangle& clip, const ViewboxFit& fit) noexcept
{
	const State saved = _state;
	cairo_save(_drawing);
	ClipToRectangle(clip, saved.transform);
	_state.transform = saved.transform * fit.transform;
	_state.viewport = fit.viewport;
	Result<void> drawn = IsInvertible(_state.transform) ? DrawChildren(element) : Result<void>();
	cairo_restore(_drawing);
	_state = saved;
	return drawn;
}

Result<void> CairoContext::DrawUse(const SVGUseElementRef& element) noexcept
{
	const ElementScope scope(*this, element.GetObject());
	const String link = element->GetLink();
	if (!scope.CanDraw() || link.IsEmpty())
		return {};
	const SVGElementRef target = ORVAN_TRY(FindElement(_picture.GetDocument(), link));
	if (!target || target->GetDisplay() == SVGDisplay::none)
		return {};
	if (scope.IsWithin(target.GetObject()))
	{
		Omit(Omission::cycle);
		return {};
	}
	const ReferenceScope reference(*this);
	return Compose(scope.GetEffects(), {}, [&]() noexcept { return DrawTarget(element, target); });
}

Result<void> CairoContext::DrawTarget(const SVGUseElementRef& use, const SVGElementRef& target) noexcept
{
	const auto position = Cast<SVGPositionInterface>(use)->GetPosition();
	const State saved = _state;
	_state.transform =
		_state.transform * Translation(Resolve(position.x, Axis::horizontal), Resolve(position.y, Axis::vertical));
	const auto useElement = Cast<SVGElementInterface>(use);
	const SVGLength2d size = Cast<SVGSizeInterface>(use)->GetSize();
	// A size of the use element replaces that of the viewport that it stands for.
	const auto resize = [&](SVGViewport& viewport)
	{
		if (useElement->HasAttribute(SVGImportAttribute::width))
			viewport.width = size.x;
		if (useElement->HasAttribute(SVGImportAttribute::height))
			viewport.height = size.y;
	};
	Result<void> drawn;
	if (const auto svg = Cast<SVGSVGElementInterface>(target); svg && _mode != Mode::clip)
	{
		SVGViewport viewport = svg->GetViewport();
		resize(viewport);
		drawn = DrawNested(svg, viewport);
	}
	else if (const auto symbol = Cast<SVGSymbolElementInterface>(target); symbol && _mode != Mode::clip)
	{
		SVGViewport viewport;
		resize(viewport);
		const double width = Resolve(viewport.width, Axis::horizontal);
		const double height = Resolve(viewport.height, Axis::vertical);
		const auto fitting = Cast<SVGFitToViewboxInterface>(target);
		const auto fit = FitViewbox(0.0, 0.0, width, height, fitting->GetViewbox(), fitting->GetPreserveAspectRatio());
		const ElementScope scope(*this, target.GetObject());
		if (fit && scope.CanDraw())
		{
			drawn = Compose(scope.GetEffects(), {},
							[&]() noexcept {
								return DrawChildrenIn(symbol, {0.0, 0.0, width, height}, *fit);
							});
		}
	}
	else
		drawn = DrawSVGElement(SVGContextRef::From(this), target);
	_state = saved;
	return drawn;
}

} // namespace orvan::cairo
