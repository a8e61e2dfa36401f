// SPDX-License-Identifier: MIT
#include "filter_effect.h"

#include "filter_graph.h"
#include "filter_surface.h"
#include "painter.h"

#include <cstring>

namespace orvan::cairo
{
namespace
{

using namespace drawing;
using filters::Box;
using filters::Raster;

/// How many pixels a filter on a page has for each point.
constexpr double kPageDetail = 4.0;
/// Largest side of what is drawn into a filter, and of what comes out.
constexpr int kLargestSide = 32000;
/// How much of the free memory one filter may take before it is worked out in a coarser grid.
constexpr double kShareOfMemory = 0.8;
constexpr double kMostPixels = 64.0 * 1024 * 1024;
constexpr double kBytesPerPixel = 4.0;

/// A graph with the grid that it works on.
struct PlannedFilter
{
	FilterSpace space;
	FilterGraph graph;
	FilterGraph::Cost cost;
};

bool IsTooLarge(const Box& box) noexcept
{
	return box.GetWidth() > kLargestSide || box.GetHeight() > kLargestSide;
}

/// Plans filters on the picture's pixels, or where that would take too much on larger ones. `planned` stays where it
/// is: the graph's operations refer to its grid.
Result<void> PlanFilter(const Canvas& canvas, const Frame& frame, const BaseArray<FilterStage>& stages, Extent& extent,
						PlannedFilter& planned) noexcept
{
	const Rectangle touched = ORVAN_TRY(extent.GetTouched());
	const Rectangle shown = GetFilteredBounds(stages, frame, touched).Intersect(canvas.GetClipExtents());
	double detail = canvas.job.output == SVGRenderOutput::page ? kPageDetail : 1.0;
	const double most = std::min(kMostPixels, canvas.job.scene.limits.GetFreeBytes() * kShareOfMemory / kBytesPerPixel);
	constexpr int kTries = 60;
	for (int i = 0; i < kTries; i++)
	{
		planned.space = FilterSpace(frame.place.transform, detail);
		planned.graph =
			ORVAN_TRY(FilterGraph::Build(canvas, frame, stages, planned.space, planned.space.FromPicture(touched)));
		planned.graph.Plan(planned.space.FromPicture(shown));
		planned.cost = planned.graph.GetCost();
		const double tooMuch = planned.cost.pixelsAtOnce / std::max(most, 1.0);
		if (tooMuch <= 1.0 && !IsTooLarge(planned.graph.GetSourceBox()) && !IsTooLarge(planned.graph.GetResultBox()))
			break;
		detail *= std::clamp(0.95 / std::sqrt(std::max(tooMuch, 1.0)), 0.01, 0.7);
	}
	return {};
}

} // namespace

Result<PatternPtr> ToPattern(const Raster& raster, const FilterSpace& space) noexcept
{
	const Box& box = raster.GetBox();
	const SurfacePtr surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, box.GetWidth(), box.GetHeight()));
	unsigned char* const pixels = cairo_image_surface_get_data(surface.get());
	if (pixels == nullptr)
		return OutOfMemoryError();
	cairo_surface_flush(surface.get());
	std::memcpy(pixels, raster.GetPixels(), raster.GetCount() * sizeof(std::uint32_t));
	cairo_surface_mark_dirty(surface.get());
	PatternPtr pattern(cairo_pattern_create_for_surface(surface.get()));
	if (!SetMatrix(pattern.get(), Translation(-box.left, -box.top) * space.pictureToPixels))
		return PatternPtr();
	cairo_pattern_set_filter(pattern.get(), space.isExact ? CAIRO_FILTER_NEAREST : CAIRO_FILTER_BILINEAR);
	return pattern;
}

Result<PatternPtr> DrawFiltered(const Canvas& canvas, const Frame& frame, const BaseArray<FilterStage>& stages,
								Extent& extent, const Content& content) noexcept
{
	Limits& limits = canvas.job.scene.limits;
	PlannedFilter planned;
	ORVAN_TRY(PlanFilter(canvas, frame, stages, extent, planned));
	const Box& result = planned.graph.GetResultBox();
	if (result.IsEmpty())
		return PatternPtr();
	const double pixels = std::max(planned.cost.pixels, 1.0);
	const LayerScope layer(limits, pixels, kBytesPerPixel * planned.cost.pixelsAtOnce / pixels);
	const bool isPage = canvas.job.output == SVGRenderOutput::page;
	if (!layer.IsOpen() || (isPage && !limits.Hold(result.GetArea() * kBytesPerPixel)))
		return PatternPtr();
	if (isPage)
		limits.Reserve(result.GetArea() / kPagePixelsPerSecond);
	const auto draw = [&](const Canvas& source) noexcept
	{
		Painter painter(source);
		return content.DrawInto(painter);
	};
	Raster source = ORVAN_TRY(DrawRaster(canvas.job, planned.space, planned.graph.GetSourceBox(), draw));
	const filters::Alarm alarm{[](void* context) noexcept { return static_cast<Limits*>(context)->IsOver(); }, &limits};
	const Raster filtered = ORVAN_TRY(planned.graph.Run(std::move(source), alarm));
	if (filtered.GetBox().IsEmpty())
		return PatternPtr();
	return ToPattern(filtered, planned.space);
}

} // namespace orvan::cairo
