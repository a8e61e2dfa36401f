// SPDX-License-Identifier: MIT
#include "walk.h"

#include "conditions.h"
#include "measure.h"
#include "references.h"
#include "svg_complete.h"
#include "text_layout.h"

namespace orvan::drawing
{
namespace
{

/// Which box the origin of an element's transform refers to.
SVGTransformBox GetTransformBox(const DataDictionary& attributes) noexcept
{
	return static_cast<SVGTransformBox>(
		attributes.GetOr(static_cast<std::int32_t>(SVGImportAttribute::transformBox), std::int32_t{}));
}

/// The viewport that a symbol gives itself.
SVGViewport GetSymbolViewport(ObjectBase* symbol) noexcept
{
	const DataDictionary attributes = Borrowed<SVGElementInterface>(symbol)->GetAttributeDictionary();
	SVGViewport viewport;
	const auto read = [&](SVGImportAttribute key, SVGLength& side)
	{
		side = attributes.GetOr(static_cast<std::int32_t>(key), side);
	};
	read(SVGImportAttribute::x, viewport.x);
	read(SVGImportAttribute::y, viewport.y);
	read(SVGImportAttribute::width, viewport.width);
	read(SVGImportAttribute::height, viewport.height);
	return viewport;
}

/// Draws what the outermost element lies on: a rectangle that has none of its other properties.
[[gnu::noinline]] Result<void> DrawBackground(Scene& scene, ObjectBase* element, const Place& outside,
											  const Frame& outermost, const Rectangle& area, Sink& sink) noexcept
{
	Frame frame(element, outside, nullptr, scene.limits);
	frame.place.transform = outside.transform * outermost.local;
	frame.effects = Effects();
	Style style = scene.initialStyle;
	style.color = frame.place.style.color;
	style.colorAlpha = frame.place.style.colorAlpha;
	style.fill = frame.attributes.Find<SVGPaint>(static_cast<std::int32_t>(SVGImportAttribute::backgroundColor));
	style.visibility = frame.place.style.visibility;
	frame.place.style = style;
	Outline outline;
	ORVAN_TRY(outline.AddRectangle(area, 0.0, 0.0));
	return style.fill != nullptr ? sink.DrawShape(frame, outline) : Result<void>();
}

} // namespace

bool IsClippedToViewport(const Frame& frame) noexcept
{
	const auto overflow = frame.GetKeyword(SVGImportAttribute::overflow, SVGOverflow::hidden);
	return overflow == SVGOverflow::hidden || overflow == SVGOverflow::scroll;
}

// What it calls is kept out of its frame on the stack, of which deep trees have many.
Result<void> Walk::DrawElement(ObjectBase* element, const Place& outside, const Frame* outer) noexcept
{
	const Borrowed<SVGElementInterface> svgElement(element);
	if (!svgElement || svgElement->GetDisplay() == SVGDisplay::none)
		return {};
	if (_scene.isComplete)
	{
		const DataDictionary attributes = svgElement->GetAttributeDictionary();
		if (!PassesConditions(attributes, _scene.language))
			return {};
		const auto reference = GetTransformBox(attributes);
		if (reference != SVGTransformBox::viewBox && outside.referenceBox == nullptr)
			return DrawInOwnBox(element, reference, outside, outer);
		if (_scene.drawsFilteredApart && attributes.Has(static_cast<std::int32_t>(SVGImportAttribute::filter)))
			return DrawApart(element, outside, outer);
	}
	return DrawByKind(element, outside, outer);
}

Result<void> Walk::DrawByKind(ObjectBase* element, const Place& outside, const Frame* outer) noexcept
{
	if (const ShapeKind kind = GetShapeKind(element); kind != ShapeKind::none)
		return DrawShape(kind, element, outside, outer);
	if (Borrowed<SVGGroupElementInterface>(element))
		return DrawGroup(element, outside, outer);
	if (Borrowed<SVGUseElementInterface>(element))
		return DrawUse(element, outside, outer);
	if (Borrowed<SVGTextElementInterface>(element))
		return DrawText(element, outside, outer);
	if (Borrowed<SVGImageElementInterface>(element))
		return DrawImage(element, outside, outer);
	if (const Borrowed<SVGSVGElementInterface> svg(element); svg)
	{
		return outer == nullptr ? DrawOutermost(element, outside)
								: DrawViewport(element, svg->GetViewport(), outside, outer);
	}
	return {};
}

[[gnu::noinline]] Result<void> Walk::DrawInOwnBox(ObjectBase* element, SVGTransformBox reference, const Place& outside,
												  const Frame* outer) noexcept
{
	// Boxes inside each other are measured for each one around them.
	if (!_scene.limits.Pay(kElementWork))
		return {};
	// The box is the same wherever the transform puts it, so it is measured around any origin.
	Rectangle box{0.0, 0.0, 0.0, 0.0};
	Place inside = outside;
	inside.referenceBox = &box;
	{
		const Frame frame(element, inside, outer, _scene.limits);
		if (!frame.canDraw)
			return {};
		const bool isStroked = reference == SVGTransformBox::strokeBox || reference == SVGTransformBox::borderBox;
		MeasureSink measure(_scene, frame.place.transform, isStroked ? BoxStrokes::included : BoxStrokes::leftAside);
		ORVAN_TRY(Walk(_scene, measure).DrawElement(element, inside, outer));
		if (measure.GetBox().IsFinite())
			box = measure.GetBox();
	}
	return DrawElement(element, inside, outer);
}

[[gnu::noinline]] Result<void> Walk::DrawApart(ObjectBase* element, const Place& outside, const Frame* outer) noexcept
{
	Place inside = outside;
	// The outermost element has its transform about the middle of what it is fitted into.
	inside.isTransformTaken = outer != nullptr;
	bool isApart = false;
	{
		const Frame frame(element, outside, outer, _scene.limits);
		const Matrix2d& toPicture = outer != nullptr ? frame.place.transform : outside.transform;
		if (frame.canDraw && frame.effects.filter != nullptr)
			isApart = ORVAN_TRY(_sink.BeginApart(frame, toPicture));
	}
	if (!isApart)
		return DrawByKind(element, outside, outer);
	inside.transform = Matrix2d();
	ORVAN_TRY(DrawByKind(element, inside, outer));
	_sink.EndApart();
	return {};
}

Result<void> Walk::DrawChildren(ObjectBase* parent, const Place& place, const Frame& frame) noexcept
{
	const Borrowed<HierarchyObjectInterface> hierarchy(parent);
	if (!hierarchy)
		return {};
	if (ObjectBase* const only = _scene.GetNextOnRoute(parent, frame.depth))
		return DrawElement(only, place, &frame);
	for (auto child = hierarchy->GetFirstChild(); child && !_scene.limits.WasOver(); child = child->GetNextSibling())
		ORVAN_TRY(DrawElement(child.GetObject(), place, &frame));
	return {};
}

[[gnu::noinline]] Result<void> Walk::DrawShape(ShapeKind kind, ObjectBase* element, const Place& outside,
											   const Frame* outer) noexcept
{
	const Frame frame(element, outside, outer, _scene.limits);
	if (!frame.canDraw)
		return {};
	Outline outline = ORVAN_TRY(GetOutline(kind, element, frame));
	return _sink.DrawShape(frame, outline);
}

[[gnu::noinline]] Result<void> Walk::DrawText(ObjectBase* element, const Place& outside, const Frame* outer) noexcept
{
	const Frame frame(element, outside, outer, _scene.limits);
	if (!frame.canDraw)
		return {};
	const TextLayout text = ORVAN_TRY(TextLayout::Create(_scene, frame));
	if (!text.IsDrawable())
		return {};
	return _sink.DrawText(frame, text);
}

/// A side that is not given follows from the other one in the image's proportions, or both from the image.
[[gnu::noinline]] Result<void> Walk::DrawImage(ObjectBase* element, const Place& outside, const Frame* outer) noexcept
{
	using Key = SVGImportAttribute;
	if (_scene.images == nullptr)
		return {};
	const Frame frame(element, outside, outer, _scene.limits);
	const String link = Borrowed<SVGLinkInterface>(element)->GetLink();
	if (!frame.canDraw || link.IsEmpty())
		return {};
	const Image* const image = ORVAN_TRY(_scene.images->Find(link));
	if (image == nullptr)
		return {};
	const auto get = [&](Key key, Axis axis)
	{
		return frame.Resolve(frame.GetOr(key, SVGLength{0.0, SVGLengthUnit::number}), axis);
	};
	const bool hasWidth = frame.Has(Key::width);
	const bool hasHeight = frame.Has(Key::height);
	const double width = hasWidth ? get(Key::width, Axis::horizontal) : 0.0;
	const double height = hasHeight ? get(Key::height, Axis::vertical) : 0.0;
	if ((hasWidth && !(width > 0.0)) || (hasHeight && !(height > 0.0)))
		return {};
	const Vector2d size = image->GetSize().Complete(width, height);
	const double x = get(Key::x, Axis::horizontal);
	const double y = get(Key::y, Axis::vertical);
	const Rectangle viewport{x, y, x + size.x, y + size.y};
	if (!viewport.IsFinite())
		return {};
	return _sink.DrawImage(frame,
						   {*image, viewport, Borrowed<SVGImageElementInterface>(element)->GetPreserveAspectRatio()});
}

// Containers ---------------------------------------------------------------------------------------------------------

[[gnu::noinline]] Result<void> Walk::DrawGroup(ObjectBase* element, const Place& outside, const Frame* outer) noexcept
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
[[gnu::noinline]] Result<void> Walk::DrawSwitch(const Frame& frame, const Place& place) noexcept
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

[[gnu::noinline]] Result<void> Walk::DrawOutermost(ObjectBase* element, const Place& outside) noexcept
{
	Place around = outside;
	around.viewport.outermost.fonts = &_scene.fonts;
	Frame frame(element, around, nullptr, _scene.limits);
	if (!frame.canDraw)
		return {};
	const Rectangle area{0.0, 0.0, _scene.viewportSize.x, _scene.viewportSize.y};
	// To whoever shows it the outermost element is a box, which is transformed about its middle.
	const Matrix2d local = Borrowed<SVGElementInterface>(element)->GetLocalTransform();
	if (local != Matrix2d() && !frame.Has(SVGImportAttribute::transformOrigin))
	{
		frame.local = Around({area.right / 2.0, area.bottom / 2.0}, local);
		frame.place.transform = outside.transform * frame.local;
	}
	const Borrowed<SVGFitToViewboxInterface> fitting(element);
	SVGViewbox viewbox = fitting->GetViewbox();
	if (viewbox.isDefault)
	{
		// The document's own size is what a picture of another size is fitted to.
		viewbox.width.value = _scene.naturalSize.x;
		viewbox.height.value = _scene.naturalSize.y;
		viewbox.isDefault = false;
	}
	const auto fit = FitViewbox(area, viewbox, fitting->GetPreserveAspectRatio());
	if (!fit)
		return {};
	frame.inner = fit->transform;
	frame.place.transform = frame.place.transform * fit->transform;
	frame.place.viewport.Resize(fit->size);
	frame.place.viewport.outermost.fontSize = frame.place.style.fontSize;
	frame.place.viewport.outermost.fontFamily = frame.place.style.fontFamily;
	_scene.viewport = frame.place.viewport;
	const auto draw = [&](Sink& sink) noexcept -> Result<void>
	{
		if (frame.Has(SVGImportAttribute::backgroundColor))
			ORVAN_TRY(DrawBackground(_scene, element, outside, frame, area, sink));
		return Walk(_scene, sink).DrawChildren(element, frame.place, frame);
	};
	return _sink.DrawGroup(frame, draw);
}

[[gnu::noinline]] Result<void> Walk::DrawViewport(ObjectBase* element, const SVGViewport& viewport,
												  const Place& outside, const Frame* outer) noexcept
{
	if (!_sink.TakesContainers())
		return {};
	Frame frame(element, outside, outer, _scene.limits);
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
	// What applies to the element stands in the coordinates of its content, but for the edges.
	const Place edges = frame.place;
	frame.inner = fit->transform;
	frame.place.transform = frame.place.transform * frame.inner;
	frame.place.viewport.Resize(fit->size);
	if (!IsInvertible(frame.place.transform))
		return {};
	const auto draw = [&](Sink& sink) noexcept
	{
		return Walk(_scene, sink).DrawChildren(element, frame.place, frame);
	};
	const auto drawClipped = [&](Sink& sink) noexcept
	{
		return IsClippedToViewport(frame) ? sink.DrawClipped(edges, area, draw) : draw(sink);
	};
	return _sink.DrawGroup(frame, drawClipped);
}

// Uses ---------------------------------------------------------------------------------------------------------------

[[gnu::noinline]] Result<void> Walk::DrawUse(ObjectBase* element, const Place& outside, const Frame* outer) noexcept
{
	Frame frame(element, outside, outer, _scene.limits);
	const String link = Borrowed<SVGUseElementInterface>(element)->GetLink();
	if (!frame.canDraw || link.IsEmpty())
		return {};
	const SVGElementRef target = ORVAN_TRY(FindElement(_scene, link));
	if (!target || target->GetDisplay() == SVGDisplay::none)
		return {};
	// Where containers do not count, what a use stands for is a shape or a text itself.
	if (!_sink.TakesContainers() && Borrowed<SVGUseElementInterface>(target.GetObject()))
		return {};
	// The position is part of the transform: what applies to the use moves along.
	const SVGLength2d position = Borrowed<SVGPositionInterface>(element)->GetPosition();
	frame.inner = Translation(frame.Resolve(position.x, Axis::horizontal), frame.Resolve(position.y, Axis::vertical));
	frame.place.transform = frame.place.transform * frame.inner;
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
	Place inside = use.place;
	inside.isByReference = true;
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
	SVGViewport viewport = svg ? svg->GetViewport() : GetSymbolViewport(target);
	if (use.Has(SVGImportAttribute::width))
		viewport.width = size.x;
	if (use.Has(SVGImportAttribute::height))
		viewport.height = size.y;
	return DrawViewport(target, viewport, inside, &use);
}

} // namespace orvan::drawing
