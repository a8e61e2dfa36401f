// SPDX-License-Identifier: MIT
/// Between the pixels of filters and the drawing library.
#pragma once

#include "canvas.h"
#include "filter_space.h"
#include "layers.h"

namespace orvan::cairo
{

/// Draws into pixels of `box`. `draw` gets a canvas that takes the picture's coordinates.
template <typename Draw>
Result<filters::Raster> DrawRaster(Job& job, const FilterSpace& space, const filters::Box& box, Draw draw) noexcept
{
	filters::Raster raster(box);
	if (!raster.IsThere())
		return OutOfMemoryError();
	if (box.IsEmpty())
		return raster;
	const SurfacePtr surface(cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(raster.GetPixels()),
																 CAIRO_FORMAT_ARGB32, box.GetWidth(), box.GetHeight(),
																 box.GetWidth() * 4));
	const CairoPtr drawing(cairo_create(surface.get()));
	const cairo_matrix_t matrix = ToCairo(drawing::Translation(-box.left, -box.top) * space.pictureToPixels);
	cairo_set_matrix(drawing.get(), &matrix);
	const Canvas canvas{job, drawing.get()};
	Result<void> drawn = draw(canvas);
	cairo_surface_finish(surface.get());
	ORVAN_TRY(drawn);
	if (cairo_status(drawing.get()) == CAIRO_STATUS_NO_MEMORY)
		return OutOfMemoryError();
	return raster;
}

/// The pixels as a source that takes the picture's coordinates; null where these have no way back. Fails for want of
/// memory only.
Result<PatternPtr> ToPattern(const filters::Raster& raster, const FilterSpace& space) noexcept;

} // namespace orvan::cairo
