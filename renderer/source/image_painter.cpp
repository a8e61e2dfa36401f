// SPDX-License-Identifier: MIT
#include "image_painter.h"

#include "drawing/viewbox.h"
#include "drawing/walk.h"
#include "image_store.h"
#include "layers.h"
#include "painter.h"
#include "paths.h"

namespace orvan::cairo
{
namespace
{

using namespace drawing;

/// How pixels become larger or smaller: as they are where that is asked for, otherwise smoothly, from all of them that
/// fall together.
cairo_filter_t GetFilter(SVGImageRendering rendering, const Matrix2d& toPicture) noexcept
{
	const bool isSharp = rendering == SVGImageRendering::pixelated || rendering == SVGImageRendering::crispEdges ||
						 rendering == SVGImageRendering::optimizeSpeed;
	if (isSharp)
		return CAIRO_FILTER_NEAREST;
	const double scale =
		std::min(std::hypot(toPicture.axis1.x, toPicture.axis1.y), std::hypot(toPicture.axis2.x, toPicture.axis2.y));
	return scale < 1.0 ? CAIRO_FILTER_GOOD : CAIRO_FILTER_BILINEAR;
}

/// Fills `visible` with the pixels of a surface, which `toPicture` places.
void PaintSurface(const Canvas& canvas, cairo_surface_t* surface, SVGImageRendering rendering, const Matrix2d& user,
				  const Matrix2d& toPicture, const Rectangle& visible) noexcept
{
	const PatternPtr pattern(cairo_pattern_create_for_surface(surface));
	if (!SetMatrix(pattern.get(), Invert(toPicture)))
		return;
	cairo_pattern_set_filter(pattern.get(), GetFilter(rendering, toPicture));
	// The edges stay as they are instead of fading out. A page places images without that.
	if (canvas.job.output == SVGRenderOutput::pixels)
		cairo_pattern_set_extend(pattern.get(), CAIRO_EXTEND_PAD);
	const SavedDrawing saved(canvas);
	cairo_set_source(canvas.drawing, pattern.get());
	PathWriter writer(canvas.drawing, user);
	writer.MoveTo({visible.left, visible.top});
	writer.LineTo({visible.right, visible.top});
	writer.LineTo({visible.right, visible.bottom});
	writer.LineTo({visible.left, visible.bottom});
	writer.Close();
	if (writer.Finish().IsDrawable())
		cairo_fill(canvas.drawing);
	cairo_new_path(canvas.drawing);
}

template <typename Draw>
Result<void> DrawAsLayer(const Canvas& canvas, const Rectangle& area, Draw draw) noexcept
{
	const LayerScope layer(canvas.job.scene.limits, area.GetArea());
	if (!layer.IsOpen())
		return {};
	cairo_push_group(canvas.drawing);
	Result<void> drawn = draw();
	cairo_pop_group_to_source(canvas.drawing);
	ORVAN_TRY(drawn);
	cairo_paint(canvas.drawing);
	return {};
}

/// Draws a document of this size as one picture, cut off at the edges of `visible`. Units of the viewport refer to
/// `outermost`.
Result<void> PaintDocument(const Canvas& canvas, const StoredImage& image, const Vector2d& size,
						   const Vector2d& outermost, const Matrix2d& user, const Matrix2d& toPicture,
						   const Rectangle& visible) noexcept
{
	Job& outer = canvas.job;
	const SavedDrawing saved(canvas);
	canvas.ClipTo(visible, user);
	const Rectangle area = canvas.GetClipExtents().RoundOut();
	if (!(area.GetArea() > 0.0))
		return {};
	const auto* const images = static_cast<const ImageStore*>(outer.scene.images);
	Job job{{image.GetDocument(), size, size, outer.scene.fonts}, outer.output};
	ImageStore store(job.scene, images->GetDepth() + 1, outer.output == SVGRenderOutput::page);
	job.scene.images = &store;
	job.scene.isComplete = true;
	job.scene.language = outer.scene.language;
	job.scene.placement = toPicture;
	job.scene.unit = std::hypot(toPicture.axis1.x, toPicture.axis1.y);
	// Time, memory and work are those of the whole picture.
	job.scene.limits = outer.scene.limits;
	Place place;
	place.style = job.scene.initialStyle;
	place.transform = toPicture;
	place.viewport = {size.x, size.y, {outermost.x, outermost.y}};
	place.isByReference = true;
	const Canvas inside{job, canvas.drawing};
	const auto draw = [&]() noexcept
	{
		Painter painter(inside);
		return Walk(job.scene, painter).DrawElement(image.GetDocument()->GetRootElement().GetObject(), place, nullptr);
	};
	// What is blended in an image is blended with what stands in the image.
	Result<void> drawn = ORVAN_TRY(HasBlendModes(job.scene)) ? DrawAsLayer(inside, area, draw) : draw();
	outer.scene.limits = job.scene.limits;
	return drawn;
}

} // namespace

Result<void> PaintImage(const Canvas& canvas, const Frame& frame, const PlacedImage& placed) noexcept
{
	const auto& image = static_cast<const StoredImage&>(placed.image);
	const bool isStretched = placed.rule.align == SVGAlign::none;
	const Vector2d viewport{placed.viewport.GetWidth(), placed.viewport.GetHeight()};
	const Vector2d size = image.GetContentSize(viewport, isStretched);
	SVGViewbox box;
	box.isDefault = false;
	box.width.value = size.x;
	box.height.value = size.y;
	const auto fit = FitViewbox(placed.viewport, box, placed.rule);
	if (!fit)
		return {};
	const Matrix2d toPicture = frame.place.transform * fit->transform;
	const bool hasViewbox = image.HasViewbox() && !isStretched;
	// What a document has beside its view box shows as well.
	const Rectangle content = hasViewbox ? placed.viewport : Transform(fit->transform, {0.0, 0.0, size.x, size.y});
	const Rectangle visible = content.Intersect(placed.viewport);
	if (visible.IsEmpty() || !IsInvertible(toPicture))
		return {};
	if (image.GetSurface() == nullptr)
	{
		const Vector2d outermost = hasViewbox ? viewport : size;
		return PaintDocument(canvas, image, size, outermost, frame.place.transform, toPicture, visible);
	}
	PaintSurface(canvas, image.GetSurface(), frame.place.style.imageRendering, frame.place.transform, toPicture,
				 visible);
	return {};
}

} // namespace orvan::cairo
