// SPDX-License-Identifier: MIT
#include "walk.h"

#include "conditions.h"
#include "measure.h"
#include "references.h"
#include "svg_complete.h"
#include "text_layout.h"

namespace orvan::drawing
{

bool IsClippedToViewport(const Frame& frame) noexcept
{
	const auto overflow = frame.GetKeyword(SVGImportAttribute::overflow, SVGOverflow::hidden);
	return overflow == SVGOverflow::hidden || overflow == SVGOverflow::scroll;
}

Result<void> Walk::DrawElement(ObjectBase* element, const Place& outside, const Frame* outer) noexcept
{
	const Borrowed<SVGElementInterface> svgElement(element);
	if (!svgElement || svgElement->GetDisplay() == SVGDisplay::none)
		return {};
	if (_scene.isComplete && !PassesConditions(svgElement->GetAttributeDictionary(), _scene.language))
		return {};
	if (const ShapeKind kind = GetShapeKind(element); kind != ShapeKind::none)
		return DrawShape(kind, element, outside, outer);
	if (Borrowed<SVGGroupElementInterface>(element))
		return DrawGroup(element, outside, outer);
	if (Borrowed<SVGUseElementInterface>(element))
		return DrawUse(element, outside, outer);
	if (Borrowed<SVGTextElementInterface>(element))
		return DrawText(element, outside, outer);
	if (const Borrowed<SVGSVGElementInterface> svg(element); svg)
	{
		return outer == nullptr ? DrawOutermost(element, outside)
								: DrawViewport(element, svg->GetViewport(), outside, outer);
	}
	return {};
}

Result<void> Walk::DrawChildren(ObjectBase* parent, const Place& place, const Frame& frame) noexcept
{
	const Borrowed<HierarchyObjectInterface> hierarchy(parent);
	if (!hierarchy)
		return {};
	for (auto child = hierarchy->GetFirstChild(); child && !_scene.limits.IsOver(); child = child->GetNextSibling())
		ORVAN_TRY(DrawElement(child.GetObject(), place, &frame));
	return {};
}

Result<void> Walk::DrawShape(ShapeKind kind, ObjectBase* element, const Place& outside, const Frame* outer) noexcept
{
	const Frame frame(element, outside, outer, _scene.limits);
	if (!frame.canDraw)
		return {};
	const Outline outline = ORVAN_TRY(GetOutline(kind, element, frame));
	return _sink.DrawShape(frame, outline);
}

Result<void> Walk::DrawText(ObjectBase* element, const Place& outside, const Frame* outer) noexcept
{
	const Frame frame(element, outside, outer, _scene.limits);
	if (!frame.canDraw)
		return {};
	const TextLayout text = ORVAN_TRY(TextLayout::Create(_scene, frame));
	if (!text.IsDrawable())
		return {};
	return _sink.DrawText(frame, text);
}

// Containers ---------------------------------------------------------------------------------------------------------

Result<void> Walk::DrawGroup(ObjectBase* element, const Place& outside, const Frame* outer) noexcept
{
	if (!_sink.TakesContainers())
		return {};
	const Frame frame(element, outside, outer, _scene.limits);
	if (!frame.canDraw)
		return {};
	const bool isSwitch = static_cast<bool>(Borrowed<SVGSwitchElementInterface>(element));
	const auto draw = [&](Sink& sink) noexcept
	{
		Walk walk(_scene, sink);
		return isSwitch ? walk.DrawSwitch(frame, frame.place) : walk.DrawChildren(element, frame.place, frame);
	};
	return _sink.DrawGroup(frame, draw);
}

/// Draws the first child for which its conditions hold; the others are skipped by `DrawElement` for the same reason.
Result<void> Walk::DrawSwitch(const Frame& frame, const Place& place) noexcept
{
	const Borrowed<HierarchyObjectInterface> hierarchy(frame.element);
	for (auto child = hierarchy->GetFirstChild(); child; child = child->GetNextSibling())
	{
		const Borrowed<SVGElementInterface> element(child);
		if (!element || Borrowed<SVGDescriptionInterface>(child) ||
			element->GetElementType() == SVGImportElementKind::unknown)
			continue;
		if (PassesConditions(element->GetAttributeDictionary(), _scene.language))
			return DrawElement(child.GetObject(), place, &frame);
	}
	return {};
}

Result<void> Walk::DrawOutermost(ObjectBase* element, const Place& outside) noexcept
{
	Frame frame(element, outside, nullptr, _scene.limits);
	if (!frame.canDraw)
		return {};
	const Borrowed<SVGFitToViewboxInterface> fitting(element);
	SVGViewbox viewbox = fitting->GetViewbox();
	if (viewbox.isDefault)
	{
		// The document's own size is what a picture of another size is fitted to.
		viewbox.width.value = _scene.naturalSize.x;
		viewbox.height.value = _scene.naturalSize.y;
		viewbox.isDefault = false;
	}
	const Rectangle area{0.0, 0.0, _scene.viewportSize.x, _scene.viewportSize.y};
	const auto fit = FitViewbox(area, viewbox, fitting->GetPreserveAspectRatio());
	if (!fit)
		return {};
	frame.place.transform = frame.place.transform * fit->transform;
	frame.place.viewport.Resize(fit->size);
	frame.place.viewport.outermost.fontSize = frame.place.style.fontSize;
	const auto draw = [&](Sink& sink) noexcept
	{
		return Walk(_scene, sink).DrawChildren(element, frame.place, frame);
	};
	return _sink.DrawGroup(frame, draw);
}

Result<void> Walk::DrawViewport(ObjectBase* element, const SVGViewport& viewport, const Place& outside,
								const Frame* outer) noexcept
{
	if (!_sink.TakesContainers())
		return {};
	const Frame frame(element, outside, outer, _scene.limits);
	if (!frame.canDraw)
		return {};
	const double x = frame.Resolve(viewport.x, Axis::horizontal);
	const double y = frame.Resolve(viewport.y, Axis::vertical);
	const Rectangle area{x, y, x + frame.Resolve(viewport.width, Axis::horizontal),
						 y + frame.Resolve(viewport.height, Axis::vertical)};
	const Borrowed<SVGFitToViewboxInterface> fitting(element);
	const auto fit = FitViewbox(area, fitting->GetViewbox(), fitting->GetPreserveAspectRatio());
	if (!fit)
		return {};
	Place inside = frame.place;
	inside.transform = inside.transform * fit->transform;
	inside.viewport.Resize(fit->size);
	if (!IsInvertible(inside.transform))
		return {};
	const auto draw = [&](Sink& sink) noexcept
	{
		return Walk(_scene, sink).DrawChildren(element, inside, frame);
	};
	const auto drawClipped = [&](Sink& sink) noexcept
	{
		return IsClippedToViewport(frame) ? sink.DrawClipped(frame.place, area, draw) : draw(sink);
	};
	return _sink.DrawGroup(frame, drawClipped);
}

// Uses ---------------------------------------------------------------------------------------------------------------

Result<void> Walk::DrawUse(ObjectBase* element, const Place& outside, const Frame* outer) noexcept
{
	const Frame frame(element, outside, outer, _scene.limits);
	const String link = Borrowed<SVGUseElementInterface>(element)->GetLink();
	if (!frame.canDraw || link.IsEmpty())
		return {};
	const SVGElementRef target = ORVAN_TRY(FindElement(_scene.document, link));
	if (!target || target->GetDisplay() == SVGDisplay::none)
		return {};
	if (frame.IsWithin(target.GetObject()))
	{
		_scene.limits.Omit(Omission::cycle);
		return {};
	}
	const auto draw = [&](Sink& sink) noexcept
	{
		return Walk(_scene, sink).DrawTarget(frame, target.GetObject());
	};
	return _sink.DrawGroup(frame, draw);
}

Result<void> Walk::DrawTarget(const Frame& use, ObjectBase* target) noexcept
{
	const SVGLength2d position = Borrowed<SVGPositionInterface>(use.element)->GetPosition();
	Place inside = use.place;
	inside.isByReference = true;
	inside.transform = inside.transform * Translation(inside.Resolve(position.x, Axis::horizontal),
													  inside.Resolve(position.y, Axis::vertical));
	// What the use stands for may be painted as the use is. Its box is seldom asked for, and measured then.
	const auto drawAgain = [&](Sink& sink) noexcept
	{
		Place unpainted = inside;
		unpainted.context = nullptr;
		return Walk(_scene, sink).DrawTargetAt(use, target, unpainted);
	};
	const Content content(drawAgain);
	Extent extent(_scene, use, content);
	const auto measure = [](void* measured) noexcept
	{
		return static_cast<Extent*>(measured)->GetBox().GetValueOr(Rectangle());
	};
	const ContextPaints context{use, {&extent, measure}};
	inside.context = &context;
	return DrawTargetAt(use, target, inside);
}

/// Draws what a use stands for, with `inside` in force.
Result<void> Walk::DrawTargetAt(const Frame& use, ObjectBase* target, const Place& inside) noexcept
{
	const SVGLength2d size = Borrowed<SVGSizeInterface>(use.element)->GetSize();
	const Borrowed<SVGSVGElementInterface> svg(target);
	if (!svg && !Borrowed<SVGSymbolElementInterface>(target))
		return DrawElement(target, inside, &use);
	// A size of the use element replaces that of the viewport that it stands for.
	SVGViewport viewport = svg ? svg->GetViewport() : SVGViewport();
	if (use.Has(SVGImportAttribute::width))
		viewport.width = size.x;
	if (use.Has(SVGImportAttribute::height))
		viewport.height = size.y;
	return DrawViewport(target, viewport, inside, &use);
}

} // namespace orvan::drawing
