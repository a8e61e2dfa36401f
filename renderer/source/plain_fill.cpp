// SPDX-License-Identifier: MIT
#include "plain_fill.h"

#include "drawing/strokes.h"
#include "gradient_pixels.h"
#include "rasterizer.h"
#include "stroker.h"

#include <limits>
#include <new>
#include <optional>

namespace orvan::cairo
{
namespace
{

using namespace drawing;

/// Areas larger than this take more memory for cells than the drawing library needs for everything.
constexpr double kMaxPixels = 2.0 * 1024 * 1024;

/// Coordinates further out than this lose too much on their way to pixels.
constexpr double kFarthest = 1e6;

/// What is filled: pixels that a rectangle in whole pixels is cut out of.
struct Target
{
	cairo_surface_t* surface = nullptr;
	unsigned char* data = nullptr; ///< Where the area begins.
	std::ptrdiff_t stride = 0;
	int width = 0;
	int height = 0;
	double left = 0.0; ///< Where the area begins in the picture's coordinates.
	double top = 0.0;
};

bool IsIdentity(cairo_t* drawing) noexcept
{
	cairo_matrix_t m;
	cairo_get_matrix(drawing, &m);
	return m.xx == 1.0 && m.yy == 1.0 && m.xy == 0.0 && m.yx == 0.0 && m.x0 == 0.0 && m.y0 == 0.0;
}

/// The rectangle that the canvas is clipped to; nothing when it is clipped to something else.
std::optional<Rectangle> GetClip(cairo_t* drawing) noexcept
{
	const std::unique_ptr<cairo_rectangle_list_t, Releaser<&cairo_rectangle_list_destroy>> list(
		cairo_copy_clip_rectangle_list(drawing));
	if (list->status != CAIRO_STATUS_SUCCESS || list->num_rectangles != 1)
		return std::nullopt;
	const cairo_rectangle_t& r = list->rectangles[0];
	const Rectangle clip{r.x, r.y, r.x + r.width, r.y + r.height};
	const Rectangle whole = clip.RoundOut();
	const bool isWhole =
		whole.left == clip.left && whole.top == clip.top && whole.right == clip.right && whole.bottom == clip.bottom;
	return isWhole ? std::optional(clip) : std::nullopt;
}

std::optional<Target> GetTarget(cairo_t* drawing, const Rectangle& bounds) noexcept
{
	Target target;
	target.surface = cairo_get_group_target(drawing);
	if (cairo_surface_get_type(target.surface) != CAIRO_SURFACE_TYPE_IMAGE ||
		cairo_image_surface_get_format(target.surface) != CAIRO_FORMAT_ARGB32 ||
		cairo_get_operator(drawing) != CAIRO_OPERATOR_OVER || !IsIdentity(drawing))
		return std::nullopt;
	double scaleX = 0.0;
	double scaleY = 0.0;
	cairo_surface_get_device_scale(target.surface, &scaleX, &scaleY);
	double offsetX = 0.0;
	double offsetY = 0.0;
	cairo_surface_get_device_offset(target.surface, &offsetX, &offsetY);
	if (scaleX != 1.0 || scaleY != 1.0 || offsetX != std::floor(offsetX) || offsetY != std::floor(offsetY))
		return std::nullopt;
	const auto clip = GetClip(drawing);
	if (!clip)
		return std::nullopt;
	const double surfaceWidth = cairo_image_surface_get_width(target.surface);
	const double surfaceHeight = cairo_image_surface_get_height(target.surface);
	const Rectangle surface{-offsetX, -offsetY, surfaceWidth - offsetX, surfaceHeight - offsetY};
	const Rectangle area = clip->Intersect(surface).Intersect(bounds.RoundOut());
	if (!(area.GetArea() <= kMaxPixels))
		return std::nullopt;
	target.width = static_cast<int>(area.GetWidth());
	target.height = static_cast<int>(area.GetHeight());
	target.left = area.left;
	target.top = area.top;
	if (target.width == 0 || target.height == 0)
		return target;
	cairo_surface_flush(target.surface);
	target.stride = cairo_image_surface_get_stride(target.surface);
	target.data = cairo_image_surface_get_data(target.surface) +
				  static_cast<std::ptrdiff_t>(area.top + offsetY) * target.stride +
				  static_cast<std::ptrdiff_t>(area.left + offsetX) * 4;
	return target;
}

/// Each channel of a pixel times a share of 0 to 255, rounded.
std::uint32_t Scale(std::uint32_t pixel, std::uint32_t share) noexcept
{
	constexpr std::uint32_t kHalf = 0x00800080;
	constexpr std::uint32_t kMask = 0x00ff00ff;
	std::uint32_t low = (pixel & kMask) * share + kHalf;
	std::uint32_t high = (pixel >> 8 & kMask) * share + kHalf;
	low = (low + (low >> 8 & kMask)) >> 8 & kMask;
	high = (high + (high >> 8 & kMask)) & ~kMask;
	return low | high;
}

/// A colour as a pixel, multiplied by its opacity, as the drawing library does it.
std::uint32_t ToPixel(double red, double green, double blue, double alpha) noexcept
{
	const auto channel = [](double value)
	{
		// NOLINTNEXTLINE(bugprone-incorrect-roundings): never negative, and the quickest way.
		return static_cast<std::uint32_t>(value * 255.0 + 0.5);
	};
	return channel(alpha) << 24 | channel(red * alpha) << 16 | channel(green * alpha) << 8 | channel(blue * alpha);
}

void FillWithColor(Rasterizer& rasterizer, const Target& target, SVGFillRule rule, const BaseArray<Rows>& leftOut,
				   std::uint32_t color) noexcept
{
	rasterizer.Sweep(rule, leftOut,
					 [&](int y, int start, int end, int coverage)
					 {
						 auto* const row = reinterpret_cast<std::uint32_t*>(target.data + y * target.stride);
						 const std::uint32_t source =
							 coverage == 255 ? color : Scale(color, static_cast<std::uint32_t>(coverage));
						 const std::uint32_t kept = 255 - (source >> 24);
						 if (kept == 0)
						 {
							 std::fill(row + start, row + end, source);
							 return;
						 }
						 for (int x = start; x < end; x++)
							 row[x] = source + Scale(row[x], kept);
					 });
}

void FillWithGradient(Rasterizer& rasterizer, const Target& target, SVGFillRule rule, const BaseArray<Rows>& leftOut,
					  const GradientPixels& gradient) noexcept
{
	const int left = static_cast<int>(target.left);
	const int top = static_cast<int>(target.top);
	rasterizer.Sweep(rule, leftOut,
					 [&](int y, int start, int end, int coverage)
					 {
						 auto* const row = reinterpret_cast<std::uint32_t*>(target.data + y * target.stride) - left;
						 gradient.ForRow(top + y, left + start, left + end,
										 [&](int x, std::uint32_t color)
										 {
											 const std::uint32_t source =
												 coverage == 255 ? color
																 : Scale(color, static_cast<std::uint32_t>(coverage));
											 const std::uint32_t kept = 255 - (source >> 24);
											 row[x] = kept == 0 ? source : source + Scale(row[x], kept);
										 });
					 });
}

/// Fills with a source of the drawing library's, through a mask of the coverage. False when there is no memory.
bool FillThroughMask(cairo_t* drawing, Rasterizer& rasterizer, const Target& target, SVGFillRule rule,
					 const BaseArray<Rows>& leftOut) noexcept
{
	const SurfacePtr mask(cairo_image_surface_create(CAIRO_FORMAT_A8, target.width, target.height));
	const bool isMade = cairo_surface_status(mask.get()) == CAIRO_STATUS_SUCCESS;
	unsigned char* const data = isMade ? cairo_image_surface_get_data(mask.get()) : nullptr;
	const std::ptrdiff_t stride = cairo_image_surface_get_stride(mask.get());
	rasterizer.Sweep(rule, leftOut,
					 [&](int y, int start, int end, int coverage)
					 {
						 if (data != nullptr)
							 std::fill(data + y * stride + start, data + y * stride + end,
									   static_cast<unsigned char>(coverage));
					 });
	if (!isMade)
		return false;
	cairo_surface_mark_dirty(mask.get());
	cairo_mask_surface(drawing, mask.get(), target.left, target.top);
	return true;
}

/// Paints what `add` adds to a rasterizer; it gets the transform from the picture's coordinates to the rasterizer's,
/// and tells whether the drawing library may paint parts of it. `width` is that of lines in pixels, and infinite for
/// areas.
template <typename Add>
Remainder PaintPlainly(const Canvas& canvas, const Rectangle& bounds, SVGFillRule rule, double width, Add add) noexcept
{
	Remainder remainder;
	cairo_t* const drawing = canvas.drawing;
	const bool isNear =
		bounds.left > -kFarthest && bounds.top > -kFarthest && bounds.right < kFarthest && bounds.bottom < kFarthest;
	if (canvas.job.rasterizer == nullptr || !isNear)
		return remainder;
	const auto target = GetTarget(drawing, bounds);
	if (!target)
		return remainder;
	BaseArray<Rows> mixed;
	if (target->width == 0 || target->height == 0)
	{
		remainder.Set(std::move(mixed), 0.0, 0.0, 0.0);
		return remainder;
	}
	Rasterizer& rasterizer = *canvas.job.rasterizer;
	if (!rasterizer.Prepare(target->width, target->height))
		return remainder;
	const bool isForAnybody = add(rasterizer, Translation(-target->left, -target->top));
	if (isForAnybody && !rasterizer.FindMixedRows(rule, width, mixed))
		mixed.Clear();
	cairo_pattern_t* const source = cairo_get_source(drawing);
	double red = 0.0;
	double green = 0.0;
	double blue = 0.0;
	double alpha = 0.0;
	GradientPixels gradient;
	if (cairo_pattern_get_rgba(source, &red, &green, &blue, &alpha) == CAIRO_STATUS_SUCCESS)
		FillWithColor(rasterizer, *target, rule, mixed, ToPixel(red, green, blue, alpha));
	else if (gradient.Read(source, static_cast<double>(target->width) * target->height))
		FillWithGradient(rasterizer, *target, rule, mixed, gradient);
	else if (!FillThroughMask(drawing, rasterizer, *target, rule, mixed))
		return remainder;
	cairo_surface_mark_dirty(target->surface);
	remainder.Set(std::move(mixed), target->left, target->left + target->width, target->top);
	return remainder;
}

} // namespace

void Remainder::ClipTo(const Canvas& canvas) const noexcept
{
	if (_isEverything)
		return;
	cairo_new_path(canvas.drawing);
	for (const Rows& rows : _rows)
		cairo_rectangle(canvas.drawing, _left, _top + rows.top, _right - _left, rows.bottom - rows.top);
	cairo_clip(canvas.drawing);
}

Remainder FillPlainly(const Canvas& canvas, const Outline& outline, const Matrix2d& transform, const Rectangle& bounds,
					  SVGFillRule rule) noexcept
{
	return PaintPlainly(canvas, bounds, rule, std::numeric_limits<double>::infinity(),
						[&](Rasterizer& rasterizer, const Matrix2d& toArea)
						{
							rasterizer.Add(outline, toArea * transform);
							return true;
						});
}

Remainder StrokePlainly(const Canvas& canvas, const Frame& frame, const Outline& outline,
						const Rectangle& bounds) noexcept
{
	const Place& place = frame.place;
	const Style& style = place.style;
	if (style.dashes != nullptr && !style.dashes->IsEmpty())
		return {};
	const double unit = canvas.job.scene.unit;
	const bool isUnscaled = IsStrokeUnscaled(frame);
	const Matrix2d toPixels = isUnscaled ? Scaling(unit, unit) : place.transform;
	const Matrix2d toPen = isUnscaled ? Scaling(1.0 / unit, 1.0 / unit) * place.transform : Matrix2d();
	const Pen pen{GetStrokeWidth(place) / 2.0, style.lineCap, style.lineJoin, std::max(style.miterLimit, 1.0)};
	return PaintPlainly(canvas, bounds, SVGFillRule::nonzero, pen.radius * 2.0 * GetMeanScale(toPixels),
						[&](Rasterizer& rasterizer, const Matrix2d& toArea)
						{
							Stroker stroker(rasterizer, pen, toArea * toPixels, canvas.job.scene.limits);
							stroker.Add(outline, toPen);
							return !stroker.HasTurnedBack() && pen.join != SVGLineJoin::miterClip;
						});
}

} // namespace orvan::cairo
