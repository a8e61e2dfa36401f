// SPDX-License-Identifier: MIT
/// The elements that are drawn themselves.
#include "cairo_context.h"
#include "scopes.h"

#include <utility>

namespace orvan::cairo
{
namespace
{

cairo_fill_rule_t ToCairo(SVGFillRule rule) noexcept
{
	return rule == SVGFillRule::evenodd ? CAIRO_FILL_RULE_EVEN_ODD : CAIRO_FILL_RULE_WINDING;
}

} // namespace

// Shapes -------------------------------------------------------------------------------------------------------------

Result<void> CairoContext::PaintOutline(const Outline& outline, double opacity) noexcept
{
	const Rectangle& bounds = outline.GetUserBounds();
	if (HasFill() && ORVAN_TRY(SetFill(bounds, opacity)))
	{
		cairo_set_fill_rule(_drawing, ToCairo(_state.style.fillRule));
		cairo_fill_preserve(_drawing);
	}
	if (ORVAN_TRY(SetStroke(bounds, opacity)))
		StrokePath();
	cairo_new_path(_drawing);
	return {};
}

/// Draws a shape whose outline `build` makes, with its effects.
template <typename Build>
Result<void> CairoContext::DrawShape(ObjectBase* element, Build build) noexcept
{
	const ElementScope scope(*this, element);
	if (!scope.CanDraw() || _state.style.visibility != SVGVisibility::visible)
		return {};
	Outline outline(_drawing, _state.transform);
	ORVAN_TRY(build(outline));
	outline.Finish();
	if (!outline.IsDrawable())
	{
		cairo_new_path(_drawing);
		return {};
	}
	if (_mode == Mode::outline)
	{
		cairo_set_fill_rule(_drawing, ToCairo(_state.style.fillRule));
		return {};
	}
	const Rectangle painted = GetPaintedBounds(outline.GetDeviceBounds());
	if (_mode == Mode::measure)
	{
		_measured.Include(painted);
		cairo_new_path(_drawing);
		return {};
	}
	if (_references != 0 && !PayInReference(GetWork(painted, outline.GetCommandCount() * kCommandWork)))
		return {};
	Effects effects = scope.GetEffects();
	// One paint alone can be made transparent itself; only fill and stroke together need a layer.
	double opacity = 1.0;
	if (!HasFill() || !HasStroke())
		opacity = std::exchange(effects.opacity, 1.0);
	if (effects.IsNone())
		return PaintOutline(outline, opacity);
	return Compose(effects, {&outline.GetUserBounds(), &painted},
				   [&]() noexcept -> Result<void>
				   {
					   Outline again(_drawing, _state.transform);
					   ORVAN_TRY(build(again));
					   again.Finish();
					   return PaintOutline(again, opacity);
				   });
}

Result<void> CairoContext::DrawPath(const SVGPathElementRef& element) noexcept
{
	return DrawShape(element.GetObject(),
					 [&](Outline& outline) noexcept -> Result<void>
					 {
						 outline.AddPath(ORVAN_TRY(element->GetPath()));
						 return {};
					 });
}

Result<void> CairoContext::DrawRectangle(const SVGRectElementRef& element) noexcept
{
	return DrawShape(element.GetObject(),
					 [&](Outline& outline) noexcept -> Result<void>
					 {
						 const SVGLength2d position = Cast<SVGPositionInterface>(element)->GetPosition();
						 const SVGLength2d size = Cast<SVGSizeInterface>(element)->GetSize();
						 const auto radius = Cast<SVGRadiusInterface>(element);
						 const double width = Resolve(size.x, Axis::horizontal);
						 const double height = Resolve(size.y, Axis::vertical);
						 if (width > 0.0 && height > 0.0)
						 {
							 outline.AddRectangle(Resolve(position.x, Axis::horizontal),
												  Resolve(position.y, Axis::vertical), width, height,
												  Resolve(radius->GetRadiusX(), Axis::horizontal),
												  Resolve(radius->GetRadiusY(), Axis::vertical));
						 }
						 return {};
					 });
}

Result<void> CairoContext::DrawLine(const SVGLineElementRef& element) noexcept
{
	return DrawShape(
		element.GetObject(),
		[&](Outline& outline) noexcept -> Result<void>
		{
			outline.MoveTo({Resolve(element->GetX1(), Axis::horizontal), Resolve(element->GetY1(), Axis::vertical)});
			outline.LineTo({Resolve(element->GetX2(), Axis::horizontal), Resolve(element->GetY2(), Axis::vertical)});
			return {};
		});
}

Result<void> CairoContext::DrawCircle(const SVGCircleElementRef& element) noexcept
{
	return DrawShape(
		element.GetObject(),
		[&](Outline& outline) noexcept -> Result<void>
		{
			const SVGLength2d center = Cast<SVGPositionInterface>(element)->GetPosition();
			const auto radius = Cast<SVGRadiusInterface>(element);
			// A circle's one radius is measured by both sides of the viewport, an ellipse's two by one each.
			const bool isCircle = Cast<SVGElementInterface>(element)->HasAttribute(SVGImportAttribute::r);
			const double rx = Resolve(radius->GetRadiusX(), isCircle ? Axis::other : Axis::horizontal);
			const double ry = Resolve(radius->GetRadiusY(), isCircle ? Axis::other : Axis::vertical);
			if (rx > 0.0 && ry > 0.0)
			{
				outline.AddEllipse({Resolve(center.x, Axis::horizontal), Resolve(center.y, Axis::vertical)}, rx, ry);
			}
			return {};
		});
}

// Text ---------------------------------------------------------------------------------------------------------------

Result<void> CairoContext::PaintText(const TextLine& line, double opacity) noexcept
{
	const Rectangle& bounds = line.GetBounds();
	if (HasFill() && ORVAN_TRY(SetFill(bounds, opacity)))
		line.Fill(_drawing, _state.transform);
	if (ORVAN_TRY(SetStroke(bounds, opacity)))
	{
		line.AddOutline(_drawing, _state.transform);
		StrokePath();
	}
	cairo_new_path(_drawing);
	return {};
}

Result<void> CairoContext::DrawText(const SVGTextElementRef& element) noexcept
{
	const ElementScope scope(*this, element.GetObject());
	const String text = element->GetText();
	if (!scope.CanDraw() || _state.style.visibility != SVGVisibility::visible || text.IsEmpty())
		return {};
	if (_fonts == nullptr)
		_fonts = CreateFontContext();
	const SVGLength2d position = Cast<SVGPositionInterface>(element)->GetPosition();
	bool isShortened = false;
	const TextLine line =
		ORVAN_TRY(TextLine::Create(_fonts.get(), text, _state.style, Resolve(position.x, Axis::horizontal),
								   Resolve(position.y, Axis::vertical), isShortened));
	if (isShortened)
		Omit(Omission::text);
	if (!line.IsDrawable())
		return {};
	if (_state.style.fontSize * GetStretch(_state.transform) > kMaxFontSize)
	{
		Omit(Omission::fontSize);
		return {};
	}
	// Glyphs may reach out of their line's box.
	const Rectangle box = line.GetBounds().Grow(_state.style.fontSize / 2.0);
	const Rectangle painted = GetPaintedBounds(Transform(_state.transform, box));
	if (_mode == Mode::measure)
	{
		_measured.Include(painted);
		return {};
	}
	if (_references != 0 && !PayInReference(GetWork(painted, static_cast<double>(text.GetSize()) * kCharacterWork)))
		return {};
	Effects effects = scope.GetEffects();
	double opacity = 1.0;
	if (!HasFill() || !HasStroke())
		opacity = std::exchange(effects.opacity, 1.0);
	return Compose(effects, {&line.GetBounds(), &painted}, [&]() noexcept { return PaintText(line, opacity); });
}

} // namespace orvan::cairo
