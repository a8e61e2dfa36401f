// SPDX-License-Identifier: MIT
#include "patterns.h"

#include "drawing/chains.h"
#include "drawing/references.h"
#include "drawing/walk.h"
#include "layers.h"
#include "painter.h"
#include "svg_complete.h"

namespace orvan::cairo
{
namespace
{

using namespace drawing;
using Key = SVGImportAttribute;

/// How many pixels a tile of a page has for each point.
constexpr double kPageDetail = 4.0;
/// The same for a tile that is not level in the picture: its own pixels should not be seen.
constexpr double kTurnedDetail = 2.0;
constexpr double kBytesPerPixel = 4.0;
/// Largest side of a tile in pixels.
constexpr double kMaxTileSide = 4096.0;

/// What stands in a tile, with what is in force there; its transform leads to the pattern's coordinates.
struct TileContent
{
	ObjectBase* parent = nullptr;
	Place place;
};

Result<TileContent> GetContent(const Canvas& canvas, const Chain& chain, const Rectangle& tile,
							   const PaintPlace& at) noexcept
{
	TileContent content;
	content.parent = chain.FindParentOf<SVGElementInterface>();
	if (content.parent == nullptr)
		return content;
	content.place = ORVAN_TRY(GetContentPlace(canvas.job.scene, content.parent, at.frame));
	// The content's origin is the tile's corner.
	const Matrix2d corner = Translation(tile.left, tile.top);
	content.place.transform = corner;
	const auto viewbox = chain.GetOr(Key::viewBox, SVGViewbox());
	if (!viewbox.isDefault)
	{
		const auto fit = FitViewbox(tile, viewbox, chain.GetOr(Key::preserveAspectRatio, SVGPreserveAspectRatio()));
		if (!fit)
			content.parent = nullptr;
		else
			content.place.transform = fit->transform;
	}
	else if (chain.GetKeyword(Key::patternContentUnits, SVGUnits::userSpaceOnUse) == SVGUnits::objectBoundingBox)
	{
		const Rectangle box = at.box.Get();
		content.place.transform = corner * Scaling(box.GetWidth(), box.GetHeight());
	}
	return content;
}

double GetLength(const Vector2d& v) noexcept
{
	return std::hypot(v.x, v.y);
}

/// How many pixels a tile has, where the pattern's coordinates have this transform to those of the picture.
Vector2d GetTileSize(const Rectangle& tile, const Matrix2d& transform, SVGRenderOutput output) noexcept
{
	const bool isTurned = transform.axis1.y != 0.0 || transform.axis2.x != 0.0;
	const double detail = output == SVGRenderOutput::page ? kPageDetail : isTurned ? kTurnedDetail : 1.0;
	const auto getSide = [&](double side, const Vector2d& axis)
	{
		return std::clamp(std::ceil(side * GetLength(axis) * detail - 1e-6), 1.0, kMaxTileSide);
	};
	return {getSide(tile.GetWidth(), transform.axis1), getSide(tile.GetHeight(), transform.axis2)};
}

/// A tile as a picture; null when there is nothing to see in it, or no room for it.
Result<SurfacePtr> DrawTile(Job& job, const TileContent& content, const Vector2d& size, const Matrix2d& toTile,
							const Frame& around, double opacity) noexcept
{
	const LayerScope layer(job.scene.limits, size.x * size.y);
	const bool isPage = job.output == SVGRenderOutput::page;
	if (!layer.IsOpen() || (isPage && !job.scene.limits.Hold(size.x * size.y * kBytesPerPixel)))
		return SurfacePtr();
	if (isPage)
		job.scene.limits.Reserve(size.x * size.y / kPagePixelsPerSecond);
	SurfacePtr surface(
		cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(size.x), static_cast<int>(size.y)));
	const CairoPtr drawing(cairo_create(surface.get()));
	if (cairo_status(drawing.get()) != CAIRO_STATUS_SUCCESS)
		return OutOfMemoryError();
	const Canvas canvas{job, drawing.get()};
	Painter painter(canvas);
	Frame frame(content.parent, content.place, &around, job.scene.limits);
	// A pattern has no transform of its own beside that of its coordinates.
	frame.place.transform = toTile * content.place.transform;
	if (!frame.canDraw || !IsInvertible(frame.place.transform))
		return SurfacePtr();
	ORVAN_TRY(Walk(job.scene, painter).DrawChildren(content.parent, frame.place, frame));
	if (opacity < 1.0)
	{
		cairo_set_operator(drawing.get(), CAIRO_OPERATOR_DEST_IN);
		cairo_set_source_rgba(drawing.get(), 0.0, 0.0, 0.0, opacity);
		cairo_paint(drawing.get());
	}
	return surface;
}

} // namespace

bool IsPattern(ObjectBase* element) noexcept
{
	return static_cast<bool>(Borrowed<SVGPatternElementInterface>(element));
}

Result<PaintResult> SetPattern(const Canvas& canvas, ObjectBase* element, double opacity, const PaintPlace& at) noexcept
{
	Job& job = canvas.job;
	if (at.frame.IsWithin(element))
	{
		job.scene.limits.Omit(Omission::cycle);
		return PaintResult::invalid;
	}
	const Chain chain = ORVAN_TRY(Chain::Follow(job.scene, element, &IsPattern));
	const SVGUnits units = chain.GetKeyword(Key::patternUnits, SVGUnits::objectBoundingBox);
	const SVGUnits contentUnits = chain.GetKeyword(Key::patternContentUnits, SVGUnits::userSpaceOnUse);
	const Rectangle none;
	const bool usesBox = units == SVGUnits::objectBoundingBox || contentUnits == SVGUnits::objectBoundingBox;
	const Rectangle box = usesBox ? at.box.Get() : none;
	if (usesBox && !(box.GetWidth() > 0.0 && box.GetHeight() > 0.0))
		return PaintResult::invalid;
	// As in browsers, percentages are of the viewport where the pattern stands.
	Place place = at.frame.place;
	place.viewport = ORVAN_TRY(GetViewportAround(job.scene, element));
	const Rectangle tile = chain.GetArea(units == SVGUnits::objectBoundingBox, place, box);
	const Matrix2d transform = at.frame.place.transform * chain.GetTransform(Key::patternTransform, place);
	if (!tile.IsFinite() || !(tile.right > tile.left && tile.bottom > tile.top) || !IsInvertible(transform))
		return PaintResult::invalid;
	TileContent content = ORVAN_TRY(GetContent(canvas, chain, tile, at));
	if (content.parent == nullptr)
		return PaintResult::invalid;
	if (at.frame.IsWithin(content.parent))
	{
		job.scene.limits.Omit(Omission::cycle);
		return PaintResult::invalid;
	}

	const Vector2d size = GetTileSize(tile, transform, job.output);
	const Matrix2d toTile =
		Scaling(size.x / tile.GetWidth(), size.y / tile.GetHeight()) * Translation(-tile.left, -tile.top);
	const SurfacePtr surface = ORVAN_TRY(DrawTile(job, content, size, toTile, at.frame, opacity));
	if (surface == nullptr)
		return PaintResult::nothing;
	const PatternPtr pattern(cairo_pattern_create_for_surface(surface.get()));
	cairo_pattern_set_extend(pattern.get(), CAIRO_EXTEND_REPEAT);
	if (!SetMatrix(pattern.get(), toTile * Invert(transform)))
		return PaintResult::nothing;
	cairo_set_source(canvas.drawing, pattern.get());
	return PaintResult::painted;
}

} // namespace orvan::cairo
