// SPDX-License-Identifier: MIT
/// What applies to an element as one picture: clip path, mask and opacity.
///
/// An element with such effects is drawn into a layer as large as the part of the picture that can change, and the
/// layer is then put through the clip, the mask and the opacity. Two shortcuts do without: a clip path of one plain
/// shape becomes a clip of the drawing library's, and a shape's opacity goes into its paint where there is but one.
#include "cairo_context.h"
#include "references.h"
#include "scopes.h"

namespace orvan::cairo
{
namespace
{

/// How many layers inside each other have their content measured before they are made.
constexpr int kMeasuredLayers = 4;
/// How many pixels a mask on a page has for each point.
constexpr double kPageDetail = 4.0;

/// Turns colours into coverage: the brightness of each pixel, times the opacity, becomes its alpha.
void ToLuminance(cairo_surface_t* surface, double opacity) noexcept
{
	cairo_surface_flush(surface);
	unsigned char* const data = cairo_image_surface_get_data(surface);
	const int width = cairo_image_surface_get_width(surface);
	const int height = cairo_image_surface_get_height(surface);
	const int stride = cairo_image_surface_get_stride(surface);
	const auto weight = [&](double share)
	{
		return static_cast<std::uint32_t>(std::lround(share * opacity * 65536.0));
	};
	const std::uint32_t red = weight(0.2125);
	const std::uint32_t green = weight(0.7154);
	const std::uint32_t blue = weight(0.0721);
	for (int y = 0; y < height && data != nullptr; y++)
	{
		auto* const row = reinterpret_cast<std::uint32_t*>(data + static_cast<std::ptrdiff_t>(y) * stride);
		for (int x = 0; x < width; x++)
		{
			const std::uint32_t pixel = row[x];
			const std::uint32_t sum =
				(pixel >> 16 & 255) * red + (pixel >> 8 & 255) * green + (pixel & 255) * blue + 32768;
			row[x] = std::min(sum >> 16, 255u) << 24;
		}
	}
	cairo_surface_mark_dirty(surface);
}

/// The properties that an element gets from the elements around it, where it stands in the document.
Result<Style> GetInheritedStyle(const SVGElementRef& element) noexcept
{
	BaseArray<SVGElementRef> ancestors;
	auto at = Cast<HierarchyObjectInterface>(element);
	while (at && ancestors.GetCount() < kMaxDepth)
	{
		at = ORVAN_TRY(at->GetParent());
		if (const auto ancestor = Cast<SVGElementInterface>(at))
			ORVAN_TRY(ancestors.Append(ancestor));
	}
	Style style;
	for (std::size_t i = ancestors.GetCount(); i-- > 0;)
		style.Apply(ancestors[i]->GetAttributeDictionary());
	return style;
}

/// What a clip path is made of, as far as that decides how to apply it.
struct ClipContent
{
	SVGElementRef shape; ///< The only shape, or null.
	bool isSimple = true;
};

ClipContent GetClipContent(const SVGElementRef& clip) noexcept
{
	ClipContent content;
	const auto hierarchy = Cast<HierarchyObjectInterface>(clip);
	for (auto child = hierarchy->GetFirstChild(); child && content.isSimple; child = child->GetNextSibling())
	{
		const auto element = Cast<SVGElementInterface>(child);
		if (!element || element->GetDisplay() == SVGDisplay::none)
			continue;
		const bool isShape = Cast<SVGPathElementInterface>(child) || Cast<SVGRectElementInterface>(child) ||
							 Cast<SVGCircleElementInterface>(child);
		if (isShape)
		{
			content.isSimple = !content.shape && !element->HasAttribute(SVGImportAttribute::clipPath);
			content.shape = element;
		}
		else if (Cast<SVGUseElementInterface>(child) || Cast<SVGTextElementInterface>(child))
			content.isSimple = false;
	}
	return content;
}

} // namespace

Rectangle CairoContext::GetClipExtents() const noexcept
{
	Rectangle extents;
	cairo_clip_extents(_drawing, &extents.left, &extents.top, &extents.right, &extents.bottom);
	return extents;
}

void CairoContext::ClipToRectangle(const Rectangle& rectangle, const Matrix2d& transform) noexcept
{
	Outline outline(_drawing, transform);
	outline.AddRectangle(rectangle.left, rectangle.top, rectangle.GetWidth(), rectangle.GetHeight(), 0.0, 0.0);
	outline.Finish();
	if (!outline.IsDrawable())
		cairo_new_path(_drawing);
	cairo_set_fill_rule(_drawing, CAIRO_FILL_RULE_WINDING);
	cairo_clip(_drawing);
}

/// What a drawing is going to touch.
Result<Rectangle> CairoContext::Measure(Drawing draw) noexcept
{
	const Mode mode = std::exchange(_mode, Mode::measure);
	const Rectangle outer = std::exchange(_measured, Rectangle());
	Result<void> drawn = draw();
	_mode = mode;
	const Rectangle measured = std::exchange(_measured, outer);
	ORVAN_TRY(drawn);
	return measured;
}

/// The element that an effect names, when it is of the right kind. A reference that leads to nothing, or back to where
/// it comes from, counts as none.
Result<SVGElementRef> CairoContext::FindReferenced(const String* id, SVGImportElementKind kind) noexcept
{
	if (id == nullptr)
		return SVGElementRef();
	const SVGElementRef found = ORVAN_TRY(FindElement(_picture.GetDocument(), *id));
	const bool isRight = kind == SVGImportElementKind::mask
							 ? static_cast<bool>(Cast<SVGMaskElementInterface>(found))
							 : static_cast<bool>(Cast<SVGClipPathElementInterface>(found));
	if (!isRight)
		return SVGElementRef();
	if (_innermost->IsWithin(found.GetObject()))
	{
		Omit(Omission::cycle);
		return SVGElementRef();
	}
	return found;
}

Result<void> CairoContext::ComposeLayers(const Effects& effects, const Extent& extent, Drawing draw) noexcept
{
	if (_mode == Mode::measure)
		return draw();
	const SVGElementRef clip = ORVAN_TRY(FindReferenced(effects.clipPath, SVGImportElementKind::clipPath));
	SVGElementRef mask;
	double opacity = 1.0;
	if (_mode == Mode::paint)
	{
		mask = ORVAN_TRY(FindReferenced(effects.mask, SVGImportElementKind::mask));
		opacity = effects.opacity;
	}
	if (opacity == 0.0)
		return {};
	const DrawingScope saved(_drawing);
	if (extent.device != nullptr)
		ClipToRectangle(extent.device->RoundOut(), {});
	const bool isClipSimple = !clip || ORVAN_TRY(ClipSimply(clip));
	if (isClipSimple && !mask && opacity == 1.0)
		return GetClipExtents().GetArea() > 0.0 ? draw() : Result<void>();
	// Below a few layers measuring anew would cost more than it saves: the outer ones have set bounds already.
	if (extent.device == nullptr && _layers < kMeasuredLayers)
		ClipToRectangle(ORVAN_TRY(Measure(draw)).RoundOut(), {});
	if (!(GetClipExtents().GetArea() > 0.0))
		return {};
	return ComposeAlpha(opacity, mask, isClipSimple ? SVGElementRef() : clip, extent, draw);
}

Result<void> CairoContext::ComposeAlpha(double opacity, const SVGElementRef& mask, const SVGElementRef& clip,
										const Extent& extent, Drawing draw) noexcept
{
	const Rectangle area = GetClipExtents().RoundOut();
	const LayerScope layer(*this, area.GetArea() * (clip ? 2.0 : 1.0));
	const LayerScope maskLayer(*this, mask ? area.GetArea() * GetMaskDetail() * GetMaskDetail() : 0.0);
	if (!layer.IsOpen() || !maskLayer.IsOpen())
		return {};
	cairo_push_group(_drawing);
	Result<void> drawn = draw();
	PatternPtr content(cairo_pop_group(_drawing));
	ORVAN_TRY(drawn);
	if (clip)
	{
		const PatternPtr coverage = ORVAN_TRY(DrawClip(clip));
		const bool isLast = !mask && opacity == 1.0;
		if (!isLast)
			cairo_push_group(_drawing);
		cairo_set_source(_drawing, content.get());
		cairo_mask(_drawing, coverage.get());
		if (isLast)
			return {};
		content.reset(cairo_pop_group(_drawing));
	}
	cairo_set_source(_drawing, content.get());
	if (mask)
		cairo_mask(_drawing, ORVAN_TRY(DrawMask(mask, area, extent, opacity)).get());
	else
		cairo_paint_with_alpha(_drawing, opacity);
	return {};
}

/// Sets the state for content that stands elsewhere in the document: it inherits from what is around it there.
Result<void> CairoContext::EnterContent(const SVGElementRef& element) noexcept
{
	_state.style = ORVAN_TRY(GetInheritedStyle(element));
	return {};
}

// Clip paths ---------------------------------------------------------------------------------------------------------

/// Clips the drawing to a clip path of at most one plain shape; false, and no change, when it is more than that.
Result<bool> CairoContext::ClipSimply(const SVGElementRef& clip) noexcept
{
	const ClipContent content = GetClipContent(clip);
	if (!content.isSimple)
		return false;
	const ReferenceScope reference(*this);
	ORVAN_TRY(EnterContent(clip));
	const ElementScope scope(*this, clip.GetObject());
	const Effects effects = scope.GetEffects();
	const SVGElementRef nested = ORVAN_TRY(FindReferenced(effects.clipPath, SVGImportElementKind::clipPath));
	if (nested && !ORVAN_TRY(ClipSimply(nested)))
		return false;
	cairo_new_path(_drawing);
	_mode = Mode::outline;
	if (scope.CanDraw())
		ORVAN_TRY(DrawSVGElement(SVGContextRef::From(this), content.shape));
	// Without a shape the path is empty, and everything is clipped away.
	cairo_clip(_drawing);
	return true;
}

/// The areas of a clip path's shapes together, as coverage.
Result<PatternPtr> CairoContext::DrawClip(const SVGElementRef& clip) noexcept
{
	const ReferenceScope reference(*this);
	ORVAN_TRY(EnterContent(clip));
	const ElementScope scope(*this, clip.GetObject());
	_mode = Mode::clip;
	cairo_push_group_with_content(_drawing, CAIRO_CONTENT_ALPHA);
	Effects effects = scope.GetEffects();
	effects.opacity = 1.0;
	Result<void> drawn;
	if (scope.CanDraw())
		drawn = Compose(effects, {}, [&]() noexcept { return DrawChildren(clip); });
	PatternPtr coverage(cairo_pop_group(_drawing));
	ORVAN_TRY(drawn);
	return coverage;
}

// Masks --------------------------------------------------------------------------------------------------------------

double CairoContext::GetMaskDetail() const noexcept
{
	return _picture.GetOutput() == SVGRenderOutput::page ? kPageDetail : 1.0;
}

/// The brightness of a mask's content over `area`, times the opacity, as coverage.
Result<PatternPtr> CairoContext::DrawMask(const SVGElementRef& mask, const Rectangle& area, const Extent& extent,
										  double opacity) noexcept
{
	// An image of its own, since the brightness is taken from its pixels. It has the drawing's coordinates.
	const double detail = GetMaskDetail();
	const SurfacePtr surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(area.GetWidth() * detail),
														static_cast<int>(area.GetHeight() * detail)));
	cairo_surface_set_device_scale(surface.get(), detail, detail);
	cairo_surface_set_device_offset(surface.get(), -area.left * detail, -area.top * detail);
	const CairoPtr drawing(cairo_create(surface.get()));
	if (cairo_status(drawing.get()) != CAIRO_STATUS_SUCCESS)
		return OutOfMemoryError();

	cairo_t* const outer = std::exchange(_drawing, drawing.get());
	Result<void> drawn = [&]() noexcept -> Result<void>
	{
		const ReferenceScope reference(*this);
		ORVAN_TRY(EnterContent(mask));
		const ElementScope scope(*this, mask.GetObject());
		if (!scope.CanDraw())
			return {};
		_mode = Mode::paint;
		ClipToRegion(mask, extent.user);
		Effects effects = scope.GetEffects();
		effects.opacity = 1.0;
		return Compose(effects, {}, [&]() noexcept { return DrawChildren(mask); });
	}();
	_drawing = outer;
	ORVAN_TRY(drawn);
	ToLuminance(surface.get(), opacity);
	PatternPtr coverage(cairo_pattern_create_for_surface(surface.get()));
	cairo_pattern_set_filter(coverage.get(), detail == 1.0 ? CAIRO_FILTER_NEAREST : CAIRO_FILTER_GOOD);
	return coverage;
}

/// Clips to the region that a mask names. The tree does not tell its units, so the numbers must: a region more than
/// twice as large as the element's box would be without effect, so it is meant in the user's units. Without a size, the
/// region is a little larger than the element whatever its units, and is taken as without limit.
void CairoContext::ClipToRegion(const SVGElementRef& mask, const Rectangle* bounds) noexcept
{
	if (!mask->HasAttribute(SVGImportAttribute::width) || !mask->HasAttribute(SVGImportAttribute::height))
		return;
	const SVGLength2d position = Cast<SVGPositionInterface>(mask)->GetPosition();
	const SVGLength2d size = Cast<SVGSizeInterface>(mask)->GetSize();
	constexpr double kLargestFraction = 2.0;
	const bool isFraction = size.x.value <= kLargestFraction && size.y.value <= kLargestFraction;
	if (!isFraction)
	{
		const double x = Resolve(position.x, Axis::horizontal);
		const double y = Resolve(position.y, Axis::vertical);
		ClipToRectangle({x, y, x + Resolve(size.x, Axis::horizontal), y + Resolve(size.y, Axis::vertical)},
						_state.transform);
	}
	else if (bounds != nullptr)
	{
		const double x = bounds->left + position.x.value * bounds->GetWidth();
		const double y = bounds->top + position.y.value * bounds->GetHeight();
		ClipToRectangle({x, y, x + size.x.value * bounds->GetWidth(), y + size.y.value * bounds->GetHeight()},
						_state.transform);
	}
}

} // namespace orvan::cairo
