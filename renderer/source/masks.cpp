// SPDX-License-Identifier: MIT
#include "masks.h"

#include "composition.h"
#include "drawing/references.h"
#include "drawing/walk.h"
#include "painter.h"

namespace orvan::cairo
{
namespace
{

using namespace drawing;

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

/// Clips to the region that a mask names. The tree does not tell its units, so the numbers must: a region more than
/// twice as large as the element's box would be without effect, so it is meant in the user's units. Without a size, the
/// region is a little larger than the element whatever its units, and is taken as without limit.
void ClipToRegion(const Canvas& canvas, const Frame& frame, const Rectangle* bounds) noexcept
{
	if (!frame.Has(SVGImportAttribute::width) || !frame.Has(SVGImportAttribute::height))
		return;
	const SVGLength2d position = Borrowed<SVGPositionInterface>(frame.element)->GetPosition();
	const SVGLength2d size = Borrowed<SVGSizeInterface>(frame.element)->GetSize();
	constexpr double kLargestFraction = 2.0;
	const bool isFraction = size.x.value <= kLargestFraction && size.y.value <= kLargestFraction;
	if (!isFraction)
	{
		const double x = frame.Resolve(position.x, Axis::horizontal);
		const double y = frame.Resolve(position.y, Axis::vertical);
		canvas.ClipTo({x, y, x + frame.Resolve(size.x, Axis::horizontal), y + frame.Resolve(size.y, Axis::vertical)},
					  frame.place.transform);
	}
	else if (bounds != nullptr)
	{
		const double x = bounds->left + position.x.value * bounds->GetWidth();
		const double y = bounds->top + position.y.value * bounds->GetHeight();
		canvas.ClipTo({x, y, x + size.x.value * bounds->GetWidth(), y + size.y.value * bounds->GetHeight()},
					  frame.place.transform);
	}
}

} // namespace

Result<SVGElementRef> FindMask(Job& job, const Effects& effects, const Frame& frame) noexcept
{
	return FindEffect<SVGMaskElementInterface>(job.scene, effects.mask, frame);
}

double GetMaskDetail(const Job& job) noexcept
{
	return job.output == SVGRenderOutput::page ? kPageDetail : 1.0;
}

Result<PatternPtr> DrawMask(const Canvas& canvas, const SVGElementRef& mask, const Frame& user, const Rectangle& area,
							const Rectangle* bounds, double opacity) noexcept
{
	// An image of its own, since the brightness is taken from its pixels. It has the picture's coordinates.
	Job& job = canvas.job;
	const double detail = GetMaskDetail(job);
	const SurfacePtr surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(area.GetWidth() * detail),
														static_cast<int>(area.GetHeight() * detail)));
	cairo_surface_set_device_scale(surface.get(), detail, detail);
	cairo_surface_set_device_offset(surface.get(), -area.left * detail, -area.top * detail);
	const CairoPtr drawing(cairo_create(surface.get()));
	if (cairo_status(drawing.get()) != CAIRO_STATUS_SUCCESS)
		return OutOfMemoryError();

	const Canvas maskCanvas{job, drawing.get()};
	const Place place = ORVAN_TRY(GetContentPlace(mask, user));
	const Frame frame(mask.GetObject(), place, &user, job.scene.limits);
	if (frame.canDraw)
	{
		Painter painter(maskCanvas);
		ClipToRegion(maskCanvas, frame, bounds);
		Effects effects = frame.effects;
		effects.opacity = 1.0;
		const auto draw = [&](Sink& sink) noexcept
		{
			return Walk(job.scene, sink).DrawChildren(mask.GetObject(), frame.place, frame);
		};
		ORVAN_TRY(Compose(maskCanvas, frame, effects, {}, draw, painter));
	}
	ToLuminance(surface.get(), opacity);
	PatternPtr coverage(cairo_pattern_create_for_surface(surface.get()));
	cairo_pattern_set_filter(coverage.get(), detail == 1.0 ? CAIRO_FILTER_NEAREST : CAIRO_FILTER_GOOD);
	return coverage;
}

} // namespace orvan::cairo
