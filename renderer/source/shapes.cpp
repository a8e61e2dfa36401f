/// The elements that are drawn themselves.
#include "cairo_context.h"
#include "scopes.h"

#include <numeric>

namespace orvan::cairo
{
namespace
{

/// More dashes than this in one element are not drawn one by one.
constexpr double kMaxDashes = 100000.0;
constexpr int kMaxDashArray = 256;

cairo_line_cap_t ToCairo(SVGLineCap cap) noexcept
{
	switch (cap)
	{
	case SVGLineCap::round:
		return CAIRO_LINE_CAP_ROUND;
	case SVGLineCap::square:
		return CAIRO_LINE_CAP_SQUARE;
	case SVGLineCap::butt:
		break;
	}
	return CAIRO_LINE_CAP_BUTT;
}

cairo_line_join_t ToCairo(SVGLineJoin join) noexcept
{
	switch (join)
	{
	case SVGLineJoin::round:
		return CAIRO_LINE_JOIN_ROUND;
	case SVGLineJoin::bevel:
		return CAIRO_LINE_JOIN_BEVEL;
	case SVGLineJoin::miter:
		break;
	}
	return CAIRO_LINE_JOIN_MITER;
}

cairo_fill_rule_t ToCairo(SVGFillRule rule) noexcept
{
	return rule == SVGFillRule::evenodd ? CAIRO_FILL_RULE_EVEN_ODD : CAIRO_FILL_RULE_WINDING;
}

const SVGPaint kBlack{};
constexpr double kShortestDash = 0.05; ///< In pixels; what is shorter looks solid anyway.

} // namespace

double CairoContext::Resolve(const SVGLength& length, Axis axis) const noexcept
{
	return ToUserUnits(length, axis, _state.viewport, _state.style.fontSize);
}

// Paint --------------------------------------------------------------------------------------------------------------

bool CairoContext::HasFill() const noexcept
{
	const SVGPaint* fill = _state.style.fill;
	return _mode == Mode::clip || fill == nullptr || fill->type != SVGPaintType::none;
}

bool CairoContext::HasStroke() const noexcept
{
	const SVGPaint* stroke = _state.style.stroke;
	return (_mode == Mode::paint || _mode == Mode::measure) && stroke != nullptr &&
		   stroke->type != SVGPaintType::none && GetStrokeWidth() > 0.0;
}

double CairoContext::GetStrokeWidth() const noexcept
{
	const double width = Resolve(_state.style.strokeWidth, Axis::other);
	return std::isfinite(width) ? width : 0.0;
}

Result<bool> CairoContext::SetFill(const Rectangle& bounds, double opacity) noexcept
{
	const Style& style = _state.style;
	if (_mode == Mode::clip)
	{
		cairo_set_source_rgba(_drawing, 0.0, 0.0, 0.0, 1.0);
		return true;
	}
	return SetSource(_drawing, style.fill != nullptr ? *style.fill : kBlack, ClampToUnit(style.fillOpacity) * opacity,
					 {_picture.GetDocument(), _state.transform, _state.viewport, style.fontSize, bounds});
}

Result<bool> CairoContext::SetStroke(const Rectangle& bounds, double opacity) noexcept
{
	const Style& style = _state.style;
	if (!HasStroke())
		return false;
	return SetSource(_drawing, *style.stroke, ClampToUnit(style.strokeOpacity) * opacity,
					 {_picture.GetDocument(), _state.transform, _state.viewport, style.fontSize, bounds});
}

/// Sets the dashes of the stroke; false when the line is solid.
bool CairoContext::SetDashes(double width) noexcept
{
	const Style& style = _state.style;
	if (style.dashes == nullptr || style.dashes->IsEmpty() || style.dashes->GetCount() > kMaxDashArray)
		return false;
	double dashes[kMaxDashArray];
	int count = 0;
	double sum = 0.0;
	for (const SVGLength& dash : *style.dashes)
	{
		const double length = ToUserUnits(dash, Axis::other, _state.viewport, style.dashFontSize);
		if (!std::isfinite(length) || length < 0.0)
			return false;
		dashes[count++] = length;
		sum += length;
	}
	const double scale = GetStretch(_state.transform);
	if (!std::isfinite(sum) || sum * scale < kShortestDash * count)
		return false;
	// The library works through every dash of a line, also far outside of the picture.
	double left = 0.0;
	double top = 0.0;
	double right = 0.0;
	double bottom = 0.0;
	cairo_path_extents(_drawing, &left, &top, &right, &bottom);
	const double dashCount = (right - left + bottom - top + width * scale) / (sum * scale) * count;
	if (dashCount > kMaxDashes || !PayInReference(dashCount * kDashWork))
	{
		Omit(Omission::dashes);
		return false;
	}
	const double offset = Resolve(style.dashOffset, Axis::other);
	cairo_set_dash(_drawing, dashes, count, std::isfinite(offset) ? std::fmod(offset, sum * 2.0) : 0.0);
	return true;
}

/// Strokes the current path, which is used up.
void CairoContext::StrokePath() noexcept
{
	const Style& style = _state.style;
	const double width = GetStrokeWidth();
	if (!SetDashes(width))
		cairo_set_dash(_drawing, nullptr, 0, 0.0);
	cairo_set_line_cap(_drawing, ToCairo(style.lineCap));
	cairo_set_line_join(_drawing, ToCairo(style.lineJoin));
	cairo_set_miter_limit(_drawing, style.miterLimit >= 1.0 ? style.miterLimit : 1.0);
	// The pen is round in the element's coordinates, not in those of the picture.
	const cairo_matrix_t matrix = cairo::ToCairo(_state.transform);
	cairo_set_matrix(_drawing, &matrix);
	cairo_set_line_width(_drawing, width);
	cairo_stroke(_drawing);
	cairo_identity_matrix(_drawing);
}

/// A box around what fill and stroke of a shape touch.
Rectangle CairoContext::GetPaintedBounds(const Rectangle& deviceBounds) const noexcept
{
	// One pixel more for the soft edges.
	if (!HasStroke())
		return deviceBounds.Grow(1.0);
	const Style& style = _state.style;
	const double reach = style.lineJoin == SVGLineJoin::miter ? std::max(style.miterLimit, 1.5) : 1.5;
	return deviceBounds.Grow(GetStrokeWidth() / 2.0 * reach * GetStretch(_state.transform) + 1.0);
}

/// What painting a box and going through `details` costs.
double CairoContext::GetWork(const Rectangle& painted, double details) const noexcept
{
	const Style& style = _state.style;
	const auto isGradient = [](const SVGPaint* paint)
	{
		return paint != nullptr && paint->type == SVGPaintType::reference;
	};
	const double factor = isGradient(style.fill) || isGradient(style.stroke) ? kGradientFactor : 1.0;
	return painted.Intersect(GetClipExtents()).GetArea() * factor + details;
}

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
