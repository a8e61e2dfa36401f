// SPDX-License-Identifier: MIT
#include "masks.h"

#include "composition.h"
#include "drawing/references.h"
#include "drawing/walk.h"
#include "layers.h"
#include "painter.h"

#include <array>

namespace orvan::cairo
{
namespace
{

using namespace drawing;
using Key = SVGImportAttribute;

/// How many pixels a mask on a page has for each point at most, and how many in all. A page keeps the pixels of its
/// masks to its end.
constexpr double kPageDetail = 4.0;
constexpr double kPagePixels = 2.0 * 1024 * 1024;

/// How a pixel becomes coverage: the weights of its channels, and whether they are taken as linear light.
struct Weights
{
	double red;
	double green;
	double blue;
	double alpha;
	bool isLinear;
};

constexpr Weights kLuminance{0.2125, 0.7154, 0.0721, 0.0, false};
constexpr Weights kLinearLuminance{0.2125, 0.7154, 0.0721, 0.0, true};
constexpr Weights kAlpha{0.0, 0.0, 0.0, 1.0, false};

/// The light of a channel's value, 0 to 255 both.
std::array<double, 256> MakeLinearTable() noexcept
{
	std::array<double, 256> table{};
	for (std::size_t i = 0; i < table.size(); i++)
	{
		const double value = static_cast<double>(i) / 255.0;
		table[i] = 255.0 * (value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4));
	}
	return table;
}

/// The coverage of a pixel as linear light, 0 to 255. Its colour is multiplied by its opacity, which light is not.
double GetLinear(std::uint32_t pixel, const Weights& weights, const std::array<double, 256>& table) noexcept
{
	const std::uint32_t alpha = pixel >> 24;
	if (alpha == 0)
		return 0.0;
	const auto light = [&](int shift)
	{
		return table[std::min((pixel >> shift & 255) * 255 / alpha, 255u)];
	};
	return (light(16) * weights.red + light(8) * weights.green + light(0) * weights.blue) * alpha / 255.0;
}

/// Writes the coverage of each pixel of `from` to `to`, both as large.
void WriteCoverage(cairo_surface_t* from, cairo_surface_t* to, const Weights& weights, double opacity) noexcept
{
	cairo_surface_flush(from);
	cairo_surface_flush(to);
	const unsigned char* const source = cairo_image_surface_get_data(from);
	unsigned char* const target = cairo_image_surface_get_data(to);
	const int width = cairo_image_surface_get_width(from);
	const int height = cairo_image_surface_get_height(from);
	const std::ptrdiff_t sourceStride = cairo_image_surface_get_stride(from);
	const std::ptrdiff_t targetStride = cairo_image_surface_get_stride(to);
	const auto weigh = [&](double share)
	{
		return static_cast<std::uint32_t>(std::lround(share * opacity * 65536.0));
	};
	const std::uint32_t red = weigh(weights.red);
	const std::uint32_t green = weigh(weights.green);
	const std::uint32_t blue = weigh(weights.blue);
	const std::uint32_t alpha = weigh(weights.alpha);
	static const std::array<double, 256> table = MakeLinearTable();
	for (int y = 0; y < height && source != nullptr && target != nullptr; y++)
	{
		const auto* const row = reinterpret_cast<const std::uint32_t*>(source + y * sourceStride);
		unsigned char* const coverage = target + y * targetStride;
		for (int x = 0; x < width; x++)
		{
			const std::uint32_t pixel = row[x];
			if (weights.isLinear)
			{
				coverage[x] = static_cast<unsigned char>(std::lround(GetLinear(pixel, weights, table) * opacity));
				continue;
			}
			const std::uint32_t sum = (pixel >> 16 & 255) * red + (pixel >> 8 & 255) * green + (pixel & 255) * blue +
									  (pixel >> 24) * alpha + 32768;
			coverage[x] = static_cast<unsigned char>(std::min(sum >> 16, 255u));
		}
	}
	cairo_surface_mark_dirty(to);
}

/// What of a mask counts for the element that it is for.
const Weights& GetWeights(const Frame& frame, const Frame& user) noexcept
{
	const auto mode = user.GetKeyword(Key::maskMode, SVGMaskMode::matchSource);
	const bool isAlpha = frame.GetKeyword(Key::maskType, SVGMaskType::luminance) == SVGMaskType::alpha;
	if (mode == SVGMaskMode::alpha || (mode == SVGMaskMode::matchSource && isAlpha))
		return kAlpha;
	return frame.place.style.colorInterpolation == SVGColorInterpolation::linearRGB ? kLinearLuminance : kLuminance;
}

/// What the position and size of a mask refer to. A plain import does not tell, so the numbers must: a region more than
/// twice as large as the element's box would be without effect, so it is meant in the user's units.
SVGUnits GetRegionUnits(const Frame& frame, bool isComplete) noexcept
{
	constexpr double kLargestFraction = 2.0;
	if (isComplete || frame.Has(Key::maskUnits))
		return frame.GetKeyword(Key::maskUnits, SVGUnits::objectBoundingBox);
	const auto isLarge = [&](Key key)
	{
		return frame.GetOr(key, SVGLength()).value > kLargestFraction;
	};
	return isLarge(Key::width) || isLarge(Key::height) ? SVGUnits::userSpaceOnUse : SVGUnits::objectBoundingBox;
}

/// Clips to the region of a mask. False when there is no region, and so nothing shows.
Result<bool> ClipToRegion(const Canvas& canvas, const Frame& frame, Extent& extent) noexcept
{
	const SVGUnits units = GetRegionUnits(frame, canvas.job.scene.isComplete);
	const bool isBox = units == SVGUnits::objectBoundingBox;
	const auto get = [&](Key key, Axis axis, double absent)
	{
		const SVGLength length = frame.GetOr(key, SVGLength{absent, SVGLengthUnit::percent});
		return isBox && length.unit == SVGLengthUnit::percent ? length.value : frame.Resolve(length, axis);
	};
	const double x = get(Key::x, Axis::horizontal, -0.1);
	const double y = get(Key::y, Axis::vertical, -0.1);
	const Rectangle region{x, y, x + get(Key::width, Axis::horizontal, 1.2), y + get(Key::height, Axis::vertical, 1.2)};
	if (!(region.right > region.left && region.bottom > region.top))
		return false;
	if (!isBox)
	{
		canvas.ClipTo(region, frame.place.transform);
		return true;
	}
	const Rectangle box = ORVAN_TRY(extent.GetBox());
	if (!(box.GetWidth() > 0.0 && box.GetHeight() > 0.0))
		return false;
	canvas.ClipTo(Transform(BoxTransform(box), region), frame.place.transform);
	return true;
}

/// An image over `area` that has the picture's coordinates, with `detail` pixels for each of its units.
SurfacePtr MakeImage(cairo_format_t format, const Rectangle& area, double detail) noexcept
{
	SurfacePtr surface(cairo_image_surface_create(format, static_cast<int>(std::ceil(area.GetWidth() * detail)),
												  static_cast<int>(std::ceil(area.GetHeight() * detail))));
	cairo_surface_set_device_scale(surface.get(), detail, detail);
	cairo_surface_set_device_offset(surface.get(), -area.left * detail, -area.top * detail);
	return surface;
}

/// The coverage of one mask over `area`; null when nothing shows.
Result<SurfacePtr> DrawLayer(const Canvas& canvas, const SVGElementRef& mask, const Frame& user, const Rectangle& area,
							 Extent& extent, double detail, double opacity) noexcept
{
	Job& job = canvas.job;
	Limits& limits = job.scene.limits;
	const bool isPage = job.output == SVGRenderOutput::page;
	const double pixels = area.GetArea() * detail * detail;
	const LayerScope layer(limits, pixels, 5.0);
	if (!layer.IsOpen() || (isPage && !limits.Hold(pixels)))
		return SurfacePtr();
	if (isPage)
		limits.Reserve(pixels / kPagePixelsPerSecond);
	// Images of their own, since the coverage is worked out from the pixels.
	const SurfacePtr colors = MakeImage(CAIRO_FORMAT_ARGB32, area, detail);
	SurfacePtr coverage = MakeImage(CAIRO_FORMAT_A8, area, detail);
	const CairoPtr drawing(cairo_create(colors.get()));
	if (cairo_status(drawing.get()) != CAIRO_STATUS_SUCCESS ||
		cairo_surface_status(coverage.get()) != CAIRO_STATUS_SUCCESS)
		return OutOfMemoryError();

	const Canvas maskCanvas{job, drawing.get()};
	const Place place = ORVAN_TRY(GetContentPlace(job.scene, mask.GetObject(), user));
	Frame frame(mask.GetObject(), place, &user, limits);
	// A mask's own transform does nothing.
	frame.place.transform = place.transform;
	if (limits.IsOver() || !ORVAN_TRY(ClipToRegion(maskCanvas, frame, extent)))
		return SurfacePtr();
	if (frame.GetKeyword(Key::maskContentUnits, SVGUnits::userSpaceOnUse) == SVGUnits::objectBoundingBox)
		frame.place.transform = frame.place.transform * BoxTransform(ORVAN_TRY(extent.GetBox()));
	if (IsInvertible(frame.place.transform))
	{
		Painter painter(maskCanvas);
		const auto draw = [&](Sink& sink) noexcept
		{
			return Walk(job.scene, sink).DrawChildren(mask.GetObject(), frame.place, frame);
		};
		// What clips or masks the mask refers to the element that the mask is for.
		Effects effects;
		effects.clipPath = frame.effects.clipPath;
		effects.mask = frame.effects.mask;
		ORVAN_TRY(Compose(maskCanvas, frame, effects, extent, draw, painter));
	}
	WriteCoverage(colors.get(), coverage.get(), GetWeights(frame, user), opacity);
	return coverage;
}

/// By the number of the operation: what is drawn is the upper mask.
constexpr cairo_operator_t kOperators[] = {CAIRO_OPERATOR_OVER, CAIRO_OPERATOR_OUT, CAIRO_OPERATOR_IN,
										   CAIRO_OPERATOR_XOR};

/// Joins the coverage of a mask with that of those below it; null stands for none in both.
SurfacePtr Join(SurfacePtr upper, SurfacePtr lower, SVGMaskComposite composite) noexcept
{
	if (upper == nullptr || lower == nullptr)
	{
		const bool isAny = composite == SVGMaskComposite::add || composite == SVGMaskComposite::exclude;
		return isAny                                     ? std::move(upper != nullptr ? upper : lower)
			   : composite == SVGMaskComposite::subtract ? std::move(upper)
														 : SurfacePtr();
	}
	const CairoPtr drawing(cairo_create(lower.get()));
	cairo_set_operator(drawing.get(), kOperators[static_cast<std::size_t>(composite)]);
	cairo_set_source_surface(drawing.get(), upper.get(), 0.0, 0.0);
	cairo_paint(drawing.get());
	return lower;
}

} // namespace

Result<PatternPtr> DrawMask(const Canvas& canvas, const BaseArray<SVGElementRef>& masks, const Frame& user,
							const Rectangle& area, Extent& extent, double opacity) noexcept
{
	const bool isPage = canvas.job.output == SVGRenderOutput::page;
	const double detail =
		isPage ? std::clamp(std::sqrt(kPagePixels / std::max(area.GetArea(), 1.0)), 0.25, kPageDetail) : 1.0;
	const bool isAlone = masks.GetCount() == 1;
	SurfacePtr coverage;
	for (std::size_t i = masks.GetCount(); i-- > 0;)
	{
		SurfacePtr layer = ORVAN_TRY(DrawLayer(canvas, masks[i], user, area, extent, detail, isAlone ? opacity : 1.0));
		coverage = i + 1 == masks.GetCount() ? std::move(layer)
											 : Join(std::move(layer), std::move(coverage),
													user.GetKeyword(Key::maskComposite, SVGMaskComposite::add));
	}
	if (coverage == nullptr)
		return PatternPtr();
	if (!isAlone && opacity != 1.0)
	{
		const CairoPtr drawing(cairo_create(coverage.get()));
		cairo_set_operator(drawing.get(), CAIRO_OPERATOR_DEST_IN);
		cairo_paint_with_alpha(drawing.get(), opacity);
	}
	PatternPtr pattern(cairo_pattern_create_for_surface(coverage.get()));
	cairo_matrix_t matrix;
	cairo_get_matrix(canvas.drawing, &matrix);
	const bool isUpright = matrix.xx == 1.0 && matrix.yx == 0.0 && matrix.xy == 0.0 && matrix.yy == 1.0;
	cairo_pattern_set_filter(pattern.get(), detail == 1.0 && isUpright ? CAIRO_FILTER_NEAREST : CAIRO_FILTER_GOOD);
	return pattern;
}

} // namespace orvan::cairo
